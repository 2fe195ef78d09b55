#pragma once

#include <map>
#include <string>

struct lua_State;

/// A skin file as plain data: what its functions return, read once.
namespace skintest {

struct Value {
    enum class Kind { Nothing, Boolean, Number, String, Table };

    Kind kind = Kind::Nothing;
    double number = 0;
    std::string text;
    /// Keys that are numbers stand here in their string form.
    std::map<std::string, Value> fields;

    /// Null where there is no such field.
    Value const* find(std::string const& key) const;
};

/// Of the value at `index`; raises Lua errors.
Value readValue(lua_State* L, int index);

struct SkinFile {
    bool constantTables = false;
    std::map<std::string, Value> skins;
};

/// Runs a skin file and calls each of its functions. Fails the running test where that cannot be done, or where two
/// calls of one function give two tables although the file says that they do not change.
SkinFile readSkinFile(std::string const& name);

struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;
};

/// Of a skin's colour string; zeros for a missing value.
Color parseColor(Value const* value);
bool isColor(std::string const& text);

/// An opaque `below` seen through `above`.
Color blend(Color const& above, Color const& below);
/// The ratio of the two relative luminances, 1 to 21, as in the Web Content Accessibility Guidelines 2.
double calcContrast(Color const& one, Color const& other);

}  // namespace skintest
