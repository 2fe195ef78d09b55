#include "gui_lib/controls/scroll/ScrollPaneView.h"

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/controls/scroll/ScrollPaneViewContainer.h"
#include "gui_lib/widget/WidgetHandler.h"

namespace gui {

ScrollPaneView::ScrollPaneView(ScrollPane& newPane)
    : pane(newPane.getHandler()), container(new ScrollPaneViewContainer) {
    skin = new skin::Skin(this, true);
    insertWidget_(container, -1);
}

ScrollPaneView::~ScrollPaneView() {
    beginDestruction_();
    container = nullptr;
    deleteWidgets_();
}

ScrollPane* ScrollPaneView::getPane() const { return static_cast<ScrollPane*>(WidgetHandler::get(pane)); }

char const* ScrollPaneView::getWidgetType() const { return "ScrollPaneView"; }

void ScrollPaneView::onWidgetDestroy(WidgetHandler* child) {
    if (container && container->getHandler() == child)
        container = nullptr;
    Container::onWidgetDestroy(child);
}

void ScrollPaneView::removeWidget_(Widget* widget) {
    if (widget == container)
        container = nullptr;
    Container::removeWidget_(widget);
}

void ScrollPaneView::insertWidget(Widget* widget, int index) {
    if (container)
        container->insertWidget(widget, index);
}

void ScrollPaneView::removeWidget(Widget* widget) {
    if (container)
        container->removeWidget(widget);
}

void ScrollPaneView::removeAllWidgets() {
    if (container)
        container->removeAllWidgets();
}

void ScrollPaneView::clear() {
    if (container)
        container->clear();
}

int ScrollPaneView::getWidgetIndex(Widget const* widget) const {
    return container ? container->getWidgetIndex(widget) : -1;
}

void ScrollPaneView::setLayout(LayoutHandler* newLayout) {
    if (container)
        container->setLayout(newLayout);
}

LayoutHandler* ScrollPaneView::getLayout() const { return container ? container->getLayout() : nullptr; }

int ScrollPaneView::getWidgetCount() const { return container ? container->getWidgetCount() : 0; }

Widget* ScrollPaneView::getWidget(int index) const { return container ? container->getWidget(index) : nullptr; }

Widget* ScrollPaneView::findWidgetAtScreenPoint(osg::Vec2i const& point) {
    Widget* const found = Container::findWidgetAtScreenPoint(point);
    return found && found == container ? this : found;
}

}  // namespace gui
