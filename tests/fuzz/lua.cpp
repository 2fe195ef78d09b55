// Any bytes as a script: it must end, keep its limits, and what it leaves must be readable.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/qor/Log.h"
#include "platform/qor/Lua.h"

#include <lua.hpp>

namespace {

void readGlobals(lua_State* L) {
    lua_pushvalue(L, LUA_GLOBALSINDEX);
    lua_pushnil(L);
    for (int left = 500; left > 0 && qor::luaNext(L, -2); --left) {
        qor::string text;
        qor::luaToString(L, -1, text);
        qor::luaGetField(L, -1, "bkg");
        qor::luaGetIndex(L, -2, 1);
        lua_pop(L, 3);
    }
    lua_settop(L, 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    qor::setLogSink([](char const*, int, char const*) {});
    lua_State* const L = QOR_lua_open("fuzz");
    qor::LuaLimits const limits{size_t(8) << 20, 200'000, 5.0};
    qor::setLuaLimits(L, limits);
    QOR_lua_openlibs(L);
    qor::luaGetGlobal(L, "loadstring");
    lua_pushlstring(L, reinterpret_cast<char const*>(data), size);
    if (QOR_lua_pcall(L, 1, 1, 0) == 0 && lua_isfunction(L, -1) && QOR_lua_pcall(L, 0, 0, 0) != 0 &&
        !lua_isstring(L, -1))
        std::abort();
    lua_settop(L, 0);
    readGlobals(L);
    // What host calls take outside a script is not refused, but the script itself keeps to the cap.
    if (qor::getLuaMemory(L) > 2 * limits.memoryBytes)
        std::abort();
    QOR_lua_close(L);
    return 0;
}
