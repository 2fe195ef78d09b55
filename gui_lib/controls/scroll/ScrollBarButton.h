#pragma once

#include "gui_lib/controls/buttons/Button.h"

namespace gui {

class ScrollBar;

namespace skin {
class ButtonSkin;
}

/// A step button at an end of a scroll bar. It borrows its skin from the bar's skin.
class VORLEX_API ScrollBarButton : public Button {
public:
    /// `borrowedSkin` may be null: the button shows nothing then.
    ScrollBarButton(ScrollBar& bar, skin::ButtonSkin* borrowedSkin);
    ~ScrollBarButton() override;

    /// Lets go of the borrowed skin; the button shows nothing from then on.
    void returnSkin();
    /// Null once the bar has died.
    ScrollBar* getScrollBar() const;

    // Widget:
    char const* getWidgetType() const override;

protected:
    WidgetHandler* bar;
};

/// Moves the bar's value a step down.
class VORLEX_API ScrollBarDecreaseButton : public ScrollBarButton {
public:
    using ScrollBarButton::ScrollBarButton;

protected:
    // Widget:
    void onChange_() override;
};

/// Moves the bar's value a step up.
class VORLEX_API ScrollBarIncreaseButton : public ScrollBarButton {
public:
    using ScrollBarButton::ScrollBarButton;

protected:
    // Widget:
    void onChange_() override;
};

}  // namespace gui
