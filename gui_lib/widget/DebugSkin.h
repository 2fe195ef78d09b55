#pragma once

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/widget/Widget.h"

namespace gui {

/// The outline that GUI's debug mode lays over a widget. It shows its own drawables only: the widget's skin has drawn
/// the children already, and a target of the widget is no business of the outline.
class DebugSkin final : public skin::Skin {
public:
    explicit DebugSkin(Widget* widget) : Skin(widget, true) {}

protected:
    // Skin:
    void drawChildren_() override {}
    void makeChildren_(GraphicCommands*) override {}
    void updateTarget_() override {}
    /// Without a target nothing is zoomed.
    osg::Vec2i getWidgetNonZoomedSize_() const override { return widget->getSize(); }
};

}  // namespace gui
