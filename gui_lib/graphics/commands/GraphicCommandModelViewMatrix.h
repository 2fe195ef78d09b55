#pragma once

#include "gui_lib/graphics/GraphicCommand.h"
#include "platform/qor/SmallVector.h"

class vtxRenderer;

namespace gui {

/// One step on the model-view matrix or its stack. Steps are composed after what the matrix holds; those named Set also
/// hand the matrix to the renderer.
struct VORLEX_API ModelViewOp {
    enum Type : unsigned {
        MvSetIdentity = 1,
        MvMakeIdentity = 2,
        MvSetTranslate = 3,
        MvMakeTranslate = 4,
        MvSetRotate = 5,
        MvMakeRotate = 6,
        MvPush = 7,
        MvPop = 8
    };

    ModelViewOp(unsigned opType, float x, float y, float z, float w) : type(opType), values{x, y, z, w} {}

    unsigned type;
    /// x, y, z in GUI units and 0, or the axis and the angle in radians.
    float values[4];
};

class VORLEX_API GraphicCommandModelViewMatrix : public SimpleGraphicCommand<GraphicCommandModelViewMatrix> {
public:
    GraphicCommandModelViewMatrix* addOp(unsigned type, float x = 0.0f, float y = 0.0f, float z = 0.0f,
                                         float w = 0.0f) {
        if (ops.size() < ops.capacity()) [[likely]]
            ops.emplace_back(type, x, y, z, w);
        else
            addFurtherOp_(ModelViewOp(type, x, y, z, w));
        return this;
    }
    void draw() override;
    void release() override {
        SimpleGraphicCommand::release();
        ops.clear();
    }

private:
    void addFurtherOp_(ModelViewOp const& op);
    void compose_(vtxRenderer& renderer) const;

    /// Room for turning about a pivot; one that is used for more keeps what it allocates.
    qor::small_vector<ModelViewOp, 4> ops;
};

}  // namespace gui
