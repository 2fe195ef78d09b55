#include "tests/golden/Stage.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/Widget.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowView.h"
#include "platform/gl/vtxGLDevice.h"

namespace golden {

using osg::Vec2i;

namespace {

constexpr int margin = 6;

std::unique_ptr<vtxDevice> makeDevice() { return vtxCreateGLDevice(); }

}  // namespace

Stage::Stage(char const* skinFile, Vec2i const& size, float scale)
    : size_(size), pixels_(int(float(size.x()) * scale), int(float(size.y()) * scale)), scale_(scale) {
    qor::string error;
    context_ = EglContext::create(EglContext::Api::GL33, pixels_, error);
    EXPECT_TRUE(context_) << error;
    host_ = std::make_unique<support::ZooHost>(
        skinFile, support::TestHost::Settings{.size = pixels_, .scale = scale, .makeDevice = makeDevice});
}

Stage::~Stage() { EXPECT_EQ(context_->getErrorCount(), 0u); }

void Stage::moveMouse(Vec2i const& point) {
    host_->moveMouse(int(float(point.x()) * scale_), int(float(point.y()) * scale_));
}

gui::Widget& Stage::place(support::ZooAnimal const& animal) {
    gui::Widget* const widget = animal.make();
    if (animal.window) {
        widget->setPosition(Vec2i(margin, margin));
        widget->setSize(size_ - Vec2i(2 * margin, 2 * margin));
        widget->setVisible(true);
    } else {
        auto* const ground = new gui::Window;
        ground->setSize(size_ + Vec2i(40, 80));
        ground->setPosition(Vec2i(-20, -60));
        ground->setVisible(true);
        ground->insertWidget(widget, -1);
        host_->settle();
        widget->setPosition(Vec2i(margin, margin) - ground->getView()->widgetToScreen(Vec2i()));
    }
    // What moves is caught on its way.
    host_->advance(0.2);
    return *widget;
}

testkit::Image Stage::takePicture(gui::Widget& widget) {
    host_->settle();
    context_->bindFramebuffer();
    context_->clear(0.3f, 0.5f, 0.4f, 1.0f);
    host_->drawWidget(widget.getRoot() ? *widget.getRoot() : widget);
    return {pixels_, context_->readPixels()};
}

void Stage::clear() {
    gui::WindowsManager::get(0)->releaseMouse(nullptr);
    host_->releaseMouse();
    qor::vector<gui::WindowBase*> shown;
    gui::WindowsManager::get(0)->getShownWindows(shown);
    for (gui::WindowBase* window : shown)
        gui::Widget::destroy(window);
    moveMouse(size_ - Vec2i(1, 1));
}

}  // namespace golden
