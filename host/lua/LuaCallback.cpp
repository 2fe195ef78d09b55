#include "host/lua/LuaCallback.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "gui_lib/base/CallbackTypes.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "host/lua/Bindings.h"
#include "host/lua/Objects.h"
#include "platform/qor/Lua.h"
#include "platform/qor/Utf8.h"

#include <lua.hpp>

namespace host::lua {

namespace {

/// "ctrl+s" and the like. False for an unknown key.
bool parseHotKey(std::string_view text, gui::HotKey& key) {
    std::pair<std::string_view, bool*> const modifiers[] = {
        {"ctrl+", &key.ctrlPressed}, {"alt+", &key.altPressed}, {"shift+", &key.shiftPressed}};
    for (bool found = true; found;) {
        found = false;
        for (auto const& [word, pressed] : modifiers) {
            if (text.size() <= word.size() || !text.starts_with(word))
                continue;
            *pressed = found = true;
            text.remove_prefix(word.size());
        }
    }
    key.button = gui::getKeyboardButtonByName(qor::string(text));
    return key.button != gui::KeyNone;
}

/// The parsed form's only text.
qor::string writeHotKey(gui::HotKey const& key) {
    qor::string text;
    text += key.ctrlPressed ? "ctrl+" : "";
    text += key.altPressed ? "alt+" : "";
    text += key.shiftPressed ? "shift+" : "";
    return text + gui::getKeyboardButtonName(key.button);
}

/// "Button 'ok'", for messages.
qor::string describe(gui::Widget const& widget) {
    qor::string const name = qor::wchar_to_utf8(widget.getName());
    qor::string text(widget.getWidgetType());
    if (!name.empty())
        text += " '" + name + "'";
    return text;
}

template <class Function>
std::shared_ptr<std::function<Function>> entryAs(std::weak_ptr<void> const& entry) {
    return std::static_pointer_cast<std::function<Function>>(entry.lock());
}

}  // namespace

bool LuaCallback::findSlot(EventKind kind, std::string_view word, Slot& slot) {
    qor::string text(word);
    switch (kind) {
        case EventKind::Widget:
            break;
        case EventKind::Wheel:
            break;
        case EventKind::Mouse:
            if (word == "wheel")
                kind = EventKind::Wheel;
            else if (gui::getMouseCallbackType(text) == gui::MouseCallbackNone)
                return false;
            break;
        case EventKind::Keyboard:
            if (gui::getKeyboardCallbackType(text) == gui::KeyboardCallbackNone)
                return false;
            break;
        case EventKind::HotKey:
            gui::HotKey key;
            if (!parseHotKey(word, key))
                return false;
            text = writeHotKey(key);
            break;
    }
    slot = {kind, std::move(text)};
    return true;
}

void LuaCallback::attach(lua_State* L, int index, gui::Widget& widget, Slot const& slot) {
    Bindings& bindings = Bindings::open(L);
    if (LuaCallback* const old = find_(L, widget, slot)) {
        auto const kept = old->shared_from_this();
        kept->leave_();
    }
    if (!lua_isfunction(L, index))
        return;
    std::shared_ptr<LuaCallback> const callback(
        new LuaCallback(bindings.shared_from_this(), widget, slot, bindings.keep(L, index)));
    callback->enter_(widget);
}

void LuaCallback::detachAll(lua_State* L, gui::Widget& widget) {
    auto& all = Bindings::open(L).callbacks();
    while (true) {
        auto const found = all.find(widget.getHandler());
        if (found == all.end() || found->second.empty())
            return;
        std::shared_ptr<LuaCallback> const callback = found->second.back()->shared_from_this();
        callback->leave_();
    }
}

void LuaCallback::push(lua_State* L, gui::Widget const& widget, Slot const& slot) {
    LuaCallback const* const callback = find_(L, widget, slot);
    if (callback && callback->reference_ > 0)
        callback->bindings_->push(L, callback->reference_);
    else
        lua_pushnil(L);
}

void LuaCallback::pushAll(lua_State* L, gui::Widget const& widget, EventKind kind) {
    lua_newtable(L);
    auto const& all = Bindings::open(L).callbacks();
    auto const found = all.find(widget.getHandler());
    if (found == all.end())
        return;
    for (LuaCallback const* const callback : found->second) {
        bool const ofMouse = kind == EventKind::Mouse && callback->slot_.kind == EventKind::Wheel;
        if ((callback->slot_.kind != kind && !ofMouse) || callback->reference_ == 0)
            continue;
        lua_pushlstring(L, callback->slot_.word.data(), callback->slot_.word.size());
        callback->bindings_->push(L, callback->reference_);
        lua_rawset(L, -3);
    }
}

LuaCallback::LuaCallback(std::shared_ptr<Bindings> bindings, gui::Widget& widget, Slot slot, int reference)
    : bindings_(std::move(bindings)), widget_(widget.getHandler()), slot_(std::move(slot)), reference_(reference) {
    bindings_->callbacks()[widget_].push_back(this);
}

LuaCallback::~LuaCallback() { letGo_(); }

void LuaCallback::letGo_() {
    auto& all = bindings_->callbacks();
    auto const found = all.find(widget_);
    if (found != all.end()) {
        std::erase(found->second, this);
        if (found->second.empty())
            all.erase(found);
    }
    if (reference_ > 0)
        bindings_->release(std::exchange(reference_, 0));
}

LuaCallback* LuaCallback::find_(lua_State* L, gui::Widget const& widget, Slot const& slot) {
    auto const& all = Bindings::open(L).callbacks();
    auto const found = all.find(widget.getHandler());
    if (found == all.end())
        return nullptr;
    for (LuaCallback* const callback : found->second)
        if (callback->slot_ == slot)
            return callback;
    return nullptr;
}

// --- In the widget's tables ---

template <class Function, class Call>
std::shared_ptr<std::function<Function>> LuaCallback::makeEntry_(Call call) {
    auto const entry = std::make_shared<std::function<Function>>(std::move(call));
    entry_ = entry;
    return entry;
}

void LuaCallback::enter_(gui::Widget& widget) {
    auto const self = shared_from_this();
    auto const simple = [self] { self->run_([](lua_State*) { return 0; }); };
    auto const withPoint = [self](int x, int y, int last) {
        return self->run_([=](lua_State* L) {
            for (int const value : {x, y, last})
                lua_pushinteger(L, value);
            return 3;
        });
    };
    switch (slot_.kind) {
        case EventKind::Widget:
            widget.addWidgetCallback(gui::getWidgetCallbackType(slot_.word), makeEntry_<void()>(simple));
            break;
        case EventKind::HotKey: {
            gui::HotKey key;
            parseHotKey(slot_.word, key);
            static_cast<gui::WindowBase&>(widget).addHotKeyCallback(key, makeEntry_<void()>(simple));
            break;
        }
        case EventKind::Mouse:
            widget.addMouseCallback(gui::getMouseCallbackType(slot_.word), makeEntry_<void(int, int, int)>(withPoint));
            break;
        case EventKind::Wheel:
            widget.addMouseWheelCallback(makeEntry_<bool(int, int, int)>(withPoint));
            break;
        case EventKind::Keyboard:
            widget.addKeyboardCallback(
                gui::getKeyboardCallbackType(slot_.word),
                makeEntry_<bool(gui::KeyboardButton, int)>(
                    [self](gui::KeyboardButton key, int value) { return self->runForKey_(key, value); }));
            break;
    }
}

/// What was typed comes as its letter, a key by its name.
bool LuaCallback::runForKey_(int key, int value) {
    bool const typed = gui::getKeyboardCallbackType(slot_.word) == gui::KeyboardCallbackChar;
    return run_([=](lua_State* L) {
        if (typed)
            Value<qor::wstring>::push(L, qor::wstring(1, static_cast<wchar_t>(value)));
        lua_pushstring(L, gui::getKeyboardButtonName(static_cast<gui::KeyboardButton>(key)));
        if (!typed)
            lua_pushinteger(L, value);
        return 2;
    });
}

void LuaCallback::leave_() {
    letGo_();
    gui::Widget* const widget = gui::WidgetHandler::get(widget_);
    if (!widget)
        return;
    switch (slot_.kind) {
        case EventKind::Widget:
            widget->removeWidgetCallback(gui::getWidgetCallbackType(slot_.word), entryAs<void()>(entry_));
            break;
        case EventKind::HotKey: {
            gui::HotKey key;
            parseHotKey(slot_.word, key);
            static_cast<gui::WindowBase*>(widget)->removeHotKeyCallback(key, entryAs<void()>(entry_));
            break;
        }
        case EventKind::Mouse:
            widget->removeMouseCallback(gui::getMouseCallbackType(slot_.word), entryAs<void(int, int, int)>(entry_));
            break;
        case EventKind::Wheel:
            widget->removeMouseWheelCallback(entryAs<bool(int, int, int)>(entry_));
            break;
        case EventKind::Keyboard:
            widget->removeKeyboardCallback(gui::getKeyboardCallbackType(slot_.word),
                                           entryAs<bool(gui::KeyboardButton, int)>(entry_));
            break;
    }
}

// --- Calls ---

template <class Push>
bool LuaCallback::run_(Push pushArguments) {
    // The function may replace itself or end its widget.
    auto const self = shared_from_this();
    lua_State* const L = bindings_->state();
    gui::Widget* const widget = gui::WidgetHandler::get(widget_);
    if (!L || !widget || reference_ == 0)
        return false;
    struct Call {
        LuaCallback const& callback;
        gui::Widget* widget;
        Push const& pushArguments;
        bool answer;
    } call{*this, widget, pushArguments, false};
    qor::LuaStackGuard const guard(L);
    // Where a function has used up the memory even a push may fail, and must not end the widget's own work.
    int const status = lua_cpcall(
        L,
        [](lua_State* state) {
            auto& inner = *static_cast<Call*>(lua_touserdata(state, 1));
            luaL_checkstack(state, 10, "functions call one another");
            inner.callback.bindings_->push(state, inner.callback.reference_);
            pushObject(state, {inner.widget});
            int const count = 1 + inner.pushArguments(state);
            if (QOR_lua_pcall(state, count, 1, 0) != 0)
                lua_error(state);
            inner.answer = lua_toboolean(state, -1) != 0;
            return 0;
        },
        &call);
    if (status != 0)
        onFailed_(L, widget_);
    return call.answer;
}

void LuaCallback::onFailed_(lua_State* L, gui::WidgetHandler* handler) {
    qor::string text;
    qor::luaToString(L, -1, text);
    gui::Widget const* const widget = gui::WidgetHandler::get(handler);
    text += " (in \"" + slot_.word + "\" of " + (widget ? describe(*widget) : qor::string("a dead widget")) + ")";
    // Within another call the budget is that call's, which ends too.
    if (qor::isLuaSpent(L) && !qor::isLuaRunning(L)) {
        qor::setLuaLimits(L, qor::getLuaLimits(L));
        text += "; it is not called again";
        if (reference_ > 0)
            bindings_->release(std::exchange(reference_, 0));
    }
    bindings_->report(text);
}

void callWithWidget(lua_State* L, gui::Widget& widget, char const* name) {
    qor::string const described = describe(widget);
    pushObject(L, {&widget});
    if (QOR_lua_pcall(L, 1, 0, 0) == 0)
        return;
    qor::string text;
    qor::luaToString(L, -1, text);
    lua_pop(L, 1);
    Bindings::open(L).report(text + " (in " + name + " of " + described + ")");
}

}  // namespace host::lua
