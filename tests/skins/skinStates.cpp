#include <cstdlib>
#include <functional>
#include <map>

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/ButtonSkin.h"
#include "gui_lib/controls/buttons/CheckBox.h"
#include "gui_lib/controls/buttons/RadioButton.h"
#include "gui_lib/controls/buttons/SwitchButton.h"
#include "gui_lib/controls/buttons/ToggleButton.h"
#include "gui_lib/controls/labels/AnimatedColorStatic.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/controls/scroll/HorzScrollBar.h"
#include "gui_lib/controls/scroll/ScrollBarSkin.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/controls/scroll/VertScrollBar.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/controls/small/TabGroupItem.h"
#include "gui_lib/controls/small/Tooltip.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowHeader.h"
#include "gui_lib/windows/WindowHeaderSkin.h"
#include "gui_lib/windows/WindowView.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/qor/Paths.h"

#include <gtest/gtest.h>

namespace skintest {

namespace {

using gui::skin::InteractiveState;

struct Look {
    int interactive;
    int inner;
};

/// A widget that shows one of its looks, whatever it goes through.
template <class Base>
class Held : public Base {
public:
    template <class... Arguments>
    explicit Held(Look look, Arguments&&... arguments) : Base(arguments...), look_(look) {}

    InteractiveState getInteractiveState() const override { return InteractiveState(look_.interactive); }
    int getInnerState() const override { return look_.inner; }

private:
    Look look_;
};

struct WidgetClass {
    char const* name;
    std::vector<int> interactiveStates;
    int innerStates;
    std::function<gui::Widget*(Look)> make;
};

template <class Base, class... Arguments>
std::function<gui::Widget*(Look)> maker(Arguments... arguments) {
    return [arguments...](Look look) -> gui::Widget* { return new Held<Base>(look, arguments...); };
}

/// A button with the skin that windows give to their close button.
gui::Widget* makeCloseButton(Look look) {
    gui::Window const window;
    auto const& headerSkin = dynamic_cast<gui::skin::WindowHeaderSkin&>(*window.getHeader()->getWidgetSkin());
    auto* const button = new Held<gui::Button>(look);
    headerSkin.getCloseButtonSkin()->copyTo(button->getWidgetSkin());
    return button;
}

/// A button with the skin that a bar lends to one of its parts.
template <class Bar, class PartSkin>
std::function<gui::Widget*(Look)> partMaker(PartSkin* (gui::skin::ScrollBarSkin::*getSkin)() const) {
    return [getSkin](Look look) -> gui::Widget* {
        Bar const bar;
        auto* const part = new Held<gui::Button>(look);
        (bar.getSkin()->*getSkin)()->copyTo(part->getWidgetSkin());
        return part;
    };
}

/// The classes and the looks that they can reach.
std::vector<WidgetClass> getClasses() {
    std::vector<int> const all = {0, 1, 2, 3};
    std::vector<int> const still = {0, 3};
    return {
        {"Button", all, 1, maker<gui::Button>()},
        {"ToggleButton", all, 3, maker<gui::ToggleButton>()},
        {"SwitchButton", all, 3, maker<gui::SwitchButton>()},
        {"CheckBox", all, 3, maker<gui::CheckBox>()},
        {"RadioButton", all, 3, maker<gui::RadioButton>()},
        {"CloseButton", all, 1, makeCloseButton},
        {"TabGroupItem", {0, 1, 3}, 2, maker<gui::TabGroupItem>()},
        {"Static", still, 1, maker<gui::Static>()},
        {"AnimatedColorStatic", still, 1, maker<gui::AnimatedColorStatic>()},
        {"Panel", still, 1, maker<gui::Panel>()},
        {"HorzScrollBar", still, 1, maker<gui::HorzScrollBar>()},
        {"VertScrollBar", still, 1, maker<gui::VertScrollBar>()},
        {"ScrollPane", still, 1, maker<gui::ScrollPane>()},
        {"Horizontal thumb", all, 1, partMaker<gui::HorzScrollBar>(&gui::skin::ScrollBarSkin::getThumbSkin)},
        {"Vertical thumb", all, 1, partMaker<gui::VertScrollBar>(&gui::skin::ScrollBarSkin::getThumbSkin)},
        {"Left step", all, 1, partMaker<gui::HorzScrollBar>(&gui::skin::ScrollBarSkin::getDecreaseButtonSkin)},
        {"Right step", all, 1, partMaker<gui::HorzScrollBar>(&gui::skin::ScrollBarSkin::getIncreaseButtonSkin)},
        {"Up step", all, 1, partMaker<gui::VertScrollBar>(&gui::skin::ScrollBarSkin::getDecreaseButtonSkin)},
        {"Down step", all, 1, partMaker<gui::VertScrollBar>(&gui::skin::ScrollBarSkin::getIncreaseButtonSkin)},
        {"Tooltip", still, 1, maker<gui::Tooltip>(gui::WindowsManager::get(0))},
        {"Window", still, 2,
         [](Look look) {
             auto* const window = new Held<gui::Window>(look);
             window->setEnabled(look.interactive != 3);
             window->setAsWidget(true);
             window->setVisible(true);
             return window;
         }},
        {"WindowView", still, 1,
         [](Look look) {
             auto* const window = new gui::Window;
             window->getView()->setEnabled(look.interactive != 3);
             window->setAsWidget(true);
             window->setVisible(true);
             return window;
         }},
    };
}

constexpr int cellWidth = 120;
constexpr int cellHeight = 64;
constexpr int sheetWidth = 1728;

/// All looks of all classes side by side on one window, drawn.
class ContactSheet {
public:
    explicit ContactSheet(char const* skin) : application_(host::HeadlessApplication::BackEnd::GL) {
        qor::addAssetRoot("assets");
        host::HostOptions options;
        options.skin = skin;
        options.size = {sheetWidth, 1680};
        options.scale = 1.0f;
        started_ = application_.start(options);
        if (started_) {
            fill_(options.size);
            application_.runFrames(3);
            pixels_ = application_.readPixels();
        }
    }
    ~ContactSheet() { application_.stop(); }

    bool getStarted() const { return started_ && !pixels_.empty(); }

    /// How many pixels of two cells differ by at least 16 levels in one channel.
    int countDifferences(osg::Vec2i const& one, osg::Vec2i const& other) const {
        int count = 0;
        for (int y = 0; y < cellHeight; ++y)
            for (int x = 0; x < cellWidth; ++x)
                count += differs_(one.x() + x, one.y() + y, other.x() + x, other.y() + y) ? 1 : 0;
        return count;
    }

    /// Where the cells of each class are.
    std::map<std::string, std::map<std::string, osg::Vec2i>> const& getCells() const { return cells_; }

private:
    void fill_(osg::Vec2i const& size) {
        auto* const window = new gui::Window;
        window->setSize(size);
        window->setVisible(true);
        int row = 0;
        for (WidgetClass const& widgetClass : getClasses()) {
            int column = 0;
            for (int inner = 1; inner <= widgetClass.innerStates; ++inner) {
                for (int const interactive : widgetClass.interactiveStates) {
                    gui::Widget* const widget = widgetClass.make({interactive, inner});
                    widget->setText(L"Caption");
                    window->insertWidget(widget, -1);
                    widget->setPosition({16 + column * (cellWidth + 16), 8 + row * (cellHeight + 8)});
                    widget->setSize({cellWidth, cellHeight});
                    cells_[widgetClass.name][std::to_string(interactive) + "/" + std::to_string(inner)] =
                        widget->widgetToScreen({0, 0});
                    ++column;
                }
            }
            ++row;
        }
    }

    bool differs_(int x1, int y1, int x2, int y2) const {
        unsigned char const* const one = &pixels_[size_t(y1 * sheetWidth + x1) * 4];
        unsigned char const* const other = &pixels_[size_t(y2 * sheetWidth + x2) * 4];
        return std::abs(one[0] - other[0]) >= 16 || std::abs(one[1] - other[1]) >= 16 ||
               std::abs(one[2] - other[2]) >= 16;
    }

    host::HeadlessApplication application_;
    bool started_ = false;
    qor::vector<unsigned char> pixels_;
    std::map<std::string, std::map<std::string, osg::Vec2i>> cells_;
};

class DefaultSkinStates : public testing::TestWithParam<char const*> {};

TEST_P(DefaultSkinStates, LookDifferentFromOneAnother) {
    ContactSheet const sheet(GetParam());
    ASSERT_TRUE(sheet.getStarted());
    for (auto const& [name, cells] : sheet.getCells()) {
        for (auto one = cells.begin(); one != cells.end(); ++one) {
            for (auto other = std::next(one); other != cells.end(); ++other)
                EXPECT_GE(sheet.countDifferences(one->second, other->second), 12)
                    << name << " in state/inner state " << one->first << " and " << other->first;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Files, DefaultSkinStates, testing::Values("skins/dark.lua", "skins/light.lua"));

}  // namespace

}  // namespace skintest
