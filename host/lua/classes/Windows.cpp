#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/BuddyWindow.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/OffscreenWindow.h"
#include "gui_lib/windows/OverlayWindow.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowHeader.h"
#include "gui_lib/windows/WindowView.h"
#include "host/lua/Builder.h"
#include "host/lua/ClassList.h"
#include "host/lua/LuaCallback.h"
#include "host/lua/Objects.h"
#include "platform/qor/Truncate.h"

#include <lua.hpp>

namespace host::lua {

namespace {

using gui::WindowBase;
using D = Define<WindowBase>;

// --- Overlay widgets ---

void pushOverlays(lua_State* L, Object object) {
    WindowBase const& self = as<WindowBase>(object);
    lua_newtable(L);
    for (int i = 0; i < self.getOverlayWidgetCount(); ++i) {
        pushObject(L, {self.getOverlayWidget(i)});
        lua_rawseti(L, -2, i + 1);
    }
}

/// Replaces all.
bool assignOverlays(lua_State* L, int index, Object object) {
    if (!lua_istable(L, index))
        return false;
    WindowBase& self = as<WindowBase>(object);
    gui::WidgetHandler* const handler = self.getHandler();
    luaL_where(L, 1);
    qor::string const position = lua_tostring(L, -1);
    Builder builder(L);
    auto const overlays = builder.makeList(index, position);
    builder.clearOverlays(self);
    for (gui::WidgetHandler* const overlay : overlays)
        if (gui::WidgetHandler::get(handler))
            builder.insertOverlay(overlay, self);
    builder.finish();
    return true;
}

// --- Hot keys ---

void pushHotKeys(lua_State* L, Object object) { LuaCallback::pushAll(L, *object.widget, EventKind::HotKey); }

/// Adds those of the table; false takes one away.
bool assignHotKeys(lua_State* L, int index, Object object) {
    if (!lua_istable(L, index))
        return false;
    bool right = true;
    lua_pushvalue(L, index);
    lua_pushnil(L);
    for (; lua_next(L, -2); lua_pop(L, 1)) {
        LuaCallback::Slot slot;
        bool const named = lua_type(L, -2) == LUA_TSTRING && (lua_isfunction(L, -1) || lua_isboolean(L, -1)) &&
                           LuaCallback::findSlot(EventKind::HotKey, lua_tostring(L, -2), slot);
        right = right && named;
        if (named)
            LuaCallback::attach(L, lua_gettop(L), *object.widget, slot);
    }
    lua_pop(L, 1);
    return right;
}

// --- The classes ---

void addWindowBase(ClassList& list) {
    ClassBinding& base = list.emplace_back(D::binding("WindowBase", "Container"));
    D::addChildren(base);
    base.properties = {
        D::property<&WindowBase::getSurfaceId, &WindowBase::setSurfaceId>("surfaceId"),
        D::property<&WindowBase::getHasCursor, &WindowBase::setHasCursor>("hasCursor"),
        D::property<&WindowBase::getDraggable, &WindowBase::setDraggable>("draggable"),
        D::property<&WindowBase::getResizable, &WindowBase::setResizable>("resizable"),
        D::property<&WindowBase::getClipResizeCursor, &WindowBase::setClipResizeCursor>("clipResizeCursor"),
        D::property<&WindowBase::getAsWidget, &WindowBase::setAsWidget>("asWidget"),
        D::property(
            "hasCloseButton",
            [](WindowBase& self) { return self.getHeader() && self.getHeader()->getHasCloseButton(); },
            [](WindowBase& self, bool has) {
                if (gui::WindowHeader* const header = self.getHeader())
                    header->setHasCloseButton(has);
            },
            Stage::Late),
        // The top of the stack, which the new one replaces.
        D::property(
            "cursor", [](WindowBase& self) { return self.getMouseCursor(); },
            [](WindowBase& self, int cursor) {
                self.popMouseCursor();
                self.pushMouseCursor(cursor);
            }),
        {"overlays", "a list of widgets", pushOverlays, assignOverlays, Stage::ByBuilder},
        {"hotKeys", "functions by their keys, as in {[\"ctrl+s\"] = save}", pushHotKeys, assignHotKeys,
         Stage::Callbacks},
        D::part("header", [](WindowBase& self) -> gui::Widget* { return self.getHeader(); }),
        D::part("view", [](WindowBase& self) -> gui::Widget* { return self.getView(); }),
    };
    base.events = {{"onClose", EventKind::Widget, WindowBase::closeCallbackName}};
    base.methods = {
        D::method("pushCursor",
                  [](lua_State* L, WindowBase& self) {
                      self.pushMouseCursor(qor::truncateToInt(luaL_checknumber(L, 2)));
                      return 0;
                  }),
        D::method("popCursor",
                  [](lua_State*, WindowBase& self) {
                      self.popMouseCursor();
                      return 0;
                  }),
        D::method("focusNext",
                  [](lua_State*, WindowBase& self) {
                      self.setNextWidgetFocused();
                      return 0;
                  }),
        D::method("focusPrevious",
                  [](lua_State*, WindowBase& self) {
                      self.setPrevWidgetFocused();
                      return 0;
                  }),
        D::method("close",
                  [](lua_State*, WindowBase& self) {
                      self.close();
                      return 0;
                  }),
        D::method("kill",
                  [](lua_State*, WindowBase& self) {
                      self.kill();
                      return 0;
                  }),
        D::method("center",
                  [](lua_State*, WindowBase& self) {
                      self.centerWindow();
                      return 0;
                  }),
    };
}

template <class WindowClass>
ClassBinding& addOrdered(ClassList& list, char const* word) {
    using W = Define<WindowClass>;
    ClassBinding& binding = list.emplace_back(W::binding(word, "WindowBase", [] { return new WindowClass; }));
    binding.properties = {W::template property<&WindowClass::getZOrder, &WindowClass::setZOrder>("zOrder")};
    return binding;
}

}  // namespace

void addWindows(ClassList& list) {
    addWindowBase(list);
    addOrdered<gui::Window>(list, "Window")
        .properties.push_back(
            Define<gui::Window>::property<&gui::Window::getTransparentForUserInput,
                                          &gui::Window::setTransparentForUserInput>("transparentForUserInput"));
    addOrdered<gui::OverlayWindow>(list, "OverlayWindow");
    addOrdered<gui::OffscreenWindow>(list, "OffscreenWindow");

    using M = Define<gui::ModalWindow>;
    list.emplace_back(M::binding("ModalWindow", "WindowBase", [] { return new gui::ModalWindow(false); }))
        .properties = {M::property<&gui::ModalWindow::getLockFlow, &gui::ModalWindow::setLockFlow>("lockFlow")};

    using P = Define<gui::PopupWindow>;
    list.emplace_back(P::binding("PopupWindow", "WindowBase", [] { return new gui::PopupWindow; })).properties = {
        P::property<&gui::PopupWindow::getActive, &gui::PopupWindow::setActive>("active", Stage::Final)};

    using B = Define<gui::BuddyWindow>;
    ClassBinding& buddy =
        list.emplace_back(B::binding("BuddyWindow", "PopupWindow", [] { return new gui::BuddyWindow; }));
    B::addChildren(buddy);
    Property property = B::part("buddy", [](gui::BuddyWindow& self) { return self.getBuddyWidget(); });
    property.wants = "a widget that lives already, or false for none";
    property.assign = [](lua_State* L, int index, Object object) {
        Object widget;
        if (!readObject(L, index, widget) && lua_toboolean(L, index))
            return false;
        as<gui::BuddyWindow>(object).setBuddyWidget(widget.widget);
        return true;
    };
    buddy.properties = {property};
}

}  // namespace host::lua
