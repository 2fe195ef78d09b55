#include <gtest/gtest.h>

#include <memory>

#include "gui_lib/base/CallbackTypes.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "host/Assets.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/trace/vtxTraceLog.h"

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

}  // namespace
