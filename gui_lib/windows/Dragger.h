#pragma once

#include "gui_lib/widget/Widget.h"

namespace gui {

class WindowBase;

/// The part of a window's header that drags the window; private to the header. Order: a drag begins with a press of the
/// main button and holds the mouse until its release, which brings the header back onto the screen.
class VORLEX_API Dragger : public Widget {
public:
    explicit Dragger(WindowBase& window);

    virtual void startDrag(osg::Vec2i const& point, MouseButton newButton);

    // Widget:
    char const* getWidgetType() const override;
    void onMouseMove(osg::Vec2i const& point) override;
    void onMouseDown(osg::Vec2i const& point, MouseButton newButton) override;
    void onMouseDoubleClick(osg::Vec2i const& point, MouseButton newButton) override;
    void onMouseUp(osg::Vec2i const& point, MouseButton newButton) override;
    void onMouseReleased() override;

private:
    WindowBase* getWindow_() const;
    void bringWindowBack_();

    WidgetHandler* window;
    /// The held button; 0 when not dragging.
    MouseButton button = MouseButtonNone;
    osg::Vec2i lastMouse;
};

}  // namespace gui
