#include "gui_lib/controls/scroll/ScrollPaneData.h"

#include "gui_lib/Skin/luautil.h"

namespace gui::skin {

ScrollPaneData::ScrollPaneData(Skin* newOwner) : Data(newOwner) {}

void ScrollPaneData::setVertScrollBarWidth(int width) {
    vertScrollBarWidth = width;
    ownerSkinUpdateWidget(true);
}

int ScrollPaneData::getVertScrollBarWidth() const { return vertScrollBarWidth; }

void ScrollPaneData::setHorzScrollBarHeight(int height) {
    horzScrollBarHeight = height;
    ownerSkinUpdateWidget(true);
}

int ScrollPaneData::getHorzScrollBarHeight() const { return horzScrollBarHeight; }

void ScrollPaneData::setPixelsPerWheelClick(int pixels) {
    pixelsPerWheelClick = pixels;
    ownerSkinUpdateWidget(true);
}

int ScrollPaneData::getPixelsPerWheelClick() const { return pixelsPerWheelClick; }

void ScrollPaneData::loadParams_(lua_State* L) {
    Data::loadParams_(L);
    luautil::getValue(L, "vertScrollBarWidth", vertScrollBarWidth);
    luautil::getValue(L, "horzScrollBarHeight", horzScrollBarHeight);
    luautil::getValue(L, "pixelsPerWheelClick", pixelsPerWheelClick);
}

void ScrollPaneData::unloadParams_(lua_State* L) const {
    Data::unloadParams_(L);
    luautil::setValue(L, "vertScrollBarWidth", vertScrollBarWidth);
    luautil::setValue(L, "horzScrollBarHeight", horzScrollBarHeight);
    luautil::setValue(L, "pixelsPerWheelClick", pixelsPerWheelClick);
}

void ScrollPaneData::copyParams_(Data* other) const {
    Data::copyParams_(other);
    auto* const target = dynamic_cast<ScrollPaneData*>(other);
    if (!target)
        return;
    target->vertScrollBarWidth = vertScrollBarWidth;
    target->horzScrollBarHeight = horzScrollBarHeight;
    target->pixelsPerWheelClick = pixelsPerWheelClick;
}

std::unique_ptr<Data> ScrollPaneData::makeNew_() const { return std::make_unique<ScrollPaneData>(nullptr); }

}  // namespace gui::skin
