#include "gui_lib/graphics/commands/GraphicCommandDrawFunc.h"

#include <utility>

namespace gui {

GraphicCommandDrawFunc* GraphicCommandDrawFunc::set(std::function<void()> draw, osg::Vec2i const& newSize,
                                                    std::function<void(osg::Vec2i const&)> redraw) {
    drawFunction = std::move(draw);
    size = newSize;
    redrawFunction = std::move(redraw);
    return this;
}

void GraphicCommandDrawFunc::doRedraw() {
    if (redrawFunction)
        redrawFunction(size);
}

void GraphicCommandDrawFunc::draw() {
    if (drawFunction)
        drawFunction();
}

}  // namespace gui
