#include "gui_lib/controls/scroll/ScrollPaneSkin.h"

#include "gui_lib/controls/scroll/ScrollBarSkin.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/controls/scroll/ScrollPaneBars.h"
#include "gui_lib/controls/scroll/ScrollPaneData.h"

namespace gui::skin {

ScrollPaneSkin::ScrollPaneSkin(ScrollPane* pane) : Skin(pane, false) { setSkinData(new ScrollPaneData(this), true); }

ScrollPaneData* ScrollPaneSkin::getSkinData() const { return dynamic_cast<ScrollPaneData*>(data); }

ScrollPane const* ScrollPaneSkin::getPane_() const { return dynamic_cast<ScrollPane const*>(widget); }

ScrollBarSkin* ScrollPaneSkin::getVertScrollBarSkin() const {
    ScrollPane const* const pane = getPane_();
    return pane && pane->getVertScrollBar() ? pane->getVertScrollBar()->getSkin() : nullptr;
}

ScrollBarSkin* ScrollPaneSkin::getHorzScrollBarSkin() const {
    ScrollPane const* const pane = getPane_();
    return pane && pane->getHorzScrollBar() ? pane->getHorzScrollBar()->getSkin() : nullptr;
}

void ScrollPaneSkin::copyTo(Skin* other) const {
    // The bars first: what a pane's skin says about them counts above their own, also when the skins are read again.
    if (auto const* const target = dynamic_cast<ScrollPaneSkin*>(other)) {
        if (ScrollBarSkin const* const vert = getVertScrollBarSkin())
            vert->copyTo(target->getVertScrollBarSkin());
        if (ScrollBarSkin const* const horz = getHorzScrollBarSkin())
            horz->copyTo(target->getHorzScrollBarSkin());
    }
    Skin::copyTo(other);
}

void ScrollPaneSkin::loadSubSkins_(lua_State* L) {
    loadSubSkin_(L, "vertScrollBar", getVertScrollBarSkin());
    loadSubSkin_(L, "horzScrollBar", getHorzScrollBarSkin());
}

void ScrollPaneSkin::unloadSubSkins_(lua_State* L) const {
    unloadSubSkin_(L, "vertScrollBar", getVertScrollBarSkin());
    unloadSubSkin_(L, "horzScrollBar", getHorzScrollBarSkin());
}

}  // namespace gui::skin
