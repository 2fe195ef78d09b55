#pragma once

#include "gui_lib/widget/Container.h"

namespace gui {

class WindowBase;

/// The client area of a window: the container of the host's widgets. Its look is the sub-skin "view" of the window's
/// skin.
class VORLEX_API WindowView : public Container {
public:
    explicit WindowView(WindowBase& window);
    ~WindowView() override;

    /// Null once the window has died.
    WindowBase* getWindow() const;

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;

protected:
    friend class WindowBase;

    WidgetHandler* window = nullptr;
};

}  // namespace gui
