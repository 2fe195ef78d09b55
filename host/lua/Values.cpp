#include "host/lua/Values.h"

#include <cmath>
#include <utility>

#include "gui_lib/Skin/luautil.h"
#include "platform/qor/Lua.h"
#include "platform/qor/Truncate.h"
#include "platform/qor/Utf8.h"

#include <lua.hpp>

namespace host::lua {

namespace {

int absolute(lua_State* L, int index) { return index > 0 ? index : lua_gettop(L) + index + 1; }

/// What is nested deeper is no value of a property.
constexpr int mostDepth = 8;

// Reading runs no function of the file, since that might end what the value is for: metatables do not count.

/// Pushes the field `key` of the table at `index`.
void pushField(lua_State* L, int index, char const* key) {
    index = absolute(L, index);
    lua_pushstring(L, key);
    lua_rawget(L, index);
}

/// Pushes item `place` of the table at `index`, or else its field `key`.
void pushItemOf(lua_State* L, int index, int place, char const* key) {
    lua_rawgeti(L, index, place);
    if (!lua_isnil(L, -1))
        return;
    lua_pop(L, 1);
    pushField(L, index, key);
}

/// Item `place` of the table at `index`, or else its field `key`, read as a T.
template <class T>
bool readItem(lua_State* L, int index, int place, char const* key, T& value) {
    qor::LuaStackGuard const guard(L);
    pushItemOf(L, absolute(L, index), place, key);
    return Value<T>::read(L, -1, value);
}

bool hasItem(lua_State* L, int index, int place, char const* key) {
    qor::LuaStackGuard const guard(L);
    pushItemOf(L, absolute(L, index), place, key);
    return !lua_isnil(L, -1);
}

template <class T>
void pushItem(lua_State* L, int place, T const& value) {
    Value<T>::push(L, value);
    lua_rawseti(L, -2, place);
}

bool readAlignWord(lua_State* L, int index, gui::Align& value) {
    qor::LuaStackGuard const guard(L);
    index = absolute(L, index);
    lua_createtable(L, 0, 1);
    lua_pushvalue(L, index);
    lua_setfield(L, -2, "type");
    return luautil::getValue<gui::Align>(L, -1, value);
}

}  // namespace

void pushPlain(lua_State* L, int index) {
    auto const copy = [L](auto const& again, int from, int depth) {
        if (!lua_istable(L, from)) {
            lua_pushvalue(L, from);
            return;
        }
        luaL_checkstack(L, 10, "too many nested values");
        lua_newtable(L);
        int const made = lua_gettop(L);
        if (depth == mostDepth)
            return;
        lua_pushnil(L);
        for (; lua_next(L, from); lua_pop(L, 1)) {
            qor::chargeLua(L, 1);
            lua_pushvalue(L, -2);
            again(again, made + 2, depth + 1);
            lua_rawset(L, made);
        }
    };
    copy(copy, absolute(L, index), 0);
}

void Value<bool>::push(lua_State* L, bool const& value) { lua_pushboolean(L, value); }

bool Value<bool>::read(lua_State* L, int index, bool& value) { return luautil::getValue<bool>(L, index, value); }

void Value<double>::push(lua_State* L, double const& value) { lua_pushnumber(L, value); }

bool Value<double>::read(lua_State* L, int index, double& value) {
    if (lua_type(L, index) != LUA_TNUMBER || !std::isfinite(lua_tonumber(L, index)))
        return false;
    value = lua_tonumber(L, index);
    return true;
}

void Value<float>::push(lua_State* L, float const& value) { lua_pushnumber(L, value); }

bool Value<float>::read(lua_State* L, int index, float& value) {
    double number = 0.0;
    if (!Value<double>::read(L, index, number) || !std::isfinite(static_cast<float>(number)))
        return false;
    value = static_cast<float>(number);
    return true;
}

void Value<int>::push(lua_State* L, int const& value) { lua_pushinteger(L, value); }

bool Value<int>::read(lua_State* L, int index, int& value) {
    double number = 0.0;
    if (!Value<double>::read(L, index, number))
        return false;
    value = qor::truncateToInt(number);
    return true;
}

void Value<qor::string>::push(lua_State* L, qor::string const& value) {
    lua_pushlstring(L, value.data(), value.size());
}

bool Value<qor::string>::read(lua_State* L, int index, qor::string& value) { return qor::luaToString(L, index, value); }

void Value<qor::wstring>::push(lua_State* L, qor::wstring const& value) {
    Value<qor::string>::push(L, qor::wchar_to_utf8(value));
}

bool Value<qor::wstring>::read(lua_State* L, int index, qor::wstring& value) {
    qor::string text;
    if (!qor::luaToString(L, index, text))
        return false;
    qor::utf8_to_wchar(text, value);
    return true;
}

void Value<osg::Vec2i>::push(lua_State* L, osg::Vec2i const& value) {
    lua_createtable(L, 2, 0);
    pushItem<int>(L, 1, value.x());
    pushItem<int>(L, 2, value.y());
}

bool Value<osg::Vec2i>::read(lua_State* L, int index, osg::Vec2i& value) {
    int x = 0;
    int y = 0;
    if (!lua_istable(L, index) || !readItem(L, index, 1, "horz", x) || !readItem(L, index, 2, "vert", y))
        return false;
    value.set(x, y);
    return true;
}

void Value<osg::Vec2d>::push(lua_State* L, osg::Vec2d const& value) {
    lua_createtable(L, 2, 0);
    pushItem<double>(L, 1, value.x());
    pushItem<double>(L, 2, value.y());
}

bool Value<osg::Vec2d>::read(lua_State* L, int index, osg::Vec2d& value) {
    osg::Vec2d read;
    if (!lua_istable(L, index) || !readItem(L, index, 1, "horz", read.x()) || !readItem(L, index, 2, "vert", read.y()))
        return false;
    value = read;
    return true;
}

void Value<osg::Vec4f>::push(lua_State* L, osg::Vec4f const& value) {
    lua_createtable(L, 4, 0);
    for (int i = 0; i < 4; ++i)
        pushItem<float>(L, i + 1, value[i]);
}

bool Value<osg::Vec4f>::read(lua_State* L, int index, osg::Vec4f& value) {
    if (lua_istable(L, index)) {
        osg::Vec4f color(0, 0, 0, 1);
        if (!readItem(L, index, 1, "r", color[0]) || !readItem(L, index, 2, "g", color[1]) ||
            !readItem(L, index, 3, "b", color[2]) ||
            (hasItem(L, index, 4, "a") && !readItem(L, index, 4, "a", color[3])))
            return false;
        value = color;
        return true;
    }
    qor::string text;
    if (lua_type(L, index) != LUA_TSTRING || !qor::luaToString(L, index, text))
        return false;
    std::string_view digits = text;
    bool const web = digits.starts_with("#");
    digits.remove_prefix(web ? 1 : digits.starts_with("0x") ? 2 : 0);
    bool const opaque = web && digits.size() == 6;
    if ((digits.size() != 8 && !opaque) || digits.find_first_not_of("0123456789abcdefABCDEF") != digits.npos)
        return false;
    qor::string const full(qor::string(digits) + (opaque ? "ff" : ""));
    lua_pushlstring(L, full.data(), full.size());
    luautil::getColor(L, -1, value);
    lua_pop(L, 1);
    return true;
}

void Value<gui::Insets>::push(lua_State* L, gui::Insets const& value) {
    lua_createtable(L, 4, 0);
    int place = 0;
    for (int const side : {value.left, value.top, value.right, value.bottom})
        pushItem<int>(L, ++place, side);
}

bool Value<gui::Insets>::read(lua_State* L, int index, gui::Insets& value) {
    int all = 0;
    if (Value<int>::read(L, index, all)) {
        value = {all, all, all, all};
        return true;
    }
    if (!lua_istable(L, index))
        return false;
    gui::Insets sides;
    std::pair<char const*, int*> const keys[] = {
        {"left", &sides.left}, {"top", &sides.top}, {"right", &sides.right}, {"bottom", &sides.bottom}};
    for (int i = 0; i < 4; ++i)
        if (hasItem(L, index, i + 1, keys[i].first) && !readItem(L, index, i + 1, keys[i].first, *keys[i].second))
            return false;
    value = sides;
    return true;
}

void Value<gui::Align>::push(lua_State* L, gui::Align const& value) {
    static char const* const words[] = {"min", "center", "max", "stretch"};
    lua_createtable(L, 2, 0);
    lua_pushstring(L, value.type >= 0 && value.type < 4 ? words[value.type] : "");
    lua_rawseti(L, -2, 1);
    pushItem<int>(L, 2, value.offset);
}

bool Value<gui::Align>::read(lua_State* L, int index, gui::Align& value) {
    gui::Align align;
    if (lua_type(L, index) == LUA_TSTRING) {
        if (!readAlignWord(L, index, align))
            return false;
    } else {
        qor::LuaStackGuard const guard(L);
        index = absolute(L, index);
        if (!lua_istable(L, index))
            return false;
        pushItemOf(L, index, 1, "type");
        if (lua_type(L, -1) != LUA_TSTRING || !readAlignWord(L, -1, align) ||
            (hasItem(L, index, 2, "offset") && !readItem(L, index, 2, "offset", align.offset)))
            return false;
    }
    value = align;
    return true;
}

void Value<gui::Align2>::push(lua_State* L, gui::Align2 const& value) {
    lua_createtable(L, 2, 0);
    pushItem(L, 1, value.getHorzAlign());
    pushItem(L, 2, value.getVertAlign());
}

bool Value<gui::Align2>::read(lua_State* L, int index, gui::Align2& value) {
    gui::Align horz;
    gui::Align vert;
    if (!lua_istable(L, index) || !readItem(L, index, 1, "horz", horz) || !readItem(L, index, 2, "vert", vert))
        return false;
    value = gui::Align2(horz, vert);
    return true;
}

void Value<gui::AnchorLayout::AnchorInfo>::push(lua_State* L, gui::AnchorLayout::AnchorInfo const& value) {
    lua_createtable(L, 0, 4);
    std::pair<char const*, gui::Align const*> const edges[] = {
        {"left", &value.left}, {"top", &value.top}, {"right", &value.right}, {"bottom", &value.bottom}};
    for (auto const& [key, align] : edges) {
        Value<gui::Align>::push(L, *align);
        lua_setfield(L, -2, key);
    }
}

bool Value<gui::AnchorLayout::AnchorInfo>::read(lua_State* L, int index, gui::AnchorLayout::AnchorInfo& value) {
    if (!lua_istable(L, index))
        return false;
    gui::AnchorLayout::AnchorInfo info;
    std::pair<char const*, gui::Align*> const edges[] = {
        {"left", &info.left}, {"top", &info.top}, {"right", &info.right}, {"bottom", &info.bottom}};
    for (auto const& [key, align] : edges) {
        qor::LuaStackGuard const guard(L);
        pushField(L, index, key);
        if (!lua_isnil(L, -1) && !Value<gui::Align>::read(L, -1, *align))
            return false;
    }
    value = info;
    return true;
}

}  // namespace host::lua
