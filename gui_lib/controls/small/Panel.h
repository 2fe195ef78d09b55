#pragma once

#include "gui_lib/widget/Container.h"

namespace gui {

/// A container that anybody may put widgets into. Skin "panelSkin".
class VORLEX_API Panel : public Container {
public:
    Panel();

    // --- Children, owned by the panel ---
    /// A bad index appends. The widget leaves the parent it had.
    void insertWidget(Widget* widget, int index) { insertWidget_(widget, index); }
    void removeWidget(Widget* widget) { removeWidget_(widget); }
    /// Lets go of all without ending them.
    void removeAllWidgets() { removeAllWidgets_(); }
    int getWidgetIndex(Widget* widget) const { return getWidgetIndex_(widget); }
    /// Ends all.
    void clear() { clear_(); }

    /// Gives the target clones of the children too.
    void copyParams(Panel* target) const;

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
};

}  // namespace gui
