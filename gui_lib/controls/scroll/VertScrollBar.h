#pragma once

#include "gui_lib/controls/scroll/ScrollBar.h"

namespace gui {

/// A scroll bar from top to bottom. Skin "vertScrollBarSkin".
class VORLEX_API VertScrollBar : public ScrollBar {
public:
    /// With `noSkin` a subclass supplies the skin and makes the parts.
    explicit VertScrollBar(bool noSkin = false);

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;

protected:
    // ScrollBar:
    /// Also marks the parts.
    void alignWidgets_() override;
};

}  // namespace gui
