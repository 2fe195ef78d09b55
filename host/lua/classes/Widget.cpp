#include "gui_lib/Skin/Skin.h"
#include "gui_lib/base/CallbackTypes.h"
#include "gui_lib/effects/ShaderEffectManager.h"
#include "gui_lib/effects/ShaderEffectParams.h"
#include "gui_lib/layouts/AnchorLayout.h"
#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/ModalWindow.h"
#include "host/lua/ClassList.h"
#include "host/lua/LuaCallback.h"
#include "host/lua/Objects.h"
#include "host/lua/classes/Looks.h"
#include "platform/qor/Lua.h"
#include "platform/qor/Utf8.h"

#include <lua.hpp>

namespace host::lua {

namespace {

using gui::AnchorLayout;
using gui::Widget;
using D = Define<Widget>;

gui::Container* getParent(Widget& widget) {
    return dynamic_cast<gui::Container*>(gui::WidgetHandler::get(widget.getParent()));
}

/// The top of the tree that the widget is in: the widget itself, if it has no parent.
Widget* getWindow(Widget& widget) {
    Widget* const root = widget.getRoot();
    return root ? root : &widget;
}

// A modal window that blocks runs whole frames, whose callbacks are no part of this call.
bool assignVisible(lua_State* L, int index, Object object) {
    bool visible = false;
    if (!Value<bool>::read(L, index, visible))
        return false;
    auto const* const modal = dynamic_cast<gui::ModalWindow*>(object.widget);
    if (visible && modal && modal->getLockFlow()) {
        qor::LuaPauseGuard const pause(L);
        object.widget->setVisible(true);
    } else {
        object.widget->setVisible(visible);
    }
    return true;
}

// --- Anchors: those of the place that the widget has among its parent's children ---

AnchorLayout* findAnchors(Widget& widget, int& place) {
    gui::Container const* const parent = getParent(widget);
    if (!parent)
        return nullptr;
    for (place = 0; place < parent->getWidgetCount(); ++place)
        if (parent->getWidget(place) == &widget)
            return dynamic_cast<AnchorLayout*>(gui::LayoutHandler::get(parent->getLayout()));
    return nullptr;
}

void pushAnchors(lua_State* L, Object object) {
    int place = 0;
    AnchorLayout* const layout = findAnchors(*object.widget, place);
    AnchorLayout::AnchorInfo const* const info = layout ? layout->getAnchorInfo(place) : nullptr;
    if (info)
        Value<AnchorLayout::AnchorInfo>::push(L, *info);
    else
        lua_pushnil(L);
}

bool assignAnchors(lua_State* L, int index, Object object) {
    AnchorLayout::AnchorInfo info;
    if (!Value<AnchorLayout::AnchorInfo>::read(L, index, info))
        return false;
    int place = 0;
    AnchorLayout* const layout = findAnchors(*object.widget, place);
    if (!layout)
        raise(L, "'anchors' count in an AnchorLayout only; give the parent one");
    while (layout->getAnchorInfoCount() <= place)
        layout->insertAnchorInfo({}, -1);
    layout->setAnchorInfo(info, place);
    return true;
}

// --- Callbacks by their words ---

template <EventKind kind>
void pushCallbacks(lua_State* L, Object object) {
    LuaCallback::pushAll(L, *object.widget, kind);
}

template <EventKind kind>
bool assignCallbacks(lua_State* L, int index, Object object) {
    if (!lua_istable(L, index))
        return false;
    gui::WidgetHandler const* const handler = object.widget->getHandler();
    bool right = true;
    lua_pushvalue(L, index);
    lua_pushnil(L);
    for (; lua_next(L, -2); lua_pop(L, 1)) {
        LuaCallback::Slot slot;
        bool const named = lua_type(L, -2) == LUA_TSTRING && lua_isfunction(L, -1) &&
                           LuaCallback::findSlot(kind, lua_tostring(L, -2), slot);
        right = right && named;
        if (named && gui::WidgetHandler::get(handler))
            LuaCallback::attach(L, lua_gettop(L), *object.widget, slot);
    }
    lua_pop(L, 1);
    return right;
}

// --- Methods ---

int findByPath(lua_State* L, Widget& self) {
    std::string_view path = luaL_checkstring(L, 2);
    Widget* found = &self;
    while (found) {
        std::size_t const end = path.find('/');
        std::string_view const name = path.substr(0, end);
        if (name.empty())
            raise(L, "find wants a name, or names with '/' between them, as in self:find(\"buttons/ok\")");
        found = found->findWidgetByName(qor::utf8_to_wchar(name));
        if (end == path.npos)
            break;
        path.remove_prefix(end + 1);
    }
    pushObject(L, {found});
    return 1;
}

int localize(lua_State* L, Widget& self) {
    luaL_checktype(L, 2, LUA_TTABLE);
    Widget::LocalizationMap texts;
    lua_pushnil(L);
    for (; lua_next(L, 2); lua_pop(L, 1)) {
        qor::wstring text;
        if (lua_type(L, -2) == LUA_TSTRING && Value<qor::wstring>::read(L, -1, text))
            texts[qor::utf8_to_wchar(lua_tostring(L, -2))] = text;
    }
    self.localize(texts);
    return 0;
}

// --- Effects ---

/// The numbers of the table at `index` by their names; false if it has anything else but its first item.
bool readEffectParams(lua_State* L, int index, gui::skin::ShaderEffectParams& params) {
    bool right = true;
    lua_pushnil(L);
    for (; lua_next(L, index); lua_pop(L, 1)) {
        float number = 0.0f;
        if (lua_type(L, -2) == LUA_TSTRING && Value<float>::read(L, -1, number))
            params[lua_tostring(L, -2)] = number;
        else if (lua_type(L, -2) != LUA_TNUMBER)
            right = false;
    }
    return right;
}

int setEffect(lua_State* L, Widget& self) {
    char const* const name = luaL_optstring(L, 2, nullptr);
    gui::skin::ShaderEffectParams params;
    if (lua_istable(L, 3))
        readEffectParams(L, 3, params);
    self.setShaderEffect(name, &params);
    return 0;
}

void pushEffect(lua_State* L, Object object) {
    gui::skin::Skin const* const skin = object.widget->getWidgetSkin();
    lua_pushstring(L, skin && gui::skin::ShaderEffectManager::exists()
                          ? gui::skin::ShaderEffectManager::get().getName(skin->getShaderEffect())
                          : nullptr);
}

bool assignEffect(lua_State* L, int index, Object object) {
    gui::skin::ShaderEffectParams params;
    lua_pushvalue(L, index);
    bool right = true;
    if (lua_istable(L, -1)) {
        right = readEffectParams(L, lua_gettop(L), params);
        lua_rawgeti(L, -1, 1);
        lua_replace(L, -2);
        right = right && lua_type(L, -1) == LUA_TSTRING;
    }
    right = right && (lua_type(L, -1) == LUA_TSTRING || !lua_toboolean(L, -1));
    if (right)
        object.widget->setShaderEffect(lua_type(L, -1) == LUA_TSTRING ? lua_tostring(L, -1) : nullptr, &params);
    lua_pop(L, 1);
    return right;
}

qor::vector<Event> getEvents() {
    return {
        {"onChange", EventKind::Widget, Widget::changeCallbackName},
        {"onFocus", EventKind::Widget, Widget::focusCallbackName},
        {"onPosition", EventKind::Widget, Widget::positionCallbackName},
        {"onSize", EventKind::Widget, Widget::sizeCallbackName},
        {"onMouseMove", EventKind::Mouse, "move"},
        {"onMouseDown", EventKind::Mouse, "down"},
        {"onMouseDoubleDown", EventKind::Mouse, "double down"},
        {"onMouseUp", EventKind::Mouse, "up"},
        {"onMouseReleased", EventKind::Mouse, "released"},
        {"onMouseEnter", EventKind::Mouse, "enter"},
        {"onMouseLeave", EventKind::Mouse, "leave"},
        {"onMouseWheel", EventKind::Wheel, "wheel"},
        {"onKeyDown", EventKind::Keyboard, "down"},
        {"onChar", EventKind::Keyboard, "char"},
        {"onKeyUp", EventKind::Keyboard, "up"},
    };
}

}  // namespace

void addWidget(ClassList& list) {
    ClassBinding& binding = list.emplace_back(D::binding("Widget", "", [] { return new Widget; }));
    constexpr char const* functions = "a table of functions by the words of its callbacks";
    binding.properties = {
        D::property<&Widget::getName, &Widget::setName>("name"),
        D::property<&Widget::getText, &Widget::setText>("text"),
        D::property<&Widget::getTooltipText, &Widget::setTooltipText>("tooltip"),
        D::property<&Widget::getResourceString, &Widget::setResourceString>("resourceString"),
        D::property<&Widget::getZoom, &Widget::setZoom>("zoom"),
        D::property<&Widget::getOpacity, &Widget::setOpacity>("opacity"),
        D::property<&Widget::getDrawToTarget, &Widget::setDrawToTarget>("drawToTarget"),
        D::property<&Widget::getPosition, &Widget::setPosition>("position"),
        D::property<&Widget::getSize, &Widget::setSize>("size"),
        D::property<&Widget::getTabOrder, &Widget::setTabOrder>("tabOrder"),
        D::property<&Widget::getEnabled, &Widget::setEnabled>("enabled"),
        {"anchors", Value<AnchorLayout::AnchorInfo>::wants, pushAnchors, assignAnchors, Stage::ByBuilder},
        {"callbacks", functions, pushCallbacks<EventKind::Widget>, assignCallbacks<EventKind::Widget>,
         Stage::Callbacks},
        {"mouse", functions, pushCallbacks<EventKind::Mouse>, assignCallbacks<EventKind::Mouse>, Stage::Callbacks},
        {"keyboard", functions, pushCallbacks<EventKind::Keyboard>, assignCallbacks<EventKind::Keyboard>,
         Stage::Callbacks},
        {"visible", Value<bool>::wants, [](lua_State* L, Object o) { lua_pushboolean(L, o.widget->getVisible(false)); },
         assignVisible, Stage::Final},
        D::property<&Widget::getFocused, &Widget::setFocused>("focused", Stage::Final),
        {"effect", "the name of an effect, a table as in {\"alpha\", duration = 2}, or false for none", pushEffect,
         assignEffect, Stage::Final},
        D::readOnly("type", [](Widget& widget) { return qor::string(widget.getWidgetType()); }),
        D::readOnly("prefSize", [](Widget& widget) { return widget.getPrefSize(); }),
        D::readOnly("focusable", [](Widget& widget) { return widget.getFocusable(); }),
        D::readOnly("screenPosition", [](Widget& widget) { return widget.widgetToScreen(osg::Vec2i(0, 0)); }),
        D::part("parent", [](Widget& widget) -> Widget* { return getParent(widget); }),
        D::part("window", [](Widget& widget) { return getWindow(widget); }),
    };
    // A size is limited by the look.
    qor::vector<Property> const looks = getLookProperties();
    binding.properties.insert(binding.properties.begin(), looks.begin(), looks.end());
    binding.events = getEvents();
    binding.methods = {
        D::method("find", [](lua_State* L, Widget& self) { return findByPath(L, self); }),
        D::method("localize", [](lua_State* L, Widget& self) { return localize(L, self); }),
        D::method("setEffect", [](lua_State* L, Widget& self) { return setEffect(L, self); }),
        D::method("destroy",
                  [](lua_State*, Widget& self) {
                      Widget::destroy(&self);
                      return 0;
                  }),
    };
}

}  // namespace host::lua
