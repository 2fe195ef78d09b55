#include <gtest/gtest.h>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowView.h"
#include "tests/support/Attach.h"
#include "tests/support/TestHost.h"

namespace {

using gui::Widget;
using gui::WidgetHandler;
using gui::Window;
using osg::Vec2i;

/// Two windows side by side, a (100..200) and b (300..400).
class Pointer : public testing::Test {
protected:
    Window* make(int x) {
        auto* const window = new Window;
        window->setPosition(Vec2i(x, 100));
        window->setSize(Vec2i(100, 100));
        window->setVisible(true);
        return window;
    }

    support::TestHost host;
    gui::WindowsManager& manager = *gui::WindowsManager::get(0);
    Window* a = make(100);
    Window* b = make(300);
};

TEST_F(Pointer, WhatALeaveCallbackEndsIsNotEntered) {
    for (int round = 0; round < 3; ++round) {
        Window* const from = make(500);
        Window* const to = make(600);
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
}

TEST_F(Pointer, ALeaveCallbackThatMovesTheHoverOnHasTheLastWord) {
    auto* const c = make(600);
    support::onMouse(*a, gui::MouseCallbackLeave, [&] { b->setVisible(false); });
    support::onMouse(*b, gui::MouseCallbackEnter, [] { ADD_FAILURE(); });
    host.moveMouse(150, 150);
    host.moveMouse(350, 150);
    EXPECT_EQ(manager.getHoveredWindow(), nullptr);
    host.moveMouse(650, 150);
    EXPECT_EQ(manager.getHoveredWindow(), c);
}

TEST_F(Pointer, AWindowMayDieOrMoveTheHoverWhileItTakesTheFocus) {
    for (Window* window : {a, b})
        support::onMouse(*window, gui::MouseCallbackDown, [] { ADD_FAILURE(); });
    support::onEvent(*a, Widget::focusCallbackName, [&] { Widget::destroy(a); });
    support::onEvent(*b, Widget::focusCallbackName, [&] { b->setVisible(false); });
    host.click(150, 150);
    host.click(350, 150);
    EXPECT_FALSE(b->getVisible(false));
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

}  // namespace
