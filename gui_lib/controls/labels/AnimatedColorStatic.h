#pragma once

#include <osg/Vec4f>

#include "gui_lib/controls/labels/Static.h"

namespace gui {

/// A label whose text can fade to a colour and back. Skin "animatedColorStaticSkin".
class VORLEX_API AnimatedColorStatic : public Static {
public:
    AnimatedColorStatic();

    /// Fades the text to the colour, holds it, and fades back, in the times of the skin.
    void setTextColor(osg::Vec4f const& color);
    /// Starts the picture's clock; the picture keeps its colour.
    void setImageColor(osg::Vec4f const& color);

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
};

}  // namespace gui
