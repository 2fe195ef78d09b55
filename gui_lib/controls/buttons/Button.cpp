#include "gui_lib/controls/buttons/Button.h"

#include "gui_lib/controls/buttons/ButtonSkin.h"

namespace gui {

Button::Button(bool noSkin) {
    if (noSkin)
        return;
    skin = new skin::ButtonSkin(this);
    skin->load("buttonSkin");
}

Widget* Button::clone() const {
    auto* const copy = new Button(false);
    if (skin)
        skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* Button::getWidgetType() const { return "Button"; }

}  // namespace gui
