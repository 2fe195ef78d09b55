#include "gui_lib/windows/WindowView.h"

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"

namespace gui {

WindowView::WindowView(WindowBase& newWindow) : window(newWindow.getHandler()) { skin = new skin::Skin(this, true); }

WindowView::~WindowView() = default;

WindowBase* WindowView::getWindow() const { return static_cast<WindowBase*>(WidgetHandler::get(window)); }

Widget* WindowView::clone() const {
    WindowBase* const owner = getWindow();
    if (!owner)
        return nullptr;
    auto* const copy = new WindowView(*owner);
    skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* WindowView::getWidgetType() const { return "WindowView"; }

Widget* WindowView::getWidgetAtScreenPoint(osg::Vec2i const& point) {
    Widget* found = nullptr;
    return index_.find({*this, widgets, getChildPlaceChanges_()}, point, found)
               ? found
               : Container::getWidgetAtScreenPoint(point);
}

}  // namespace gui
