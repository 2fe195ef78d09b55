#include "gui_lib/controls/buttons/CheckBox.h"

#include "gui_lib/controls/buttons/CheckSkins.h"

namespace gui {

CheckBox::CheckBox(int newState) : ToggleButton(newState, true) {
    skin = new skin::CheckBoxSkin(this);
    skin->load("checkBoxSkin");
}

Widget* CheckBox::clone() const {
    auto* const copy = new CheckBox(0);
    skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* CheckBox::getWidgetType() const { return "CheckBox"; }

}  // namespace gui
