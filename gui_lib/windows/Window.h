#pragma once

#include "gui_lib/windows/WindowBase.h"

namespace gui {

/// The ordinary movable window with a header and a view. A press focuses and raises it. Skin "windowSkin".
class VORLEX_API Window : public WindowBase {
public:
    Window();
    ~Window() override;

    /// As `Container::copyParams`, and a clone of each widget of the view.
    void copyParams(Window* target) const;

    /// Windows of a higher order lie on top. A change takes the focus away and closes popups.
    virtual void setZOrder(int newZOrder);
    virtual int getZOrder() const;
    /// Lets the mouse through to what is below. A surface knows one such window: the last call counts.
    virtual void setTransparentForUserInput(bool transparent);
    virtual bool getTransparentForUserInput() const;

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;

protected:
    virtual void onZOrderChanged_(int newZOrder);

    // Widget:
    void onVisibleChanged_(bool newVisible) override;
    void onFocusChanged_(bool newFocused) override;

    int zOrder = 0;
    bool transparentForUserInput = false;
};

}  // namespace gui
