#include "gui_lib/Skin/luautil.h"

#include <cstdint>
#include <cstdlib>

#include "platform/qor/Lua.h"
#include "platform/qor/Truncate.h"

#include <lua.hpp>

namespace luautil {

namespace {

// Room for a value and what reading it needs.
constexpr int stackRoom = 8;

bool readNumber(lua_State* L, int index, double& number) {
    if (lua_type(L, index) != LUA_TNUMBER)
        return qor::luaToNumber(L, index, number);
    number = lua_tonumber(L, index);
    return true;
}

unsigned colorByte(float component) {
    // In single precision: k / 255 times 255 is k again for every byte.
    float const scaled = component * 255.0f;
    int const byte = qor::truncateToInt(scaled);
    return static_cast<unsigned>(byte < 0 ? 0 : byte > 255 ? 255 : byte);
}

}  // namespace

// --- Tables ---

KeyScope::KeyScope(lua_State* L, char const* key)
    : state_(L), top_(lua_gettop(L)), onTable_(top_ > 0 && lua_istable(L, -1) && lua_checkstack(L, stackRoom)) {
    if (onTable_)
        qor::luaGetField(L, -1, key);
}

KeyScope::~KeyScope() { lua_settop(state_, top_); }

bool KeyScope::isTable() const { return onTable_ && lua_istable(state_, -1); }

TableScope::TableScope(lua_State* L, int index)
    : state_(L), top_(lua_gettop(L)), onTable_(luautil::isTable(L, index) && lua_checkstack(L, stackRoom)) {
    if (onTable_)
        lua_pushvalue(L, index);
}

TableScope::~TableScope() { lua_settop(state_, top_); }

bool isTable(lua_State* L, int index) {
    // A relative index below the bottom of the stack names nothing.
    return (index > 0 || index <= LUA_REGISTRYINDEX || -index <= lua_gettop(L)) && lua_istable(L, index);
}

void pushTable(lua_State* L) {
    luaL_checkstack(L, stackRoom, "skin");
    lua_createtable(L, 0, 0);
}

void setField(lua_State* L, char const* key) {
    luaL_checkstack(L, stackRoom, key);
    lua_pushstring(L, key);
    lua_insert(L, -2);
    if (lua_getmetatable(L, -3)) {
        lua_pop(L, 1);
        lua_settable(L, -3);
    } else {
        lua_rawset(L, -3);
    }
}

// --- Colours ---

bool getColor(lua_State* L, int index, osg::Vec4f& color) {
    qor::string text;
    if (!getValue(L, index, text)) {
        color.set(0.0f, 0.0f, 0.0f, 0.0f);
        return false;
    }
    // A long is 64 bits wide here: what stands above the low 32 is dropped.
    auto const n = static_cast<std::uint32_t>(std::strtoul(text.c_str(), nullptr, 16));
    color.set(static_cast<float>((n >> 24) / 255.0), static_cast<float>(((n >> 16) & 255) / 255.0),
              static_cast<float>(((n >> 8) & 255) / 255.0), static_cast<float>((n & 255) / 255.0));
    return true;
}

void setColor(lua_State* L, osg::Vec4f const& color) {
    unsigned const r = colorByte(color.r()), g = colorByte(color.g());
    unsigned const b = colorByte(color.b()), a = colorByte(color.a());
    if (r == 0 && g == 0 && b == 0 && a == 0) {
        lua_pushnil(L);
        return;
    }
    qor::string text;
    text.format("0x%.2x%.2x%.2x%.2x", r, g, b, a);
    setValue(L, text);
}

// --- Plain values ---

template <>
bool getValue<bool>(lua_State* L, int index, bool& value) {
    if (lua_type(L, index) != LUA_TBOOLEAN)
        return false;
    value = lua_toboolean(L, index) != 0;
    return true;
}

template <>
void setValue<bool>(lua_State* L, bool const& value) {
    lua_pushboolean(L, value);
}

template <>
bool getValue<double>(lua_State* L, int index, double& value) {
    return readNumber(L, index, value);
}

template <>
void setValue<double>(lua_State* L, double const& value) {
    lua_pushnumber(L, value);
}

template <>
bool getValue<float>(lua_State* L, int index, float& value) {
    double number = 0.0;
    if (!readNumber(L, index, number))
        return false;
    value = static_cast<float>(number);
    return true;
}

template <>
void setValue<float>(lua_State* L, float const& value) {
    lua_pushnumber(L, value);
}

template <>
bool getValue<int>(lua_State* L, int index, int& value) {
    double number = 0.0;
    if (!readNumber(L, index, number))
        return false;
    value = qor::truncateToInt(number);
    return true;
}

template <>
void setValue<int>(lua_State* L, int const& value) {
    lua_pushnumber(L, value);
}

template <>
bool getValue<qor::basic_string<char>>(lua_State* L, int index, qor::basic_string<char>& value) {
    if (lua_type(L, index) != LUA_TSTRING)
        return qor::luaToString(L, index, value);
    std::size_t length = 0;
    char const* const text = lua_tolstring(L, index, &length);
    value.assign(text, length);
    return true;
}

template <>
void setValue<qor::basic_string<char>>(lua_State* L, qor::basic_string<char> const& value) {
    luaL_checkstack(L, stackRoom, "skin");
    lua_pushlstring(L, value.data(), value.size());
}

}  // namespace luautil
