#include "gui_lib/windows/PopupWindow.h"

#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/AliveGuard.h"

namespace gui {

PopupWindow::PopupWindow() = default;

PopupWindow::~PopupWindow() {
    beginDestruction_();
    if (WindowsManager* const manager = leaveManager_())
        manager->hidePopup(this);
}

char const* PopupWindow::getWidgetType() const { return "PopupWindow"; }

void PopupWindow::setActive(bool newActive) {
    if (newActive != active)
        onActiveChanged_(newActive);
}

void PopupWindow::onActiveChanged_(bool newActive) { active = newActive; }

void PopupWindow::setFocused(bool newFocused) {
    AliveGuard const guard(this);
    Widget::setFocused(newFocused);
    if (guard.alive() && newFocused != active)
        onActiveChanged_(newFocused);
}

bool PopupWindow::onMouseWheel(osg::Vec2i const& point, int delta) {
    Container::onMouseWheel(point, delta);
    return true;
}

void PopupWindow::onVisibleChanged_(bool newVisible) {
    AliveGuard const guard(this);
    Widget::onVisibleChanged_(newVisible);
    if (guard.dead())
        return;
    if (newVisible) {
        if (WindowsManager* const manager = enterManager_())
            manager->showPopup(this);
    } else if (WindowsManager* const manager = leaveManager_()) {
        manager->hidePopup(this);
    }
}

}  // namespace gui
