#pragma once

#include <functional>

#include <osg/Vec2i>

#include "gui_lib/graphics/GraphicCommand.h"

namespace gui {

/// Calls functions of the recorder's when played. Threads: on the playing thread.
class VORLEX_API GraphicCommandDrawFunc : public SimpleGraphicCommand<GraphicCommandDrawFunc> {
public:
    /// Either function may be empty; `redraw` gets the size (GUI units) at each preparation.
    GraphicCommandDrawFunc* set(std::function<void()> draw, osg::Vec2i const& size,
                                std::function<void(osg::Vec2i const&)> redraw);
    void doRedraw() override;
    void draw() override;

private:
    osg::Vec2i size;
    std::function<void()> drawFunction;
    std::function<void(osg::Vec2i const&)> redrawFunction;
};

}  // namespace gui
