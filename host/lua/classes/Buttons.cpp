#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/CheckBox.h"
#include "gui_lib/controls/buttons/RadioButton.h"
#include "host/lua/ClassList.h"
#include "host/lua/classes/Looks.h"

namespace host::lua {

void addButtons(ClassList& list) {
    list.push_back(Define<gui::Button>::binding("Button", "Widget", [] { return new gui::Button; }));

    using D = Define<gui::ToggleButton>;
    ClassBinding& toggle =
        list.emplace_back(D::binding("ToggleButton", "Widget", [] { return new gui::ToggleButton; }));
    // A switch button knows its group only among its siblings.
    toggle.properties = {
        D::property<&gui::ToggleButton::getState, &gui::ToggleButton::setState>("state", Stage::Late),
        D::property(
            "checked", [](gui::ToggleButton& button) { return button.getState() > 0; },
            [](gui::ToggleButton& button, bool checked) { button.setState(checked ? 1 : 0); }, Stage::Late),
    };

    list.emplace_back(Define<gui::CheckBox>::binding("CheckBox", "ToggleButton", [] { return new gui::CheckBox; }))
        .properties = {getCheckLookProperty()};
    list.push_back(
        Define<gui::SwitchButton>::binding("SwitchButton", "ToggleButton", [] { return new gui::SwitchButton; }));
    list.emplace_back(
            Define<gui::RadioButton>::binding("RadioButton", "SwitchButton", [] { return new gui::RadioButton; }))
        .properties = {getCheckLookProperty()};
}

}  // namespace host::lua
