#include "host/lua/classes/Looks.h"

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/Skin/luautil.h"
#include "gui_lib/controls/buttons/CheckBoxData.h"
#include "gui_lib/controls/small/TooltipSkin.h"
#include "platform/qor/Lua.h"

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

/// Lays the fields of the table at `given` over those of the table at `all`.
void layOver(lua_State* L, int given, int all) {
    lua_pushnil(L);
    while (lua_next(L, given)) {
        lua_pushvalue(L, -2);
        lua_insert(L, -2);
        lua_rawset(L, all);
    }
}

/// Gives a look the fields that the table at `index` has.
template <class Info>
Info overlay(lua_State* L, int index, Info const& look) {
    luautil::setValue<Info>(L, look);
    int const merged = lua_gettop(L);
    layOver(L, index, merged);
    Info result;
    luautil::getValue<Info>(L, merged, result);
    lua_settop(L, merged - 1);
    return result;
}

/// The class that a member function belongs to.
template <class Class, class Result, class... Arguments>
Class* getClass(Result (Class::*)(Arguments...) const);

/// The skin's data, if it is of the class that has `get`.
template <auto get>
auto* getDataFor(Object const& object) {
    return dynamic_cast<decltype(getClass(get))>(getData(*object.widget));
}

template <class Info, auto get>
void pushLook(lua_State* L, Object object) {
    auto* const data = getDataFor<get>(object);
    Info const* const look = data ? (data->*get)(gui::skin::InteractiveStateReleased, 1) : nullptr;
    if (look)
        luautil::setValue<Info>(L, *look);
    else
        lua_pushnil(L);
}

/// Calls `edit(state, inner, look)` for every state that has such a look.
template <auto get, class DataClass, class Edit>
void forEachLook(DataClass& data, Edit edit) {
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
    auto* const data = getDataFor<get>(object);
    if (!data)
        return true;
    pushPlain(L, index);
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

// --- Skins by name ---

void pushName(lua_State* L, gui::skin::Skin const* skin) {
    qor::string const name = skin ? skin->getLoadedName() : qor::string();
    if (name.empty())
        lua_pushnil(L);
    else
        Value<qor::string>::push(L, name);
}

bool assignSkin(lua_State* L, int index, Object object) {
    qor::string name;
    if (!Value<qor::string>::read(L, index, name))
        return false;
    if (gui::skin::Skin* const own = object.widget->getWidgetSkin())
        own->load(name);
    return true;
}

bool assignTooltipSkin(lua_State* L, int index, Object object) {
    qor::string name;
    if (Value<qor::string>::read(L, index, name)) {
        gui::skin::TooltipSkin source(nullptr);
        source.load(name);
        object.widget->setTooltipSkin(&source);
        return true;
    }
    if (lua_toboolean(L, index))
        return false;
    object.widget->setTooltipSkin(nullptr);
    return true;
}

// --- All parameters of the skin's data ---

void pushParams(lua_State* L, Object object) {
    lua_newtable(L);
    if (Data const* const data = getData(*object.widget))
        data->unloadParamsToTable(L);
}

/// Whether each key of the table at `keys` is one of the table `a` or `b`.
bool hasEach(lua_State* L, int keys, int a, int b) {
    bool all = true;
    lua_pushnil(L);
    for (; lua_next(L, keys); lua_pop(L, 1)) {
        bool known = false;
        for (int const table : {a, b}) {
            lua_pushvalue(L, -2);
            lua_rawget(L, table);
            known = known || !lua_isnil(L, -1);
            lua_pop(L, 1);
        }
        all = all && known;
    }
    return all;
}

/// Sets those that the table names. False if it names one that there is not.
bool assignParams(lua_State* L, int index, Object object) {
    if (!lua_istable(L, index))
        return false;
    Data* const data = getData(*object.widget);
    if (!data)
        return true;
    qor::LuaStackGuard const guard(L);
    pushPlain(L, index);
    int const given = lua_gettop(L);
    pushParams(L, object);
    pushParams(L, object);
    layOver(L, given, given + 2);
    data->loadParamsFromTable(L);
    // A colour that shows nothing is not among them.
    pushParams(L, object);
    bool const known = hasEach(L, given, given + 1, given + 3);
    if (!known) {
        lua_settop(L, given + 1);
        data->loadParamsFromTable(L);
    }
    object.widget->getWidgetSkin()->updateWidget(true);
    return known;
}

}  // namespace

Property getCheckLookProperty() {
    using gui::skin::CheckBoxData;
    return look<gui::Image::Info, &CheckBoxData::getCheck, &CheckBoxData::setCheck>(
        "checkLook", "a table, as for a picture in a skin, or false for none");
}

qor::vector<Property> getLookProperties() {
    return {
        {"skin", "the name of a skin", [](lua_State* L, Object object) { pushName(L, object.widget->getWidgetSkin()); },
         assignSkin},
        {"skinParams", "a table, as the params of a skin", pushParams, assignParams},
        {"tooltipSkin", "the name of a skin, or false for none",
         [](lua_State* L, Object object) { pushName(L, object.widget->getTooltipSkin()); }, assignTooltipSkin},
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
