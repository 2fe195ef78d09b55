#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "host/ErrorOverlay.h"
#include "host/LiveReload.h"
#include "host/lua/WindowResources.h"
#include "platform/qor/Lua.h"
#include "platform/qor/Memory.h"
#include "platform/qor/Paths.h"
#include "platform/trace/vtxTraceLog.h"
#include "tests/reload/Folder.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SkinText.h"
#include "tests/support/TestHost.h"

#include <lua.hpp>

namespace {

using gui::GUI;
using gui::Widget;
using gui::WindowBase;
using gui::skin::InteractiveStateReleased;

/// A host with a skin file "skin.lua" of one label skin, whose colour "color.lua" gives, and a window file.
class LiveReload : public testing::Test {
protected:
    LiveReload() {
        qor::setAssetRoots({folder.path(""), "assets"});
        writeColor("0xff0000ff");
        folder.write("skin.lua", skin);
        host.destroyGui();
        GUI::create(folder.path("skin.lua"), {800, 600}, 1.0f);
        host::registerWindowResources();
        reload.emplace();
        reload->setReport([this](qor::string const& error) { reports.emplace_back(error.c_str()); });
        EXPECT_TRUE(reload->watchSkin(folder.path("skin.lua")));
    }

    void writeColor(std::string const& color) { folder.write("color.lua", "return '" + color + "'"); }
    /// So much time that every change is seen and has stood still.
    void look(int times = 2) {
        for (int i = 0; i < times; ++i) {
            now += host::LiveReload::lookInterval;
            reload->update(now);
            host.frame();
        }
    }
    static osg::Vec4f colorOf(Widget const& widget) {
        gui::Text::Info const* const info = widget.getWidgetSkin()->getSkinData()->getText(InteractiveStateReleased, 1);
        return info ? info->color : osg::Vec4f();
    }
    /// A window from "window.lua", shown and watched.
    WindowBase* makeWindow(std::string const& text) {
        folder.write("window.lua", text);
        WindowBase* const window = GUI::get()->createWindowFromResource(folder.path("window.lua").c_str());
        if (!window)
            return nullptr;
        window->setVisible(true);
        host.frame();
        reload->watchWindow(folder.path("window.lua"), window);
        return window;
    }

    std::string const skin = "local color = dofile('color.lua')\nSkin = { staticSkin = " +
                             support::skinFunction("", "text = { font = '" + std::string(support::fontFile) +
                                                           "', fontSize = 14, color = color }") +
                             " }";
    Folder folder;
    support::TestHost host;
    std::optional<host::LiveReload> reload;
    std::vector<std::string> reports;
    double now = 100.0;
    osg::Vec4f const red{1, 0, 0, 1};
    osg::Vec4f const green{0, 1, 0, 1};
    osg::Vec4f const blue{0, 0, 1, 1};
};

// --- Skins ---

TEST_F(LiveReload, ASavedSkinFileOrOneThatItReadsShowsWithinTwoLooks) {
    gui::Static label;
    look();
    EXPECT_EQ(reload->getReloadCount(), 0) << "nothing has changed";
    writeColor("0x00ff00ff");
    look();
    EXPECT_EQ(colorOf(label), green);
    folder.write("skin.lua", "require('more')\n" + skin);
    folder.write("more.lua", "");
    look();
    // Saved as many editors do: another file takes the name.
    folder.write("color.new", "return '0x0000ffff'");
    std::filesystem::rename(folder.path("color.new").c_str(), folder.path("color.lua").c_str());
    look();
    EXPECT_EQ(colorOf(label), blue);
    folder.write("more.lua", "dofile('unknown')");
    look();
    EXPECT_NE(reload->getError().find("unknown"), qor::string::npos);
    int const count = reload->getReloadCount();
    look(10);
    EXPECT_EQ(reload->getReloadCount(), count) << "a broken file is not tried again before it changes";
    folder.write("skin.lua", skin);
    look();
    folder.touch("more.lua");
    look();
    EXPECT_EQ(reload->getReloadCount(), count + 1) << "nothing asks for it any more";
}

TEST_F(LiveReload, ABrokenFileKeepsTheLookAndItsErrorIsShownUntilItIsMended) {
    gui::Static label;
    host::ErrorOverlay overlay;
    auto const drawOverlay = [&] {
        host.trace().clearLines();
        host.trace().setRecording(true);
        overlay.draw();
        host.trace().setRecording(false);
        return std::string(host.trace().getText().c_str());
    };
    reload->setReport([&](qor::string const& error) {
        reports.emplace_back(error.c_str());
        overlay.show(error);
    });
    EXPECT_EQ(drawOverlay(), "");
    folder.write("skin.lua", "\n\nbroken = = 1");
    look();
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_NE(reports[0].find("skin.lua:3:"), std::string::npos) << reports[0];
    EXPECT_EQ(colorOf(label), red);
    EXPECT_NE(drawOverlay().find("drawQuads"), std::string::npos);
    EXPECT_NE(drawOverlay().find("glyphs"), std::string::npos);
    folder.write("skin.lua", skin);
    look();
    ASSERT_EQ(reports.size(), 2u);
    EXPECT_EQ(reports[1], "");
    EXPECT_EQ(drawOverlay(), "");
}

TEST_F(LiveReload, AFileIsReadOnceItStandsStillAlsoWhenItWasGone) {
    gui::Static label;
    for (int size = 1; size < 6; ++size) {
        folder.write("color.lua", std::string(size, ' ') + "return ");
        look(1);
    }
    EXPECT_EQ(reload->getReloadCount(), 0) << "it is being written";
    writeColor("0x00ff00ff");
    look();
    EXPECT_EQ(reload->getReloadCount(), 1);
    EXPECT_EQ(colorOf(label), green);

    folder.remove("skin.lua");
    look();
    EXPECT_NE(reload->getError().find("skin.lua"), qor::string::npos);
    EXPECT_EQ(colorOf(label), green);
    folder.write("skin.lua", skin);
    look();
    EXPECT_EQ(reload->getError(), "");
}

TEST_F(LiveReload, AnotherSkinIsTakenAndWatchedFromThenOn) {
    gui::Static label;
    folder.write("other.lua", "Skin = nil");
    EXPECT_FALSE(reload->watchSkin(folder.path("other.lua")));
    EXPECT_EQ(reports.size(), 1u);
    look();
    EXPECT_EQ(reports.size(), 1u) << "its error stays";
    EXPECT_EQ(colorOf(label), red);
    folder.write("other.lua", "Skin = {}");
    look();
    EXPECT_EQ(reload->getError(), "");
    EXPECT_EQ(GUI::get()->getSkinFile(), folder.path("other.lua"));
    EXPECT_EQ(colorOf(label), osg::Vec4f());
    int const count = reload->getReloadCount();
    writeColor("0x0000ffff");
    look();
    EXPECT_EQ(reload->getReloadCount(), count) << "the first is watched no longer";
    EXPECT_TRUE(reload->watchSkin(folder.path("skin.lua")));
    EXPECT_EQ(colorOf(label), blue);
}

TEST_F(LiveReload, ChangedPicturesShowWithoutAChangeOfTheSkin) {
    folder.copy("picture.png", "tests/graphics/picture.png");
    folder.write("skin.lua", "Skin = { staticSkin = " +
                                 support::skinFunction("", "picture = { file = '" +
                                                               std::string(folder.path("picture.png").c_str()) +
                                                               "', color = '0xffffffff' }") +
                                 " }");
    look();
    gui::Static label;
    label.setSize({300, 300});
    look();
    osg::Vec2i const before = label.getWidgetSkin()->calcSize();
    folder.copy("picture.png", "assets/atlas/parts.png");
    look();
    EXPECT_GT(label.getWidgetSkin()->calcSize().x(), before.x());
}

// --- Windows ---

constexpr char const* windowText = R"(
local texts = include('texts.lua')
return Window { text = texts.title, size = { 300, 200 }, visible = true,
    ScrollPane { name = "pane", size = { 100, 100 },
        Button { name = "first", text = "first", size = { 80, 300 }, tabOrder = 1 },
        Button { name = "second", text = texts.second, position = { 0, 300 }, size = { 80, 300 }, tabOrder = 2 } } }
)";

class WatchedWindow : public LiveReload {
protected:
    WatchedWindow() {
        folder.write("texts.lua", "return { title = 'title', second = 'second' }");
        window = makeWindow(windowText);
    }
    Widget* find(wchar_t const* name) const { return window->findWidgetByName(name); }

    WindowBase* window;
};

TEST_F(WatchedWindow, KeepsFocusScrollPlaceSizeAndVisibility) {
    ASSERT_TRUE(window);
    static_cast<gui::ScrollPane*>(find(L"pane"))->setVertScrollValue(123.0);
    find(L"second")->setFocused(true);
    window->setPosition({33, 44});
    window->setSize({355, 266});
    gui::WidgetHandler const* const before = find(L"second")->getHandler();
    folder.write("texts.lua", "return { title = 'other', second = 'changed' }");
    look();
    ASSERT_TRUE(find(L"second"));
    EXPECT_FALSE(gui::WidgetHandler::get(before)) << "it was made anew";
    EXPECT_EQ(find(L"second")->getText(), L"changed");
    EXPECT_EQ(window->getText(), L"other");
    EXPECT_TRUE(find(L"second")->getFocused());
    EXPECT_EQ(static_cast<gui::ScrollPane*>(find(L"pane"))->getVertScrollValue(), 123.0);
    EXPECT_EQ(window->getPosition(), osg::Vec2i(33, 44));
    EXPECT_EQ(window->getSize(), osg::Vec2i(355, 266));
    EXPECT_TRUE(window->getVisible(false));
    EXPECT_TRUE(window->getFocused());
    window->setVisible(false);
    folder.touch("texts.lua");
    look();
    EXPECT_FALSE(window->getVisible(false));
}

TEST_F(WatchedWindow, TakesANewSizeFromTheFileUnlessTheUserHasGivenOne) {
    folder.write("window.lua", "return Window { size = { 222, 111 } }");
    look();
    EXPECT_EQ(window->getSize(), osg::Vec2i(222, 111));
    folder.write("window.lua", "return Window { size = { 210, 120 } }");
    look();
    EXPECT_EQ(window->getSize(), osg::Vec2i(210, 120));
    window->setSize({251, 151});
    folder.write("window.lua", "return Window { size = { 190, 130 } }");
    look();
    EXPECT_EQ(window->getSize(), osg::Vec2i(251, 151));
}

TEST_F(WatchedWindow, StaysAsItIsWhileItsFileIsBroken) {
    Widget* const before = find(L"second");
    support::LogCapture log;
    folder.write("window.lua", "\nreturn Window { = }");
    look();
    EXPECT_NE(reload->getError().find("window.lua:2:"), qor::string::npos) << reload->getError().c_str();
    EXPECT_EQ(find(L"second"), before);
    folder.write("window.lua", "return Window { text = 'mended' }");
    look();
    EXPECT_EQ(reload->getError(), "");
    EXPECT_EQ(window->getText(), L"mended");
}

TEST_F(WatchedWindow, MayDieAtAnyTime) {
    folder.write("window.lua", "\nreturn Window { = }");
    {
        support::LogCapture log;
        look();
    }
    EXPECT_NE(reload->getError(), "");
    window->kill();
    folder.write("window.lua", "return Window {}");
    look();
    EXPECT_EQ(reload->getError(), "") << "what is gone has no errors";
    EXPECT_EQ(reload->getReloadCount(), 1);
}

TEST_F(WatchedWindow, WaitsUntilNoCallbackRunsAndASkinDoesNot) {
    gui::Static label;
    writeColor("0x00ff00ff");
    folder.write("texts.lua", "return { title = 'other', second = 'changed' }");
    reload->update(now += 1.0);
    GUI::get()->addUserMessage(std::make_shared<std::function<void()>>([this] { reload->update(now += 1.0); }));
    host.frame();
    EXPECT_EQ(colorOf(label), green);
    EXPECT_EQ(window->getText(), L"title");
    look(1);
    EXPECT_EQ(window->getText(), L"other");
}

TEST_F(WatchedWindow, TwoHundredReloadsLeaveNothingBehind) {
    lua_State* const L = GUI::get()->getLuaState();
    auto const run = [&](int count) {
        for (int i = 0; i < count; ++i) {
            folder.write("texts.lua", i % 2 ? "return { title = 'a', second = 'b' }" : "return { title = 'c' }");
            look();
        }
    };
    auto const countBlocks = [] {
        qor::AllocationCounts const counts = qor::getAllocationCounts();
        return counts.allocations - counts.frees;
    };
    auto const measure = [&] {
        lua_gc(L, LUA_GCCOLLECT, 0);
        return qor::getLuaMemory(L);
    };
    run(20);
    size_t const memory = measure();
    size_t const blocks = countBlocks();
    int const count = reload->getReloadCount();
    run(200);
    EXPECT_EQ(reload->getReloadCount(), count + 200);
    EXPECT_LE(measure(), memory + memory / 100);
    // Records of widgets are never used again; they come in large blocks.
    EXPECT_LE(countBlocks(), blocks + 8);
}

}  // namespace
