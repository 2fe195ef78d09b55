#include "gui_lib/controls/scroll/VertScrollBar.h"

#include "gui_lib/widget/AliveGuard.h"

namespace gui {

VertScrollBar::VertScrollBar(bool noSkin) : ScrollBar(Vert) {
    if (!noSkin)
        dress_("vertScrollBarSkin");
}

Widget* VertScrollBar::clone() const { return dressCopy_(new VertScrollBar(true)); }

char const* VertScrollBar::getWidgetType() const { return "VertScrollBar"; }

void VertScrollBar::alignWidgets_() {
    AliveGuard const self(this);
    ScrollBar::alignWidgets_();
    if (self.alive())
        setDirty(DirtyChildren);
}

}  // namespace gui
