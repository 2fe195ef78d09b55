#include <string>

#include <gtest/gtest.h>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/CheckBox.h"
#include "gui_lib/controls/buttons/CheckBoxData.h"
#include "gui_lib/controls/buttons/CheckSkins.h"
#include "gui_lib/controls/buttons/RadioButton.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/Window.h"
#include "tests/support/Attach.h"
#include "tests/support/TestHost.h"

namespace {

using gui::Widget;
using gui::skin::InteractiveStateDisabled;
using gui::skin::InteractiveStateHover;
using gui::skin::InteractiveStatePressed;
using gui::skin::InteractiveStateReleased;
using osg::Vec2i;

/// A window at the corner with a button at (10..60, 10..60) of its view, of which changes and mouse ups are noted.
class Buttons : public testing::Test {
protected:
    Buttons() {
        window->setSize(Vec2i(400, 300));
        window->setVisible(true);
        add(button);
    }

    template <class ButtonType>
    ButtonType* add(ButtonType* widget, int x = 10) {
        widget->setPosition(Vec2i(x, 10));
        widget->setSize(Vec2i(50, 50));
        window->insertWidget(widget, -1);
        support::onEvent(*widget, Widget::changeCallbackName, [this] { events += "change "; });
        return widget;
    }
    void move(Widget& widget, int x, int y) {
        Vec2i const point = widget.widgetToScreen(Vec2i(x, y));
        host.moveMouse(point.x(), point.y());
    }
    void click(Widget& widget) {
        move(widget, 5, 5);
        host.pressMouse();
        host.releaseMouse();
    }
    void noteUps(Widget& widget) {
        support::onMouse(widget, gui::MouseCallbackUp, [this] { events += "up "; });
    }
    std::string take() { return std::exchange(events, {}); }

    support::TestHost host;
    gui::WindowsManager& manager = *gui::WindowsManager::get(0);
    gui::Window* window = new gui::Window;
    gui::Button* button = new gui::Button;
    std::string events;
};

// --- Press ---

TEST_F(Buttons, AClickIsAPressAndAReleaseInsideInWhateverWay) {
    noteUps(*button);
    click(*button);
    EXPECT_EQ(take(), "change up ");
    host.pressMouse();
    EXPECT_EQ(button->getInteractiveState(), InteractiveStatePressed);
    move(*button, 80, 80);
    EXPECT_EQ(button->getInteractiveState(), InteractiveStateHover) << "pressed outside looks hovered";
    host.releaseMouse();
    EXPECT_EQ(take(), "up ") << "dragged out: the callbacks of the up still run";
    EXPECT_EQ(button->getInteractiveState(), InteractiveStateReleased);

    move(*button, 5, 5);
    host.pressMouse();
    move(*button, 80, 80);
    move(*button, 6, 6);
    host.releaseMouse();
    EXPECT_EQ(take(), "change up ");
    EXPECT_EQ(button->getInteractiveState(), InteractiveStateHover);
}

TEST_F(Buttons, ADoubleClickIsASecondPress) {
    int presses = 0, doubles = 0;
    support::onMouse(*button, gui::MouseCallbackDown, [&] { ++presses; });
    support::onMouse(*button, gui::MouseCallbackDoubleDown, [&] { ++doubles; });
    click(*button);
    click(*button);
    EXPECT_EQ(take(), "change change ");
    EXPECT_EQ(presses, 2);
    EXPECT_EQ(doubles, 0);
}

TEST_F(Buttons, AnotherButtonOfTheMouseOnlyCallsBack) {
    int presses = 0;
    support::onMouse(*button, gui::MouseCallbackDown, [&] { ++presses; });
    noteUps(*button);
    move(*button, 5, 5);
    host.pressMouse(gui::MouseButtonSecondary);
    EXPECT_EQ(button->getInteractiveState(), InteractiveStateHover);
    EXPECT_EQ(manager.getCapture(), nullptr);
    host.releaseMouse(gui::MouseButtonSecondary);
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(take(), "up ");
}

TEST_F(Buttons, LosingTheMouseEndsThePressWithoutAClick) {
    move(*button, 5, 5);
    host.pressMouse();
    manager.releaseMouse(nullptr);
    EXPECT_EQ(button->getInteractiveState(), InteractiveStateHover);
    host.releaseMouse();
    EXPECT_EQ(take(), "");
    host.pressMouse();
    button->setEnabled(false);
    EXPECT_EQ(button->getInteractiveState(), InteractiveStateDisabled);
    host.releaseMouse();
    EXPECT_EQ(take(), "");
}

TEST_F(Buttons, KeysPressTooAndEachReleaseClicksByItsOwnRule) {
    window->setFocused(true);
    button->setFocused(true);
    click(*button);
    take();
    move(*button, 80, 80);
    for (gui::KeyboardButton key : {gui::KeySpace, gui::KeyReturn}) {
        host.pressKey(key);
        EXPECT_EQ(button->getInteractiveState(), InteractiveStatePressed) << "wherever the mouse is";
        host.releaseKey(key);
        EXPECT_EQ(take(), "change ");
        host.releaseKey(key);
        EXPECT_EQ(take(), "") << "a release without its press";
    }
    EXPECT_FALSE(button->onKeyDown(gui::KeyEnter, 0));
    EXPECT_FALSE(button->onKeyUp(gui::KeyEnter, 0));

    move(*button, 5, 5);
    host.pressMouse();
    host.pressKey(gui::KeySpace);
    host.releaseMouse();
    EXPECT_EQ(take(), "change ");
    EXPECT_EQ(button->getInteractiveState(), InteractiveStatePressed);
    host.releaseKey(gui::KeySpace);
    EXPECT_EQ(take(), "change ");
}

TEST_F(Buttons, AKeyHeldWhileTheFocusGoesStaysPressedUntilItComesBack) {
    window->setFocused(true);
    click(*button);
    take();
    host.pressKey(gui::KeySpace);
    move(*button, 80, 80);
    window->setFocused(false);
    EXPECT_EQ(button->getInteractiveState(), InteractiveStatePressed);
    host.releaseKey(gui::KeySpace);
    EXPECT_EQ(take(), "");
    button->setFocused(true);
    EXPECT_EQ(button->getInteractiveState(), InteractiveStateReleased);
}

TEST_F(Buttons, MayDieInTheirChange) {
    for (bool byKey : {false, true}) {
        gui::Button* const doomed = add(new gui::Button, 100);
        gui::WidgetHandler* const handler = doomed->getHandler();
        noteUps(*doomed);
        support::onEvent(*doomed, Widget::changeCallbackName, [&] { Widget::destroy(doomed); });
        click(*button);
        take();
        if (byKey) {
            doomed->setFocused(true);
            doomed->onKeyDown(gui::KeySpace, 0);
            EXPECT_TRUE(doomed->onKeyUp(gui::KeySpace, 0));
        } else {
            click(*doomed);
        }
        EXPECT_EQ(gui::WidgetHandler::get(handler), nullptr);
        EXPECT_EQ(take(), "change ");
    }
}

// --- Toggles ---

TEST_F(Buttons, ATogglesClickTurnsAnythingButOnToOn) {
    auto* const toggle = add(new gui::CheckBox(-1), 100);
    EXPECT_EQ(toggle->getInnerState(), 3);
    click(*toggle);
    EXPECT_EQ(toggle->getState(), 1);
    click(*toggle);
    EXPECT_EQ(toggle->getState(), 0);
    EXPECT_EQ(take(), "change change ");
    for (auto [value, state] : {std::pair(5, 1), std::pair(-7, -1), std::pair(0, 0)}) {
        toggle->setState(value);
        EXPECT_EQ(toggle->getState(), state);
    }
    EXPECT_EQ(take(), "") << "the program's changes call nobody";
    toggle->setState(1);
    auto* const copy = static_cast<gui::CheckBox*>(toggle->clone());
    EXPECT_STREQ(copy->getWidgetType(), "CheckBox");
    EXPECT_EQ(copy->getState(), 1);
}

// --- Groups ---

/// The states of switches as one word: + on, - off, ? undefined.
template <class... Switches>
std::string statesOf(Switches*... switches) {
    std::string text;
    ((text += switches->getState() > 0 ? '+' : switches->getState() < 0 ? '?' : '-'), ...);
    return text;
}

class Switches : public Buttons {
protected:
    gui::SwitchButton* a = add(new gui::SwitchButton, 100);
    gui::SwitchButton* b = add(new gui::RadioButton, 150);
    gui::SwitchButton* c = add(new gui::RadioButton, 200);
};

TEST_F(Switches, OneInAGroupIsOnAndAClickOnItDoesNothing) {
    click(*a);
    EXPECT_EQ(statesOf(a, b, c), "+--");
    click(*c);
    EXPECT_EQ(statesOf(a, b, c), "--+");
    EXPECT_EQ(take(), "change change ");
    click(*c);
    EXPECT_EQ(statesOf(a, b, c), "--+");
    EXPECT_EQ(take(), "");
    b->setState(1);
    EXPECT_EQ(statesOf(a, b, c), "-+-");
    b->setState(0);
    EXPECT_EQ(statesOf(a, b, c), "---");
    EXPECT_EQ(take(), "");
}

TEST_F(Switches, TheUndefinedStateSpreadsFromTheOneThatLeavesIt) {
    b->setState(1);
    a->setState(-1);
    EXPECT_EQ(statesOf(a, b, c), "?--") << "entering it clears the others as any change does";
    a->setState(1);
    EXPECT_EQ(statesOf(a, b, c), "+??") << "leaving it marks them";
    click(*c);
    EXPECT_EQ(statesOf(a, b, c), "??+");
}

TEST_F(Switches, AGroupIsWhoHasTheSameParent) {
    auto* const panel = new gui::Panel;
    auto* const other = new gui::RadioButton;
    panel->insertWidget(other, -1);
    other->setState(1);
    a->setState(1);
    EXPECT_EQ(statesOf(a, b, c, other), "+--+");
    // Joining in state on clears the others; joining off changes nothing.
    window->insertWidget(other, -1);
    EXPECT_EQ(statesOf(a, b, c, other), "---+");
    panel->insertWidget(b, -1);
    b->setState(1);
    EXPECT_EQ(statesOf(a, b, c, other), "-+-+");
    // Without a parent is a group too.
    window->removeWidget(other);
    panel->removeWidget(b);
    EXPECT_EQ(statesOf(b, other), "+-");
    other->setState(1);
    EXPECT_EQ(statesOf(b, other), "-+");
    Widget::destroy(b);
    Widget::destroy(other);
    a->setState(1);
    EXPECT_EQ(statesOf(a, c), "+-");
    Widget::destroy(a);
    c->setState(1);
    Widget::destroy(panel);
}

TEST_F(Switches, ManyFillAndLeaveAGroupInAnyOrder) {
    std::vector<gui::SwitchButton*> all;
    auto* const panel = new gui::Panel;
    for (int i = 0; i < 50; ++i) {
        all.push_back(new gui::SwitchButton);
        panel->insertWidget(all.back(), -1);
    }
    for (size_t i = 0; !all.empty(); i = (i * 7 + 3) % 101) {
        size_t const victim = i % all.size();
        Widget::destroy(all[victim]);
        all.erase(all.begin() + std::ptrdiff_t(victim));
        for (gui::SwitchButton* each : all)
            each->setState(1);
        int on = 0;
        for (gui::SwitchButton* each : all)
            on += each->getState();
        ASSERT_EQ(on, all.empty() ? 0 : 1);
    }
    Widget::destroy(panel);
}

// --- Check marks ---

TEST(CheckMarks, BelongToTheReleasedStateOfTheirInnerStateAndTheFocusFrameLeavesThemOut) {
    support::TestHost host(
        "Skin = {checkBoxSkin = function() return {skinData = {params = {insets = {left = 1}, focusRectColor = "
        "'0xff0000ff'}, states = {released = {{}, {check = {file = 'tests/graphics/picture.png', color = '0xffffffff', "
        "horzAlign = {type = 'left', offset = 3}}}}, hover = {{}, {}}, pressed = {{}, {check = false}}}}} end}");
    auto* const box = new gui::CheckBox(1);
    box->setSize(Vec2i(100, 20));
    EXPECT_EQ(box->calcSize(), Vec2i(1, 0)) << "the natural size is that of the off state";
    auto& skin = static_cast<gui::skin::CheckBoxSkin&>(*box->getWidgetSkin());
    EXPECT_NE(skin.getCheckData()->getCheck(InteractiveStatePressed, 2), nullptr) << "taken from the released state";
    EXPECT_EQ(skin.getCheckData()->getCheck(InteractiveStateReleased, 1), nullptr);
    box->setTabOrder(1);
    box->setFocused(true);
    // The frame goes by the mark of the redraw before.
    auto const settle = [&] {
        for (int i = 0; i < 2; ++i) {
            box->setDirty(Widget::DirtySelf);
            host.frame();
        }
        return host.traceDraw(*box);
    };
    std::string const on = settle();
    EXPECT_NE(on.find("size 16 8"), std::string::npos) << on;
    box->setState(0);
    std::string const off = settle();
    EXPECT_EQ(off.find("size 16 8"), std::string::npos) << off;
    // The frame's left edge: right of the mark, or at the widget's.
    auto const leftEdge = [](std::string const& text) {
        size_t const at = text.rfind(" size 1 ");
        return text.substr(text.rfind("at ", at), 5);
    };
    EXPECT_EQ(leftEdge(off), "at 2 ");
    EXPECT_EQ(leftEdge(on), "at 22");
}

TEST(CheckMarks, CountInTheNaturalSizeBeforeTheFirstRedrawToo) {
    support::TestHost host(
        "Skin = {checkBoxSkin = function() return {skinData = {states = {released = {{check = {file = "
        "'tests/graphics/picture.png'}}}}}} end}");
    auto* const box = new gui::CheckBox(0);
    Vec2i const before = box->calcSize();
    EXPECT_EQ(before, Vec2i(16, 8));
    box->setSize(Vec2i(100, 20));
    host.frame();
    EXPECT_EQ(box->calcSize(), before);
}

}  // namespace
