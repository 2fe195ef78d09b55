#include "gui_lib/windows/OverlayWindow.h"

#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/windows/WindowBaseSkin.h"

namespace gui {

OverlayWindow::OverlayWindow() {
    makeHeaderAndView_();
    skin = new skin::WindowBaseSkin(this);
    skin->load("windowSkin");
}

OverlayWindow::~OverlayWindow() {
    beginDestruction_();
    if (!visible)
        return;
    if (WindowsManager* const manager = leaveManager_())
        manager->hideOverlay(this);
}

char const* OverlayWindow::getWidgetType() const { return "OverlayWindow"; }

void OverlayWindow::setZOrder(int newZOrder) {
    if (newZOrder != zOrder)
        onZOrderChanged_(newZOrder);
}

int OverlayWindow::getZOrder() const { return zOrder; }

void OverlayWindow::onZOrderChanged_(int newZOrder) {
    if (WindowsManager* const manager = leaveManager_())
        manager->hideOverlay(this);
    zOrder = newZOrder;
    WindowsManager* const manager = visible ? enterManager_() : nullptr;
    if (manager)
        manager->showOverlay(this);
}

void OverlayWindow::onVisibleChanged_(bool newVisible) {
    AliveGuard const guard(this);
    Widget::onVisibleChanged_(newVisible);
    if (guard.dead())
        return;
    if (newVisible) {
        if (WindowsManager* const manager = enterManager_())
            manager->showOverlay(this);
    } else if (WindowsManager* const manager = leaveManager_()) {
        manager->hideOverlay(this);
    }
}

}  // namespace gui
