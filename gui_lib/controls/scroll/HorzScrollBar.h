#pragma once

#include "gui_lib/controls/scroll/ScrollBar.h"

namespace gui {

/// A scroll bar from left to right. Skin "horzScrollBarSkin".
class VORLEX_API HorzScrollBar : public ScrollBar {
public:
    /// With `noSkin` a subclass supplies the skin and makes the parts.
    explicit HorzScrollBar(bool noSkin = false);

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
};

}  // namespace gui
