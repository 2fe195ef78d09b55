#include <string>

#include <gtest/gtest.h>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/PopupWindow.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowView.h"
#include "tests/support/Attach.h"
#include "tests/support/TestHost.h"

namespace {

using gui::Widget;
using gui::WidgetHandler;
using gui::Window;
using osg::Vec2i;

/// Two windows side by side, a (100..200) and b (300..400), whose mouse events are noted as "a enter".
class Pointer : public testing::Test {
protected:
    Pointer() {
        a = make("a", 100);
        b = make("b", 300);
    }

    Window* make(std::string name, int x) {
        auto* const window = new Window;
        window->setPosition(Vec2i(x, 100));
        window->setSize(Vec2i(100, 100));
        note(*window, name);
        window->setVisible(true);
        return window;
    }
    void note(Widget& widget, std::string name) {
        std::pair<gui::MouseCallbackType, char const*> const types[] = {
            {gui::MouseCallbackMove, " move "},         {gui::MouseCallbackDown, " down "},
            {gui::MouseCallbackDoubleDown, " double "}, {gui::MouseCallbackUp, " up "},
            {gui::MouseCallbackReleased, " released "}, {gui::MouseCallbackEnter, " enter "},
            {gui::MouseCallbackLeave, " leave "}};
        for (auto const& [type, word] : types)
            support::onMouse(widget, type, [this, text = name + word] { events += text; });
    }
    std::string take() { return std::exchange(events, {}); }

    support::TestHost host;
    gui::WindowsManager& manager = *gui::WindowsManager::get(0);
    Window* a;
    Window* b;
    std::string events;
};

// --- Hover ---

TEST_F(Pointer, EntersAndLeavesAsWindowsAndMouseMove) {
    host.moveMouse(150, 150);
    EXPECT_EQ(take(), "a enter a move ");
    host.moveMouse(350, 150);
    EXPECT_EQ(take(), "a leave b enter b move ");
    b->setVisible(false);
    EXPECT_EQ(take(), "b leave ");
    a->setPosition(Vec2i(300, 100));
    EXPECT_EQ(take(), "") << "a window that moves under the mouse is found at the next move";
    b->setVisible(true);
    EXPECT_EQ(take(), "b enter ");
    // Without a cursor a window is not found at all.
    b->setHasCursor(false);
    host.moveMouse(351, 150);
    EXPECT_EQ(take(), "b leave a enter a move ");
    EXPECT_TRUE(manager.getHasCursorWindow());
    a->setHasCursor(false);
    EXPECT_FALSE(manager.getHasCursorWindow());
}

TEST_F(Pointer, WhatALeaveCallbackEndsIsNotEntered) {
    for (int round = 0; round < 3; ++round) {
        Window* const from = make("", 500);
        Window* const to = make("", 600);
        WidgetHandler* const survivor = from->getHandler();
        support::onMouse(*from, gui::MouseCallbackLeave, [&, round] {
            if (round != 1)
                Widget::destroy(to);
            if (round != 0)
                Widget::destroy(WidgetHandler::get(survivor));
        });
        host.moveMouse(550, 150);
        EXPECT_EQ(manager.getHoveredWindow(), from);
        host.moveMouse(650, 150);
        EXPECT_EQ(manager.getHoveredWindow(), round == 1 ? to : nullptr) << round;
        host.moveMouse(10, 10);
        manager.releaseMouse(nullptr);
        if (round == 0)
            Widget::destroy(from);
        if (round == 1)
            Widget::destroy(to);
    }
    take();
}

TEST_F(Pointer, ALeaveCallbackThatMovesTheHoverOnHasTheLastWord) {
    auto* const c = make("c", 600);
    support::onMouse(*a, gui::MouseCallbackLeave, [&] { b->setVisible(false); });
    host.moveMouse(150, 150);
    take();
    host.moveMouse(350, 150);
    EXPECT_EQ(take().find("b enter"), std::string::npos);
    EXPECT_EQ(manager.getHoveredWindow(), nullptr);
    host.moveMouse(650, 150);
    EXPECT_EQ(take(), "c enter c move ");
    EXPECT_EQ(manager.getHoveredWindow(), c);
}

// --- Press ---

TEST_F(Pointer, APressGoesToTheWindowThatTheMouseWasSeenOverLast) {
    host.moveMouse(150, 150);
    take();
    a->setPosition(Vec2i(500, 500));
    host.pressMouse();
    host.releaseMouse();
    EXPECT_EQ(take(), "a down a up ") << "moving the window told nobody";
    EXPECT_TRUE(a->getFocused());
    host.moveMouse(10, 10);
    take();
    host.pressMouse();
    EXPECT_EQ(take(), "");
    EXPECT_TRUE(a->getFocused()) << "a press beside all windows changes no focus";
}

TEST_F(Pointer, ADoubleClickNeedsTheSameWindowTwice) {
    host.moveMouse(150, 150);
    host.pressMouse();
    host.releaseMouse();
    host.moveMouse(350, 150);
    take();
    host.pressMouse();
    EXPECT_EQ(take(), "b down ");
    host.pressMouse();
    EXPECT_EQ(take(), "b double ");
}

TEST_F(Pointer, AWindowMayDieOrMoveTheHoverWhileItTakesTheFocus) {
    support::onEvent(*a, Widget::focusCallbackName, [&] { Widget::destroy(a); });
    support::onEvent(*b, Widget::focusCallbackName, [&] { b->setVisible(false); });
    host.click(150, 150);
    host.click(350, 150);
    std::string const heard = take();
    EXPECT_EQ(heard.find("down"), std::string::npos) << heard;
    EXPECT_FALSE(b->getVisible(false));
}

// --- Capture ---

TEST_F(Pointer, ACaptureGetsEverythingWhereverTheMouseIs) {
    manager.captureMouse(a->getHandler());
    host.moveMouse(350, 150);
    host.pressMouse();
    host.releaseMouse();
    host.pressMouse();
    EXPECT_EQ(take(), "a move a down a up a double ");
    host.releaseMouse();
    take();
    a->setEnabled(false);
    host.moveMouse(351, 150);
    host.pressMouse();
    EXPECT_EQ(take(), "b enter b move a released b down ") << "a disabled one counts as none";
}

TEST_F(Pointer, ALiveWidgetReleasesItsOwnCaptureOnlyADeadOneAny) {
    manager.captureMouse(a->getHandler());
    manager.captureMouse(a->getHandler());
    EXPECT_EQ(take(), "");
    manager.releaseMouse(b->getHandler());
    EXPECT_EQ(manager.getCapture(), a->getHandler());
    manager.captureMouse(b->getHandler());
    EXPECT_EQ(take(), "a released ");
    manager.releaseMouse(nullptr);
    EXPECT_EQ(take(), "b released ");
    manager.releaseMouse(nullptr);
    EXPECT_EQ(take(), "");
    manager.captureMouse(a->getHandler());
    WidgetHandler* const dead = a->getHandler();
    Widget::destroy(a);
    EXPECT_EQ(take(), "a released ");
    manager.captureMouse(b->getHandler());
    manager.releaseMouse(dead);
    EXPECT_EQ(manager.getCapture(), nullptr);
}

TEST_F(Pointer, AReleasedCallbackMayReleaseAgainOrTakeTheMouse) {
    int calls = 0;
    support::onMouse(*a, gui::MouseCallbackReleased, [&] {
        ++calls;
        manager.releaseMouse(a->getHandler());
        manager.releaseMouse(nullptr);
    });
    manager.captureMouse(a->getHandler());
    manager.releaseMouse(a->getHandler());
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(manager.getCapture(), nullptr);

    support::onMouse(*b, gui::MouseCallbackReleased, [&] { manager.captureMouse(a->getHandler()); });
    manager.captureMouse(b->getHandler());
    manager.releaseMouse(b->getHandler());
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(manager.getCapture(), nullptr) << "the field is cleared after the call";
}

TEST_F(Pointer, RaisingAWindowEndsTheCapture) {
    manager.captureMouse(b->getHandler());
    a->setFocused(true);
    EXPECT_EQ(take(), "b released ");
    EXPECT_EQ(manager.getCapture(), nullptr);
}

TEST_F(Pointer, TheDeepestWidgetIsFoundThroughTheView) {
    auto* const button = new gui::Button;
    button->setSize(Vec2i(30, 30));
    a->insertWidget(button, -1);
    Vec2i const inside = button->widgetToScreen(Vec2i(5, 5));
    EXPECT_EQ(manager.findWidgetAtScreenPoint(inside), button);
    EXPECT_EQ(manager.findWidgetAtScreenPoint(Vec2i(150, 150)), a->getView());
    EXPECT_EQ(manager.findWidgetAtScreenPoint(Vec2i(10, 10)), nullptr);
    // Under a button the host's scene does not get the mouse, beside it (no callbacks) it does.
    EXPECT_TRUE(manager.getHasMouseInputAtScreenPoint(inside));
    EXPECT_FALSE(manager.getHasMouseInputAtScreenPoint(Vec2i(150, 150)));
}

// --- Cursor ---

TEST_F(Pointer, TheHostHearsWhichWindowsWithACursorAreShown) {
    std::string calls;
    gui::GUI::get()->setSurfaceMouseCursorCallback(0, [&](bool shown, int cursor, gui::WindowBase* window) {
        calls += (window == a ? "a " : "b ") + std::to_string(shown) + " " + std::to_string(cursor) + ", ";
    });
    gui::GUI::get()->setSurfaceMouseCursorCallback(5, [&](bool, int, gui::WindowBase*) { ADD_FAILURE(); });
    auto const heard = [&] { return std::exchange(calls, {}); };
    a->setVisible(false);
    EXPECT_EQ(heard(), "") << "shown before there was a callback";
    a->setVisible(true);
    EXPECT_EQ(heard(), "a 1 0, ");
    a->setFocused(true);
    EXPECT_EQ(heard(), "a 0 -1, a 1 0, ") << "raising takes it out and in again";
    a->pushMouseCursor(36);
    EXPECT_EQ(heard(), "a 1 36, ");
    a->setHasCursor(false);
    EXPECT_EQ(heard(), "a 0 -1, ");
    a->setVisible(false);
    EXPECT_EQ(heard(), "") << "one without a cursor leaves unheard";
    b->setHasCursor(true);
    b->popMouseCursor();
    EXPECT_EQ(heard(), "b 1 0, ");
}

}  // namespace
