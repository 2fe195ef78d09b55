#include "gui_lib/Skin/Image.h"

#include "gui_lib/Skin/luautil.h"

namespace luautil {

template <>
bool getValue<gui::Image::Info>(lua_State* L, int index, gui::Image::Info& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    value = gui::Image::Info();
    getValue(L, "file", value.file);
    getColor(L, "color", value.color);
    getValue(L, "size", value.size);
    getValue(L, "rect", value.rect);
    getValue(L, "userTexSampler", value.userTexSampler);
    getValue(L, "resizeToFill", value.resizeToFill);
    getValue(L, "tileHorizontally", value.tileHorizontally);
    getValue(L, "tileVertically", value.tileVertically);
    gui::Align align;
    if (getAlign(L, "horzAlign", align))
        value.align.setHorzAlign(align);
    if (getAlign(L, "vertAlign", align))
        value.align.setVertAlign(align);
    return true;
}

template <>
void setValue<gui::Image::Info>(lua_State* L, gui::Image::Info const& value) {
    pushTable(L);
    setValue(L, "file", value.file);
    setColor(L, "color", value.color);
    setValue(L, "size", value.size);
    setValue(L, "rect", value.rect);
    setValue(L, "userTexSampler", value.userTexSampler);
    setValue(L, "resizeToFill", value.resizeToFill);
    setValue(L, "tileHorizontally", value.tileHorizontally);
    setValue(L, "tileVertically", value.tileVertically);
    setValue(L, "horzAlign", value.align.getHorzAlign());
    setValue(L, "vertAlign", value.align.getVertAlign());
}

}  // namespace luautil
