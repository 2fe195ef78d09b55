#include <string_view>

#include "gui_lib/Skin/luautil.h"
#include "platform/qor/Log.h"

namespace luautil {

namespace {

struct AlignWord {
    std::string_view word;
    gui::Align::Type type;
};

constexpr AlignWord alignWords[] = {
    {"left", gui::Align::Min},      {"top", gui::Align::Min},       {"min", gui::Align::Min},
    {"center", gui::Align::Center}, {"middle", gui::Align::Center}, {"right", gui::Align::Max},
    {"bottom", gui::Align::Max},    {"max", gui::Align::Max},       {"stretch", gui::Align::Stretch},
};

bool findAlignType(std::string_view word, gui::Align::Type& type) {
    for (AlignWord const& entry : alignWords) {
        if (entry.word == word) {
            type = entry.type;
            return true;
        }
    }
    return false;
}

char const* getAlignWord(gui::Align::Type type) {
    switch (type) {
        case gui::Align::Min:
            return "min";
        case gui::Align::Center:
            return "middle";
        case gui::Align::Max:
            return "max";
        case gui::Align::Stretch:
            return "stretch";
    }
    qor_logf("VORLEX", 16, "Invalid align type!");
    return "";
}

}  // namespace

// --- Points and rectangles ---

template <>
bool getValue<osg::Vec2i>(lua_State* L, int index, osg::Vec2i& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    getValue(L, "horz", value.x());
    getValue(L, "vert", value.y());
    return true;
}

template <>
void setValue<osg::Vec2i>(lua_State* L, osg::Vec2i const& value) {
    pushTable(L);
    setValue(L, "horz", value.x());
    setValue(L, "vert", value.y());
}

template <>
bool getValue<osg::Vec4f>(lua_State* L, int index, osg::Vec4f& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    getValue(L, "r", value.r());
    getValue(L, "g", value.g());
    getValue(L, "b", value.b());
    getValue(L, "a", value.a());
    return true;
}

template <>
void setValue<osg::Vec4f>(lua_State* L, osg::Vec4f const& value) {
    pushTable(L);
    setValue(L, "r", value.r());
    setValue(L, "g", value.g());
    setValue(L, "b", value.b());
    setValue(L, "a", value.a());
}

template <>
bool getValue<osg::RectImpl<osg::Vec2i>>(lua_State* L, int index, osg::RectImpl<osg::Vec2i>& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    value = osg::RectImpl<osg::Vec2i>(0, 0, 0, 0);
    getValue(L, "x1", value.x1);
    getValue(L, "y1", value.y1);
    getValue(L, "x2", value.x2);
    getValue(L, "y2", value.y2);
    return true;
}

template <>
void setValue<osg::RectImpl<osg::Vec2i>>(lua_State* L, osg::RectImpl<osg::Vec2i> const& value) {
    osg::RectImpl<osg::Vec2i> const rect = value.isInverted() ? osg::RectImpl<osg::Vec2i>(0, 0, 0, 0) : value;
    pushTable(L);
    setValue(L, "x1", rect.x1);
    setValue(L, "y1", rect.y1);
    setValue(L, "x2", rect.x2);
    setValue(L, "y2", rect.y2);
}

// --- Insets and alignment ---

template <>
bool getValue<gui::Insets>(lua_State* L, int index, gui::Insets& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    getValue(L, "left", value.left);
    getValue(L, "top", value.top);
    getValue(L, "right", value.right);
    getValue(L, "bottom", value.bottom);
    return true;
}

template <>
void setValue<gui::Insets>(lua_State* L, gui::Insets const& value) {
    pushTable(L);
    setValue(L, "left", value.left);
    setValue(L, "top", value.top);
    setValue(L, "right", value.right);
    setValue(L, "bottom", value.bottom);
}

template <>
bool getValue<gui::Align>(lua_State* L, int index, gui::Align& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    qor::string word;
    getValue(L, "type", word);
    if (!findAlignType(word, value.type))
        return false;
    getValue(L, "offset", value.offset);
    return true;
}

template <>
void setValue<gui::Align>(lua_State* L, gui::Align const& value) {
    pushTable(L);
    setValue(L, "type", qor::string(getAlignWord(value.type)));
    setValue(L, "offset", value.offset);
}

bool getAlign(lua_State* L, char const* key, gui::Align& value) {
    gui::Align align;
    if (!getValue(L, key, align))
        return false;
    value = align;
    return true;
}

// --- Keys ---

template <>
bool getValue<gui::HotKey>(lua_State* L, int index, gui::HotKey& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    getValue(L, "altPressed", value.altPressed);
    getValue(L, "ctrlPressed", value.ctrlPressed);
    getValue(L, "shiftPressed", value.shiftPressed);
    qor::string button;
    getValue(L, "button", button);
    value.button = gui::getKeyboardButtonByName(button);
    return true;
}

template <>
void setValue<gui::HotKey>(lua_State* L, gui::HotKey const& value) {
    pushTable(L);
    setValue(L, "altPressed", value.altPressed);
    setValue(L, "ctrlPressed", value.ctrlPressed);
    setValue(L, "shiftPressed", value.shiftPressed);
    setValue(L, "button", qor::string(gui::getKeyboardButtonName(value.button)));
}

}  // namespace luautil
