#include "gui_lib/Skin/luautil.h"
#include "gui_lib/controls/small/TabGroupItem.h"
#include "gui_lib/controls/small/TextureView.h"
#include "gui_lib/controls/small/Tooltip.h"
#include "host/lua/ClassList.h"

#include <lua.hpp>

namespace host::lua {

using gui::TabGroupItem;
using gui::TextureView;

/// As a skin describes a picture.
template <>
struct Value<gui::Image::Info> {
    static constexpr char const* wants = "a table, as for a picture in a skin";
    static void push(lua_State* L, gui::Image::Info const& value) { luautil::setValue(L, value); }
    static bool read(lua_State* L, int index, gui::Image::Info& value) { return luautil::getValue(L, index, value); }
};

void addSmall(ClassList& list) {
    using T = Define<TabGroupItem>;
    ClassBinding& tab = list.emplace_back(T::binding("TabGroupItem", "Widget", [] { return new TabGroupItem; }));
    tab.properties = {T::property<&TabGroupItem::getState, &TabGroupItem::setState>("state", Stage::Late)};
    tab.events = {
        {"onShow", EventKind::Widget, TabGroupItem::showCallbackName},
        {"onHide", EventKind::Widget, TabGroupItem::hideCallbackName},
    };

    // The texture itself is the program's: it outlives the view.
    using V = Define<TextureView>;
    ClassBinding& view = list.emplace_back(V::binding("TextureView", "Widget", [] { return new TextureView; }));
    view.properties = {
        V::property<&TextureView::getAngle, &TextureView::setAngle>("angle"),
        V::property<&TextureView::getPivotPoint, &TextureView::setPivotPoint>("pivotPoint"),
        V::property<&TextureView::getImageInfo, &TextureView::setImageInfo>("imageInfo"),
    };

    // Made by the windows manager alone.
    list.push_back(Define<gui::Tooltip>::binding("Tooltip", "Widget"));
}

}  // namespace host::lua
