#include <random>
#include <string>

#include <gtest/gtest.h>

#include "platform/qor/Lua.h"
#include "tests/support/Soak.h"

#include <lua.hpp>

namespace {

/// What a call of a string function gives, as text: its results, or "error".
std::string call(lua_State* L, char const* function, std::string const& subject, std::string const& pattern,
                 char const* replacement) {
    lua_getglobal(L, "string");
    lua_getfield(L, -1, function);
    lua_pushlstring(L, subject.data(), subject.size());
    lua_pushlstring(L, pattern.data(), pattern.size());
    int arguments = 2;
    if (replacement) {
        lua_pushstring(L, replacement);
        ++arguments;
    }
    std::string result;
    if (lua_pcall(L, arguments, LUA_MULTRET, 0) != 0) {
        result = "error";
    } else {
        for (int i = 2; i <= lua_gettop(L); ++i)
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
    std::mt19937 random(20240607);
    int const rounds = support::byEffort(60000, 60000, 3000000);
    int matches = 0;
    for (int i = 0; i < rounds && !testing::Test::HasFailure(); ++i) {
        std::string const subject = pick(random, "aab(]-%1 ", 9);
        std::string const pattern = pick(random, "aab.%%wWs*+-?()()[]^^$-1bf0 ", 9);
        struct {
            char const* function;
            char const* replacement;
        } const calls[] = {{"find", nullptr}, {"match", nullptr}, {"gsub", "<%0>"}, {"gsub", "%1-"}};
        for (auto const& each : calls) {
            std::string const expected = call(model, each.function, subject, pattern, each.replacement);
            EXPECT_EQ(call(ours, each.function, subject, pattern, each.replacement), expected)
                << each.function << " '" << subject << "' '" << pattern << "'";
            matches += expected != "error" && expected != "nil|";
        }
    }
    EXPECT_GT(matches, rounds / 10);
    QOR_lua_close(ours);
    lua_close(model);
}

}  // namespace
