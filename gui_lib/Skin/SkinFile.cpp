#include "gui_lib/Skin/SkinFile.h"

#include "platform/qor/Lua.h"

#include <lua.hpp>

namespace gui::skin {

namespace {

// Its address stands for "no value" in tables of values.
char const none = 0;
// Their addresses are the registry keys of what the run in force has changed.
char const changesKeys[2] = {};

enum Slot { Globals, Modules, SlotCount };

// Where a scope keeps what, from its base on.
int getTarget(int base, int slot) { return base + 1 + slot; }
int getSaved(int base, int slot) { return base + 1 + SlotCount + slot; }
int getBefore(int base, int slot) { return base + 1 + 2 * SlotCount + slot; }
int getMetatable(int base) { return base + 1 + 3 * SlotCount; }
constexpr int slotsHeight = 3 * SlotCount + 1;
/// Room that the results must leave on the stack.
constexpr int stackReserve = 1000;

void* getNone() { return const_cast<char*>(&none); }

// Pushes t[key] for the key at `key`, or the mark for no value.
void pushValue(lua_State* L, int t, int key) {
    lua_pushvalue(L, key);
    lua_rawget(L, t);
    if (lua_isnil(L, -1)) {
        lua_pop(L, 1);
        lua_pushlightuserdata(L, getNone());
    }
}

// t[key] = the value on the top of the stack, which goes.
void setValue(lua_State* L, int t, int key) {
    if (lua_touserdata(L, -1) == getNone()) {
        lua_pop(L, 1);
        lua_pushnil(L);
    }
    lua_pushvalue(L, key);
    lua_insert(L, -2);
    lua_rawset(L, t);
}

// Puts `values` into t and pushes a table of what was there in their place.
void exchange(lua_State* L, int t, int values) {
    lua_createtable(L, 0, 0);
    int const previous = lua_gettop(L);
    if (!lua_istable(L, values))
        return;
    lua_pushnil(L);
    while (lua_next(L, values)) {
        int const key = previous + 1;
        pushValue(L, t, key);
        lua_pushvalue(L, key);
        lua_insert(L, -2);
        lua_rawset(L, previous);
        setValue(L, t, key);
    }
}

void pushCopy(lua_State* L, int t) {
    lua_createtable(L, 0, 0);
    lua_pushnil(L);
    while (lua_next(L, t)) {
        lua_pushvalue(L, -2);
        lua_insert(L, -2);
        lua_rawset(L, -4);
    }
}

// For every key whose value in t differs from that in `before`: what `before` has.
void pushChanges(lua_State* L, int t, int before) {
    lua_createtable(L, 0, 0);
    int const changes = lua_gettop(L);
    for (int const table : {t, before}) {
        lua_pushnil(L);
        while (lua_next(L, table)) {
            lua_pop(L, 1);
            int const key = changes + 1;
            pushValue(L, before, key);
            pushValue(L, t, key);
            if (!lua_rawequal(L, -1, -2)) {
                lua_pushvalue(L, key);
                lua_pushvalue(L, -3);
                lua_rawset(L, changes);
            }
            lua_settop(L, key);
        }
    }
}

void pushTarget(lua_State* L, int slot) {
    lua_pushvalue(L, LUA_GLOBALSINDEX);
    if (slot == Globals)
        return;
    for (char const* const name : {"package", "loaded"}) {
        if (lua_istable(L, -1)) {
            lua_pushstring(L, name);
            lua_rawget(L, -2);
            lua_remove(L, -2);
        }
    }
    if (!lua_istable(L, -1)) {
        lua_pop(L, 1);
        lua_createtable(L, 0, 0);
    }
}

// Raw access runs no script, and outside a call memory is not capped: nothing here can fail.
void setMetatable(lua_State* L, int t, int metatable) {
    lua_pushvalue(L, metatable);
    lua_setmetatable(L, t);
}

}  // namespace

SkinFile::SkinFile(lua_State* L) : state_(L), base_(lua_gettop(L)) {
    lua_checkstack(L, slotsHeight + 16);
    for (int slot = 0; slot < SlotCount; ++slot)
        pushTarget(L, slot);
    for (int slot = 0; slot < SlotCount; ++slot) {
        lua_pushlightuserdata(L, const_cast<char*>(&changesKeys[slot]));
        lua_rawget(L, LUA_REGISTRYINDEX);
        exchange(L, getTarget(base_, slot), lua_gettop(L));
        lua_remove(L, -2);
    }
    for (int slot = 0; slot < SlotCount; ++slot)
        pushCopy(L, getTarget(base_, slot));
    if (!lua_getmetatable(L, getTarget(base_, Globals)))
        lua_pushnil(L);
    lua_pushnil(L);
    lua_setmetatable(L, getTarget(base_, Globals));
}

SkinFile::~SkinFile() {
    if (kept_) {
        // The results come down to where the scope began.
        lua_settop(state_, base_ + slotsHeight + results_);
        for (int i = 0; i < slotsHeight; ++i)
            lua_remove(state_, base_ + 1);
    } else {
        for (int slot = 0; slot < SlotCount; ++slot) {
            pushChanges(state_, getTarget(base_, slot), getBefore(base_, slot));
            exchange(state_, getTarget(base_, slot), lua_gettop(state_));
            exchange(state_, getTarget(base_, slot), getSaved(base_, slot));
        }
        setMetatable(state_, getTarget(base_, Globals), getMetatable(base_));
        lua_settop(state_, base_);
    }
}

bool SkinFile::run(qor::string const& file, qor::string& error) {
    int const height = lua_gettop(state_);
    if (QOR_lua_loadfile(state_, file.c_str()) != 0 || QOR_lua_pcall(state_, 0, LUA_MULTRET, 0) != 0) {
        qor::luaToString(state_, -1, error);
        lua_settop(state_, height);
        return false;
    }
    // More than leave room for calls are not kept.
    if (!lua_checkstack(state_, stackReserve))
        lua_settop(state_, height);
    results_ = lua_gettop(state_) - height;
    return true;
}

void SkinFile::keep() {
    for (int slot = 0; slot < SlotCount; ++slot) {
        lua_pushlightuserdata(state_, const_cast<char*>(&changesKeys[slot]));
        pushChanges(state_, getTarget(base_, slot), getBefore(base_, slot));
        lua_rawset(state_, LUA_REGISTRYINDEX);
    }
    kept_ = true;
}

bool SkinFile::callFunction(lua_State* L, qor::string const& name, qor::string& error) {
    int const height = lua_gettop(L);
    bool called = true;
    bool found = false;
    if (qor::luaGetGlobal(L, "Skin") == LUA_TTABLE && qor::luaGetField(L, -1, name.c_str()) == LUA_TFUNCTION) {
        called = QOR_lua_pcall(L, 0, 1, 0) == 0;
        if (!called)
            qor::luaToString(L, -1, error);
        found = called && lua_istable(L, -1);
    }
    if (found) {
        lua_remove(L, -2);
    } else {
        lua_settop(L, height);
        lua_pushnil(L);
    }
    return called;
}

}  // namespace gui::skin
