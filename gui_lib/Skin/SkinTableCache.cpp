#include "gui_lib/Skin/SkinTableCache.h"

#include <memory>
#include <new>
#include <typeindex>

#include "platform/qor/Containers.h"
#include "platform/qor/Lua.h"

#include <lua.hpp>

namespace gui::skin {

namespace {

struct Key {
    void const* table;
    std::type_index reader;

    bool operator==(Key const&) const = default;
};

struct KeyHash {
    // Few classes read the same table.
    std::size_t operator()(Key const& key) const { return qor::FnvHash<void const*>()(key.table); }
};

using Entries = qor::hash_map<Key, std::shared_ptr<void>, KeyHash>;

// A file that claims constant tables but makes new ones each time must not fill the memory.
constexpr std::size_t mostEntries = 4096;

// Its address is the registry key of the entries.
char const registryKey = 0;

// Where the entries of the state that was asked last are; a registry tells states apart.
void const* lastRegistry = nullptr;
Entries* lastEntries = nullptr;

void forgetLast() { lastRegistry = nullptr; }

Entries* findEntries(lua_State* L) {
    void const* const registry = lua_topointer(L, LUA_REGISTRYINDEX);
    if (lastRegistry == registry)
        return lastEntries;
    if (!lua_checkstack(L, 1))
        return nullptr;
    lua_pushlightuserdata(L, const_cast<char*>(&registryKey));
    lua_rawget(L, LUA_REGISTRYINDEX);
    auto* const entries = static_cast<Entries*>(lua_touserdata(L, -1));
    lua_pop(L, 1);
    if (entries) {
        lastRegistry = registry;
        lastEntries = entries;
    }
    return entries;
}

int destroyEntries(lua_State* L) {
    forgetLast();
    static_cast<Entries*>(lua_touserdata(L, 1))->~Entries();
    return 0;
}

// The environment of the userdata holds the tables, so that their addresses are not used again.
Entries* makeEntries(lua_State* L) {
    lua_pushlightuserdata(L, const_cast<char*>(&registryKey));
    auto* const entries = new (lua_newuserdata(L, sizeof(Entries))) Entries;
    lua_createtable(L, 0, 1);
    lua_pushcfunction(L, destroyEntries);
    lua_setfield(L, -2, "__gc");
    lua_setmetatable(L, -2);
    lua_createtable(L, 0, 0);
    lua_setfenv(L, -2);
    lua_rawset(L, LUA_REGISTRYINDEX);
    return entries;
}

// Expects the table on the top of the stack.
void anchorTable(lua_State* L) {
    lua_pushlightuserdata(L, const_cast<char*>(&registryKey));
    lua_rawget(L, LUA_REGISTRYINDEX);
    lua_getfenv(L, -1);
    lua_pushvalue(L, -3);
    lua_pushboolean(L, 1);
    lua_rawset(L, -3);
    lua_pop(L, 2);
}

}  // namespace

bool SkinTableCache::getUsable(lua_State* L) {
    if (!current_ || !lua_istable(L, -1))
        return false;
    qor::LuaStackGuard const guard(L);
    return qor::luaGetGlobal(L, "SkinTablesConstant") == LUA_TBOOLEAN && lua_toboolean(L, -1);
}

std::shared_ptr<void> const* SkinTableCache::find_(lua_State* L, std::type_info const& reader) {
    Entries const* const entries = findEntries(L);
    if (!entries)
        return nullptr;
    auto const found = entries->find(Key{lua_topointer(L, -1), reader});
    return found == entries->end() ? nullptr : &found->second;
}

void SkinTableCache::clear(lua_State* L) {
    qor::LuaStackGuard const guard(L);
    lua_checkstack(L, 4);
    forgetLast();
    lua_pushlightuserdata(L, const_cast<char*>(&registryKey));
    lua_pushnil(L);
    lua_rawset(L, LUA_REGISTRYINDEX);
}

void SkinTableCache::keep(lua_State* L, std::type_info const& reader, std::shared_ptr<void> content) {
    // Making Lua objects may hit the memory limit; without them nothing is kept.
    qor::luaProtected(L, -1, [&](lua_State* state) {
        luaL_checkstack(state, 8, "skin");
        Entries* entries = findEntries(state);
        if (!entries)
            entries = makeEntries(state);
        if (entries->size() >= mostEntries)
            return;
        anchorTable(state);
        entries->insert_or_assign(Key{lua_topointer(state, -1), reader}, std::move(content));
    });
}

}  // namespace gui::skin
