#include "gui_lib/controls/buttons/ToggleButton.h"

#include "gui_lib/controls/buttons/ButtonSkin.h"

namespace gui {

ToggleButton::ToggleButton(int newState, bool noSkin) : state(newState > 0 ? 1 : newState < 0 ? -1 : 0) {
    if (noSkin)
        return;
    skin = new skin::ToggleButtonSkin(this);
    skin->load("toggleButtonSkin");
}

void ToggleButton::copyParams(ToggleButton* target) const {
    Widget::copyParams(target);
    target->setState(state);
}

Widget* ToggleButton::clone() const {
    auto* const copy = new ToggleButton(0, false);
    if (skin)
        skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* ToggleButton::getWidgetType() const { return "ToggleButton"; }

int ToggleButton::getInnerState() const {
    if (state == 0)
        return 1;
    return state > 0 ? 2 : 3;
}

void ToggleButton::setState(int newState) {
    int const valid = validateState_(newState);
    if (valid != state)
        onStateChanged_(valid);
}

int ToggleButton::getState() const { return state; }

void ToggleButton::changeState_() {
    state = state <= 0 ? 1 : 0;
    onChange_();
}

void ToggleButton::onStateChanged_(int newState) {
    state = newState;
    setDirty(DirtySelf);
}

int ToggleButton::validateState_(int wanted) const {
    if (wanted == 0)
        return 0;
    return wanted > 0 ? 1 : -1;
}

}  // namespace gui
