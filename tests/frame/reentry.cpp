#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/small/Tooltip.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/PopupWindow.h"
#include "gui_lib/windows/Window.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/trace/vtxTraceLog.h"
#include "platform/vtx/vtxRenderer.h"
#include "tests/support/Attach.h"
#include "tests/support/HeapScope.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SkinText.h"
#include "tests/support/TestHost.h"

namespace {

using gui::GUI;
using gui::Widget;
using osg::Vec2i;

template <class WindowType>
WindowType* place(WindowType* window) {
    window->setPosition(Vec2i(100, 100));
    window->setSize(Vec2i(100, 100));
    return window;
}

size_t shownCount() {
    qor::vector<gui::WindowBase*> windows;
    gui::WindowsManager::get(0)->getShownWindows(windows);
    return windows.size();
}

// --- The surface's mouse function ---

TEST(SurfaceMouseFunction, MayEndWhatTheReleaseOfAButtonWouldHaveReached) {
    for (bool const captured : {true, false}) {
        support::TestHost host;
        auto* const window = place(new gui::Window);
        auto* const button = new gui::Button;
        button->setSize(Vec2i(80, 40));
        window->insertWidget(button, -1);
        window->setVisible(true);
        host.frame();
        host.moveMouse(110, 110);
        host.pressMouse();
        if (captured)
            gui::WindowsManager::get(0)->captureMouse(button->getHandler());
        auto* const target = captured ? static_cast<Widget*>(button) : window;
        gui::WidgetHandler* const handler = target->getHandler();
        GUI::get()->setSurfaceMouseFunc(0, [handler](int x, int y) {
            Widget::destroy(gui::WidgetHandler::get(handler));
            return Vec2i(x, y);
        });
        host.releaseMouse();
        EXPECT_EQ(gui::WidgetHandler::get(handler), nullptr);
        host.frame();
    }
}

// --- Windows that change their mind ---

TEST(NestedShowing, WhatIsHiddenWhileItShowsIsInNoGroup) {
    support::TestHost host;
    auto* const modal = place(new gui::ModalWindow(true));
    gui::WindowBase* const windows[] = {modal, place(new gui::PopupWindow)};
    for (gui::WindowBase* window : windows) {
        support::onEvent(*window, Widget::focusCallbackName, [window] { window->setVisible(false); });
        window->setVisible(true);
        EXPECT_FALSE(window->getVisible(false));
        EXPECT_EQ(shownCount(), 0u) << window->getWidgetType();
    }
    EXPECT_EQ(gui::WindowsManager::get(0)->getActiveWindow(), nullptr);
}

TEST(NestedShowing, WhatIsShownWhileItHidesStays) {
    // Outlives the host, whose end hides the popup once more.
    bool once = true;
    support::TestHost host;
    auto* const popup = place(new gui::PopupWindow);
    popup->setVisible(true);
    support::onEvent(*popup, Widget::focusCallbackName, [&] {
        if (std::exchange(once, false))
            popup->setVisible(true);
    });
    popup->setVisible(false);
    EXPECT_TRUE(popup->getVisible(false));
    EXPECT_EQ(gui::WindowsManager::get(0)->getActiveWindow(), popup);
}

TEST(NestedShowing, WhatBecomesAWidgetWhileItShowsIsInNoGroup) {
    support::TestHost host;
    auto* const popup = place(new gui::PopupWindow);
    popup->setVisible(true);
    auto* const window = place(new gui::Window);
    // A window that shows closes the popups first.
    support::onEvent(*popup, Widget::focusCallbackName, [window] { window->setAsWidget(true); });
    window->setVisible(true);
    EXPECT_EQ(shownCount(), 0u);
}

TEST(NestedShowing, ALeaveIsToldOnceThoughItsCallbackMovesTheHover) {
    support::TestHost host;
    auto* const left = place(new gui::Window);
    auto* const popup = place(new gui::PopupWindow);
    left->setVisible(true);
    popup->setPosition(Vec2i(300, 100));
    int leaves = 0;
    support::onMouse(*left, gui::MouseCallbackLeave, [&] {
        ++leaves;
        popup->setVisible(!popup->getVisible(false));
    });
    host.moveMouse(150, 150);
    host.moveMouse(350, 150);
    EXPECT_EQ(leaves, 1);
    EXPECT_EQ(gui::WindowsManager::get(0)->getHoveredWindow(), popup);
}

// --- Coordinates ---

TEST(ScaledCoordinates, WhatAHostMultipliedComesBackWhole) {
    for (float scale : {1.1f, 1.2f, 1.4f, 1.7f, 2.2f, 2.3f}) {
        support::TestHost host("Skin = {}", {.size = Vec2i(800, 600), .scale = scale});
        GUI& gui = *GUI::get();
        for (int unit = -5000; unit <= 5000; unit += 10) {
            int const raw = int(std::lround(unit * double(scale)));
            EXPECT_EQ(gui.convertFromRawScreenPosition(raw, raw), Vec2i(unit, unit)) << scale;
            EXPECT_EQ(gui.convertToRawScreenPosition(unit, unit), Vec2i(raw, raw)) << scale;
            gui.setViewportSize(Vec2i(raw, raw));
            EXPECT_EQ(gui.getScreenSize(), Vec2i(unit, unit)) << scale;
        }
    }
}

TEST(SurfaceMouse, AFunctionMayReplaceItselfAndMakeSurfaces) {
    support::TestHost host;
    GUI& gui = *GUI::get();
    std::string const text(100, 'x');
    gui.setSurfaceMouseFunc(0, [text, &gui](int x, int y) {
        gui.setSurfaceMouseFunc(0, {});
        for (int i = 0; i < 20; ++i)
            gui.createSurface();
        return Vec2i(x + int(text.size()), y);
    });
    EXPECT_EQ(gui.getMousePosition(0), Vec2i(100, 0));
    EXPECT_EQ(gui.getMousePosition(0), Vec2i(0, 0));
}

// --- Steady frames ---

TEST(SteadyFrames, AMouseThatMovesOverAWindowAllocatesNothing) {
    support::TestHost host;
    GUI& gui = *GUI::get();
    // Too large to be kept inside a std::function.
    gui.setSurfaceMouseFunc(0,
                            [text = std::string(100, 'x')](int x, int y) { return Vec2i(x, y + int(text.empty())); });
    auto* const window = place(new gui::Window);
    window->setVisible(true);
    int x = 100;
    auto const moveOn = [&] {
        for (int i = 0; i < 5; ++i) {
            host.moveMouse(++x, 150);
            host.advance(0.2);
        }
    };
    moveOn();
    moveOn();
    support::HeapScope const heap;
    moveOn();
    EXPECT_EQ(heap.getAllocations(), 0u);
}

// --- Hosts ---

/// A started headless host over the trace back end, ended with the object.
class Hosts : public testing::Test {
protected:
    ~Hosts() override { gui::Application::destroy(); }

    void start(std::string const& skinText) {
        application = new host::HeadlessApplication(host::HeadlessApplication::BackEnd::Trace);
        support::SkinText const file(skinText);
        ASSERT_TRUE(application->start({.skin = file.getPath().c_str(), .size = Vec2i(800, 600)}));
    }

    host::HeadlessApplication* application = nullptr;
};

TEST_F(Hosts, TellTheTimeToWidgetsThatDieWithThem) {
    start("Skin = {}");
    auto* const window = place(new gui::Window);
    window->setVisible(true);
    window->setFocused(true);
    double time = -1.0;
    support::onEvent(*window, Widget::focusCallbackName, [&] { time = gui::UpdateManager::get().getTime(); });
    gui::Application::destroy();
    EXPECT_EQ(time, 0.0);
    EXPECT_EQ(gui::Application::get(), nullptr);
    EXPECT_EQ(vtxRenderer::get(), nullptr);
}

TEST_F(Hosts, AreNotStoppedFromInsideAFrame) {
    start("Skin = {}");
    support::LogCapture log;
    GUI::get()->addUserMessage(std::make_shared<std::function<void()>>([&] { application->stop(); }));
    application->runFrame();
    EXPECT_EQ(log.count("GUI::destroy ignored"), 1u) << log.dump();
    application->runFrame();
    application->addUpdateCallback(std::make_shared<std::function<void()>>([&] { application->stop(); }));
    application->runFrame();
    EXPECT_EQ(GUI::get(), nullptr);
}

TEST_F(Hosts, ShowWhatATickChangedInTheSameFrame) {
    start("Skin = {tooltipSkin = " +
          support::skinFunction("startTime = 0.5", std::string("text = {font = '") + support::fontFile +
                                                       "', fontSize = 14, color = '0xffffffff'}") +
          "}");
    auto* const window = place(new gui::Window);
    auto* const button = new gui::Button;
    button->setSize(Vec2i(100, 100));
    button->setTooltipText(L"word");
    window->insertWidget(button, -1);
    window->setVisible(true);
    application->pushMouseMove(150, 150);
    gui::Tooltip* const tooltip = gui::WindowsManager::get(0)->getTooltip();
    vtxTraceLog& log = *application->getTraceLog();
    for (int i = 0; i < 100 && !tooltip->getVisible(false); ++i) {
        log.clearLines();
        application->runFrame();
    }
    ASSERT_TRUE(tooltip->getVisible(false));
    std::string const text(log.getText().c_str());
    EXPECT_NE(text.find("quad"), std::string::npos) << text;
}

}  // namespace
