#include <map>
#include <string>

#include <gtest/gtest.h>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/BuddyWindow.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/OverlayWindow.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowView.h"
#include "tests/support/Attach.h"
#include "tests/support/TestHost.h"

namespace {

using gui::Widget;
using gui::WindowBase;
using osg::Vec2i;

/// Windows of every kind with one-letter names; `shown` tells the order from bottom to top.
class Groups : public testing::Test {
protected:
    template <class WindowType, class... Args>
    WindowType* make(char name, Args... args) {
        auto* const window = new WindowType(args...);
        window->setPosition(Vec2i(100, 100));
        window->setSize(Vec2i(100, 100));
        names[window] = name;
        return window;
    }
    template <class WindowType, class... Args>
    WindowType* show(char name, Args... args) {
        auto* const window = make<WindowType>(name, args...);
        window->setVisible(true);
        return window;
    }
    gui::ModalWindow* showModal(char name) {
        auto* const window = make<gui::ModalWindow>(name, true);
        window->setLockFlow(false);
        window->setVisible(true);
        return window;
    }
    std::string shown() const {
        qor::vector<WindowBase*> windows;
        manager.getShownWindows(windows);
        std::string text;
        for (WindowBase* window : windows)
            text += names.at(window);
        return text;
    }
    char nameOf(WindowBase* window) const { return window ? names.at(window) : '-'; }
    char active() const { return nameOf(manager.getActiveWindow()); }
    char at(int x, int y) const { return nameOf(manager.findWindowAtPoint(Vec2i(x, y))); }

    support::TestHost host;
    gui::WindowsManager& manager = *gui::WindowsManager::get(0);
    std::map<WindowBase*, char> names;
};

// --- Order ---

TEST_F(Groups, FocusInAHiddenWindowDoesNotLetItBeFound) {
    show<gui::Window>('a');
    auto* const hidden = make<gui::Window>('h');
    auto* const button = new gui::Button;
    hidden->insertWidget(button, -1);
    button->setFocused(true);
    hidden->setFocused(true);
    EXPECT_EQ(shown(), "a");
    EXPECT_EQ(at(150, 150), 'a');
    hidden->setVisible(true);
    EXPECT_EQ(shown(), "ah");
}

TEST_F(Groups, OfEqualOrderTheLastRaisedIsOnTop) {
    auto* const a = show<gui::Window>('a');
    auto* const b = show<gui::Window>('b');
    auto* const c = make<gui::Window>('c');
    c->setZOrder(1);
    c->setVisible(true);
    EXPECT_EQ(shown(), "abc");
    a->setFocused(true);
    EXPECT_EQ(shown(), "bac");
    EXPECT_TRUE(a->getFocused());
    b->setFocused(true);
    EXPECT_EQ(shown(), "abc");
    EXPECT_FALSE(a->getFocused()) << "one window at a time has the focus";
    a->setVisible(false);
    a->setVisible(true);
    EXPECT_EQ(shown(), "bac");
}

TEST_F(Groups, TheTransparentWindowKeepsItsPlaceAndLetsTheMouseThrough) {
    auto* const a = show<gui::Window>('a');
    auto* const b = show<gui::Window>('b');
    auto* const c = show<gui::Window>('c');
    b->setTransparentForUserInput(true);
    a->setFocused(true);
    EXPECT_EQ(shown(), "cba");
    b->setFocused(true);
    EXPECT_EQ(shown(), "cba") << "raising itself it stays too, and is there once";
    c->setVisible(false);
    a->setVisible(false);
    EXPECT_EQ(at(150, 150), '-');
    EXPECT_FALSE(manager.getHasMouseInputAtScreenPoint(Vec2i(150, 150)));
    b->setTransparentForUserInput(false);
    EXPECT_EQ(at(150, 150), 'b');
}

TEST_F(Groups, OverlaysLieBelowAllInTheirOrderAndAreNeverFound) {
    show<gui::Window>('w');
    auto* const high = make<gui::OverlayWindow>('h');
    high->setZOrder(1);
    high->setVisible(true);
    auto* const low = show<gui::OverlayWindow>('l');
    show<gui::PopupWindow>('p');
    EXPECT_EQ(shown(), "lhwp");
    low->setZOrder(2);
    EXPECT_EQ(shown(), "hlwp");
    EXPECT_EQ(active(), 'p') << "an overlay that shows closes no popup";
    high->setVisible(false);
    high->setZOrder(5);
    EXPECT_EQ(shown(), "lwp");
    for (WindowBase* window : {manager.findWindowAtPoint(Vec2i(150, 150))})
        EXPECT_EQ(nameOf(window), 'p');
    Widget::destroy(low);
    EXPECT_EQ(shown(), "wp");
}

TEST_F(Groups, AWindowUsedAsAWidgetEntersNoList) {
    auto* const overlay = make<gui::OverlayWindow>('o');
    auto* const window = make<gui::Window>('w');
    auto* const popup = make<gui::PopupWindow>('p');
    auto* const modal = make<gui::ModalWindow>('m', true);
    modal->setLockFlow(false);
    for (WindowBase* each : {static_cast<WindowBase*>(overlay), static_cast<WindowBase*>(window),
                             static_cast<WindowBase*>(popup), static_cast<WindowBase*>(modal)}) {
        each->setAsWidget(true);
        each->setVisible(true);
    }
    EXPECT_EQ(shown(), "");
    host.frame();
    window->setVisible(false);
    window->setAsWidget(false);
    window->setVisible(true);
    EXPECT_EQ(shown(), "w");
    // Becoming a widget while shown leaves nothing behind once it dies.
    window->setAsWidget(true);
    Widget::destroy(window);
    EXPECT_EQ(shown(), "");
    host.moveMouse(150, 150);
}

// --- Modal windows ---

TEST_F(Groups, AModalWindowTakesPointerTabAndHotKeysWhereverTheMouseIs) {
    auto* const window = show<gui::Window>('w');
    window->setFocused(true);
    int hotKeys = 0, presses = 0;
    window->addHotKeyCallback({gui::KeyF1}, std::make_shared<std::function<void()>>([&] { ++hotKeys; }));
    support::onMouse(*window, gui::MouseCallbackDown, [&] { ++presses; });
    auto* const lower = showModal('l');
    auto* const upper = showModal('u');
    for (gui::ModalWindow* modal : {lower, upper})
        modal->setPosition(Vec2i(400, 400));
    EXPECT_EQ(shown(), "wlu");
    EXPECT_EQ(at(150, 150), 'u');
    EXPECT_EQ(active(), 'u');
    EXPECT_TRUE(manager.getHasMouseInputAtScreenPoint(Vec2i(5, 5)));
    host.click(150, 150);
    host.typeKey(gui::KeyF1);
    EXPECT_EQ(hotKeys + presses, 0);

    // A popup above it comes first; below, nothing is raised or focused.
    auto* const popup = show<gui::PopupWindow>('p');
    EXPECT_EQ(at(150, 150), 'p');
    EXPECT_EQ(active(), 'p');
    popup->setVisible(false);
    auto* const other = show<gui::Window>('o');
    EXPECT_EQ(shown(), "wolu");
    window->setFocused(true);
    EXPECT_EQ(shown(), "wolu");
    upper->setVisible(false);
    EXPECT_EQ(active(), 'l');
    lower->setVisible(false);
    host.click(150, 150);
    EXPECT_TRUE(other->getFocused());
}

TEST_F(Groups, AModalWindowEndsTheCaptureAndKeepsItsOwnWhenHidden) {
    auto* const window = show<gui::Window>('w');
    int released = 0;
    support::onMouse(*window, gui::MouseCallbackReleased, [&] { ++released; });
    manager.captureMouse(window->getHandler());
    auto* const modal = showModal('m');
    EXPECT_EQ(released, 1);
    EXPECT_EQ(manager.getCapture(), nullptr);
    manager.captureMouse(modal->getHandler());
    modal->setVisible(false);
    EXPECT_EQ(manager.getCapture(), modal->getHandler());
    manager.releaseMouse(nullptr);
    manager.captureMouse(window->getView()->getHandler());
    window->setVisible(false);
    EXPECT_EQ(manager.getCapture(), nullptr) << "an ordinary window gives back what its children hold";
}

TEST_F(Groups, ABlockingModalWindowRunsFramesUntilItIsHidden) {
    auto* const modal = make<gui::ModalWindow>('m', true);
    gui::WidgetHandler* const handler = modal->getHandler();
    int frames = 0;
    host.app().modalFrame = [&] {
        EXPECT_EQ(shown(), "m");
        host.frame();
        if (++frames == 3)
            modal->setVisible(false);
    };
    modal->setVisible(true);
    EXPECT_EQ(frames, 3);
    EXPECT_EQ(shown(), "");

    // Ended by `kill`: it dies at the next drain.
    host.app().modalFrame = [&] { modal->kill(); };
    modal->setVisible(true);
    EXPECT_EQ(gui::WidgetHandler::get(handler), modal);
    host.frame();
    EXPECT_EQ(gui::WidgetHandler::get(handler), nullptr);

    // Destroyed by a callback of its own frame.
    auto* const doomed = make<gui::ModalWindow>('d', true);
    gui::WidgetHandler* const doomedHandler = doomed->getHandler();
    host.app().modalFrame = [&] { Widget::destroy(doomed); };
    doomed->setVisible(true);
    EXPECT_EQ(gui::WidgetHandler::get(doomedHandler), nullptr);

    // With the application ending the loop ends, and the window stays.
    auto* const last = make<gui::ModalWindow>('l', true);
    host.app().modalFrame = [&] { host.app().quit(); };
    last->setVisible(true);
    EXPECT_TRUE(last->getVisible(false));
    EXPECT_EQ(shown(), "l");
}

TEST_F(Groups, AKilledModalWindowThatDoesNotBlockStaysTheCallers) {
    auto* const modal = showModal('m');
    gui::WidgetHandler* const handler = modal->getHandler();
    modal->kill();
    host.frame();
    EXPECT_EQ(gui::WidgetHandler::get(handler), modal);
    EXPECT_EQ(shown(), "");
}

TEST_F(Groups, AModalWindowOpenedByAButtonMayOutliveTheButtonsWindow) {
    auto* const window = show<gui::Window>('w');
    auto* const button = new gui::Button;
    button->setSize(Vec2i(50, 50));
    window->insertWidget(button, -1);
    auto* const modal = make<gui::ModalWindow>('m', true);
    support::onEvent(*button, Widget::changeCallbackName, [&] { modal->setVisible(true); });
    int frames = 0;
    host.app().modalFrame = [&] {
        if (++frames == 1)
            window->kill();
        if (frames == 2)
            modal->setVisible(false);
        host.frame();
    };
    gui::WidgetHandler* const handler = window->getHandler();
    host.click(120, 120);
    EXPECT_EQ(frames, 2);
    EXPECT_EQ(gui::WidgetHandler::get(handler), nullptr);
    EXPECT_EQ(shown(), "");
}

TEST_F(Groups, AModalCopyHasTheContentsButNoNameAndStaysHidden) {
    auto* const modal = showModal('m');
    modal->setName(L"name");
    modal->setText(L"text");
    modal->setOpacity(0.5f);
    modal->insertWidget(new gui::Button, -1);
    auto* const copy = static_cast<gui::ModalWindow*>(modal->clone());
    EXPECT_STREQ(copy->getWidgetType(), "ModalWindow");
    EXPECT_EQ(copy->getText(), L"text");
    EXPECT_EQ(copy->getSize(), Vec2i(100, 100));
    EXPECT_EQ(copy->getWidgetCount(), 1);
    EXPECT_EQ(copy->getName(), L"");
    EXPECT_EQ(copy->getOpacity(), 1.0f);
    EXPECT_FALSE(copy->getVisible(false));
}

// --- Popups ---

TEST_F(Groups, APressClosesThePopupsThatAreNotActiveOrAllOfThemOutside) {
    show<gui::Window>('w');
    auto* const first = show<gui::PopupWindow>('1');
    auto* const second = make<gui::PopupWindow>('2');
    second->setPosition(Vec2i(300, 100));
    second->setVisible(true);
    EXPECT_EQ(shown(), "w12");
    EXPECT_TRUE(first->getActive() && second->getActive());
    // Inside one of them: those that are active stay; the press makes only the one pressed active.
    host.click(150, 150);
    EXPECT_EQ(shown(), "w12");
    EXPECT_TRUE(first->getActive());
    EXPECT_FALSE(second->getActive());
    host.click(151, 150);
    EXPECT_EQ(shown(), "w1");
    host.click(600, 500);
    EXPECT_EQ(shown(), "w");
    second->setVisible(true);
    manager.getActiveWindow();
    show<gui::Window>('x');
    EXPECT_EQ(shown(), "wx") << "a window that shows closes them";
}

TEST_F(Groups, APopupSwallowsTheWheel) {
    auto* const window = show<gui::Window>('w');
    int turns = 0;
    support::onWheel(*window, [&] { return ++turns > 0; });
    auto* const popup = make<gui::PopupWindow>('p');
    popup->setPosition(Vec2i(400, 400));
    popup->setVisible(true);
    host.moveMouse(150, 150);
    gui::GUI::get()->mouseWheel(1);
    host.update();
    EXPECT_EQ(turns, 0);
    popup->setVisible(false);
    gui::GUI::get()->mouseWheel(1);
    host.update();
    EXPECT_EQ(turns, 1) << "without an active window the one under the mouse gets it";
}

TEST_F(Groups, ABuddyWindowHandsKeysOnAndLivesWithoutItsBuddy) {
    auto* const window = show<gui::Window>('w');
    auto* const buddy = new gui::Button;
    window->insertWidget(buddy, -1);
    std::string heard;
    bool keep = false;
    for (auto [type, name] : {std::pair(gui::KeyboardCallbackDown, "d"), std::pair(gui::KeyboardCallbackChar, "c"),
                              std::pair(gui::KeyboardCallbackUp, "u")})
        support::onKey(*buddy, type, [&heard, name = name] { return heard += name, false; });
    auto* const popup = show<gui::BuddyWindow>('b');
    support::onKey(*popup, gui::KeyboardCallbackDown, [&] { return keep; });
    popup->setBuddyWidget(buddy);
    EXPECT_TRUE(popup->onKeyDown(gui::KeySpace, 0)) << "what the buddy answers counts";
    EXPECT_FALSE(popup->onChar(gui::KeySpace, ' '));
    EXPECT_TRUE(popup->onKeyUp(gui::KeySpace, 0));
    EXPECT_EQ(heard, "dcu");
    keep = true;
    EXPECT_TRUE(popup->onKeyDown(gui::KeyHome, 0));
    EXPECT_EQ(heard, "dcu") << "used by the window's own callback";
    keep = false;
    Widget::destroy(buddy);
    EXPECT_FALSE(popup->onKeyDown(gui::KeySpace, 0));
    EXPECT_EQ(popup->getBuddyWidget(), nullptr);

    auto* const child = new gui::Button;
    popup->insertWidget(child, -1);
    EXPECT_EQ(child->getParent(), popup->getHandler()) << "its widgets are its own children: it has no view";
    popup->removeAllWidgets();
    EXPECT_EQ(popup->getWidgetCount(), 0);
    Widget::destroy(child);
}

// --- Hot keys and Tab ---

TEST_F(Groups, HotKeysAreAskedFromTheTopUntilOneAnswers) {
    auto* const low = show<gui::Window>('l');
    auto* const high = show<gui::Window>('h');
    auto* const popup = make<gui::PopupWindow>('p');
    std::string heard;
    auto const listen = [&](WindowBase* window, gui::HotKey key) {
        auto const action =
            std::make_shared<std::function<void()>>([&heard, name = names.at(window)] { heard += name; });
        window->addHotKeyCallback(key, action);
    };
    listen(low, {gui::KeyF1});
    listen(high, {gui::KeyF1, false, true});
    listen(popup, {gui::KeyF1});
    host.typeKey(gui::KeyF1);
    EXPECT_EQ(heard, "l") << "the key state decides about modifiers";
    host.app().keys.insert(gui::KeyRightCtrl);
    host.typeKey(gui::KeyF1, 0);
    host.app().keys.clear();
    EXPECT_EQ(heard, "lh");
    popup->setVisible(true);
    host.typeKey(gui::KeyF1);
    EXPECT_EQ(heard, "lhp");
    // One that hides the next one: the fresh list counts.
    popup->setVisible(false);
    high->addHotKeyCallback({gui::KeyEnd}, std::make_shared<std::function<void()>>([&] { Widget::destroy(low); }));
    host.typeKey(gui::KeyEnd);
    host.typeKey(gui::KeyF1);
    EXPECT_EQ(heard, "lhp");
}

TEST_F(Groups, TabKeepsTheKeyFromHotKeysWhereThereIsAnActiveWindow) {
    auto* const window = show<gui::Window>('w');
    gui::Button* buttons[2];
    for (gui::Button*& button : buttons) {
        button = new gui::Button;
        button->setSize(Vec2i(10, 10));
        button->setTabOrder(1);
        window->insertWidget(button, -1);
    }
    int hotKeys = 0;
    window->addHotKeyCallback({gui::KeyTab}, std::make_shared<std::function<void()>>([&] { ++hotKeys; }));
    host.typeKey(gui::KeyTab);
    EXPECT_EQ(hotKeys, 1) << "no window has the focus";
    window->setFocused(true);
    host.typeKey(gui::KeyTab);
    EXPECT_TRUE(buttons[0]->getFocused());
    host.app().keys.insert(gui::KeyRightShift);
    host.typeKey(gui::KeyTab);
    EXPECT_TRUE(buttons[1]->getFocused());
    EXPECT_EQ(hotKeys, 1);
}

}  // namespace
