#pragma once

#include "gui_lib/Skin/Skin.h"

namespace gui::skin {

/// The look of a push button. Another skin may own one and lend it to a button with `setWidget`.
class VORLEX_API ButtonSkin : public Skin {
public:
    explicit ButtonSkin(Widget* widget);
};

/// The look of a toggle or switch button; inner states 1 off, 2 on, 3 undefined.
class VORLEX_API ToggleButtonSkin : public Skin {
public:
    explicit ToggleButtonSkin(Widget* widget);
};

}  // namespace gui::skin
