#pragma once

#include <osg/Vec2f>
#include <osg/Vec4f>

#include "gui_lib/graphics/GraphicCommand.h"

namespace gui {

/// Draws a circle around the model-view origin.
class VORLEX_API GraphicCommandDrawCircle : public SimpleGraphicCommand<GraphicCommandDrawCircle> {
public:
    GraphicCommandDrawCircle* set(osg::Vec4f const& color, float radius, unsigned int segments);
    void draw() override;

private:
    osg::Vec4f color = osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f);
    float radius = 1.0f;
    unsigned segments = 16;
};

/// Draws a bar filled to a value.
class VORLEX_API GraphicCommandDrawLifeBar : public SimpleGraphicCommand<GraphicCommandDrawLifeBar> {
public:
    GraphicCommandDrawLifeBar* set(osg::Vec4f const& color, osg::Vec2f const& size, float value);
    void draw() override;

private:
    osg::Vec4f color = osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f);
    osg::Vec2f size = osg::Vec2f(10.0f, 3.0f);
    float value = 0.0f;
};

}  // namespace gui
