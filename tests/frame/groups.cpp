#include <map>
#include <string>

#include <gtest/gtest.h>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/BuddyWindow.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/Window.h"
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
    std::string shown() const {
        qor::vector<WindowBase*> windows;
        manager.getShownWindows(windows);
        std::string text;
        for (WindowBase* window : windows)
            text += names.at(window);
        return text;
    }

    support::TestHost host;
    gui::WindowsManager& manager = *gui::WindowsManager::get(0);
    std::map<WindowBase*, char> names;
};

// --- Modal windows ---

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
    auto* const modal = make<gui::ModalWindow>('m', true);
    modal->setName(L"name");
    modal->setOpacity(0.5f);
    modal->insertWidget(new gui::Button, -1);
    auto* const copy = static_cast<gui::ModalWindow*>(modal->clone());
    EXPECT_EQ(copy->getSize(), Vec2i(100, 100));
    EXPECT_EQ(copy->getWidgetCount(), 1);
    EXPECT_EQ(copy->getName(), L"");
    EXPECT_EQ(copy->getOpacity(), 1.0f);
    EXPECT_FALSE(copy->getVisible(false));
}

// --- Keys ---

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
    auto* const modal = make<gui::ModalWindow>('m', true);
    modal->setLockFlow(false);
    modal->setVisible(true);
    host.typeKey(gui::KeyF1);
    EXPECT_EQ(heard, "lhp") << "nothing below a modal window is asked";
    modal->setVisible(false);
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
