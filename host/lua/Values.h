#pragma once

#include <osg/Vec2d>
#include <osg/Vec2i>
#include <osg/Vec4f>

#include "gui_lib/base/Align.h"
#include "gui_lib/base/Align2.h"
#include "gui_lib/base/Insets.h"
#include "gui_lib/layouts/AnchorLayout.h"
#include "platform/qor/String.h"

struct lua_State;

/// The values of properties in window files. More forms are read than skins have, and a wrong one is told apart, so
/// that it can be reported. What is pushed can be read back.
namespace host::lua {

/// For each type: `wants` says in words what is read, `push` pushes one value, `read` answers false and changes nothing
/// if the value has none of the forms.
template <class T>
struct Value;

#define VORLEX_LUA_VALUE(Type, words)                           \
    template <>                                                 \
    struct Value<Type> {                                        \
        static constexpr char const* wants = words;             \
        static void push(lua_State* L, Type const& value);      \
        static bool read(lua_State* L, int index, Type& value); \
    }

VORLEX_LUA_VALUE(bool, "true or false");
VORLEX_LUA_VALUE(int, "a number");
VORLEX_LUA_VALUE(float, "a number");
VORLEX_LUA_VALUE(double, "a number");
/// UTF-8 in Lua.
VORLEX_LUA_VALUE(qor::wstring, "a text");
VORLEX_LUA_VALUE(qor::string, "a text");
VORLEX_LUA_VALUE(osg::Vec2i, "two numbers, as in {320, 240}");
VORLEX_LUA_VALUE(osg::Vec2d, "two numbers, as in {0, 100}");
VORLEX_LUA_VALUE(osg::Vec4f, "a colour, as in \"#ff8000\", \"0xff8000ff\" or {1, 0.5, 0, 1}");
VORLEX_LUA_VALUE(gui::Insets, "a number, or {left, top, right, bottom}");
VORLEX_LUA_VALUE(gui::Align,
                 "an align: \"left\", \"center\", \"right\", \"top\", \"middle\", \"bottom\", \"stretch\", or with "
                 "an offset, as in {\"left\", 8}");
VORLEX_LUA_VALUE(gui::Align2, "two aligns, as in {\"left\", \"middle\"}");
VORLEX_LUA_VALUE(gui::AnchorLayout::AnchorInfo,
                 "aligns of the four edges, as in {left = \"min\", top = \"min\", right = \"max\", bottom = \"min\"}");

#undef VORLEX_LUA_VALUE

/// Pushes the value at `index`; of a table, a copy without metatables, also of those in it. For what `luautil` reads:
/// that looks at metatables, whose functions may do anything.
void pushPlain(lua_State* L, int index);

}  // namespace host::lua
