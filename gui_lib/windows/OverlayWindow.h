#pragma once

#include "gui_lib/windows/WindowBase.h"

namespace gui {

/// A window below all others of its surface that takes no input.
class VORLEX_API OverlayWindow : public WindowBase {
public:
    OverlayWindow();
    ~OverlayWindow() override;

    virtual void setZOrder(int newZOrder);
    virtual int getZOrder() const;

    // Widget:
    char const* getWidgetType() const override;

protected:
    virtual void onZOrderChanged_(int newZOrder);

    // Widget:
    void onVisibleChanged_(bool newVisible) override;

    int zOrder = 0;
};

}  // namespace gui
