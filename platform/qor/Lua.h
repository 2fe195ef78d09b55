#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <type_traits>

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

struct lua_State;

/// Lua for files that nobody vouches for: skins and window resources.
///
/// Only text is loaded, never bytecode. A state has a cap on memory and a budget of instructions; once the budget is
/// over, every call fails at once until the host sets new limits, even where the script catches the error. Library
/// functions that could take long, patterns above all, draw on the same budget. There is no access to files, to the
/// system or to the debugger but `require`, `dofile` and `loadfile`, which read text by `qor::findFile`. Only a chunk
/// that the program has trusted gets modules in native code. Errors begin with "file:line:". While a call runs, the
/// thread's numbers are written with a point.

/// A new state with the default limits; `name` stands for it in messages. Never null.
VORLEX_API lua_State* QOR_lua_open(char const* name);
/// Opens the libraries base, table, string, math and coroutine, as far as they are safe.
VORLEX_API void QOR_lua_openlibs(lua_State* L);
/// Finds the file by `qor::findFile` and pushes it as a function; returns 0. Otherwise pushes an error text.
VORLEX_API int QOR_lua_loadfile(lua_State* L, char const* path);
/// As lua_pcall. The error is always a text. `handler` is an index or 0.
VORLEX_API int QOR_lua_pcall(lua_State* L, int arguments, int results, int handler);
/// Null is allowed.
VORLEX_API void QOR_lua_close(lua_State* L);

namespace qor {

struct LuaLimits {
    size_t memoryBytes = size_t(64) << 20;
    /// For one outermost QOR_lua_pcall and the reads that follow it.
    uint64_t instructions = 50'000'000;
    /// Processor time for the same; catches what is slow in a single instruction. Not above 0 means no limit.
    double seconds = 20.0;
};

/// For states that are opened from now on.
VORLEX_API void setDefaultLuaLimits(LuaLimits const& limits);
VORLEX_API LuaLimits getDefaultLuaLimits();
/// For a state that QOR_lua_open gave. The budget begins anew.
VORLEX_API void setLuaLimits(lua_State* L, LuaLimits const& limits);
VORLEX_API LuaLimits getLuaLimits(lua_State* L);
/// The budget was used up, and calls fail.
VORLEX_API bool isLuaSpent(lua_State* L);
VORLEX_API size_t getLuaMemory(lua_State* L);

/// A call of the state runs, be it above a LuaPauseGuard: the state must not be closed.
VORLEX_API bool isLuaRunning(lua_State* L);

/// Runs when the state is about to be closed, while everything in it is still alive. For those who keep a state, or
/// references into it.
VORLEX_API void addLuaCloseFunction(lua_State* L, std::function<void()> function);

// --- Modules in native code ---

/// What `require` of a trusted chunk gives for this name: the one value that `open` returns, once for each state. The
/// name must be of letters, digits and underscores, and live for ever.
VORLEX_API void registerLuaModule(char const* name, int (*open)(lua_State* L));
/// The chunk on the top of the stack, and nothing that it loads or defines, may require modules in native code: those
/// that the program has registered, else NAME.so in the folder of the chunk's file, else in "vorlex/loader" beside the
/// folder of the toolkit's library. That file must export luaopen_NAME and be linked to the same toolkit.
VORLEX_API void trustLuaChunk(lua_State* L);

/// Takes from the budget for work that a C function is about to do; raises a Lua error when it is over. For functions
/// that a host registers.
VORLEX_API void chargeLua(lua_State* L, uint64_t instructions);

// --- Files ---
/// The file `root` and every file that it asked for when it ran last, by `dofile`, `loadfile` or `require`, directly or
/// through others: names as they were asked for, also of files that were not found. Each name once, `root` first.
VORLEX_API vector<string> getLuaFiles(lua_State* L, std::string_view root);

// --- Protected access: nothing here raises an error or panics, whatever metatables the values have ---

/// Runs `function(context, L)` in a stack frame of its own. If `index` is not 0, a copy of the value there is the
/// frame's index 1. On return the stack is as before. False if a Lua error ended it; `error`, if any, gets the text.
VORLEX_API bool luaProtectedCall(lua_State* L, int index, void (*function)(void* context, lua_State* L), void* context,
                                 string* error);

/// The same for anything callable with a `lua_State*`.
template <typename Function>
bool luaProtected(lua_State* L, int index, Function&& function, string* error = nullptr) {
    auto const call = [](void* context, lua_State* state) {
        (*static_cast<std::remove_reference_t<Function>*>(context))(state);
    };
    return luaProtectedCall(L, index, call, const_cast<void*>(static_cast<void const*>(&function)), error);
}
template <typename Function>
bool luaProtected(lua_State* L, Function&& function, string* error = nullptr) {
    return luaProtected(L, 0, static_cast<Function&&>(function), error);
}

/// Pushes the field of the value at `index`, or nil where that is no table or the read fails. Returns the Lua type.
VORLEX_API int luaGetField(lua_State* L, int index, char const* key);
VORLEX_API int luaGetIndex(lua_State* L, int index, int key);
VORLEX_API int luaGetGlobal(lua_State* L, char const* key);
/// As lua_next: pops a key and pushes the next key and value, or nothing and returns false.
VORLEX_API bool luaNext(lua_State* L, int index);
/// The text of a string or number; leaves the value as it is. False for any other type.
VORLEX_API bool luaToString(lua_State* L, int index, string& text);
/// A number, or a text that is one, with a decimal point whatever the locale. False for any other value.
VORLEX_API bool luaToNumber(lua_State* L, int index, double& number);

/// Puts the stack back to the height it had.
class VORLEX_API LuaStackGuard {
public:
    explicit LuaStackGuard(lua_State* L);
    ~LuaStackGuard();
    LuaStackGuard(LuaStackGuard const&) = delete;
    LuaStackGuard& operator=(LuaStackGuard const&) = delete;

private:
    lua_State* state_;
    int top_;
};

/// While one lives, the calls of a state count as outermost ones, each with a budget of its own: for a function that
/// runs whole frames of the host. Afterwards the call that it was made in goes on with what it had left.
class VORLEX_API LuaPauseGuard {
public:
    explicit LuaPauseGuard(lua_State* L);
    ~LuaPauseGuard();
    LuaPauseGuard(LuaPauseGuard const&) = delete;
    LuaPauseGuard& operator=(LuaPauseGuard const&) = delete;

private:
    lua_State* state_;
    int depth_ = 0;
    int64_t remaining_ = 0;
    double seconds_ = 0;
};

/// While one lives, the thread reads and writes numbers as in the "C" locale.
class VORLEX_API NumericLocaleGuard {
public:
    NumericLocaleGuard();
    ~NumericLocaleGuard();
    NumericLocaleGuard(NumericLocaleGuard const&) = delete;
    NumericLocaleGuard& operator=(NumericLocaleGuard const&) = delete;

private:
    void* previous_;
};

}  // namespace qor
