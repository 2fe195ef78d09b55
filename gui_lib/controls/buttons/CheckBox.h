#pragma once

#include "gui_lib/controls/buttons/ToggleButton.h"

namespace gui {

/// A toggle button with a check mark. Skin "checkBoxSkin".
class VORLEX_API CheckBox : public ToggleButton {
public:
    explicit CheckBox(int state = 0);

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
};

}  // namespace gui
