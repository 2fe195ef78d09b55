#include "examples/gallery/Gallery.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "examples/gallery/ControlsWindow.h"
#include "examples/gallery/Place.h"
#include "examples/gallery/Scene.h"
#include "examples/gallery/StatesWindow.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "platform/gl/vtxGLDevice.h"
#include "platform/vtx/vtxRenderer.h"
#include "testkit/TreeDump.h"

namespace {

/// How far the screen turns to either side, radians, and how long a swing there and back takes, seconds.
constexpr double swingWidth = 0.6;
constexpr double swingTime = 12.0;
constexpr double tau = 6.283185307179586;

}  // namespace

Gallery::Gallery(host::HostApplication& application, Options const& options)
    : application_(application), turning_(!options.still), lastTime_(application.getTime()) {
    if (dynamic_cast<vtxGLDevice*>(&vtxRenderer::get()->getDevice()))
        scene_ = std::make_unique<Scene>();
    screen_ = std::make_unique<ScreenSurface>();
    controls_ = makeControlsWindow();
    states_ = makeStatesWindow();
    labels_ = makeLabelsWindow();
    addPages_();
    arrange_();
    debugView_ = std::make_unique<DebugView>();

    keyCallback_ = std::make_shared<std::function<bool(gui::KeyboardButton, int, bool)>>(
        [this](gui::KeyboardButton key, int, bool down) { return onKey_(key, down); });
    gui::GUI::get()->addKeyboardCallback(keyCallback_);
    turnCallback_ = std::make_shared<std::function<void()>>([this] { turn_(); });
    application_.addUpdateCallback(turnCallback_);
    application_.setDrawSurfaces([this] { drawSurfaces_(); });
    application_.setDrawScene([this] { draw_(); });
    screen_->setViewSize({application_.getWidth(), application_.getHeight()});
    setAngle(0.0);
}

Gallery::~Gallery() {
    application_.setDrawSurfaces({});
    application_.setDrawScene({});
    application_.removeUpdateCallback(turnCallback_);
    if (gui::GUI* const gui = gui::GUI::get())
        gui->removeKeyboardCallback(keyCallback_);
}

void Gallery::addPages_() {
    pages_.add(L"Controls", controls_);
    pages_.add(L"States", states_);
    pages_.add(L"Labels", labels_.window);
    pages_.add(L"Windows", windows_.getWindow());
    pages_.add(L"Effects", effects_.getWindow());
    pages_.addFile(L"Row", "row");
    pages_.addFile(L"Column", "column");
    pages_.addFile(L"Anchors", "anchors");
    pages_.addFile(L"Border", "border");
    pages_.addFile(L"Form", "form");
    pages_.addFile(L"Scroll bars", "scrollbars");
    pages_.addFile(L"Scroll pane", "scrollpane");
    pages_.addFile(L"Dialog", "dialog");
}

void Gallery::arrange_() {
    // Seen are 24 units between windows, which have 5 of shadow around them.
    constexpr int margin = 19;
    controls_->setPosition({margin, margin});
    int const left = margin + controls_->getSize().x();
    int const right = std::max(gui::GUI::get()->getScreenSize().x() - labels_.window->getSize().x() - margin, margin);
    labels_.window->setPosition({right, margin});
    states_->setPosition({std::max(left + (right - left - states_->getSize().x()) / 2, left - 6), margin});
    pages_.getIndex()->setPosition({margin, margin + controls_->getSize().y() + 14});
    for (gui::Window* window : {pages_.getIndex(), states_, labels_.window, controls_})
        window->setVisible(true);
}

bool Gallery::onKey_(gui::KeyboardButton key, bool down) {
    constexpr auto keyF12 = static_cast<gui::KeyboardButton>(293);
    if (!down)
        return false;
    if (key == keyF12) {
        debugView_->toggle();
        if (debugView_->getShown()) {
            std::fputs(testkit::dumpTree().c_str(), stdout);
            screen_->printCorners();
            std::fflush(stdout);
        }
        return true;
    }
    if (key == gui::KeyEscape) {
        application_.onQuit();
        return true;
    }
    // A focused control uses the space key itself, so it is not kept from the windows.
    if (key == gui::KeySpace)
        turning_ = !turning_;
    return false;
}

void Gallery::turn_() {
    pages_.update();
    double const now = application_.getTime();
    double const passed = now - lastTime_;
    lastTime_ = now;
    if (!turning_)
        return;
    swing_ += passed;
    setAngle(std::sin(swing_ / swingTime * tau) * swingWidth);
}

void Gallery::setAngle(double radians) {
    screen_->setAngle(radians);
    if (scene_)
        scene_->setAngle(radians);
}

void Gallery::drawSurfaces_() {
    screen_->setViewSize({application_.getWidth(), application_.getHeight()});
    screen_->draw();
    showPicture(labels_.picture, screen_->getPicture());
    windows_.draw();
}

void Gallery::draw_() {
    if (scene_)
        scene_->draw({application_.getWidth(), application_.getHeight()},
                     {screen_->getPicture().getTextureName(), windows_.getPicture().getTextureName()});
}
