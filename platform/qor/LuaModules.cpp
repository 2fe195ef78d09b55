// Modules in native code, for chunks that the program trusts.

#include <dlfcn.h>

#include <filesystem>
#include <mutex>
#include <system_error>
#include <utility>

#include "platform/qor/Containers.h"
#include "platform/qor/Log.h"
#include "platform/qor/LuaState.h"
#include "platform/qor/Paths.h"

#include <lua.hpp>

/// One for each copy of the toolkit in a program.
extern "C" VORLEX_API char const vorlexToolkitMark;
char const vorlexToolkitMark = 0;

namespace qor {

namespace {

namespace fs = std::filesystem;

// Their addresses are the keys of the tables in the registry: trusted functions, and open modules by name.
char const trustedKey = 0;
char const modulesKey = 0;

struct Registered {
    std::mutex lock;
    map<string, lua_CFunction> modules;
};

Registered& getRegistered() {
    static Registered* const registered = new Registered;
    return *registered;
}

// Pushes the table that the registry holds under the key, made when it is missing. With weak keys it holds no function
// alive.
void pushRegistryTable(lua_State* L, void const* key, bool weakKeys) {
    lua_pushlightuserdata(L, const_cast<void*>(key));
    lua_rawget(L, LUA_REGISTRYINDEX);
    if (lua_istable(L, -1))
        return;
    lua_pop(L, 1);
    lua_newtable(L);
    if (weakKeys) {
        lua_createtable(L, 0, 1);
        lua_pushliteral(L, "k");
        lua_setfield(L, -2, "__mode");
        lua_setmetatable(L, -2);
    }
    lua_pushlightuserdata(L, const_cast<void*>(key));
    lua_pushvalue(L, -2);
    lua_rawset(L, LUA_REGISTRYINDEX);
}

bool isPlainName(std::string_view name) {
    return !name.empty() && name.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_") ==
                                std::string_view::npos;
}

// The folder of the file that the running function at the level was read from.
fs::path folderOfFunction(lua_State* L, int level) {
    lua_Debug record;
    if (!lua_getstack(L, level, &record) || !lua_getinfo(L, "S", &record) || record.source[0] != '@')
        return {};
    std::error_code error;
    return fs::absolute(record.source + 1, error).parent_path();
}

fs::path folderOfLibrary() {
    Dl_info info;
    if (dladdr(&trustedKey, &info) == 0 || !info.dli_fname)
        return {};
    std::error_code error;
    return fs::weakly_canonical(info.dli_fname, error).parent_path();
}

// The module's opening function, or null with the cause. A library, once loaded, stays.
lua_CFunction loadFromFolders(lua_State* L, string const& name, string& cause) {
    string const file = name + ".so";
    for (fs::path const& folder : {folderOfFunction(L, 1), folderOfLibrary().parent_path() / "vorlex" / "loader"}) {
        fs::path const path = folder / file.c_str();
        std::error_code error;
        if (!fs::is_regular_file(path, error))
            continue;
        void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!library) {
            cause = dlerror();
            return nullptr;
        }
        // A second copy of the toolkit would see none of the program's widgets.
        if (dlsym(library, "vorlexToolkitMark") != &vorlexToolkitMark) {
            cause.format("%s is linked to another copy of the toolkit than this program", path.c_str());
            return nullptr;
        }
        void* const open = dlsym(library, ("luaopen_" + name).c_str());
        if (!open)
            cause.format("%s exports no luaopen_%s", path.c_str(), name.c_str());
        return reinterpret_cast<lua_CFunction>(open);
    }
    cause.format("there is no %s in the folder of the script; call host::registerWindowResources, or put it there",
                 file.c_str());
    return nullptr;
}

lua_CFunction findModule(lua_State* L, string const& name, string& cause) {
    if (!isPlainName(name)) {
        cause = "its name is not of letters, digits and underscores";
        return nullptr;
    }
    {
        Registered& registered = getRegistered();
        std::lock_guard const guard(registered.lock);
        auto const found = registered.modules.find(name);
        if (found != registered.modules.end())
            return found->second;
    }
    return loadFromFolders(L, name, cause);
}

}  // namespace

void registerLuaModule(char const* name, int (*open)(lua_State* L)) {
    Registered& registered = getRegistered();
    std::lock_guard const guard(registered.lock);
    registered.modules[name] = open;
}

void trustLuaChunk(lua_State* L) {
    if (!lua_isfunction(L, -1) || !lua_checkstack(L, 6))
        return;
    pushRegistryTable(L, &trustedKey, true);
    lua_pushvalue(L, -2);
    lua_pushboolean(L, 1);
    lua_rawset(L, -3);
    lua_pop(L, 1);
}

bool isLuaTrusted(lua_State* L, int level) {
    lua_Debug record;
    if (!lua_getstack(L, level, &record))
        return false;
    LuaStackGuard const guard(L);
    pushRegistryTable(L, &trustedKey, true);
    lua_getinfo(L, "f", &record);
    lua_rawget(L, -2);
    return lua_toboolean(L, -1) != 0;
}

void loadNativeLuaModule(lua_State* L, char const* name) {
    pushRegistryTable(L, &modulesKey, false);
    int const modules = lua_gettop(L);
    lua_getfield(L, modules, name);
    if (!lua_isnil(L, -1))
        return;
    lua_pop(L, 1);
    string cause;
    lua_CFunction const open = findModule(L, name, cause);
    if (!open) {
        qor_logf("VORLEX", 64, "The Lua module '%s' cannot be loaded: %s\n", name, cause.c_str());
        luaL_error(L, "module '%s' cannot be loaded: %s", name, cause.c_str());
    }
    lua_pushcfunction(L, open);
    lua_pushstring(L, name);
    lua_call(L, 1, 1);
    lua_pushvalue(L, -1);
    lua_setfield(L, modules, name);
}

}  // namespace qor
