#include "gui_lib/windows/WindowData.h"

#include "gui_lib/Skin/luautil.h"

namespace gui::skin {

WindowData::WindowData(Skin* newOwner) : Data(newOwner) {}

void WindowData::setHeaderHeight(int height) {
    headerHeight = height;
    ownerSkinUpdateWidget(true);
}

int WindowData::getHeaderHeight() const { return headerHeight; }

void WindowData::loadParams_(lua_State* L) {
    Data::loadParams_(L);
    luautil::getValue(L, "headerHeight", headerHeight);
}

void WindowData::unloadParams_(lua_State* L) const {
    Data::unloadParams_(L);
    luautil::setValue(L, "headerHeight", headerHeight);
}

void WindowData::copyParams_(Data* other) const {
    Data::copyParams_(other);
    if (auto* const target = dynamic_cast<WindowData*>(other))
        target->headerHeight = headerHeight;
}

std::unique_ptr<Data> WindowData::makeNew_() const { return std::make_unique<WindowData>(nullptr); }

}  // namespace gui::skin
