// Which files the scripts of a state have asked for, so that a host can watch them.

#include <algorithm>

#include "platform/qor/LuaState.h"
#include "platform/qor/Paths.h"

#include <lua.hpp>

namespace qor {

namespace {

/// A script may make up names without end.
constexpr size_t mostFiles = 1024;

/// The file of the innermost running Lua function, or an empty text.
string getRunningFile(lua_State* L) {
    lua_Debug record;
    for (int level = 0; lua_getstack(L, level, &record); ++level) {
        lua_getinfo(L, "S", &record);
        if (record.source[0] == '@')
            return string(record.source + 1);
    }
    return {};
}

}  // namespace

void noteLuaFile(lua_State* L, std::string_view path) {
    LuaState* const state = LuaState::of(L);
    string const running = state ? getRunningFile(L) : string();
    if (running.empty() || (state->askedFiles.size() >= mostFiles && !state->askedFiles.count(running)))
        return;
    vector<string>& asked = state->askedFiles[running];
    if (asked.size() < mostFiles && std::find(asked.begin(), asked.end(), path) == asked.end())
        asked.emplace_back(path);
}

vector<string> getLuaFiles(lua_State* L, std::string_view root) {
    vector<string> names{string(root)};
    LuaState const* const state = LuaState::of(L);
    for (size_t i = 0; state && i < names.size(); ++i) {
        auto const found = state->askedFiles.find(findFile(names[i]));
        if (found == state->askedFiles.end())
            continue;
        for (string const& name : found->second)
            if (std::find(names.begin(), names.end(), name) == names.end())
                names.push_back(name);
    }
    return names;
}

}  // namespace qor
