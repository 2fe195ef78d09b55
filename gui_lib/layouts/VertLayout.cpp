#include "gui_lib/layouts/VertLayout.h"

namespace gui {

VertLayout::VertLayout(int newGap) : LineLayout(newGap, AxisVert) {}

Layout* VertLayout::clone() const {
    auto* const copy = new VertLayout;
    copySettings_(*copy);
    return copy;
}

char const* VertLayout::getType() const { return "vert"; }

}  // namespace gui
