#include "gui_lib/controls/buttons/RadioButton.h"

#include "gui_lib/controls/buttons/CheckSkins.h"

namespace gui {

RadioButton::RadioButton() : SwitchButton(true) {
    skin = new skin::RadioButtonSkin(this);
    skin->load("radioButtonSkin");
}

Widget* RadioButton::clone() const {
    auto* const copy = new RadioButton;
    skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* RadioButton::getWidgetType() const { return "RadioButton"; }

}  // namespace gui
