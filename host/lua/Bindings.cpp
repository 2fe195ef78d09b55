#include "host/lua/Bindings.h"

#include <algorithm>
#include <utility>

#include "gui_lib/widget/WidgetHandler.h"
#include "platform/qor/Log.h"
#include "platform/qor/Lua.h"

#include <lua.hpp>

namespace host::lua {

namespace {

// Addresses are keys in the registry: the bindings themselves, and the table of what they keep.
char const bindingsKey = 0;
char const keptKey = 0;

constexpr std::size_t mostErrors = 100;

void pushRegistry(lua_State* L, char const* key) {
    lua_pushlightuserdata(L, const_cast<char*>(key));
    lua_rawget(L, LUA_REGISTRYINDEX);
}

void setRegistry(lua_State* L, char const* key) {
    lua_pushlightuserdata(L, const_cast<char*>(key));
    lua_insert(L, -2);
    lua_rawset(L, LUA_REGISTRYINDEX);
}

}  // namespace

Bindings::Bindings(lua_State* L) : state_(L) {
    lua_newtable(L);
    setRegistry(L, &keptKey);
    lua_pushlightuserdata(L, this);
    setRegistry(L, &bindingsKey);
}

Bindings& Bindings::open(lua_State* L) {
    if (Bindings* const open = find(L))
        return *open;
    std::shared_ptr<Bindings> bindings(new Bindings(L));
    Bindings& result = *bindings;
    qor::addLuaCloseFunction(L, [bindings = std::move(bindings)] { bindings->state_ = nullptr; });
    return result;
}

Bindings* Bindings::find(lua_State* L) {
    if (!L || !lua_checkstack(L, 2))
        return nullptr;
    pushRegistry(L, &bindingsKey);
    auto* const bindings = static_cast<Bindings*>(lua_touserdata(L, -1));
    lua_pop(L, 1);
    return bindings;
}

// --- Errors ---

void Bindings::report(qor::string const& text) {
    if (text == lastReport_)
        return;
    qor_logf("VORLEX", 64, "%s\n", text.c_str());
    lastReport_ = text;
    if (errors_.size() < mostErrors)
        errors_.push_back(text);
}

qor::vector<qor::string> Bindings::takeErrors() {
    // What is wrong again after someone has looked is worth another line.
    lastReport_.clear();
    return std::exchange(errors_, {});
}

// --- Functions ---

int Bindings::keep(lua_State* L, int index) {
    lua_pushvalue(L, index);
    pushRegistry(L, &keptKey);
    lua_insert(L, -2);
    int const reference = luaL_ref(L, -2);
    lua_pop(L, 1);
    ++keptCount_;
    return reference;
}

void Bindings::push(lua_State* L, int reference) const {
    pushRegistry(L, &keptKey);
    lua_rawgeti(L, -1, reference);
    lua_remove(L, -2);
}

void Bindings::release(int reference) {
    --keptCount_;
    if (!state_ || !lua_checkstack(state_, 4))
        return;
    pushRegistry(state_, &keptKey);
    luaL_unref(state_, -1, reference);
    lua_pop(state_, 1);
}

void Bindings::forgetDead() {
    auto const isDead = [](auto const& entry) { return !gui::WidgetHandler::get(entry.first); };
    std::erase_if(properties_, isDead);
    std::erase_if(pictures_, isDead);
}

}  // namespace host::lua
