#pragma once

#include "gui_lib/widget/Widget.h"

namespace gui {

/// The press logic of everything that is clicked: the main mouse button with capture, and the keys "space" and
/// "return". A click is a press and a release inside, or a key down and up. Handed to the skin: released, hover,
/// pressed, disabled.
class VORLEX_API ButtonBase : public Widget {
public:
    ButtonBase();
    ~ButtonBase() override;

    // Widget:
    skin::InteractiveState getInteractiveState() const override;
    bool getFocusable() const override;
    bool getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const override;
    void onMouseMove(osg::Vec2i const& point) override;
    void onMouseEnter(osg::Vec2i const& point) override;
    void onMouseLeave(osg::Vec2i const& point) override;
    void onMouseDown(osg::Vec2i const& point, MouseButton button) override;
    /// A second press.
    void onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) override;
    void onMouseUp(osg::Vec2i const& point, MouseButton button) override;
    void onMouseReleased() override;
    bool onKeyDown(KeyboardButton key, int modifiers) override;
    bool onKeyUp(KeyboardButton key, int modifiers) override;

protected:
    /// The widget was clicked; calls the "widget change" callbacks.
    virtual void changeState_();

    // Widget:
    void onFocusChanged_(bool newFocused) override;

    bool mousePressed = false;
    bool hovered = false;
    bool keyPressed = false;
};

}  // namespace gui
