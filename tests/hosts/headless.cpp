#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "gui_lib/base/CallbackTypes.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/ToggleButton.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/controls/small/TextureView.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/BuddyWindow.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/OffscreenWindow.h"
#include "gui_lib/windows/OverlayWindow.h"
#include "gui_lib/windows/Window.h"
#include "host/Assets.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/trace/vtxTraceLog.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxRenderer.h"

namespace {

using host::HeadlessApplication;
using Pixels = qor::vector<unsigned char>;

/// A headless host with one window that has a label and a button.
class Host {
public:
    explicit Host(HeadlessApplication::BackEnd backEnd) : app(new HeadlessApplication(backEnd)) {
        host::addToolkitAssets();
        host::HostOptions options;
        options.size = {400, 300};
        options.scale = 1.0f;
        EXPECT_TRUE(app->start(options));
        window = new gui::Window;
        window->setText(L"Scaled");
        window->setPosition({40, 30});
        window->setSize({260, 180});
        auto* const label = new gui::Static;
        label->setText(L"Sharp at every scale: fi, AV, Ω.");
        label->setSize({220, 24});
        window->insertWidget(label, -1);
        button = new gui::Button;
        button->setText(L"Press");
        button->setPosition({0, 40});
        button->setSize({100, 32});
        auto count = [this] { ++clicks; };
        button->addWidgetCallback(gui::getWidgetCallbackType(gui::Widget::changeCallbackName),
                                  std::make_shared<std::function<void()>>(count));
        window->insertWidget(button, -1);
        window->setVisible(true);
        app->runFrames(2);
    }
    ~Host() { gui::Application::destroy(); }

    Pixels picture() {
        app->runFrames(2);
        return app->readPixels();
    }
    osg::Vec2i centreOfButton() const {
        osg::Vec2i const point = button->widgetToScreen({50, 16});
        return gui::GUI::get()->convertToRawScreenPosition(point.x(), point.y());
    }

    HeadlessApplication* app;
    gui::Window* window = nullptr;
    gui::Button* button = nullptr;
    int clicks = 0;
};

TEST(HeadlessHost, AChangeOfScaleAndBackGivesThePictureOfBefore) {
    Host host(HeadlessApplication::BackEnd::GL);
    Pixels const before = host.picture();
    ASSERT_FALSE(before.empty());
    for (float scale : {2.0f, 1.5f, 0.75f}) {
        host.app->setScale(scale);
        Pixels const scaled = host.picture();
        EXPECT_NE(scaled, before) << scale;
        // What was built while another scale was in force must not stay.
        host.window->setVisible(false);
        host.app->runFrames(1);
        host.app->setScale(1.0f);
        host.window->setVisible(true);
        EXPECT_EQ(host.picture(), before) << scale;
    }
    EXPECT_EQ(host.app->getGLErrorCount(), 0u);
}

TEST(HeadlessHost, AClickLandsWhereTheScaleShowsTheButton) {
    Host host(HeadlessApplication::BackEnd::Trace);
    int expected = 0;
    for (float scale : {1.0f, 2.0f, 1.1f, 0.5f}) {
        host.app->setScale(scale);
        osg::Vec2i const point = host.centreOfButton();
        host.app->pushMouseMove(point.x(), point.y());
        host.app->runFrames(60);
        host.app->pushMouseButton(1, true);
        host.app->runFrame();
        host.app->pushMouseButton(1, false);
        host.app->runFrame();
        EXPECT_EQ(host.clicks, ++expected) << scale;
    }
    EXPECT_FALSE(host.app->getTraceLog()->hasMisuse());
}

TEST(HeadlessHost, StepsRunInOrderOfTimeAndMayAddSteps) {
    Host host(HeadlessApplication::BackEnd::Trace);
    std::string order;
    double const now = host.app->getTime();
    host.app->addStep(now + 0.2, [&] { order += "c"; });
    host.app->addStep(now + 0.1, [&] {
        order += "a";
        host.app->addStep(now, [&] { order += "b"; });
    });
    host.app->runFrames(3);
    EXPECT_EQ(order, "");
    host.app->runFrames(30);
    EXPECT_EQ(order, "abc");
}

TEST(HeadlessHost, LosingTheFocusLetsKeysAndButtonsGoWithoutAClick) {
    Host host(HeadlessApplication::BackEnd::Trace);
    osg::Vec2i const point = host.centreOfButton();
    host.app->pushMouseMove(point.x(), point.y());
    host.app->pushKey(gui::KeyLeftShift, 0, true);
    host.app->pushMouseButton(1, true);
    host.app->runFrame();
    EXPECT_TRUE(host.app->getKeyDown(gui::KeyLeftShift) && host.app->getMouseButtonDown(1));
    EXPECT_EQ(host.button->getInteractiveState(), gui::skin::InteractiveStatePressed);
    host.app->releaseAllInput();
    host.app->runFrame();
    EXPECT_FALSE(host.app->getKeyDown(gui::KeyLeftShift) || host.app->getMouseButtonDown(1));
    EXPECT_EQ(host.button->getInteractiveState(), gui::skin::InteractiveStateHover);
    EXPECT_EQ(host.clicks, 0);
}

TEST(HeadlessHost, ClosingTheProgramWhileAModalWindowBlocksEndsItCleanly) {
    Host host(HeadlessApplication::BackEnd::Trace);
    auto* const modal = new gui::ModalWindow(false);
    modal->setSize({200, 100});
    unsigned framesInside = 0;
    auto const ask = [&] {
        unsigned const before = host.app->getFrameCount();
        modal->setVisible(true);
        framesInside = host.app->getFrameCount() - before;
    };
    host.button->addWidgetCallback(gui::getWidgetCallbackType(gui::Widget::changeCallbackName),
                                   std::make_shared<std::function<void()>>(ask));
    host.app->addStep(host.app->getTime() + 1.0, [&] { host.app->pushQuit(); });
    host.app->pushMouseMove(host.centreOfButton().x(), host.centreOfButton().y());
    host.app->pushMouseButton(1, true);
    host.app->pushMouseButton(1, false);
    unsigned const before = host.app->getFrameCount();
    host.app->runFrame();
    EXPECT_FALSE(host.app->getRunning());
    EXPECT_GT(framesInside, 30u) << "each is a whole frame with a clock that goes on";
    EXPECT_EQ(host.app->getFrameCount(), before + framesInside + 1) << "the frame outside of them goes on to its end";
    EXPECT_TRUE(modal->getVisible(false));
    EXPECT_FALSE(host.app->getTraceLog()->hasMisuse());
}

TEST(HeadlessHost, TheTextureOfAWindowOffTheScreenLooksLikeAWindowOnIt) {
    Host host(HeadlessApplication::BackEnd::GL);
    host.window->setVisible(false);
    osg::Vec2i const size(200, 150);
    auto const furnish = [&size](gui::WindowBase* window) {
        window->setText(L"The same");
        window->setSize(size);
        auto* const toggle = new gui::ToggleButton(1);
        toggle->setText(L"On");
        toggle->setSize({120, 32});
        window->insertWidget(toggle, -1);
        window->setVisible(true);
    };
    auto* const overlay = new gui::OverlayWindow;
    overlay->setPosition({40, 30});
    furnish(overlay);
    Pixels const expected = host.picture();
    overlay->setVisible(false);

    auto* const offscreen = new gui::OffscreenWindow;
    furnish(offscreen);
    // Without a look of its own.
    auto* const frame = new gui::BuddyWindow;
    frame->setPosition({40, 30});
    frame->setSize(size);
    auto* const view = new gui::TextureView;
    view->setSize(size);
    frame->insertWidget(view, -1);
    frame->setVisible(true);
    Pixels const empty = host.picture();
    std::unique_ptr<vtxFrameBuffer> target(vtxRenderer::get()->createFrameBuffer(size, 0, 0));
    view->setTexture(target->getTexture());
    host.app->setDrawSurfaces([&] {
        target->renderToTarget(
            [&] { gui::GUI::get()->drawOffscreenWindow(offscreen, size, osg::Vec2f(1.0f, 1.0f), 1.0f, 1.0f); });
    });
    Pixels const shown = host.picture();
    host.app->setDrawSurfaces({});
    view->setTexture(nullptr);
    EXPECT_NE(shown, empty);
    // Shadows are blended in two steps.
    int furthest = 0;
    for (std::size_t i = 0; i < shown.size(); ++i)
        furthest = std::max(furthest, std::abs(int(shown[i]) - int(expected[i])));
    EXPECT_LE(furthest, 2);
    EXPECT_EQ(host.app->getGLErrorCount(), 0u);
}

}  // namespace
