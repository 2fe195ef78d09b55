#include "gui_lib/base/Application.h"

#include <algorithm>
#include <utility>

namespace gui {

Application* Application::instance_ = nullptr;

Application::Application() {
    instance_ = this;
    registerKeyboardButtonsNames();
}

Application::~Application() {
    if (instance_ == this)
        instance_ = nullptr;
}

void Application::destroy() {
    // The pointer stays until the end of ~Application: a host that ends GUI as it dies still has to tell the time.
    delete instance_;
    instance_ = nullptr;
}

void Application::createMainWindow(int newWidth, int newHeight, bool newFullScreen) {
    width = newWidth;
    height = newHeight;
    fullScreen = newFullScreen;
    createWindow_(newWidth, newHeight, newFullScreen);
}

bool Application::getFullScreen() const { return fullScreen; }

void Application::setFramerate(int newFramerate) { framerate = newFramerate; }

int Application::getFramerate() const { return framerate; }

void Application::addUpdateCallback(std::shared_ptr<std::function<void()>> callback) {
    if (std::find(updateCallbacks.begin(), updateCallbacks.end(), callback) == updateCallbacks.end())
        updateCallbacks.push_back(std::move(callback));
}

void Application::removeUpdateCallback(std::shared_ptr<std::function<void()>> callback) {
    auto found = std::find(updateCallbacks.begin(), updateCallbacks.end(), callback);
    if (found != updateCallbacks.end())
        updateCallbacks.erase(found);
}

void Application::callUpdateCallbacks_() {
    auto const copy = updateCallbacks;
    for (auto const& callback : copy) {
        bool const stillAdded =
            std::find(updateCallbacks.begin(), updateCallbacks.end(), callback) != updateCallbacks.end();
        if (stillAdded && callback && *callback)
            (*callback)();
    }
}

void Application::setOnQuitCallback(std::function<void()> callback) { onQuitCallback = std::move(callback); }

void Application::setOnActivateCallback(std::function<void(bool)> callback) {
    onActivateCallback = std::move(callback);
}

qor::basic_string<char> Application::getScreenshotExtention() const { return {}; }

void Application::update() {}

void Application::draw() {}

bool Application::getRunning() const { return running; }

void Application::processModal() { update(); }

void Application::quit() { running = false; }

void Application::onQuit() {
    if (onQuitCallback)
        onQuitCallback();
    else
        quit();
}

void Application::onActivate(bool newActive) {
    active = newActive;
    if (onActivateCallback)
        onActivateCallback(newActive);
}

bool Application::getActive() const { return active; }

void Application::windowPlacementInfoInvalidate() {}

void Application::resetCallbacks() {
    updateCallbacks.clear();
    onQuitCallback = nullptr;
    onActivateCallback = nullptr;
}

}  // namespace gui
