#pragma once

#include <functional>

#include "gui_lib/graphics/GraphicCommand.h"

namespace gui {

/// A function that runs when a list is played, before anything in it is prepared.
class VORLEX_API GraphicCommandParse : public SimpleGraphicCommand<GraphicCommandParse> {
public:
    GraphicCommandParse* set(std::function<void()> function);
    void draw() override;

private:
    std::function<void()> function;
};

}  // namespace gui
