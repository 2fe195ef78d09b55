#include "gui_lib/windows/OffscreenWindow.h"

#include "gui_lib/windows/WindowBaseSkin.h"

namespace gui {

OffscreenWindow::OffscreenWindow() {
    makeHeaderAndView_();
    skin = new skin::WindowBaseSkin(this);
    skin->load("windowSkin");
}

char const* OffscreenWindow::getWidgetType() const { return "OffscreenWindow"; }

void OffscreenWindow::setZOrder(int newZOrder) {
    if (newZOrder != zOrder)
        onZOrderChanged_(newZOrder);
}

int OffscreenWindow::getZOrder() const { return zOrder; }

void OffscreenWindow::onZOrderChanged_(int newZOrder) { zOrder = newZOrder; }

}  // namespace gui
