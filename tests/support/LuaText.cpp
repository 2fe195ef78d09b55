#include "tests/support/LuaText.h"

#include <map>

#include <gtest/gtest.h>

#include "platform/qor/Lua.h"

#include <lua.hpp>

namespace support {

namespace {

std::string describe(lua_State* L, int index) {
    int const top = lua_gettop(L);
    if (index < 0)
        index = top + index + 1;
    if (!lua_istable(L, index)) {
        lua_pushvalue(L, index);
        char const* const text = lua_tostring(L, -1);
        std::string result = lua_isboolean(L, index) ? (lua_toboolean(L, index) ? "true" : "false")
                             : text                  ? text
                                                     : luaL_typename(L, index);
        if (lua_type(L, index) == LUA_TSTRING)
            result = "'" + result + "'";
        lua_settop(L, top);
        return result;
    }
    std::map<std::string, std::string> fields;
    luaL_checkstack(L, 10, "describe");
    for (lua_pushnil(L); lua_next(L, index); lua_pop(L, 1))
        fields[describe(L, -2)] = describe(L, -1);
    std::string result = "{";
    for (auto const& [key, value] : fields)
        result += key + "=" + value + ",";
    return result + "}";
}

}  // namespace

LuaText::LuaText() : state_(QOR_lua_open("test")) { QOR_lua_openlibs(state_); }

LuaText::LuaText(std::string_view script) : LuaText() { run(script); }

LuaText::~LuaText() { QOR_lua_close(state_); }

void LuaText::run(std::string_view script) {
    int const top = lua_gettop(state_);
    bool const failed =
        luaL_loadbuffer(state_, script.data(), script.size(), "@test") != 0 || QOR_lua_pcall(state_, 0, 0, 0) != 0;
    EXPECT_FALSE(failed) << lua_tostring(state_, -1);
    lua_settop(state_, top);
}

void LuaText::push(std::string_view expression) {
    std::string const script = "return " + std::string(expression);
    bool const failed =
        luaL_loadbuffer(state_, script.data(), script.size(), "@test") != 0 || QOR_lua_pcall(state_, 0, 1, 0) != 0;
    EXPECT_FALSE(failed) << lua_tostring(state_, -1);
}

std::string LuaText::describeTop() const { return describe(state_, -1); }

int LuaText::getTop() const { return lua_gettop(state_); }

void LuaText::clearStack() { lua_settop(state_, 0); }

}  // namespace support
