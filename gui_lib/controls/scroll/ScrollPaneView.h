#pragma once

#include "gui_lib/widget/Container.h"

namespace gui {

class ScrollPane;
class ScrollPaneViewContainer;

/// The window of a scroll pane onto its widgets: it cuts off what does not fit. It has one child, the container that
/// holds the widgets, and speaks for that.
class VORLEX_API ScrollPaneView : public Container {
public:
    explicit ScrollPaneView(ScrollPane& pane);
    ~ScrollPaneView() override;

    /// Null once the pane has died.
    ScrollPane* getPane() const;
    /// Null if it was ended or taken out.
    ScrollPaneViewContainer* getContainer() const { return container; }

    // --- Children of the container ---
    void insertWidget(Widget* widget, int index);
    void removeWidget(Widget* widget);
    void removeAllWidgets();
    void clear();
    int getWidgetIndex(Widget const* widget) const;

    // Container:
    void setLayout(LayoutHandler* newLayout) override;
    LayoutHandler* getLayout() const override;
    int getWidgetCount() const override;
    Widget* getWidget(int index) const override;
    void onWidgetDestroy(WidgetHandler* child) override;

    // Widget:
    char const* getWidgetType() const override;
    /// The deepest widget, or this where there is none.
    Widget* findWidgetAtScreenPoint(osg::Vec2i const& point) override;

protected:
    // Container:
    void removeWidget_(Widget* widget) override;

    WidgetHandler* pane;
    ScrollPaneViewContainer* container;
};

}  // namespace gui
