#pragma once

#include <memory>

#include <osg/Vec2i>

#include "gui_lib/graphics/GraphicCommand.h"

class vtxFrameBuffer;

namespace gui {

/// Plays commands of its own into a frame buffer during `doRedraw`; `draw` does nothing.
/// Lifetime: the inner commands are released with this one.
class VORLEX_API GraphicCommandDrawToTarget : public SimpleGraphicCommand<GraphicCommandDrawToTarget> {
public:
    /// `size` is the clip inside the target, GUI units. Without a target nothing is played.
    GraphicCommandDrawToTarget* set(std::shared_ptr<vtxFrameBuffer> target, osg::Vec2i const& size,
                                    qor::vector<GraphicCommand*> const& commands);
    void doRedraw() override;
    void release() override;

private:
    void drawInner_(osg::Vec2i const& targetSize);

    std::shared_ptr<vtxFrameBuffer> target;
    osg::Vec2i size;
    qor::vector<GraphicCommand*> commands;
};

}  // namespace gui
