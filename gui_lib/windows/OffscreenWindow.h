#pragma once

#include "gui_lib/windows/WindowBase.h"

namespace gui {

/// A window that no manager shows and no input reaches; the host draws it with GUI::drawOffscreenWindow.
class VORLEX_API OffscreenWindow : public WindowBase {
public:
    OffscreenWindow();

    virtual void setZOrder(int newZOrder);
    virtual int getZOrder() const;

    // Widget:
    char const* getWidgetType() const override;

protected:
    virtual void onZOrderChanged_(int newZOrder);

    int zOrder = 0;
};

}  // namespace gui
