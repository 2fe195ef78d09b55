#include "gui_lib/controls/scroll/ScrollBarData.h"

#include "gui_lib/Skin/luautil.h"

namespace gui::skin {

ScrollBarData::ScrollBarData(Skin* newOwner) : Data(newOwner) {}

void ScrollBarData::setHasButtons(bool has) {
    hasButtons = has;
    ownerSkinUpdateWidget(true);
}

bool ScrollBarData::getHasButtons() const { return hasButtons; }

void ScrollBarData::setThumbAlign(Align const& align) {
    thumbAlign = align;
    ownerSkinUpdateWidget(true);
}

Align const& ScrollBarData::getThumbAlign() const { return thumbAlign; }

void ScrollBarData::setIncreaseButtonAlign(Align const& align) {
    increaseButtonAlign = align;
    ownerSkinUpdateWidget(true);
}

Align const& ScrollBarData::getIncreaseButtonAlign() const { return increaseButtonAlign; }

void ScrollBarData::setDecreaseButtonAlign(Align const& align) {
    decreaseButtonAlign = align;
    ownerSkinUpdateWidget(true);
}

Align const& ScrollBarData::getDecreaseButtonAlign() const { return decreaseButtonAlign; }

void ScrollBarData::loadParams_(lua_State* L) {
    Data::loadParams_(L);
    luautil::getValue(L, "hasButtons", hasButtons);
    luautil::getAlign(L, "thumbAlign", thumbAlign);
    luautil::getAlign(L, "increaseButtonAlign", increaseButtonAlign);
    luautil::getAlign(L, "decreaseButtonAlign", decreaseButtonAlign);
}

void ScrollBarData::unloadParams_(lua_State* L) const {
    Data::unloadParams_(L);
    luautil::setValue(L, "hasButtons", hasButtons);
    luautil::setValue(L, "thumbAlign", thumbAlign);
    luautil::setValue(L, "increaseButtonAlign", increaseButtonAlign);
    luautil::setValue(L, "decreaseButtonAlign", decreaseButtonAlign);
}

void ScrollBarData::copyParams_(Data* other) const {
    Data::copyParams_(other);
    auto* const target = dynamic_cast<ScrollBarData*>(other);
    if (!target)
        return;
    target->hasButtons = hasButtons;
    target->thumbAlign = thumbAlign;
    target->increaseButtonAlign = increaseButtonAlign;
    target->decreaseButtonAlign = decreaseButtonAlign;
}

std::unique_ptr<Data> ScrollBarData::makeNew_() const { return std::make_unique<ScrollBarData>(nullptr); }

}  // namespace gui::skin
