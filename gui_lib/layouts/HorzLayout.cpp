#include "gui_lib/layouts/HorzLayout.h"

namespace gui {

HorzLayout::HorzLayout(int newGap) : LineLayout(newGap, AxisHorz) {}

Layout* HorzLayout::clone() const {
    auto* const copy = new HorzLayout;
    copySettings_(*copy);
    return copy;
}

char const* HorzLayout::getType() const { return "horz"; }

}  // namespace gui
