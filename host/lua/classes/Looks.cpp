#include "host/lua/classes/Looks.h"

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/Skin/luautil.h"

#include <lua.hpp>

namespace host::lua {

namespace {

using gui::Widget;
using gui::skin::Data;
using D = Define<Widget>;

/// The states and inner states that skins tell apart.
constexpr int stateCount = 4;
constexpr int innerCount = 3;

Data* getData(Widget& widget) {
    gui::skin::Skin* const skin = widget.getWidgetSkin();
    return skin ? skin->getSkinData() : nullptr;
}

/// A property of the skin's data, with the type's own zero where there is none.
template <auto get, auto set>
Property parameter(char const* name) {
    using Type = std::decay_t<decltype(std::invoke(get, std::declval<Data&>()))>;
    return D::property(
        name,
        [](Widget& widget) {
            Data* const data = getData(widget);
            return data ? std::invoke(get, *data) : Type();
        },
        [](Widget& widget, Type const& value) {
            if (Data* const data = getData(widget))
                std::invoke(set, *data, value);
        });
}

/// Gives a look the fields that the table at `index` has.
template <class Info>
Info overlay(lua_State* L, int index, Info const& look) {
    luautil::setValue<Info>(L, look);
    int const merged = lua_gettop(L);
    lua_pushnil(L);
    while (lua_next(L, index)) {
        lua_pushvalue(L, -2);
        lua_insert(L, -2);
        lua_rawset(L, merged);
    }
    Info result;
    luautil::getValue<Info>(L, merged, result);
    lua_settop(L, merged - 1);
    return result;
}

template <class Info, auto get>
void pushLook(lua_State* L, Object object) {
    Data* const data = getData(*object.widget);
    Info const* const look = data ? (data->*get)(gui::skin::InteractiveStateReleased, 1) : nullptr;
    if (look)
        luautil::setValue<Info>(L, *look);
    else
        lua_pushnil(L);
}

/// Calls `edit(state, inner, look)` for every state that has such a look.
template <auto get, class Edit>
void forEachLook(Data& data, Edit edit) {
    for (int state = 0; state < stateCount; ++state)
        for (int inner = 1; inner <= innerCount; ++inner) {
            auto const interactive = gui::skin::InteractiveState(state);
            if (auto const* const look = (data.*get)(interactive, inner))
                edit(interactive, inner, *look);
        }
}

/// Every state that has such a look keeps what the table does not name. Where none has one, all get that of the table.
/// False takes the look away.
template <class Info, auto get, auto set>
bool assignLook(lua_State* L, int index, Object object) {
    bool const away = lua_isboolean(L, index) && !lua_toboolean(L, index);
    if (!lua_istable(L, index) && !away)
        return false;
    Data* const data = getData(*object.widget);
    if (!data)
        return true;
    lua_pushvalue(L, index);
    int const table = lua_gettop(L);
    bool const some = (data->*get)(gui::skin::InteractiveStateReleased, 1) != nullptr;
    if (!some && !away) {
        Info const look = overlay(L, table, Info());
        (data->*set)(&look, gui::skin::InteractiveStateReleased, 1);
    }
    if (some)
        forEachLook<get>(*data, [&](gui::skin::InteractiveState state, int inner, Info const& old) {
            Info const look = away ? Info() : overlay(L, table, old);
            (data->*set)(away ? nullptr : &look, state, inner);
        });
    lua_pop(L, 1);
    object.widget->getWidgetSkin()->updateWidget(true);
    return true;
}

template <class Info, auto get, auto set>
Property look(char const* name, char const* wants) {
    return {name, wants, pushLook<Info, get>, assignLook<Info, get, set>};
}

}  // namespace

qor::vector<Property> getLookProperties() {
    Property skin{"skin", "the name of a skin", nullptr, [](lua_State* L, int index, Object object) {
                      qor::string name;
                      if (!Value<qor::string>::read(L, index, name))
                          return false;
                      if (gui::skin::Skin* const own = object.widget->getWidgetSkin())
                          own->load(name);
                      return true;
                  }};
    return {
        skin,
        parameter<&Data::getMinSize, &Data::setMinSize>("minSize"),
        parameter<&Data::getMaxSize, &Data::setMaxSize>("maxSize"),
        parameter<&Data::getInsets, &Data::setInsets>("insets"),
        parameter<&Data::getTextWrapping, &Data::setTextWrapping>("textWrapping"),
        parameter<&Data::getUseEllipsis, &Data::setUseEllipsis>("useEllipsis"),
        look<gui::Text::Info, &Data::getText, &Data::setText>("textLook",
                                                              "a table, as for a text in a skin, or false for none"),
        look<gui::Image::Info, &Data::getImage, &Data::setImage>(
            "pictureLook", "a table, as for a picture in a skin, or false for none"),
        look<gui::Bkg::Info, &Data::getBkg, &Data::setBkg>("bkgLook",
                                                           "a table, as for a background in a skin, or false for none"),
    };
}

}  // namespace host::lua
