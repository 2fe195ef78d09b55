#pragma once

#include "gui_lib/widget/Widget.h"

namespace gui {

class ScrollBar;

namespace skin {
class ScrollBarThumbSkin;
}

/// The part of a scroll bar that is dragged. Its own value follows the mouse exactly, while that of the bar keeps to
/// its steps. It borrows its skin from the bar's skin. Handed to the skin: released, hover, pressed while it is
/// dragged, disabled. Order: a drag begins with a press of the main button and holds the mouse until its release.
class VORLEX_API ScrollBarThumb : public Widget {
public:
    /// `borrowedSkin` may be null: the thumb shows nothing then.
    ScrollBarThumb(ScrollBar& bar, skin::ScrollBarThumbSkin* borrowedSkin);
    ~ScrollBarThumb() override;

    /// Lets go of the borrowed skin; the thumb shows nothing from then on.
    void returnSkin();
    /// Null once the bar has died.
    ScrollBar* getScrollBar() const;

    // Widget:
    char const* getWidgetType() const override;
    skin::InteractiveState getInteractiveState() const override;
    void onMouseMove(osg::Vec2i const& point) override;
    void onMouseEnter(osg::Vec2i const& point) override;
    void onMouseLeave(osg::Vec2i const& point) override;
    void onMouseDown(osg::Vec2i const& point, MouseButton button) override;
    void onMouseUp(osg::Vec2i const& point, MouseButton button) override;
    /// A drag ends as by the release of the button.
    void onMouseReleased() override;

    /// In units of the bar's range, with no limits.
    virtual void setValue(double newValue);
    virtual double getValue() const;

protected:
    virtual void onValueChanged_(double newValue);

    WidgetHandler* bar;
    double value;
    bool pressed = false;
    bool hovered = false;
    osg::Vec2i lastMouse;

private:
    void setHovered_(bool newHovered);
    /// Puts the thumb where the bar's value is and tells the listeners. May end this.
    void endDrag_();
};

}  // namespace gui
