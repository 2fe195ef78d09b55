#pragma once

#include "gui_lib/widget/Widget.h"

namespace gui {

/// A label with text and picture that can be turned about a point. Skin "staticSkin".
class VORLEX_API Static : public Widget {
public:
    /// With `noSkin` a subclass supplies the skin.
    explicit Static(bool noSkin = false);

    /// Gives the target angle and pivot too.
    void copyParams(Static* target) const;

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;

    /// Degrees, counter-clockwise on the screen. Marks nothing: the next draw shows it. A turned label is not clipped
    /// to itself.
    virtual void setAngle(double degrees);
    virtual double getAngle() const;
    /// The point that stays in place, widget coordinates.
    virtual void setPivotPoint(osg::Vec2i const& point);
    virtual osg::Vec2i getPivotPoint() const;

protected:
    virtual void onAngleChanged_(double degrees);
    virtual void onPivotPointChanged_(osg::Vec2i const& point);

    // Widget:
    void drawModelView_() override;
    void makeModelView_(GraphicCommands* commands) override;

    double angle = 0.0;
    double angleRadians = 0.0;
    osg::Vec2i pivotPoint;
};

}  // namespace gui
