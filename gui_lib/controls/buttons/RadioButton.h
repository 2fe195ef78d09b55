#pragma once

#include "gui_lib/controls/buttons/SwitchButton.h"

namespace gui {

/// A switch button with a check mark. Skin "radioButtonSkin".
class VORLEX_API RadioButton : public SwitchButton {
public:
    RadioButton();

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
};

}  // namespace gui
