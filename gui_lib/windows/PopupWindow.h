#pragma once

#include "gui_lib/windows/WindowBase.h"

namespace gui {

/// A window over all others that closes when the mouse is pressed elsewhere. It has no header, view or skin of its own.
class VORLEX_API PopupWindow : public WindowBase {
public:
    PopupWindow();
    ~PopupWindow() override;

    /// An active popup stays when the press goes to another popup.
    void setActive(bool newActive);
    bool getActive() const { return active; }

    // Widget:
    char const* getWidgetType() const override;
    void setFocused(bool newFocused) override;
    /// Always true: nothing below a popup scrolls.
    bool onMouseWheel(osg::Vec2i const& point, int delta) override;

protected:
    virtual void onActiveChanged_(bool newActive);

    // Widget:
    void onVisibleChanged_(bool newVisible) override;

    bool active = false;
};

}  // namespace gui
