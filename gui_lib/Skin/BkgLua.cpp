#include "gui_lib/Skin/Bkg.h"

#include "gui_lib/Skin/luautil.h"
#include "platform/qor/Log.h"

namespace luautil {

namespace {

char const* getCellName(int cell) {
    static constexpr char const* names[gui::Bkg::CellCount] = {
        "left_top",     "center_top",  "right_top",     "left_center",  "center_center",
        "right_center", "left_bottom", "center_bottom", "right_bottom",
    };
    if (cell >= 0 && cell < gui::Bkg::CellCount)
        return names[cell];
    qor_logf("VORLEX", 64, "Invalid background cell type!");
    return "";
}

}  // namespace

template <>
bool getValue<gui::Bkg::Info>(lua_State* L, int index, gui::Bkg::Info& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    value = gui::Bkg::Info();
    getValue(L, "file", value.file);
    getValue(L, "rect", value.rect);
    getValue(L, "insets", value.insets);
    for (int cell = 0; cell < gui::Bkg::CellCount; ++cell)
        getColor(L, getCellName(cell), value.cellColors[cell]);
    return true;
}

template <>
void setValue<gui::Bkg::Info>(lua_State* L, gui::Bkg::Info const& value) {
    pushTable(L);
    setValue(L, "file", value.file);
    setValue(L, "rect", value.rect);
    setValue(L, "insets", value.insets);
    for (int cell = 0; cell < gui::Bkg::CellCount && cell < static_cast<int>(value.cellColors.size()); ++cell)
        setColor(L, getCellName(cell), value.cellColors[cell]);
}

}  // namespace luautil
