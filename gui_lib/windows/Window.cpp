#include "gui_lib/windows/Window.h"

#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/windows/WindowBaseSkin.h"

namespace gui {

Window::Window() {
    makeHeaderAndView_();
    skin = new skin::WindowBaseSkin(this);
    skin->load("windowSkin");
}

Window::~Window() {
    beginDestruction_();
    WindowsManager* const manager = visible ? leaveManager_() : nullptr;
    if (manager)
        manager->hideWindow(this);
}

Widget* Window::clone() const {
    auto* const copy = new Window;
    skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

void Window::copyParams(Window* target) const {
    if (!target)
        return;
    AliveGuard const self(this);
    AliveGuard const other(target);
    WindowBase::copyParams(target);
    for (int i = 0; self.alive() && other.alive() && i < getWidgetCount(); ++i)
        if (Widget const* const child = getWidget(i))
            target->insertWidget(child->clone(), -1);
}

char const* Window::getWidgetType() const { return "Window"; }

void Window::onVisibleChanged_(bool newVisible) {
    WindowBase::onVisibleChanged_(newVisible);
    WindowsManager* const manager = newVisible ? enterManager_() : leaveManager_();
    if (!manager)
        return;
    if (newVisible)
        manager->showWindow(this);
    else
        manager->hideWindow(this);
}

void Window::onFocusChanged_(bool newFocused) {
    AliveGuard const self(this);
    WindowsManager* const manager = newFocused ? WindowsManager::get(getSurfaceId()) : nullptr;
    if (manager)
        manager->raiseWindow(this);
    if (self.alive())
        WindowBase::onFocusChanged_(newFocused);
}

void Window::setZOrder(int newZOrder) {
    if (newZOrder != zOrder)
        onZOrderChanged_(newZOrder);
}

void Window::onZOrderChanged_(int newZOrder) {
    AliveGuard const self(this);
    // Out and in again, which sorts it anew.
    if (WindowsManager* const manager = leaveManager_())
        manager->hideWindow(this);
    if (self.dead())
        return;
    zOrder = newZOrder;
    WindowsManager* const manager = visible ? enterManager_() : nullptr;
    if (manager)
        manager->showWindow(this);
}

int Window::getZOrder() const { return zOrder; }

void Window::setTransparentForUserInput(bool transparent) {
    if (transparent == transparentForUserInput)
        return;
    transparentForUserInput = transparent;
    if (WindowsManager* const manager = WindowsManager::get(getSurfaceId()))
        manager->setWindowTransparentForUserInput(transparent ? this : nullptr);
}

bool Window::getTransparentForUserInput() const { return transparentForUserInput; }

}  // namespace gui
