#include "gui_lib/controls/scroll/HorzScrollBar.h"

namespace gui {

HorzScrollBar::HorzScrollBar(bool noSkin) : ScrollBar(Horz) {
    if (!noSkin)
        dress_("horzScrollBarSkin");
}

Widget* HorzScrollBar::clone() const { return dressCopy_(new HorzScrollBar(true)); }

char const* HorzScrollBar::getWidgetType() const { return "HorzScrollBar"; }

}  // namespace gui
