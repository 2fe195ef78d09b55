#include "gui_lib/controls/scroll/ScrollPaneViewContainer.h"

#include "gui_lib/Skin/Skin.h"

namespace gui {

ScrollPaneViewContainer::ScrollPaneViewContainer() { skin = new skin::Skin(this, true); }

ScrollPaneViewContainer::~ScrollPaneViewContainer() {
    beginDestruction_();
    deleteWidgets_();
}

char const* ScrollPaneViewContainer::getWidgetType() const { return "ScrollPaneViewContainer"; }

Widget* ScrollPaneViewContainer::getWidgetAtScreenPoint(osg::Vec2i const& point) {
    Widget* found = nullptr;
    return index_.find({*this, widgets, getChildPlaceChanges_()}, point, found)
               ? found
               : Container::getWidgetAtScreenPoint(point);
}

}  // namespace gui
