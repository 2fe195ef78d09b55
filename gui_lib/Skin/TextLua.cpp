#include "gui_lib/Skin/Text.h"

#include "gui_lib/Skin/luautil.h"
#include "platform/qor/Log.h"

namespace luautil {

namespace {

void readBlur(lua_State* L, vtxFont::Blur& value) {
    int blur = 0;
    if (!getValue(L, "blur", blur))
        return;
    if (blur < vtxFont::BlurNone || blur > vtxFont::BlurLarge) {
        qor_logf("VORLEX", 16, "Invalid blur type!");
        blur = vtxFont::BlurNone;
    }
    value = static_cast<vtxFont::Blur>(blur);
}

}  // namespace

template <>
bool getValue<gui::Text::Info>(lua_State* L, int index, gui::Text::Info& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    value = gui::Text::Info();
    getValue(L, "font", value.font);
    getValue(L, "fontSize", value.fontSize);
    getValue(L, "lineHeight", value.lineHeight);
    getValue(L, "lineThroughHeight", value.lineThroughHeight);
    getValue(L, "lineThroughOffset", value.lineThroughOffset);
    readBlur(L, value.blur);
    getColor(L, "color", value.color);
    getColor(L, "bkgColor", value.bkgColor);
    getColor(L, "shadowColor", value.shadowColor);
    getColor(L, "blurColor", value.blurColor);
    getColor(L, "lineThroughColor", value.lineThroughColor);
    getValue(L, "shadowOffset", value.shadowOffset);
    gui::Align align;
    if (getAlign(L, "horzAlign", align))
        value.align.setHorzAlign(align);
    if (getAlign(L, "vertAlign", align))
        value.align.setVertAlign(align);
    return true;
}

template <>
void setValue<gui::Text::Info>(lua_State* L, gui::Text::Info const& value) {
    pushTable(L);
    setValue(L, "font", value.font);
    setValue(L, "fontSize", value.fontSize);
    setValue(L, "lineHeight", value.lineHeight);
    setValue(L, "lineThroughHeight", value.lineThroughHeight);
    setValue(L, "lineThroughOffset", value.lineThroughOffset);
    setValue(L, "blur", static_cast<int>(value.blur));
    setColor(L, "color", value.color);
    setColor(L, "bkgColor", value.bkgColor);
    setColor(L, "shadowColor", value.shadowColor);
    setColor(L, "blurColor", value.blurColor);
    setColor(L, "lineThroughColor", value.lineThroughColor);
    setValue(L, "shadowOffset", value.shadowOffset);
    setValue(L, "horzAlign", value.align.getHorzAlign());
    setValue(L, "vertAlign", value.align.getVertAlign());
}

}  // namespace luautil
