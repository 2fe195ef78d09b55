#include "host/lua/Objects.h"

#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "host/lua/LuaCallback.h"
#include "platform/qor/Lua.h"

#include <lua.hpp>

namespace host::lua {

namespace {

struct Handle {
    gui::WidgetHandler* widget;
    gui::LayoutHandler* layout;
    /// For messages after the object's death.
    ClassBinding const* binding;
};

// Addresses are keys in the registry: the metatable of handles, and the weak table of handles by handler.
char const metatableKey = 0;
char const handlesKey = 0;

void pushRegistry(lua_State* L, char const* key) {
    lua_pushlightuserdata(L, const_cast<char*>(key));
    lua_rawget(L, LUA_REGISTRYINDEX);
}

void setRegistry(lua_State* L, char const* key) {
    lua_pushlightuserdata(L, const_cast<char*>(key));
    lua_insert(L, -2);
    lua_rawset(L, LUA_REGISTRYINDEX);
}

Handle* toHandle(lua_State* L, int index) {
    void* const data = lua_touserdata(L, index);
    if (!data || lua_islightuserdata(L, index) || !lua_getmetatable(L, index))
        return nullptr;
    pushRegistry(L, &metatableKey);
    bool const own = lua_rawequal(L, -1, -2) != 0;
    lua_pop(L, 2);
    return own ? static_cast<Handle*>(data) : nullptr;
}

Object getObject(Handle const& handle) {
    return {gui::WidgetHandler::get(handle.widget), gui::LayoutHandler::get(handle.layout)};
}

bool isLive(Object const& object) { return object.widget || object.layout; }

qor::string withArticle(char const* word) {
    bool const vowel = std::string_view("AEIOUaeiou").find(*word) != std::string_view::npos;
    return qor::string(vowel ? "an " : "a ") + word;
}

/// What a script looks up must be a text.
std::string_view checkKey(lua_State* L, ClassBinding const& binding) {
    if (lua_type(L, 2) != LUA_TSTRING)
        raise(L, qor::string("what ") + withArticle(binding.getConstructor()) + " has is named by a text, not by " +
                     withArticle(luaL_typename(L, 2)));
    size_t size = 0;
    char const* const text = lua_tolstring(L, 2, &size);
    return {text, size};
}

int callMethod(lua_State* L) {
    auto const* const method = static_cast<Method const*>(lua_touserdata(L, lua_upvalueindex(1)));
    if (!toHandle(L, 1))
        raise(L, qor::string("'") + method->name + "' is called with a colon, as in self:" + method->name + "()");
    Object const object = checkObject(L, 1);
    ClassBinding const& binding = *findClassOf(object);
    if (binding.findMethod(method->name) != method)
        raise(L, describeUnknown(binding, method->name));
    return method->call(L, object);
}

int indexHandle(lua_State* L) {
    Handle const* const handle = toHandle(L, 1);
    if (!handle)
        raise(L, "this is no handle");
    if (lua_type(L, 2) == LUA_TSTRING && std::string_view(lua_tostring(L, 2)) == "alive") {
        lua_pushboolean(L, isLive(getObject(*handle)));
        return 1;
    }
    Object const object = checkObject(L, 1);
    ClassBinding const& binding = *findClassOf(object);
    std::string_view const name = checkKey(L, binding);
    if (Property const* const property = binding.findProperty(name)) {
        if (!property->push)
            raise(L, qor::string("'") + property->name + "' of " + withArticle(binding.getConstructor()) +
                         " can only be set");
        property->push(L, object);
    } else if (Event const* const event = object.widget ? binding.findEvent(name) : nullptr) {
        LuaCallback::push(L, *object.widget, {event->kind, event->word});
    } else if (Method const* const method = binding.findMethod(name)) {
        lua_pushlightuserdata(L, const_cast<Method*>(method));
        lua_pushcclosure(L, callMethod, 1);
    } else {
        raise(L, describeUnknown(binding, name));
    }
    return 1;
}

int setInHandle(lua_State* L) {
    Object const object = checkObject(L, 1);
    ClassBinding const& binding = *findClassOf(object);
    std::string_view const name = checkKey(L, binding);
    if (Property const* const property = binding.findProperty(name)) {
        if (!property->assign)
            raise(L, qor::string("'") + property->name + "' of " + withArticle(binding.getConstructor()) +
                         " can only be read");
        if (!property->assign(L, 3, object))
            raise(L, describeWrong(L, 3, binding, name, property->wants));
    } else if (Event const* const event = object.widget ? binding.findEvent(name) : nullptr) {
        if (!lua_isfunction(L, 3) && !lua_isnil(L, 3))
            raise(L, describeWrong(L, 3, binding, name, "a function, or nil for none"));
        LuaCallback::attach(L, 3, *object.widget, {event->kind, event->word});
    } else {
        raise(L, describeUnknown(binding, name));
    }
    return 0;
}

int nameHandle(lua_State* L) {
    Handle const* const handle = toHandle(L, 1);
    if (!handle)
        raise(L, "this is no handle");
    qor::string text(handle->binding->getConstructor());
    Object const object = getObject(*handle);
    if (!isLive(object)) {
        text += " (destroyed)";
    } else if (object.widget && !object.widget->getName().empty()) {
        Value<qor::wstring>::push(L, object.widget->getName());
        text += qor::string(" '") + lua_tostring(L, -1) + "'";
    }
    lua_pushlstring(L, text.data(), text.size());
    return 1;
}

}  // namespace

void openObjects(lua_State* L) {
    lua_newtable(L);
    luaL_Reg const functions[] = {
        {"__index", indexHandle}, {"__newindex", setInHandle}, {"__tostring", nameHandle}, {nullptr, nullptr}};
    luaL_register(L, nullptr, functions);
    lua_pushboolean(L, 0);
    lua_setfield(L, -2, "__metatable");
    setRegistry(L, &metatableKey);

    lua_newtable(L);
    lua_createtable(L, 0, 1);
    lua_pushliteral(L, "v");
    lua_setfield(L, -2, "__mode");
    lua_setmetatable(L, -2);
    setRegistry(L, &handlesKey);
}

void pushObject(lua_State* L, Object const& object) {
    if (!isLive(object)) {
        lua_pushnil(L);
        return;
    }
    gui::WidgetHandler* const widget = object.widget ? object.widget->getHandler() : nullptr;
    gui::LayoutHandler* const layout = object.layout ? object.layout->handler() : nullptr;
    void* const key = widget ? static_cast<void*>(widget) : layout;
    pushRegistry(L, &handlesKey);
    lua_pushlightuserdata(L, key);
    lua_rawget(L, -2);
    if (lua_isnil(L, -1)) {
        lua_pop(L, 1);
        auto* const handle = static_cast<Handle*>(lua_newuserdata(L, sizeof(Handle)));
        *handle = {widget, layout, findClassOf(object)};
        pushRegistry(L, &metatableKey);
        lua_setmetatable(L, -2);
        lua_pushlightuserdata(L, key);
        lua_pushvalue(L, -2);
        lua_rawset(L, -4);
    }
    lua_remove(L, -2);
}

bool readObject(lua_State* L, int index, Object& object) {
    Handle const* const handle = toHandle(L, index);
    object = handle ? getObject(*handle) : Object();
    return isLive(object);
}

Object checkObject(lua_State* L, int index) {
    Handle const* const handle = toHandle(L, index);
    if (!handle)
        raise(L, qor::string("a widget is wanted here, not ") + withArticle(luaL_typename(L, index)));
    Object const object = getObject(*handle);
    if (!isLive(object))
        raise(L, qor::string("this ") + handle->binding->getConstructor() +
                     " has been destroyed; ask its 'alive' before it is used");
    return object;
}

gui::Widget& checkWidget(lua_State* L, int index) {
    Object const object = checkObject(L, index);
    if (!object.widget)
        raise(L, "a widget is wanted here, not a layout");
    return *object.widget;
}

qor::string describeUnknown(ClassBinding const& binding, std::string_view name) {
    qor::string text = "'" + qor::string(name) + "' is unknown to " + withArticle(binding.getConstructor());
    qor::string const similar = findSimilar(name, getMemberNames(binding));
    if (!similar.empty())
        text += "; did you mean '" + similar + "'?";
    else
        text += "; docs/resources.md lists what it has";
    return text;
}

qor::string describeWrong(lua_State* L, int index, ClassBinding const& binding, std::string_view name,
                          std::string_view wants) {
    qor::string text = "'" + qor::string(name) + "' of " + withArticle(binding.getConstructor()) + " wants ";
    text += wants;
    int const type = lua_type(L, index);
    if (type == LUA_TSTRING)
        text += ", not \"" + qor::string(lua_tostring(L, index)) + "\"";
    else if (type == LUA_TTABLE)
        text += "; this table is something else";
    else
        text += qor::string(", not ") + (type == LUA_TNIL ? qor::string("nil") : withArticle(lua_typename(L, type)));
    return text;
}

void raise(lua_State* L, qor::string const& text) {
    luaL_where(L, 1);
    lua_pushlstring(L, text.data(), text.size());
    lua_concat(L, 2);
    lua_error(L);
    __builtin_unreachable();
}

}  // namespace host::lua
