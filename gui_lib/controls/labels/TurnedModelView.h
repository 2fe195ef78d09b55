#pragma once

#include <osg/Vec2i>

#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/frame/GUI.h"

namespace gui {

/// Sets a model-view guard, direct or recording, so that what is drawn turns about a pivot.
/// Coordinates: `pivot` in the widget, `targetPosition` of the widget in the target or surface, GUI units; `radians`
/// turn counter-clockwise on the screen.
template <class ModelViewGuard>
void turnModelView(ModelViewGuard& guard, double radians, osg::Vec2i const& pivot, osg::Vec2i const& targetPosition) {
    osg::Vec2i place = saturatingAdd(pivot, targetPosition);
    GUI const* const gui = GUI::get();
    // In a target the screen does not count.
    if (gui && !gui->getTargetWidget())
        place = saturatingAdd(place, gui->getScreenPosition());
    guard.makeIdentity();
    guard.makeTranslate(-static_cast<float>(pivot.x()), -static_cast<float>(pivot.y()), 0.0f);
    guard.makeRotate(static_cast<float>(radians), 0.0f, 0.0f, -1.0f);
    guard.setTranslate(static_cast<float>(place.x()), static_cast<float>(place.y()), 0.0f);
}

}  // namespace gui
