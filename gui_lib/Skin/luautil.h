#pragma once

#include <osg/Vec2i>
#include <osg/Vec4f>

#include "gui_lib/Skin/Bkg.h"
#include "gui_lib/Skin/Image.h"
#include "gui_lib/Skin/Text.h"
#include "gui_lib/base/Align.h"
#include "gui_lib/base/HotKey.h"
#include "gui_lib/base/Insets.h"
#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/String.h"

struct lua_State;

/// The toolkit's types as Lua values, both ways. Reading is forgiving: a value of a wrong form changes nothing and is
/// not logged, but for words of enumerations. A class with a Lua form of its own declares a specialisation beside
/// itself. Reading never raises a Lua error, whatever metatables the values have. Writing may, when memory runs out or
/// a table has a metatable: write to such tables inside a protected call.
namespace luautil {

/// Reads the value at `index`. False if it is not of the wanted form; `value` is then unchanged.
template <class T>
bool getValue(lua_State* L, int index, T& value);
/// Pushes a new value.
template <class T>
void setValue(lua_State* L, T const& value);

/// A colour is a string of hexadecimal digits, 0xRRGGBBAA. Anything else sets all components to 0 and answers false.
VORLEX_API bool getColor(lua_State* L, int index, osg::Vec4f& color);
/// Pushes the string, or nil for a colour of four zeros.
VORLEX_API void setColor(lua_State* L, osg::Vec4f const& color);

// --- Keys of the table on the top of the stack ---

/// Pushes field `key` of the table on the top of the stack for a scope; the stack is as before at its end.
class VORLEX_API KeyScope {
public:
    KeyScope(lua_State* L, char const* key);
    ~KeyScope();
    KeyScope(KeyScope const&) = delete;
    KeyScope& operator=(KeyScope const&) = delete;

    /// There was a table; its field, which may be nil, is on the top of the stack.
    bool onTable() const { return onTable_; }
    /// The field is a table itself.
    bool isTable() const;

private:
    lua_State* state_;
    int top_;
    bool onTable_;
};

VORLEX_API bool isTable(lua_State* L, int index);

/// Puts a copy of the table at `index` on the top of the stack for a scope; without a table nothing is pushed.
class VORLEX_API TableScope {
public:
    TableScope(lua_State* L, int index);
    ~TableScope();
    TableScope(TableScope const&) = delete;
    TableScope& operator=(TableScope const&) = delete;

    bool onTable() const { return onTable_; }

private:
    lua_State* state_;
    int top_;
    bool onTable_;
};

/// Pushes a new table.
VORLEX_API void pushTable(lua_State* L);
/// Sets field `key` of the table below the top to the value on the top, and pops that.
VORLEX_API void setField(lua_State* L, char const* key);

template <class T>
bool getValue(lua_State* L, char const* key, T& value) {
    KeyScope const field(L, key);
    return field.onTable() && getValue<T>(L, -1, value);
}

template <class T>
void setValue(lua_State* L, char const* key, T const& value) {
    setValue<T>(L, value);
    setField(L, key);
}

/// An absent key gives a colour of zeros; without a table nothing changes.
inline bool getColor(lua_State* L, char const* key, osg::Vec4f& color) {
    KeyScope const field(L, key);
    return field.onTable() && getColor(L, -1, color);
}
inline void setColor(lua_State* L, char const* key, osg::Vec4f const& color) {
    setColor(L, color);
    setField(L, key);
}

/// For readers of an optional Align: `value` changes only if the key holds one, and then nothing of the old one stays.
VORLEX_API bool getAlign(lua_State* L, char const* key, gui::Align& value);

// --- The types ---

template <>
VORLEX_API bool getValue<bool>(lua_State* L, int index, bool& value);
template <>
VORLEX_API void setValue<bool>(lua_State* L, bool const& value);
/// A number, or a string that Lua takes as one, truncated towards 0.
template <>
VORLEX_API bool getValue<int>(lua_State* L, int index, int& value);
template <>
VORLEX_API void setValue<int>(lua_State* L, int const& value);
template <>
VORLEX_API bool getValue<float>(lua_State* L, int index, float& value);
template <>
VORLEX_API void setValue<float>(lua_State* L, float const& value);
template <>
VORLEX_API bool getValue<double>(lua_State* L, int index, double& value);
template <>
VORLEX_API void setValue<double>(lua_State* L, double const& value);
/// A string, or a number in its string form.
template <>
VORLEX_API bool getValue<qor::basic_string<char>>(lua_State* L, int index, qor::basic_string<char>& value);
template <>
VORLEX_API void setValue<qor::basic_string<char>>(lua_State* L, qor::basic_string<char> const& value);
/// {horz, vert}
template <>
VORLEX_API bool getValue<osg::Vec2i>(lua_State* L, int index, osg::Vec2i& value);
template <>
VORLEX_API void setValue<osg::Vec2i>(lua_State* L, osg::Vec2i const& value);
/// {r, g, b, a}, numbers; colours of skins are strings instead.
template <>
VORLEX_API bool getValue<osg::Vec4f>(lua_State* L, int index, osg::Vec4f& value);
template <>
VORLEX_API void setValue<osg::Vec4f>(lua_State* L, osg::Vec4f const& value);
/// {x1, y1, x2, y2}; absent sides are 0. An inverted rectangle is written as four zeros.
template <>
VORLEX_API bool getValue<osg::RectImpl<osg::Vec2i>>(lua_State* L, int index, osg::RectImpl<osg::Vec2i>& value);
template <>
VORLEX_API void setValue<osg::RectImpl<osg::Vec2i>>(lua_State* L, osg::RectImpl<osg::Vec2i> const& value);
/// {left, top, right, bottom}
template <>
VORLEX_API bool getValue<gui::Insets>(lua_State* L, int index, gui::Insets& value);
template <>
VORLEX_API void setValue<gui::Insets>(lua_State* L, gui::Insets const& value);
/// {type, offset}; false for an unknown word.
template <>
VORLEX_API bool getValue<gui::Align>(lua_State* L, int index, gui::Align& value);
template <>
VORLEX_API void setValue<gui::Align>(lua_State* L, gui::Align const& value);
/// {altPressed, ctrlPressed, shiftPressed, button}
template <>
VORLEX_API bool getValue<gui::HotKey>(lua_State* L, int index, gui::HotKey& value);
template <>
VORLEX_API void setValue<gui::HotKey>(lua_State* L, gui::HotKey const& value);

// A table resets a description to the defaults of the skin format before its keys are read.
template <>
VORLEX_API bool getValue<gui::Bkg::Info>(lua_State* L, int index, gui::Bkg::Info& value);
template <>
VORLEX_API void setValue<gui::Bkg::Info>(lua_State* L, gui::Bkg::Info const& value);
template <>
VORLEX_API bool getValue<gui::Image::Info>(lua_State* L, int index, gui::Image::Info& value);
template <>
VORLEX_API void setValue<gui::Image::Info>(lua_State* L, gui::Image::Info const& value);
template <>
VORLEX_API bool getValue<gui::Text::Info>(lua_State* L, int index, gui::Text::Info& value);
template <>
VORLEX_API void setValue<gui::Text::Info>(lua_State* L, gui::Text::Info const& value);

}  // namespace luautil
