// The Lua module that CreateWindow.lua requires, for programs that have not registered the bindings themselves.
#include "host/lua/WindowResources.h"

extern "C" VORLEX_API int luaopen_vorlexgui(lua_State* L) { return host::openWindowResources(L); }
