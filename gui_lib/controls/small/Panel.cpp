#include "gui_lib/controls/small/Panel.h"

#include "gui_lib/Skin/Skin.h"

namespace gui {

Panel::Panel() {
    skin = new skin::Skin(this, true);
    skin->load("panelSkin");
}

void Panel::copyParams(Panel* target) const {
    Container::copyParams(target);
    for (int i = 0; i < getWidgetCount(); ++i)
        if (Widget const* widget = getWidget(i))
            target->insertWidget(widget->clone(), -1);
}

Widget* Panel::clone() const {
    auto* const copy = new Panel;
    skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* Panel::getWidgetType() const { return "Panel"; }

}  // namespace gui
