#pragma once

#include "gui_lib/graphics/GraphicCommand.h"

namespace gui {

/// One step on the projection or its stack.
struct VORLEX_API ProjectionOp {
    enum Type : unsigned { ProjOrtho2D = 1, ProjPush = 2, ProjPop = 3 };

    unsigned type;
    /// Left, right, bottom and top in GUI units.
    float values[4];
};

class VORLEX_API GraphicCommandProjectionMatrix : public SimpleGraphicCommand<GraphicCommandProjectionMatrix> {
public:
    GraphicCommandProjectionMatrix* addOp(unsigned type, float left = 0.0f, float right = 0.0f, float bottom = 0.0f,
                                          float top = 0.0f);
    void draw() override;
    void release() override;

private:
    qor::vector<ProjectionOp> ops;
};

}  // namespace gui
