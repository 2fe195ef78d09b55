// Which parts of Lua's standard library a script gets, and what stands in for the parts that could hang or reach out.

#include <algorithm>
#include <cmath>

#include "platform/qor/Log.h"
#include "platform/qor/LuaState.h"

#include <lua.hpp>

namespace qor {

namespace {

// --- Loading: text only ---

int finishLoad(lua_State* L, int status) {
    if (status == 0)
        return 1;
    lua_pushnil(L);
    lua_insert(L, -2);
    return 2;
}

int loadString(lua_State* L) {
    size_t size = 0;
    char const* const text = luaL_checklstring(L, 1, &size);
    return finishLoad(L, loadLuaText(L, text, size, luaL_optstring(L, 2, text)));
}

int loadPieces(lua_State* L) {
    luaL_checktype(L, 1, LUA_TFUNCTION);
    char const* const chunkName = luaL_optstring(L, 2, "=(load)");
    string text;
    size_t const most = getLuaLimits(L).memoryBytes;
    while (true) {
        lua_pushvalue(L, 1);
        lua_call(L, 0, 1);
        size_t size = 0;
        char const* const piece = lua_tolstring(L, -1, &size);
        if (!piece || size == 0)
            break;
        if (text.size() + size > most)
            luaL_error(L, "the chunk is longer than %d bytes", int(most));
        text.append(piece, size);
        chargeLua(L, 1 + size / 32);
        lua_pop(L, 1);
    }
    return finishLoad(L, loadLuaText(L, text.data(), text.size(), chunkName));
}

int loadFile(lua_State* L) { return finishLoad(L, loadLuaFile(L, luaL_checkstring(L, 1))); }

int doFile(lua_State* L) {
    if (loadLuaFile(L, luaL_checkstring(L, 1)) != 0)
        lua_error(L);
    int const base = lua_gettop(L) - 1;
    lua_call(L, 0, LUA_MULTRET);
    return lua_gettop(L) - base;
}

// Upvalue 1 is the table package. A module "a.b" is the file a/b.lua; a trusted chunk gets native modules instead,
// which no other chunk can reach.
int require(lua_State* L) {
    string const name = luaL_checkstring(L, 1);
    lua_settop(L, 1);
    if (isLuaTrusted(L, 1)) {
        loadNativeLuaModule(L, name.c_str());
        return 1;
    }
    lua_getfield(L, lua_upvalueindex(1), "loaded");
    lua_getfield(L, 2, name.c_str());
    if (lua_toboolean(L, -1))
        return 1;
    lua_pop(L, 1);
    lua_getfield(L, lua_upvalueindex(1), "preload");
    if (lua_istable(L, -1))
        lua_getfield(L, -1, name.c_str());
    else
        lua_pushnil(L);
    if (lua_isnil(L, -1)) {
        string path = name;
        std::replace(path.begin(), path.end(), '.', '/');
        path += ".lua";
        if (loadLuaFile(L, path.c_str()) != 0)
            luaL_error(L, "module '%s' cannot be loaded: %s", name.c_str(), lua_tostring(L, -1));
    }
    lua_pushvalue(L, 1);
    lua_call(L, 1, 1);
    if (lua_isnil(L, -1)) {
        lua_pop(L, 1);
        lua_pushboolean(L, 1);
    }
    lua_pushvalue(L, -1);
    lua_setfield(L, 2, name.c_str());
    return 1;
}

// --- Errors, memory, output ---

// Lua runs a handler inside the failing call, where the instruction hook may be off; this one unwinds first.
int extendedCall(lua_State* L) {
    luaL_checkany(L, 2);
    lua_settop(L, 2);
    lua_pushvalue(L, 1);
    int const status = lua_pcall(L, 0, LUA_MULTRET, 0);
    if (status == 0) {
        lua_pushboolean(L, 1);
        lua_replace(L, 2);
        return lua_gettop(L) - 1;
    }
    lua_pushvalue(L, 2);
    lua_insert(L, -2);
    lua_pcall(L, 1, 1, 0);
    lua_pushboolean(L, 0);
    lua_insert(L, -2);
    return 2;
}

int collectGarbage(lua_State* L) {
    static char const* const options[] = {"collect", "count",    "step",       "stop",
                                          "restart", "setpause", "setstepmul", nullptr};
    int const option = luaL_checkoption(L, 1, "collect", options);
    if (option == 1) {
        lua_pushnumber(L, double(getLuaMemory(L)) / 1024.0);
        return 1;
    }
    if (option == 0 || option == 2) {
        chargeLua(L, 1 + getLuaMemory(L) / 32);
        lua_gc(L, LUA_GCCOLLECT, 0);
    }
    lua_pushinteger(L, 0);
    return 1;
}

int print(lua_State* L) {
    string line;
    int const count = lua_gettop(L);
    for (int i = 1; i <= count; ++i) {
        if (luaL_callmeta(L, i, "__tostring"))
            lua_replace(L, i);
        string text;
        if (!luaToString(L, i, text))
            text = lua_isboolean(L, i) ? (lua_toboolean(L, i) ? "true" : "false") : luaL_typename(L, i);
        if (i > 1)
            line += '\t';
        line += text;
    }
    qor_logf("VORLEX", 64, "%s", line.c_str());
    return 0;
}

// --- Tables ---

// Upvalue 1 is the library's function, whose work grows with the table from the given position on.
template <bool hasPosition>
int callCharged(lua_State* L) {
    int const count = lua_gettop(L);
    if (lua_istable(L, 1)) {
        auto const length = double(lua_objlen(L, 1));
        double const from = hasPosition && lua_isnumber(L, 2) && count >= 2 ? lua_tonumber(L, 2) : 1.0;
        bool const atEnd = hasPosition && count < 3 && !(count == 2 && lua_isnumber(L, 2));
        if (!atEnd && length > from)
            chargeLua(L, uint64_t(length - std::max(from, 0.0)));
    }
    lua_pushvalue(L, lua_upvalueindex(1));
    lua_insert(L, 1);
    lua_call(L, count, LUA_MULTRET);
    return lua_gettop(L);
}

bool isLess(lua_State* L, int a, int b) {
    size_t const lengths = lua_type(L, a) == LUA_TSTRING && lua_type(L, b) == LUA_TSTRING
                               ? std::min(lua_objlen(L, a), lua_objlen(L, b))
                               : 0;
    chargeLua(L, 4 + lengths / 8);
    if (lua_isnil(L, 2))
        return lua_lessthan(L, a, b) != 0;
    int const top = lua_gettop(L);
    a = a < 0 ? top + a + 1 : a;
    b = b < 0 ? top + b + 1 : b;
    lua_pushvalue(L, 2);
    lua_pushvalue(L, a);
    lua_pushvalue(L, b);
    lua_call(L, 2, 1);
    bool const less = lua_toboolean(L, -1) != 0;
    lua_pop(L, 1);
    return less;
}

// Lets the value on the top of the stack, which it pops, sink from the hole at `root` to its place in the heap.
void sinkInHeap(lua_State* L, int root, int count) {
    int hole = root;
    while (hole * 2 <= count) {
        int child = hole * 2;
        lua_rawgeti(L, 1, child);
        if (child < count) {
            lua_rawgeti(L, 1, child + 1);
            if (isLess(L, -2, -1)) {
                lua_remove(L, -2);
                ++child;
            } else {
                lua_pop(L, 1);
            }
        }
        if (!isLess(L, -2, -1)) {
            lua_pop(L, 1);
            break;
        }
        lua_rawseti(L, 1, hole);
        hole = child;
    }
    lua_rawseti(L, 1, hole);
}

// A heap sort: its cost does not depend on the order found, nor on a comparison that makes no sense.
int sortTable(lua_State* L) {
    luaL_checktype(L, 1, LUA_TTABLE);
    if (!lua_isnoneornil(L, 2))
        luaL_checktype(L, 2, LUA_TFUNCTION);
    lua_settop(L, 2);
    luaL_checkstack(L, 8, "");
    auto const count = int(std::min<size_t>(lua_objlen(L, 1), size_t(1) << 30));
    for (int root = count / 2; root >= 1; --root) {
        lua_rawgeti(L, 1, root);
        sinkInHeap(L, root, count);
    }
    for (int last = count; last > 1; --last) {
        lua_rawgeti(L, 1, last);
        lua_rawgeti(L, 1, 1);
        lua_rawseti(L, 1, last);
        sinkInHeap(L, 1, last - 1);
    }
    return 0;
}

void wrapCharged(lua_State* L, char const* name, lua_CFunction wrapper) {
    lua_getfield(L, -1, name);
    lua_pushcclosure(L, wrapper, 1);
    lua_setfield(L, -2, name);
}

void setGlobalFunction(lua_State* L, char const* name, lua_CFunction function) {
    lua_pushcfunction(L, function);
    lua_setglobal(L, name);
}

void openLibrary(lua_State* L, lua_CFunction open, char const* name) {
    lua_pushcfunction(L, open);
    lua_pushstring(L, name);
    lua_call(L, 1, 0);
}

// The table package knows the open libraries and what the host preloads, and nothing of folders.
void openPackage(lua_State* L) {
    lua_createtable(L, 0, 2);
    lua_createtable(L, 0, 4);
    for (char const* name : {"string", "table", "math", "coroutine"}) {
        lua_getglobal(L, name);
        lua_setfield(L, -2, name);
    }
    lua_setfield(L, -2, "loaded");
    lua_createtable(L, 0, 0);
    lua_setfield(L, -2, "preload");
    lua_pushvalue(L, -1);
    lua_pushcclosure(L, require, 1);
    lua_setglobal(L, "require");
    lua_setglobal(L, "package");
}

// The debugger could switch the limits off; only the traceback is given out.
void openDebug(lua_State* L) {
    openLibrary(L, luaopen_debug, LUA_DBLIBNAME);
    lua_createtable(L, 0, 1);
    lua_getglobal(L, LUA_DBLIBNAME);
    lua_getfield(L, -1, "traceback");
    lua_setfield(L, -3, "traceback");
    lua_pop(L, 1);
    lua_setglobal(L, LUA_DBLIBNAME);
}

}  // namespace

}  // namespace qor

void QOR_lua_openlibs(lua_State* L) {
    using namespace qor;
    LuaStackGuard const guard(L);
    luaL_checkstack(L, 8, "");
    openLibrary(L, luaopen_base, "");
    openLibrary(L, luaopen_table, LUA_TABLIBNAME);
    openLibrary(L, luaopen_string, LUA_STRLIBNAME);
    openLibrary(L, luaopen_math, LUA_MATHLIBNAME);
    openDebug(L);
    openPackage(L);

    setGlobalFunction(L, "loadstring", loadString);
    setGlobalFunction(L, "load", loadPieces);
    setGlobalFunction(L, "loadfile", loadFile);
    setGlobalFunction(L, "dofile", doFile);
    setGlobalFunction(L, "xpcall", extendedCall);
    setGlobalFunction(L, "collectgarbage", collectGarbage);
    setGlobalFunction(L, "print", print);
    // A proxy's finaliser would run with the instruction hook off.
    lua_pushnil(L);
    lua_setglobal(L, "newproxy");

    lua_getglobal(L, LUA_TABLIBNAME);
    for (char const* name : {"insert", "remove"})
        wrapCharged(L, name, callCharged<true>);
    for (char const* name : {"concat", "foreach", "foreachi", "maxn"})
        wrapCharged(L, name, callCharged<false>);
    lua_pushcfunction(L, sortTable);
    lua_setfield(L, -2, "sort");
    lua_pop(L, 1);
    openLuaPatterns(L);
}
