#include "gui_lib/Skin/StateInfo.h"

#include "gui_lib/Skin/LookEpoch.h"

#include <lua.hpp>

namespace gui::skin {

StateInfo::~StateInfo() { LookEpoch::advance(); }

void StateInfo::load(lua_State* L) {
    hasBkg = luautil::getValue(L, "bkg", bkg);
    hasImage = luautil::getValue(L, "picture", image);
    hasText = luautil::getValue(L, "text", text);
}

void StateInfo::unload(lua_State* L) const {
    if (hasBkg)
        luautil::setValue(L, "bkg", bkg);
    if (hasImage)
        luautil::setValue(L, "picture", image);
    if (hasText)
        luautil::setValue(L, "text", text);
}

}  // namespace gui::skin

namespace luautil {

template <>
bool getValue<gui::skin::StateInfo*>(lua_State* L, int index, gui::skin::StateInfo*& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    value = new gui::skin::StateInfo;
    value->load(L);
    return true;
}

template <>
void setValue<gui::skin::StateInfo>(lua_State* L, gui::skin::StateInfo const& value) {
    if (!value.hasBkg && !value.hasImage && !value.hasText) {
        lua_pushnil(L);
        return;
    }
    pushTable(L);
    value.unload(L);
}

}  // namespace luautil
