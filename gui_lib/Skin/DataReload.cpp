// How data follows a changed skin file and keeps what the program has changed since it was read.

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/LookChanges.h"
#include "gui_lib/Skin/StateInfo.h"
#include "platform/qor/Lua.h"

#include <lua.hpp>

namespace gui::skin {

namespace {

bool isSame(lua_State* L, int a, int b);

// Whether every field of table a is the same in table b.
bool isWithin(lua_State* L, int a, int b) {
    qor::LuaStackGuard const guard(L);
    lua_pushnil(L);
    while (lua_next(L, a)) {
        int const value = lua_gettop(L);
        lua_pushvalue(L, value - 1);
        lua_rawget(L, b);
        if (!isSame(L, value, value + 1))
            return false;
        lua_settop(L, value - 1);
    }
    return true;
}

// Values as parameters have them: numbers, texts, and tables of such.
bool isSame(lua_State* L, int a, int b) {
    if (!lua_istable(L, a) || !lua_istable(L, b))
        return lua_rawequal(L, a, b) != 0;
    return lua_checkstack(L, 8) && isWithin(L, a, b) && isWithin(L, b, a);
}

// For every key, of either table, whose value in `was` differs from that in `before`: puts the value into `target`.
bool copyChanges(lua_State* L, int was, int before, int target) {
    bool changed = false;
    for (int const table : {was, before}) {
        lua_pushnil(L);
        while (lua_next(L, table)) {
            int const key = lua_gettop(L) - 1;
            lua_settop(L, key);
            for (int const side : {was, before}) {
                lua_pushvalue(L, key);
                lua_rawget(L, side);
            }
            if (!isSame(L, key + 1, key + 2)) {
                changed = true;
                lua_pushvalue(L, key);
                lua_pushvalue(L, key + 1);
                lua_rawset(L, target);
            }
            lua_settop(L, key);
        }
    }
    return changed;
}

}  // namespace

std::unique_ptr<Data> Data::makeNew_() const { return std::make_unique<Data>(nullptr); }

void Data::reload_(Data const& before, Data const& after, lua_State* scratch) {
    reloadParams_(before, after, scratch);
    loaded = loaded || after.loaded;
    std::shared_ptr<StateTable> const looks = states;
    states = after.states;
    if (looks == before.states)
        return;
    std::unique_ptr<Data> const was = makeNew_();
    was->states = looks;
    for (auto const& [state, inners] : *looks)
        for (auto const& [inner, entry] : inners)
            keepChanges_(*was, before, static_cast<InteractiveState>(state), inner);
}

void Data::reloadParams_(Data const& before, Data const& after, lua_State* scratch) {
    qor::LuaStackGuard const guard(scratch);
    lua_checkstack(scratch, 16);
    int const base = lua_gettop(scratch);
    auto const pushParams = [scratch](Data const& source) {
        lua_createtable(scratch, 0, 0);
        source.unloadParamsToTable(scratch);
    };
    pushParams(*this);
    pushParams(before);
    after.copyParams_(this);
    pushParams(*this);
    if (copyChanges(scratch, base + 1, base + 2, base + 3))
        loadParamsFromTable(scratch);
}

void Data::keepChanges_(Data const& was, Data const& before, InteractiveState state, int inner) {
    keepLookChanges(was.getBkg(state, inner), before.getBkg(state, inner), getBkg(state, inner),
                    [&](Bkg::Info const* info) { setBkg(info, state, inner); });
    keepLookChanges(was.getImage(state, inner), before.getImage(state, inner), getImage(state, inner),
                    [&](Image::Info const* info) { setImage(info, state, inner); });
    keepLookChanges(was.getText(state, inner), before.getText(state, inner), getText(state, inner),
                    [&](Text::Info const* info) { setText(info, state, inner); });
}

}  // namespace gui::skin
