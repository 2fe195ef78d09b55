#include "gui_lib/graphics/commands/GraphicCommandParse.h"

#include <utility>

namespace gui {

GraphicCommandParse* GraphicCommandParse::set(std::function<void()> newFunction) {
    function = std::move(newFunction);
    return this;
}

void GraphicCommandParse::draw() {
    if (function)
        function();
}

}  // namespace gui
