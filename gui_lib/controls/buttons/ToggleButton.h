#pragma once

#include "gui_lib/controls/buttons/ButtonBase.h"

namespace gui {

/// A button that stays: state 0 off, 1 on, -1 undefined; a click turns off to on, and on to off.
/// Handed to the skin as inner state: 1 off, 2 on, 3 undefined. Skin "toggleButtonSkin".
class VORLEX_API ToggleButton : public ButtonBase {
public:
    /// With `noSkin` a subclass supplies the skin.
    explicit ToggleButton(int state = 0, bool noSkin = false);

    /// Gives the target the state too.
    void copyParams(ToggleButton* target) const;

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
    int getInnerState() const override;

    /// Any value counts by its sign. Calls no callbacks: the program did it.
    virtual void setState(int newState);
    virtual int getState() const;

protected:
    // ButtonBase:
    void changeState_() override;

    virtual void onStateChanged_(int newState);
    virtual int validateState_(int wanted) const;

    int state = 0;
};

}  // namespace gui
