#include <random>
#include <string>

#include <gtest/gtest.h>

#include "platform/qor/Lua.h"
#include "tests/support/Soak.h"

#include <lua.hpp>

namespace {

/// Functions of a subject and a pattern.
char const* const functions[] = {
    "return s:find(p)",
    "return s:match(p)",
    "return s:find(p, -4), s:find(p, 3, true), s:match(p, 10)",
    "return s:gsub(p, '<%0>')",
    "return s:gsub(p, '%1-')",
    "return s:gsub(p, '%%%2', 2)",
    "return s:gsub(p, {a = 'x', aa = 4, b = false})",
    "return s:gsub(p, function(c, d) if c ~= 'b' then return tostring(c) .. tostring(d) end end)",
    "local t = {} for a, b in s:gmatch(p) do t[#t + 1] = tostring(a) .. tostring(b) end return table.concat(t, ',')",
};

/// What such a function gives, as text: its results, or "error".
std::string call(lua_State* L, char const* function, std::string const& subject, std::string const& pattern) {
    lua_getglobal(L, function);
    if (lua_isnil(L, -1)) {
        EXPECT_EQ(luaL_loadstring(L, (std::string("local s, p = ... ") + function).c_str()), 0);
        lua_pushvalue(L, -1);
        lua_setglobal(L, function);
        lua_replace(L, 1);
    }
    lua_pushlstring(L, subject.data(), subject.size());
    lua_pushlstring(L, pattern.data(), pattern.size());
    std::string result;
    if (lua_pcall(L, 2, LUA_MULTRET, 0) != 0) {
        result = "error";
    } else {
        for (int i = 1; i <= lua_gettop(L); ++i)
            result += std::string(lua_isnil(L, i) ? "nil" : lua_tostring(L, i)) + "|";
    }
    lua_settop(L, 0);
    return result;
}

std::string pick(std::mt19937& random, std::string const& letters, size_t most) {
    std::string text(random() % (most + 1), ' ');
    for (char& letter : text)
        letter = letters[random() % letters.size()];
    return text;
}

// The language's own library is the model: short subjects keep its unbounded matching fast.
TEST(LuaPatterns, agreeWithTheLibraryTheyReplaceOnRandomPatterns) {
    lua_State* const model = luaL_newstate();
    luaL_openlibs(model);
    lua_State* const ours = QOR_lua_open("patterns");
    QOR_lua_openlibs(ours);
    // The place of a position is no text that could come again.
    EXPECT_EQ(call(ours, functions[0], "ab", "()%1b"), call(model, functions[0], "ab", "()%1b"));
    std::mt19937 random(20240607);
    int const rounds = support::byEffort(60000, 60000, 3000000);
    int matches = 0;
    for (int i = 0; i < rounds && !testing::Test::HasFailure(); ++i) {
        std::string const subject = pick(random, std::string("aab(]-%1 \0", 10), 9);
        std::string const pattern = pick(random, "aab.%%wWszf*+-?()()[]^^$-1b0 ", 9);
        for (size_t k = size_t(i) % 3; k < std::size(functions); k += 3) {
            std::string const expected = call(model, functions[k], subject, pattern);
            EXPECT_EQ(call(ours, functions[k], subject, pattern), expected)
                << functions[k] << " '" << subject << "' '" << pattern << "'";
            matches += expected != "error" && expected != "nil|";
        }
    }
    EXPECT_GT(matches, rounds / 10);
    QOR_lua_close(ours);
    lua_close(model);
}

}  // namespace
