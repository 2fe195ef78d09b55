#include "gui_lib/windows/Dragger.h"

#include "gui_lib/base/Application.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/windows/WindowBase.h"
#include "platform/qor/Truncate.h"

#include <algorithm>

namespace gui {

namespace {

/// Units of the header that stay on the screen after a drag.
constexpr int keptOnScreen = 20;

}  // namespace

Dragger::Dragger(WindowBase& newWindow) : window(newWindow.getHandler()) {}

char const* Dragger::getWidgetType() const { return "Dragger"; }

WindowBase* Dragger::getWindow_() const { return static_cast<WindowBase*>(WidgetHandler::get(window)); }

void Dragger::startDrag(osg::Vec2i const& point, MouseButton newButton) {
    if (newButton != MouseButtonMain)
        return;
    button = newButton;
    lastMouse = point;
    if (WindowsManager* const manager = WindowsManager::get(getRootSurfaceId()))
        manager->captureMouse(handler);
}

void Dragger::onMouseDown(osg::Vec2i const& point, MouseButton newButton) {
    AliveGuard const self(this);
    Widget::onMouseDown(point, newButton);
    if (self.alive())
        startDrag(point, newButton);
}

void Dragger::onMouseDoubleClick(osg::Vec2i const& point, MouseButton newButton) {
    AliveGuard const self(this);
    Widget::onMouseDoubleClick(point, newButton);
    if (self.alive())
        startDrag(point, newButton);
}

void Dragger::onMouseMove(osg::Vec2i const& point) {
    AliveGuard const self(this);
    Widget::onMouseMove(point);
    if (self.dead())
        return;
    WindowBase* const owner = getWindow_();
    if (!owner || !owner->getDraggable() || button == MouseButtonNone)
        return;
    osg::Vec2i const delta = saturatingSubtract(point, lastMouse);
    lastMouse = point;
    owner->setPosition(saturatingAdd(owner->getPosition(), delta));
}

void Dragger::onMouseReleased() {
    AliveGuard const self(this);
    Widget::onMouseReleased();
    if (self.alive())
        button = MouseButtonNone;
}

void Dragger::onMouseUp(osg::Vec2i const& point, MouseButton newButton) {
    AliveGuard const self(this);
    Widget::onMouseUp(point, newButton);
    if (self.dead() || newButton != MouseButtonMain || button == MouseButtonNone)
        return;
    button = MouseButtonNone;
    if (WindowsManager* const manager = WindowsManager::get(getRootSurfaceId()))
        manager->releaseMouse(handler);
    if (self.alive())
        bringWindowBack_();
}

void Dragger::bringWindowBack_() {
    WindowBase* const owner = getWindow_();
    GUI const* const gui = GUI::get();
    Application const* const application = Application::get();
    if (!owner || !gui || !application || !owner->checkOutOfScreenOnDrag())
        return;
    osg::Vec2i const screen = gui->getScreenPosition();
    double const factor = gui->getScaleFactor();
    int const right = qor::truncateToInt(application->getWidth() * factor) - screen.x() - keptOnScreen;
    int const bottom = qor::truncateToInt(application->getHeight() * factor) - screen.y() - keptOnScreen;
    osg::Vec2i const own = getSize();
    osg::Vec2i const place = owner->getPosition();
    int const x = std::max(place.x(), saturatingSubtract(keptOnScreen - screen.x(), own.x()));
    int const y = std::max(place.y(), saturatingSubtract(keptOnScreen - screen.y(), own.y()));
    owner->setPosition(osg::Vec2i(std::min(x, right), std::min(y, bottom)));
}

}  // namespace gui
