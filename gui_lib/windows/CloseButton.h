#pragma once

#include "gui_lib/controls/buttons/Button.h"

namespace gui {

class WindowBase;

namespace skin {
class ButtonSkin;
}

/// The button in a window's header that closes the window. It borrows its skin from the header's skin.
class VORLEX_API CloseButton : public Button {
public:
    CloseButton(WindowBase& window, skin::ButtonSkin* borrowedSkin);
    ~CloseButton() override;

    /// Lets go of the borrowed skin; the button shows nothing from then on.
    void returnSkin();

    // Widget:
    char const* getWidgetType() const override;
    bool getFocusable() const override;

protected:
    // Widget:
    void onChange_() override;

    WidgetHandler* window;
};

}  // namespace gui
