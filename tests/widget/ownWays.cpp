#include <map>
#include <string>

#include <gtest/gtest.h>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/windows/Window.h"
#include "host/CommandPlayer.h"
#include "tests/support/TestHost.h"
#include "tests/widget/Probe.h"

namespace widget_test {
namespace {

using gui::GraphicCommands;
using gui::Widget;
using gui::skin::Skin;
using Rect = osg::RectImpl<osg::Vec2i>;

std::map<std::string, int> calls;

/// A label of the tree that draws nothing of itself: what its one override is called for, the walk must not pass over.
struct Plain : Widget {
    Plain() {
        setPosition(at(3, 4));
        setSize(at(50, 20));
    }
};

struct TargetPosition : Plain {
    osg::Vec2i getTargetPosition_() const override {
        return ++calls["getTargetPosition_"], Widget::getTargetPosition_();
    }
};
struct Position : Plain {
    osg::Vec2i getPosition() const override { return ++calls["getPosition"], Widget::getPosition(); }
};
struct Size : Plain {
    osg::Vec2i getSize() const override { return ++calls["getSize"], Widget::getSize(); }
};
struct Clipped : Plain {
    void drawClipped_() override { ++calls["drawClipped_"], Widget::drawClipped_(); }
};
struct BeginClip : Plain {
    void beginClip_() override { ++calls["beginClip_"], Widget::beginClip_(); }
};
struct EndClip : Plain {
    void endClip_() override { ++calls["endClip_"], Widget::endClip_(); }
};
struct ClipRect : Plain {
    Rect getClipRect_() const override { return ++calls["getClipRect_"], Widget::getClipRect_(); }
};
struct Drawn : Plain {
    void draw_() override { ++calls["draw_"], Widget::draw_(); }
};
struct MakeModelView : Plain {
    void makeModelView_(GraphicCommands* list) override { ++calls["makeModelView_"], Widget::makeModelView_(list); }
};
struct MakeClipped : Plain {
    void makeClipped_(GraphicCommands* list) override { ++calls["makeClipped_"], Widget::makeClipped_(list); }
};
struct MakeBeginClip : Plain {
    void makeBeginClip_(GraphicCommands* list) override { ++calls["makeBeginClip_"], Widget::makeBeginClip_(list); }
};
struct MakeEndClip : Plain {
    void makeEndClip_(GraphicCommands* list) override { ++calls["makeEndClip_"], Widget::makeEndClip_(list); }
};
struct Made : Plain {
    void make_(GraphicCommands* list) override { ++calls["make_"], Widget::make_(list); }
};
struct MakeFocus : Plain {
    void makeFocusRect_(GraphicCommands* list) override { ++calls["makeFocusRect_"], Widget::makeFocusRect_(list); }
};
struct Focus : Plain {
    void drawFocusRect_() override { ++calls["drawFocusRect_"], Widget::drawFocusRect_(); }
};
struct Visible : Plain {
    bool getVisible(bool recursive) const override { return ++calls["getVisible"], Widget::getVisible(recursive); }
};
struct Parse : Plain {
    void parse() override { ++calls["parse"], Widget::parse(); }
};
struct ParseStep : Plain {
    void parse_() override { ++calls["parse_"], Widget::parse_(); }
};

struct SkinBkg : Skin {
    using Skin::Skin;
    void drawBkg_() override { ++calls["skin drawBkg_"], Skin::drawBkg_(); }
};
struct SkinBeginClip : Skin {
    using Skin::Skin;
    void beginClipByInsets() override { ++calls["skin beginClipByInsets"], Skin::beginClipByInsets(); }
};
struct SkinEndClip : Skin {
    using Skin::Skin;
    void endClipByInsets() override { ++calls["skin endClipByInsets"], Skin::endClipByInsets(); }
};
struct SkinImage : Skin {
    using Skin::Skin;
    void drawImage_() override { ++calls["skin drawImage_"], Skin::drawImage_(); }
};
struct SkinText : Skin {
    using Skin::Skin;
    void drawText_() override { ++calls["skin drawText_"], Skin::drawText_(); }
};
struct SkinChildren : Skin {
    using Skin::Skin;
    void drawChildren_() override { ++calls["skin drawChildren_"], Skin::drawChildren_(); }
};

struct SkinMade : Skin {
    using Skin::Skin;
    void make_(GraphicCommands* list) override { ++calls["skin make_"], Skin::make_(list); }
};
struct SkinMakeBkg : Skin {
    using Skin::Skin;
    void makeBkg_(GraphicCommands* list) override { ++calls["skin makeBkg_"], Skin::makeBkg_(list); }
};
struct SkinMakeBeginClip : Skin {
    using Skin::Skin;
    void makeBeginClipByInsets(GraphicCommands* list) override {
        ++calls["skin makeBeginClipByInsets"], Skin::makeBeginClipByInsets(list);
    }
};
struct SkinMakeEndClip : Skin {
    using Skin::Skin;
    void makeEndClipByInsets(GraphicCommands* list) override {
        ++calls["skin makeEndClipByInsets"], Skin::makeEndClipByInsets(list);
    }
};
struct SkinMakeImage : Skin {
    using Skin::Skin;
    void makeImage_(GraphicCommands* list) override { ++calls["skin makeImage_"], Skin::makeImage_(list); }
};
struct SkinMakeText : Skin {
    using Skin::Skin;
    void makeText_(GraphicCommands* list) override { ++calls["skin makeText_"], Skin::makeText_(list); }
};
struct SkinMakeChildren : Skin {
    using Skin::Skin;
    void makeChildren_(GraphicCommands* list) override { ++calls["skin makeChildren_"], Skin::makeChildren_(list); }
};

template <class... Widgets>
void insertAll(gui::Window& window) {
    (window.insertWidget(new Widgets, -1), ...);
}

template <class... Skins>
void insertSkinned(gui::Window& window) {
    auto const insert = [&window](auto makeSkin) {
        auto* const widget = new WidgetProbe;
        widget->setSize(at(40, 10));
        widget->setOwnSkin(makeSkin(widget));
        widget->getWidgetSkin()->getSkinData()->setClipInsets(gui::Insets{1, 1, 1, 1});
        window.insertWidget(widget, -1);
    };
    (insert([](Widget* widget) { return new Skins(widget, true); }), ...);
}

TEST(OwnWays, EachStepThatAClassOverridesIsCalledInEachFrame) {
    support::TestHost host;
    auto* const window = new gui::Window;
    insertAll<TargetPosition, Position, Size, Clipped, BeginClip, EndClip, ClipRect, Drawn, Focus, Visible, Parse,
              ParseStep>(*window);
    insertSkinned<SkinBkg, SkinBeginClip, SkinEndClip, SkinImage, SkinText, SkinChildren>(*window);
    window->setSize(at(300, 200));
    window->setVisible(true);
    host.frame();
    for (int frame = 0; frame < 2; ++frame) {
        calls.clear();
        host.frame();
        std::map<std::string, int> const expected = {{"getTargetPosition_", 2},
                                                     {"getPosition", 3},
                                                     {"getSize", 1},
                                                     {"drawClipped_", 1},
                                                     {"beginClip_", 1},
                                                     {"endClip_", 1},
                                                     {"getClipRect_", 1},
                                                     {"draw_", 1},
                                                     {"drawFocusRect_", 1},
                                                     {"getVisible", 2},
                                                     {"parse", 1},
                                                     {"parse_", 1},
                                                     {"skin drawBkg_", 1},
                                                     {"skin beginClipByInsets", 1},
                                                     {"skin endClipByInsets", 1},
                                                     {"skin drawImage_", 1},
                                                     {"skin drawText_", 1},
                                                     {"skin drawChildren_", 1}};
        EXPECT_EQ(calls, expected);
    }
}

TEST(OwnWays, EachStepThatAClassOverridesIsCalledInEachRecording) {
    support::TestHost host;
    auto* const window = new gui::Window;
    insertAll<MakeModelView, MakeClipped, MakeBeginClip, MakeEndClip, Made, MakeFocus>(*window);
    insertSkinned<SkinMade, SkinMakeBkg, SkinMakeBeginClip, SkinMakeEndClip, SkinMakeImage, SkinMakeText,
                  SkinMakeChildren>(*window);
    window->setSize(at(300, 200));
    window->setVisible(true);
    host.frame();
    for (int round = 0; round < 2; ++round) {
        calls.clear();
        GraphicCommands list;
        window->make(&list);
        host::CommandPlayer::release(list);
        std::map<std::string, int> const expected = {{"makeModelView_", 1},
                                                     {"makeClipped_", 1},
                                                     {"makeBeginClip_", 1},
                                                     {"makeEndClip_", 1},
                                                     {"make_", 1},
                                                     {"makeFocusRect_", 1},
                                                     {"skin make_", 1},
                                                     {"skin makeBkg_", 1},
                                                     {"skin makeBeginClipByInsets", 1},
                                                     {"skin makeEndClipByInsets", 1},
                                                     {"skin makeImage_", 1},
                                                     {"skin makeText_", 1},
                                                     {"skin makeChildren_", 1}};
        EXPECT_EQ(calls, expected);
    }
}

/// Runs frames inside its constructor, when no override of a derived class is there yet.
struct Impatient : Plain {
    Impatient(support::TestHost& host, gui::Window& window) {
        window.insertWidget(this, -1);
        host.frame();
    }
};

struct Late : Impatient {
    using Impatient::Impatient;
    void draw_() override { ++calls["late draw_"], Impatient::draw_(); }
    void parse_() override { ++calls["late parse_"], Impatient::parse_(); }
};

TEST(OwnWays, WhatWasDrawnDuringItsConstructionIsAskedAgainAfterwards) {
    support::TestHost host;
    auto* const window = new gui::Window;
    window->setSize(at(300, 200));
    window->setVisible(true);
    host.frame();
    calls.clear();
    new Late(host, *window);
    EXPECT_TRUE(calls.empty());
    host.frame();
    EXPECT_EQ(calls, (std::map<std::string, int>{{"late draw_", 1}, {"late parse_", 1}}));
}

}  // namespace
}  // namespace widget_test
