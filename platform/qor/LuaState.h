#pragma once

#include <cstdint>
#include <string_view>

#include "platform/qor/Containers.h"
#include "platform/qor/Lua.h"
#include "platform/qor/String.h"

/// What belongs to each Lua state that QOR_lua_open gave; for the sources of the Lua layer only.
namespace qor {

struct LuaState {
    lua_State* main = nullptr;
    string name;
    LuaLimits limits;
    size_t memory = 0;
    /// Calls under protection. The memory cap holds only there: elsewhere a refusal would be a panic.
    int depth = 0;
    /// Calls below a LuaPauseGuard.
    int pausedDepth = 0;
    int64_t remaining = 0;
    bool spent = false;
    double deadline = 0;
    /// Memory ran out: what can be freed goes before the next call.
    bool collectNext = false;
    /// Where the script was when memory ran out: "file:line: ", or empty.
    char memoryPosition[128] = "";
    /// To run before the state is closed.
    vector<std::function<void()>> closeFunctions;

    /// What each file asked for when it ran last, by its path.
    map<string, vector<string>> askedFiles;

    /// Null for a state that QOR_lua_open did not give.
    static LuaState* of(lua_State* L);

    void renewTime();
    /// Marks the budget as used up and lets the next instruction of this and of the main coroutine fail.
    void spend(lua_State* L);
    /// What the budget's error says after its position.
    string getSpentText() const;
};

/// Writes "file:line: " of the innermost Lua function at or above the level, or an empty text.
void writeLuaPosition(lua_State* L, int level, char* buffer, size_t size);

/// Notes that the running Lua function asked for a file.
void noteLuaFile(lua_State* L, std::string_view path);

/// Finds, reads and compiles a text chunk: pushes the function and returns 0, or pushes an error text.
int loadLuaFile(lua_State* L, char const* path);
/// Compiles text under a chunk name; bytecode is refused.
int loadLuaText(lua_State* L, char const* text, size_t size, char const* chunkName);

/// For `require` in a trusted chunk: pushes the module. If there is none the cause is logged, since whoever called the
/// chunk may not, and raised.
void loadNativeLuaModule(lua_State* L, char const* name);
/// Whether the function at the level of the call stack was given to trustLuaChunk.
bool isLuaTrusted(lua_State* L, int level);

/// Replaces the functions of the table `string` that search by patterns, and string.rep.
void openLuaPatterns(lua_State* L);

}  // namespace qor
