#include "gui_lib/controls/buttons/ButtonSkin.h"

namespace gui::skin {

ButtonSkin::ButtonSkin(Widget* newWidget) : Skin(newWidget, true) {}

ToggleButtonSkin::ToggleButtonSkin(Widget* newWidget) : Skin(newWidget, true) {}

}  // namespace gui::skin
