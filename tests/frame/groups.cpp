#include <map>
#include <string>

#include <gtest/gtest.h>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/layouts/HorzLayout.h"
#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/BuddyWindow.h"
#include "gui_lib/windows/CloseButton.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/OffscreenWindow.h"
#include "gui_lib/windows/OverlayWindow.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowHeader.h"
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
    static gui::Button& addButton(WindowBase* window) {
        auto* const button = new gui::Button;
        button->setSize(Vec2i(50, 50));
        window->insertWidget(button, -1);
        return *button;
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
    for (bool const killed : {true, false}) {
        auto* const window = show<gui::Window>('w');
        auto* const modal = make<gui::ModalWindow>('m', true);
        support::onEvent(addButton(window), Widget::changeCallbackName, [&] { modal->setVisible(true); });
        gui::WidgetHandler* const handler = window->getHandler();
        int frames = 0;
        host.app().modalFrame = [&] {
            if (++frames == 1)
                killed ? window->kill() : Widget::destroy(window);
            if (frames == 2)
                modal->setVisible(false);
            host.frame();
        };
        host.click(120, 120);
        EXPECT_EQ(frames, 2);
        EXPECT_EQ(gui::WidgetHandler::get(handler), nullptr);
        EXPECT_EQ(shown(), "");
    }
}

TEST_F(Groups, TheFramesOfABlockingModalWindowTakeInputAndItsCloseButtonEndsThem) {
    auto* const window = show<gui::Window>('w');
    auto* const modal = make<gui::ModalWindow>('m', false);
    modal->setPosition(Vec2i(300, 300));
    std::string heard;
    support::onEvent(addButton(modal), Widget::changeCallbackName, [&] { heard += "answer "; });
    support::onEvent(addButton(window), Widget::changeCallbackName, [&] {
        heard += "ask ";
        modal->setVisible(true);
        heard += "go on ";
    });
    int frames = 0;
    host.app().modalFrame = [&] {
        host.advance(1.0);
        Widget* const close = modal->getHeader()->getCloseButton();
        Vec2i const points[] = {{120, 140}, {320, 340}, close->widgetToScreen(Vec2i(5, 5))};
        ASSERT_LT(frames, 3) << "the close button does not close";
        host.click(points[frames].x(), points[frames].y());
        ++frames;
    };
    host.click(120, 140);
    EXPECT_EQ(heard, "ask answer go on ") << "the window below hears nothing while it waits";
    EXPECT_EQ(frames, 3);
    host.advance(1.0);
    host.app().modalFrame = [&] { host.app().quit(); };
    host.click(120, 140);
    EXPECT_EQ(heard, "ask answer go on ask go on ");
}

TEST_F(Groups, AModalWindowOverAModalOneTakesAllAndTheLowerOneReturnsLast) {
    auto* const lower = make<gui::ModalWindow>('l', true);
    auto* const upper = make<gui::ModalWindow>('u', true);
    std::string order;
    int frames = 0;
    host.app().modalFrame = [&] {
        order += shown() + " ";
        switch (++frames) {
            case 1:
                upper->setVisible(true);
                order += "upper returns ";
                break;
            case 2:
                EXPECT_EQ(manager.findWindowAtPoint(Vec2i(700, 500)), upper);
                EXPECT_EQ(manager.getActiveWindow(), upper);
                // The one below is hidden first: its own call waits for the one that runs inside of it.
                lower->setVisible(false);
                break;
            default:
                EXPECT_EQ(manager.getActiveWindow(), upper);
                upper->setVisible(false);
        }
    };
    lower->setVisible(true);
    EXPECT_EQ(order, "l lu u upper returns ");
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(manager.getActiveWindow(), nullptr);
}

TEST_F(Groups, KillingAModalWindowThatDoesNotBlockOnlyHidesIt) {
    auto* const modal = make<gui::ModalWindow>('m', true);
    gui::WidgetHandler* const handler = modal->getHandler();
    modal->setLockFlow(false);
    modal->setVisible(true);
    EXPECT_EQ(shown(), "m");
    modal->kill();
    host.frame();
    host.frame();
    ASSERT_EQ(gui::WidgetHandler::get(handler), modal) << "it stays its owner's";
    EXPECT_FALSE(modal->getVisible(false));
    modal->setVisible(true);
    EXPECT_EQ(shown(), "m");
    Widget::destroy(modal);
    EXPECT_EQ(shown(), "");
}

TEST_F(Groups, AModalCopyHasTheContentsButNoNameAndStaysHidden) {
    auto* const modal = make<gui::ModalWindow>('m', true);
    modal->setLockFlow(false);
    modal->setName(L"name");
    modal->setText(L"title");
    modal->setOpacity(0.5f);
    modal->setZoom(2.0f);
    modal->setEnabled(false);
    modal->setTooltipText(L"tip");
    modal->setResourceString("key");
    modal->setLayout((new gui::HorzLayout(3))->handler());
    modal->insertWidget(new gui::Button, -1);
    modal->setVisible(true);
    auto* const copy = static_cast<gui::ModalWindow*>(modal->clone());
    EXPECT_EQ(copy->getText(), L"title");
    EXPECT_EQ(copy->getPosition(), Vec2i(100, 100));
    EXPECT_EQ(copy->getSize(), Vec2i(100, 100));
    EXPECT_EQ(copy->getZoom(), 2.0f);
    EXPECT_FALSE(copy->getEnabled());
    EXPECT_EQ(copy->getTooltipText(), L"tip");
    EXPECT_EQ(copy->getResourceString(), "key");
    EXPECT_TRUE(copy->getLayout() && copy->getLayout() != modal->getLayout());
    EXPECT_EQ(copy->getWidgetCount(), 1);
    EXPECT_EQ(copy->getName(), L"");
    EXPECT_EQ(copy->getOpacity(), 1.0f);
    EXPECT_FALSE(copy->getVisible(false));
    EXPECT_TRUE(copy->getLockFlow());
}

// --- Popups ---

TEST_F(Groups, APopupOverAModalWindowComesFirstUntilAPressBesideIt) {
    auto* const modal = make<gui::ModalWindow>('m', true);
    modal->setLockFlow(false);
    modal->setVisible(true);
    auto* const popup = show<gui::PopupWindow>('p');
    popup->setPosition(Vec2i(150, 150));
    std::string heard;
    support::onMouse(*modal, gui::MouseCallbackDown, [&] { heard += "modal "; });
    support::onMouse(*popup, gui::MouseCallbackDown, [&] { heard += "popup "; });
    support::onWheel(*modal, [&] { return heard += "wheel ", true; });
    EXPECT_EQ(shown(), "mp");
    EXPECT_EQ(manager.getActiveWindow(), popup);
    host.click(160, 160);
    EXPECT_EQ(shown(), "mp");
    host.moveMouse(110, 110);
    gui::GUI::get()->mouseWheel(1);
    host.update();
    EXPECT_EQ(heard, "popup ") << "a popup lets no wheel through";
    host.advance(1.0);
    host.click(110, 110);
    EXPECT_EQ(heard, "popup modal ");
    EXPECT_EQ(shown(), "m");
    EXPECT_FALSE(popup->getActive());
    EXPECT_EQ(manager.getActiveWindow(), modal);
}

TEST_F(Groups, APressInAPopupSparesTheActiveOnesAlone) {
    auto* const first = show<gui::PopupWindow>('f');
    auto* const second = show<gui::PopupWindow>('s');
    second->setPosition(Vec2i(300, 300));
    first->setActive(false);
    host.click(350, 350);
    EXPECT_EQ(shown(), "s");
    EXPECT_TRUE(second->getActive()) << "the press gave it the focus";
    second->setFocused(false);
    EXPECT_FALSE(second->getActive()) << "the focus takes it along";
}

// --- Overlays and windows off the screen ---

TEST_F(Groups, OverlaysAreSortedByTheirOrderBelowAllAndLeaveInputAndFocusAlone) {
    auto* const window = show<gui::Window>('w');
    window->setFocused(true);
    auto* const popup = show<gui::PopupWindow>('p');
    popup->setPosition(Vec2i(300, 300));
    auto* const high = make<gui::OverlayWindow>('h');
    high->setZOrder(1);
    EXPECT_EQ(shown(), "wp") << "a new order does not show it";
    high->setVisible(true);
    auto* const low = show<gui::OverlayWindow>('l');
    auto* const other = show<gui::OverlayWindow>('o');
    EXPECT_EQ(shown(), "lohwp");
    low->setZOrder(1);
    EXPECT_EQ(shown(), "ohlwp") << "of equal ones the last is on top";
    high->setZOrder(-1);
    EXPECT_EQ(shown(), "holwp");
    EXPECT_TRUE(window->getFocused());
    EXPECT_EQ(manager.getActiveWindow(), popup);
    window->setVisible(false);
    EXPECT_EQ(manager.findWindowAtPoint(Vec2i(150, 150)), nullptr);
    other->setVisible(false);
    Widget::destroy(low);
    EXPECT_EQ(shown(), "h");
}

TEST_F(Groups, AWindowOffTheScreenIsInNoGroupAndDrawnOnDemand) {
    auto* const offscreen = show<gui::OffscreenWindow>('o');
    struct Drawn : Widget {
        void draw_() override { ++draws; }
        int draws = 0;
    };
    auto* const child = new Drawn;
    child->setSize(Vec2i(50, 50));
    offscreen->insertWidget(child, -1);
    offscreen->setZOrder(3);
    int redraws = 0;
    child->setRedrawCallback([&] { ++redraws; });
    child->setDirty(Widget::DirtySelf);
    host.frame();
    EXPECT_EQ(redraws, 1) << "marks count there too";
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(manager.findWindowAtPoint(Vec2i(150, 150)), nullptr);
    EXPECT_EQ(child->draws, 0);
    gui::GUI::get()->drawOffscreenWindow(offscreen, Vec2i(200, 200), osg::Vec2f(1, 1), 1.0f, 1.0f);
    EXPECT_EQ(child->draws, 1);
    offscreen->setVisible(false);
    gui::GUI::get()->drawOffscreenWindow(offscreen, Vec2i(200, 200), osg::Vec2f(1, 1), 1.0f, 1.0f);
    gui::GUI::get()->drawOffscreenWindow(nullptr, Vec2i(200, 200), osg::Vec2f(1, 1), 1.0f, 1.0f);
    EXPECT_EQ(child->draws, 1);
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
