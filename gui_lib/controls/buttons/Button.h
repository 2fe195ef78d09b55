#pragma once

#include "gui_lib/controls/buttons/ButtonBase.h"

namespace gui {

/// A push button: a click calls the "widget change" callbacks. Skin "buttonSkin".
class VORLEX_API Button : public ButtonBase {
public:
    /// With `noSkin` a subclass supplies the skin.
    explicit Button(bool noSkin = false);

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
};

}  // namespace gui
