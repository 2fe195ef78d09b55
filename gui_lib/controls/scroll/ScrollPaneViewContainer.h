#pragma once

#include "gui_lib/widget/ChildIndex.h"
#include "gui_lib/widget/Container.h"

namespace gui {

/// Holds the widgets of a scroll pane and is moved about inside the view. Where it holds many that rest in their
/// places, it finds the one under the mouse by an index of the places, for each scrolling asks anew.
class VORLEX_API ScrollPaneViewContainer : public Container {
public:
    ScrollPaneViewContainer();
    ~ScrollPaneViewContainer() override;

    // --- Children, owned by this ---
    void insertWidget(Widget* widget, int index) { insertWidget_(widget, index); }
    void removeWidget(Widget* widget) { removeWidget_(widget); }
    void removeAllWidgets() { removeAllWidgets_(); }
    void clear() { clear_(); }
    int getWidgetIndex(Widget const* widget) const { return getWidgetIndex_(widget); }

    // Widget:
    char const* getWidgetType() const override;
    Widget* getWidgetAtScreenPoint(osg::Vec2i const& point) override;

private:
    ChildIndex index_;
};

}  // namespace gui
