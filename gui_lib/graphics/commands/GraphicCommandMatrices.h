#pragma once

#include <osg/Matrixf>

#include "gui_lib/graphics/GraphicCommand.h"

namespace gui {

/// Replaces the model-view matrix.
class VORLEX_API GraphicCommandSetModelViewMatrix : public SimpleGraphicCommand<GraphicCommandSetModelViewMatrix> {
public:
    GraphicCommandSetModelViewMatrix* set(osg::Matrixf const& matrix);
    void draw() override;

private:
    osg::Matrixf matrix;
};

/// Multiplies the model-view matrix, with its own matrix on the left.
class VORLEX_API GraphicCommandPreMultModelViewMatrix
    : public SimpleGraphicCommand<GraphicCommandPreMultModelViewMatrix> {
public:
    GraphicCommandPreMultModelViewMatrix* set(osg::Matrixf const& matrix);
    void draw() override;

private:
    osg::Matrixf matrix;
};

}  // namespace gui
