#include "tests/skins/SkinTree.h"

#include <cmath>
#include <cstdlib>

#include "platform/qor/Lua.h"
#include "platform/qor/Paths.h"

#include <gtest/gtest.h>
#include <lua.hpp>

namespace skintest {

namespace {

/// Calls each function of the global "Skin" twice.
void callSkinFunctions(lua_State* L, SkinFile& file) {
    lua_getglobal(L, "SkinTablesConstant");
    file.constantTables = lua_toboolean(L, -1) != 0;
    lua_getglobal(L, "Skin");
    ASSERT_TRUE(lua_istable(L, -1));
    for (lua_pushnil(L); lua_next(L, -2) != 0; lua_pop(L, 1)) {
        std::string const name = lua_tostring(L, -2);
        ASSERT_TRUE(lua_isfunction(L, -1)) << name;
        for (int call = 0; call < 2; ++call) {
            lua_pushvalue(L, -1 - call);
            lua_call(L, 0, 1);
        }
        EXPECT_TRUE(!file.constantTables || lua_rawequal(L, -1, -2)) << name << " makes its table anew";
        file.skins[name] = readValue(L, -1);
        lua_pop(L, 2);
    }
}

double calcLuminance(Color const& color) {
    auto const linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

}  // namespace

Value readValue(lua_State* L, int index) {
    Value value;
    switch (lua_type(L, index)) {
        case LUA_TBOOLEAN:
            value.kind = Value::Kind::Boolean;
            value.number = lua_toboolean(L, index);
            break;
        case LUA_TNUMBER:
            value.kind = Value::Kind::Number;
            value.number = lua_tonumber(L, index);
            break;
        case LUA_TSTRING:
            value.kind = Value::Kind::String;
            value.text = lua_tostring(L, index);
            break;
        case LUA_TTABLE:
            value.kind = Value::Kind::Table;
            lua_pushvalue(L, index);
            for (lua_pushnil(L); lua_next(L, -2) != 0; lua_pop(L, 1)) {
                lua_pushvalue(L, -2);
                std::string const key = lua_tostring(L, -1);
                lua_pop(L, 1);
                value.fields[key] = readValue(L, -1);
            }
            lua_pop(L, 1);
            break;
        default:
            break;
    }
    return value;
}

Value const* Value::find(std::string const& key) const {
    auto const found = fields.find(key);
    return found == fields.end() ? nullptr : &found->second;
}

SkinFile readSkinFile(std::string const& name) {
    qor::addAssetRoot("assets");
    SkinFile file;
    lua_State* const L = QOR_lua_open("skin test");
    QOR_lua_openlibs(L);
    bool const loaded = QOR_lua_loadfile(L, name.c_str()) == 0 && QOR_lua_pcall(L, 0, 0, 0) == 0;
    EXPECT_TRUE(loaded) << name << ": " << (loaded ? "" : lua_tostring(L, -1));
    if (loaded) {
        qor::string error;
        EXPECT_TRUE(qor::luaProtected(
            L, [&file](lua_State* state) { callSkinFunctions(state, file); }, &error))
            << error;
    }
    QOR_lua_close(L);
    return file;
}

bool isColor(std::string const& text) {
    return text.size() == 10 && text.compare(0, 2, "0x") == 0 &&
           text.find_first_not_of("0123456789abcdef", 2) == std::string::npos;
}

Color parseColor(Value const* value) {
    unsigned long const bits = value == nullptr ? 0 : std::strtoul(value->text.c_str(), nullptr, 16);
    auto const channel = [bits](int shift) { return double((bits >> shift) & 255) / 255.0; };
    return {channel(24), channel(16), channel(8), channel(0)};
}

Color blend(Color const& above, Color const& below) {
    auto const mix = [&above](double front, double back) { return front * above.alpha + back * (1 - above.alpha); };
    return {mix(above.red, below.red), mix(above.green, below.green), mix(above.blue, below.blue), 1};
}

double calcContrast(Color const& one, Color const& other) {
    double const first = calcLuminance(one) + 0.05;
    double const second = calcLuminance(other) + 0.05;
    return first > second ? first / second : second / first;
}

}  // namespace skintest
