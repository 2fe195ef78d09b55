#pragma once

#include "gui_lib/widget/ChildIndex.h"
#include "gui_lib/widget/Container.h"

namespace gui {

class WindowBase;

/// The client area of a window: the container of the host's widgets. Its look is the sub-skin "view" of the window's
/// skin. Where it holds many widgets that rest in their places, it finds the one under the mouse by an index of these.
class VORLEX_API WindowView : public Container {
public:
    explicit WindowView(WindowBase& window);
    ~WindowView() override;

    /// Null once the window has died.
    WindowBase* getWindow() const;

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
    Widget* getWidgetAtScreenPoint(osg::Vec2i const& point) override;

protected:
    friend class WindowBase;

    WidgetHandler* window = nullptr;

private:
    ChildIndex index_;
};

}  // namespace gui
