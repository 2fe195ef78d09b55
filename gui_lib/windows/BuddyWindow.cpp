#include "gui_lib/windows/BuddyWindow.h"

#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/windows/WindowBaseSkin.h"

namespace gui {

BuddyWindow::BuddyWindow() { skin = new skin::WindowBaseSkin(this); }

void BuddyWindow::setBuddyWidget(Widget* widget) { buddyWidget = widget ? widget->getHandler() : nullptr; }

Widget* BuddyWindow::getBuddyWidget() const { return WidgetHandler::get(buddyWidget); }

// --- Widgets ---

void BuddyWindow::clear() { clear_(); }

void BuddyWindow::removeAllWidgets() { removeAllWidgets_(); }

int BuddyWindow::getWidgetCount() const { return getWidgetCount_(); }

Widget* BuddyWindow::getWidget(int index) const { return getWidget_(index); }

void BuddyWindow::insertWidget(Widget* widget, int index) { insertWidget_(widget, index); }

void BuddyWindow::removeWidget(Widget* widget) { removeWidget_(widget); }

// --- Keys ---

char const* BuddyWindow::getWidgetType() const { return "BuddyWindow"; }

bool BuddyWindow::onKeyDown(KeyboardButton key, int modifiers) {
    AliveGuard const guard(this);
    if (Widget::onKeyDown(key, modifiers))
        return true;
    Widget* const buddy = guard.alive() ? getBuddyWidget() : nullptr;
    return buddy && buddy->onKeyDown(key, modifiers);
}

bool BuddyWindow::onChar(KeyboardButton key, int modifiers) {
    AliveGuard const guard(this);
    if (Widget::onChar(key, modifiers))
        return true;
    Widget* const buddy = guard.alive() ? getBuddyWidget() : nullptr;
    return buddy && buddy->onChar(key, modifiers);
}

bool BuddyWindow::onKeyUp(KeyboardButton key, int modifiers) {
    AliveGuard const guard(this);
    if (Widget::onKeyUp(key, modifiers))
        return true;
    Widget* const buddy = guard.alive() ? getBuddyWidget() : nullptr;
    return buddy && buddy->onKeyUp(key, modifiers);
}

}  // namespace gui
