#include "host/lua/WindowResources.h"

#include <filesystem>

#include "gui_lib/base/Application.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "host/lua/Bindings.h"
#include "host/lua/Builder.h"
#include "host/lua/Objects.h"
#include "platform/qor/Lua.h"
#include "platform/qor/Paths.h"

#include <lua.hpp>

namespace host {

namespace {

using namespace lua;

/// Address is the key of the table of names that every window file sees, in the registry.
char const namesKey = 0;

void pushNames(lua_State* L) {
    lua_pushlightuserdata(L, const_cast<char*>(&namesKey));
    lua_rawget(L, LUA_REGISTRYINDEX);
}

// --- Files ---

/// Replaces the library on the top of the stack by a copy, which is the file's own from now on.
void copyLibrary(lua_State* L) {
    lua_newtable(L);
    lua_pushnil(L);
    for (; lua_next(L, -3); lua_pop(L, 1)) {
        lua_pushvalue(L, -2);
        lua_pushvalue(L, -2);
        lua_rawset(L, -5);
    }
    lua_replace(L, -2);
    lua_pushvalue(L, 2);
    lua_pushvalue(L, -2);
    lua_rawset(L, 1);
}

/// A name that the file has not defined itself. A wrong capital name is most likely a class.
int lookUp(lua_State* L) {
    pushNames(L);
    lua_pushvalue(L, 2);
    lua_rawget(L, -2);
    if (lua_istable(L, -1))
        copyLibrary(L);
    if (!lua_isnil(L, -1) || lua_type(L, 2) != LUA_TSTRING)
        return 1;
    std::string_view const name = lua_tostring(L, 2);
    if (name.empty() || name[0] < 'A' || name[0] > 'Z')
        return 1;
    qor::vector<std::string_view> classes;
    for (ClassBinding const& binding : getClassBindings())
        if (binding.make)
            classes.push_back(binding.getConstructor());
    qor::string const similar = findSimilar(name, classes);
    if (!similar.empty())
        raise(L, "'" + qor::string(name) + "' is unknown; did you mean '" + similar + "'?");
    return 1;
}

/// What a file defines is its own.
void pushEnvironment(lua_State* L) {
    lua_newtable(L);
    lua_createtable(L, 0, 2);
    lua_pushcfunction(L, lookUp);
    lua_setfield(L, -2, "__index");
    lua_pushboolean(L, 0);
    lua_setfield(L, -2, "__metatable");
    lua_setmetatable(L, -2);
}

/// Pushes the file as a function with the environment on the top of the stack, which it pops. Raises an error.
void loadFile(lua_State* L, char const* path) {
    if (QOR_lua_loadfile(L, path) != 0)
        lua_error(L);
    lua_insert(L, -2);
    lua_setfenv(L, -2);
}

/// Pushes the environment of the function of a file that called, directly or through functions of Lua's own, and gives
/// what is known of it. Raises an error without one.
void pushCaller(lua_State* L, lua_Debug& record) {
    for (int level = 1; lua_getstack(L, level, &record); ++level) {
        lua_getinfo(L, "Sf", &record);
        lua_getfenv(L, -1);
        if (lua_getmetatable(L, -1)) {
            lua_getfield(L, -1, "__index");
            bool const ofFile = lua_tocfunction(L, -1) == lookUp;
            lua_pop(L, 2);
            if (ofFile)
                return;
        }
        lua_pop(L, 2);
    }
    raise(L, "include is called by a function of a file");
}

/// include(path): runs another file with the names of this one and gives what it returns. The path counts from the
/// folder of this file first.
int include(lua_State* L) {
    char const* const path = luaL_checkstring(L, 1);
    lua_settop(L, 1);
    lua_Debug record;
    pushCaller(L, record);
    qor::string beside;
    if (record.source[0] == '@') {
        std::filesystem::path const folder = std::filesystem::path(record.source + 1).parent_path();
        beside = qor::findFile((folder / path).native());
    }
    loadFile(L, beside.empty() ? path : beside.c_str());
    int const base = lua_gettop(L) - 1;
    lua_call(L, 0, LUA_MULTRET);
    return lua_gettop(L) - base;
}

/// Pushes the description of a window that a file returns. Raises an error.
void runFile(lua_State* L, char const* path) {
    luaL_checkstack(L, 10, "files include one another");
    pushEnvironment(L);
    loadFile(L, path);
    lua_pushstring(L, path);
    if (QOR_lua_pcall(L, 1, 1, 0) != 0)
        lua_error(L);
    qor::string position;
    ClassBinding const* const binding = findDescription(L, -1, &position);
    if (!binding)
        luaL_error(L, "%s:1: the file returns a %s; it must return a window, as in return Window { }", path,
                   luaL_typename(L, -1));
    ClassBinding const* step = binding;
    while (step && std::string_view(step->word) != "WindowBase")
        step = step->getBase();
    if (!step)
        luaL_error(L, "%sthe file returns a %s; it must return a window, as in return Window { }", position.c_str(),
                   binding->getConstructor());
}

// --- Windows ---

/// A window from the description at `index`, finished; null if that failed or if it ended itself.
gui::WindowBase* makeWindow(lua_State* L, int index) {
    Builder builder(L);
    auto* const window = dynamic_cast<gui::WindowBase*>(builder.make(index, ""));
    if (!window)
        return nullptr;
    gui::WidgetHandler* const handler = window->getHandler();
    builder.remember(*window, *findClassOf({window}), index);
    builder.finish();
    if (!gui::WidgetHandler::get(handler))
        return nullptr;
    builder.release(*window);
    return window;
}

/// For functions of window files: make a window from a description, hidden unless it says otherwise.
int create(lua_State* L) {
    lua_settop(L, 1);
    ClassBinding const* const binding = findDescription(L, 1);
    if (!binding || binding->isLayout())
        raise(L, qor::string("a window is wanted here, as in Window { }, not a ") +
                     (binding ? binding->getConstructor() : luaL_typename(L, 1)));
    gui::WindowBase* const window = makeWindow(L, 1);
    if (!window)
        raise(L, qor::string("a ") + binding->getConstructor() + " is no window; insert it into one");
    pushObject(L, {window});
    return 1;
}

/// The same, and shows it.
int open(lua_State* L) {
    create(L);
    Object const window = checkObject(L, -1);
    lua_pushboolean(L, 1);
    findClassOf(window)->findProperty("visible")->assign(L, lua_gettop(L), window);
    lua_pop(L, 1);
    return 1;
}

int openFile(lua_State* L) {
    runFile(L, luaL_checkstring(L, 1));
    lua_replace(L, 1);
    return open(L);
}

int isKeyDown(lua_State* L) {
    qor::string const name = luaL_checkstring(L, 1);
    gui::KeyboardButton const key = gui::getKeyboardButtonByName(name);
    if (key == gui::KeyNone)
        raise(L, "there is no key '" + name + "'; one is named as in \"left shift\", \"page up\" or \"a\"");
    lua_pushboolean(L, gui::Application::get() && gui::Application::get()->getKeyDown(key));
    return 1;
}

// --- What the loader script calls: nothing raises an error, all is reported ---

/// Runs `function` with the arguments and gives its first result, or nothing after an error.
template <lua_CFunction function>
int reported(lua_State* L) {
    lua_pushcfunction(L, function);
    lua_insert(L, 1);
    if (QOR_lua_pcall(L, lua_gettop(L) - 1, 1, 0) == 0)
        return 1;
    qor::string error;
    qor::luaToString(L, -1, error);
    Bindings::open(L).report(error);
    return 0;
}

/// read(file): the description of the window in the file.
int read(lua_State* L) {
    runFile(L, luaL_checkstring(L, 1));
    return 1;
}

/// make(description): a new window as light userdata.
int make(lua_State* L) {
    gui::WindowBase* const window = makeWindow(L, 1);
    if (!window)
        return 0;
    lua_pushlightuserdata(L, window);
    return 1;
}

/// fill(window's handler as light userdata, description).
int fill(lua_State* L) {
    auto* const handler = lua_islightuserdata(L, 1) ? static_cast<gui::WidgetHandler*>(lua_touserdata(L, 1)) : nullptr;
    auto* const window = dynamic_cast<gui::WindowBase*>(gui::WidgetHandler::get(handler));
    if (!window || !findDescription(L, 2))
        luaL_error(L, window ? "there is no description to fill the window with" : "the window to fill does not exist");
    Builder(L).fill(*window, 2);
    return 0;
}

void setFunction(lua_State* L, char const* name, lua_CFunction function) {
    lua_pushcfunction(L, function);
    lua_setfield(L, -2, name);
}

/// What every window file sees: constructors, functions, and what is safe of Lua's own.
void openNames(lua_State* L) {
    lua_pushlightuserdata(L, const_cast<char*>(&namesKey));
    lua_newtable(L);
    for (char const* const name :
         {"assert",   "error",  "getmetatable", "ipairs",    "next",   "pairs",        "pcall",    "print",
          "rawequal", "rawget", "rawset",       "require",   "select", "setmetatable", "tonumber", "tostring",
          "type",     "unpack", "xpcall",       "coroutine", "math",   "string",       "table"}) {
        lua_pushstring(L, name);
        lua_rawget(L, LUA_GLOBALSINDEX);
        lua_setfield(L, -2, name);
    }
    for (ClassBinding const& binding : getClassBindings()) {
        if (!binding.make)
            continue;
        lua_pushlightuserdata(L, const_cast<ClassBinding*>(&binding));
        lua_pushcclosure(L, describe, 1);
        lua_setfield(L, -2, binding.getConstructor());
    }
    setFunction(L, "include", include);
    setFunction(L, "create", create);
    setFunction(L, "open", open);
    setFunction(L, "openFile", openFile);
    setFunction(L, "isKeyDown", isKeyDown);
    lua_rawset(L, LUA_REGISTRYINDEX);
    // The methods of texts are those of every file and skin.
    lua_pushliteral(L, "");
    if (lua_getmetatable(L, -1)) {
        lua_pushboolean(L, 0);
        lua_setfield(L, -2, "__metatable");
        lua_pop(L, 1);
    }
    lua_pop(L, 1);
}

}  // namespace

int openWindowResources(lua_State* L) {
    luaL_checkstack(L, 10, "no room for the bindings");
    Bindings::open(L);
    openObjects(L);
    openNames(L);
    lua_newtable(L);
    setFunction(L, "read", reported<read>);
    setFunction(L, "make", reported<make>);
    setFunction(L, "fill", reported<fill>);
    return 1;
}

void registerWindowResources() { qor::registerLuaModule("vorlexgui", openWindowResources); }

qor::vector<qor::string> takeResourceErrors() {
    Bindings* const bindings = gui::GUI::get() ? Bindings::find(gui::GUI::get()->getLuaState()) : nullptr;
    return bindings ? bindings->takeErrors() : qor::vector<qor::string>();
}

}  // namespace host
