// Windows made from files: the two calls into the loader script.

#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/GUIScopes.h"
#include "gui_lib/windows/WindowBase.h"
#include "platform/qor/Log.h"
#include "platform/qor/Lua.h"

#include <lua.hpp>

namespace gui {

namespace {

char const* const logTag = "VORLEX";
char const* const loaderFile = "./vorlex/loader/CreateWindow.lua";
/// Room that is asked for before a value stays on the stack: enough for the calls to come.
constexpr int stackReserve = 64;
/// What one call needs.
constexpr int stackNeed = 8;

int loadLoader(lua_State* L) {
    int const status = QOR_lua_loadfile(L, loaderFile);
    if (status == 0)
        qor::trustLuaChunk(L);
    return status;
}

/// A script that has used up its budget is over; the skins and the next script go on.
void renewBudget(lua_State* L) {
    if (qor::isLuaSpent(L) && !qor::isLuaRunning(L))
        qor::setLuaLimits(L, qor::getLuaLimits(L));
}

/// Logs the error text on the top of the stack and pops it.
void logError(lua_State* L) {
    qor::string text;
    qor::luaToString(L, -1, text);
    qor_logf(logTag, 8, "%s", text.c_str());
    lua_pop(L, 1);
}

}  // namespace

WindowBase* GUI::createWindowFromResource(char const* resource) {
    if (!luaState || !resource || !lua_checkstack(luaState, stackNeed))
        return nullptr;
    BusyScope const busy(*this);
    bool const roomy = lua_checkstack(luaState, stackReserve);
    if (loadLoader(luaState) == 0) {
        lua_pushstring(luaState, resource);
        if (QOR_lua_pcall(luaState, 1, 1, 0) == 0) {
            auto* const window = static_cast<WindowBase*>(lua_touserdata(luaState, -1));
            if (!roomy) {
                lua_pop(luaState, 1);
                if (!resourceStackFullLogged_)
                    qor_logf(logTag, 64, "The Lua stack is full; what loader scripts give is kept there no longer.\n");
                resourceStackFullLogged_ = true;
            }
            return window;
        }
    }
    lua_pop(luaState, 1);
    renewBudget(luaState);
    return nullptr;
}

void GUI::loadWindowFromResource(char const* resource, WindowBase* window) {
    if (!luaState || !resource || !lua_checkstack(luaState, stackNeed))
        return;
    BusyScope const busy(*this);
    if (loadLoader(luaState) != 0) {
        logError(luaState);
        // The call goes on regardless, and must not take what lies below for the script.
        lua_pushnil(luaState);
    }
    lua_pushstring(luaState, resource);
    lua_pushlightuserdata(luaState, window ? window->getHandler() : nullptr);
    if (QOR_lua_pcall(luaState, 2, 0, 0) != 0)
        logError(luaState);
    renewBudget(luaState);
}

}  // namespace gui
