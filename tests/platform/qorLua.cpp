#include <clocale>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "platform/qor/Lua.h"
#include "tests/support/LogCapture.h"

#include <lua.hpp>

namespace {

/// A state with the libraries and small limits, and a folder for scripts.
class Lua : public testing::Test {
protected:
    void SetUp() override {
        folder_ = std::filesystem::temp_directory_path() / ("qor_lua_" + std::to_string(getpid()));
        std::filesystem::create_directories(folder_);
        L = QOR_lua_open("the test script");
        QOR_lua_openlibs(L);
        qor::setLuaLimits(L, limits_);
    }
    void TearDown() override {
        EXPECT_EQ(lua_gettop(L), 0);
        QOR_lua_close(L);
        std::filesystem::remove_all(folder_);
    }

    std::string write(char const* name, std::string const& content) {
        std::string path = (folder_ / name).string();
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    /// The result of a script as text, or its error.
    std::string run(std::string const& script) {
        std::string const path = write("s.lua", script);
        if (QOR_lua_loadfile(L, path.c_str()) == 0)
            QOR_lua_pcall(L, 0, 1, 0);
        qor::string text;
        if (!qor::luaToString(L, -1, text))
            text = lua_isboolean(L, -1) ? (lua_toboolean(L, -1) ? "true" : "false") : luaL_typename(L, -1);
        lua_pop(L, 1);
        return text.c_str();
    }

    /// The script is stopped by the budget, and so is whatever comes after it, until there are new limits.
    void expectSpent(std::string const& script) {
        std::string const error = run(script);
        EXPECT_NE(error.find("used up its budget"), std::string::npos) << script << "\n" << error;
        EXPECT_TRUE(qor::isLuaSpent(L)) << script;
        EXPECT_NE(run("return 1").find("used up its budget"), std::string::npos) << script;
        qor::setLuaLimits(L, limits_);
        EXPECT_EQ(run("return 1"), "1") << script;
    }

    qor::LuaLimits limits_{size_t(4) << 20, 1'000'000, 20.0};
    std::filesystem::path folder_;
    lua_State* L = nullptr;
};

TEST_F(Lua, tellsFileAndLineOfEveryKindOfError) {
    EXPECT_NE(run("\n\nx = = 1").find("s.lua:3:"), std::string::npos);
    EXPECT_NE(run("\nlocal a = nil\nreturn a.b").find("s.lua:3:"), std::string::npos);
    EXPECT_NE(run("\nerror('bare', 0)").find("s.lua:2: bare"), std::string::npos);
    EXPECT_NE(run("\nerror({})").find("s.lua:2: (the error is a table value)"), std::string::npos);
    EXPECT_NE(run("\nstring.rep()").find("s.lua:2:"), std::string::npos);
    EXPECT_NE(run("\n\nwhile true do end").find("s.lua:3:"), std::string::npos);
    qor::setLuaLimits(L, limits_);
    std::string const memory = run("local t = {}\nwhile true do\nt[#t + 1] = {} end");
    EXPECT_NE(memory.find("s.lua:3: not enough memory"), std::string::npos) << memory;
}

TEST_F(Lua, loadsTextOnly) {
    lua_State* const plain = luaL_newstate();
    luaL_loadstring(plain, "return 1");
    std::string code;
    lua_dump(
        plain,
        [](lua_State*, void const* data, size_t size, void* target) {
            static_cast<std::string*>(target)->append(static_cast<char const*>(data), size);
            return 0;
        },
        &code);
    lua_close(plain);
    std::string const file = write("code.lua", code);
    EXPECT_NE(QOR_lua_loadfile(L, file.c_str()), 0);
    EXPECT_NE(std::string(lua_tostring(L, -1)).find("bytecode"), std::string::npos);
    lua_pop(L, 1);
    std::string const hidden = write("hidden.lua", "#!skip\n" + code);
    for (std::string const& call :
         {"loadfile('" + file + "')", "loadfile('" + hidden.substr(0) + "')", std::string("loadstring('\\27Lua')"),
          std::string("load((function() local n = 0 return function() n = n + 1 "
                      "return n < 5 and ('\\27Lua'):sub(n, n) or nil end end)())")})
        EXPECT_EQ(run("return (" + call + ")"), "nil") << call;
    EXPECT_EQ(run("return loadstring('return 1 + 1')()"), "2");
    EXPECT_EQ(run("\xEF\xBB\xBFreturn 3"), "3");
    EXPECT_NE(run("#!/usr/bin/lua\nerror('x')").find("s.lua:2:"), std::string::npos);
}

TEST_F(Lua, stopsEndlessScriptsAndStaysSpent) {
    for (char const* script : {
             "while true do end",
             "while true do pcall(function() while true do end end) end",
             "local function f() while true do pcall(f) end end f()",
             "while true do xpcall(function() while true do end end, function() while true do end end) end",
             "while true do coroutine.wrap(function() while true do end end)() end",
             "while true do pcall(function() coroutine.resume(coroutine.create(function() while true do end end)) end) "
             "end",
             "while true do coroutine.create(function() end) end",
             "local s = ('x'):rep(100000) while true do local t = s .. 'y' end",
             "local s = ('x'):rep(1000000) while true do s:upper() end",
             "local t = setmetatable({}, {__index = function(t, k) return t[k + 1] end}) while true do "
             "pcall(function() return t[1] end) end",
             "local t = {} for i = 1, 20000 do t[i] = i end while true do table.insert(t, 1, 0) table.remove(t, 1) end",
             "local t = {} for i = 1, 20000 do t[i] = '' end while true do table.concat(t) end",
             "local t = {} for i = 1, 20000 do t[i] = i % 7 end while true do table.sort(t) end",
             "while true do collectgarbage() end",
         })
        expectSpent(script);
}

TEST_F(Lua, boundsStringPatterns) {
    for (char const* script : {
             "return (('a'):rep(40)):find(('a?'):rep(40) .. ('a'):rep(41))",
             "return (('a'):rep(3000)):match('.-.-.-.-.-b')",
             "return (('a'):rep(20000)):gsub('.*b', '')",
             "for w in (('a'):rep(20000)):gmatch('a-b') do end",
             "return (('('):rep(30000)):find('%b()')",
             "return (('a'):rep(5000)):find('(.*)(.*)%1b')",
             "while true do (('a'):rep(100000)):find('b', 1, true) end",
         })
        expectSpent(script);
    EXPECT_NE(run("return ('x'):rep(1e15)").find("too large"), std::string::npos);
    EXPECT_EQ(run("return #(''):rep(1e15)"), "0");
    EXPECT_NE(run("return (('a'):rep(100000)):gsub('a', ('b'):rep(1000))").find("too large"), std::string::npos);
    EXPECT_NE(run("return ('a'):find(('('):rep(300))").find("s.lua:1:"), std::string::npos);
}

TEST_F(Lua, namesTheLineOfAWrongPatternAndRepeatsText) {
    for (char const* wrong : {"'%'", "'[a'", "'%b'", "'%f'", "'('", "'x*)'", "'%1'"})
        EXPECT_NE(run(std::string("return ('x'):find(") + wrong + ")").find("s.lua:1:"), std::string::npos) << wrong;
    EXPECT_EQ(run("return ('ab'):rep(3) .. ('ab'):rep(-1)"), "ababab");
}

TEST_F(Lua, sortsAlsoWithAComparisonThatMakesNoSense) {
    EXPECT_EQ(run("local t = {5, 3, 9, 1, 7, 3} table.sort(t) return table.concat(t, ' ')"), "1 3 3 5 7 9");
    EXPECT_EQ(run("local t = {5, 3, 9, 1} table.sort(t, function(a, b) return a > b end) return table.concat(t, ' ')"),
              "9 5 3 1");
    EXPECT_EQ(run("local t = {3, 1, 2} table.sort(t, function() return true end) return #t"), "3");
    EXPECT_NE(run("table.sort({1, 'x'})").find("s.lua:1:"), std::string::npos);
}

TEST_F(Lua, capsMemoryAndGoesOnAfterwards) {
    EXPECT_NE(run("return ('x'):rep(2e6) .. ('y'):rep(3e6)").find("not enough memory"), std::string::npos);
    EXPECT_EQ(run("local t = {} local ok = pcall(function() while true do t[#t + 1] = 'x' .. #t end end) t = nil "
                  "return ok"),
              "false");
    EXPECT_FALSE(qor::isLuaSpent(L));
    EXPECT_EQ(run("return 'alive'"), "alive");
    EXPECT_LE(qor::getLuaMemory(L), limits_.memoryBytes * 2);
}

TEST_F(Lua, refillsTheBudgetForEachCallThatKeepsIt) {
    for (int i = 0; i < 20; ++i)
        ASSERT_EQ(run("for i = 1, 100000 do end return 1"), "1");
}

TEST_F(Lua, keepsWhatReachesOutOrEscapesTheLimitsFromScripts) {
    for (char const* name : {"io", "os", "newproxy", "debug.sethook", "debug.getregistry", "string.dump",
                             "package.loadlib", "package.loaded.debug", "package.loaded._G"})
        EXPECT_EQ(run(std::string("return ") + name), "nil") << name;
    EXPECT_EQ(run("return type(debug.traceback())"), "string");
}

TEST_F(Lua, requiresModulesOnceByPathAndByPreload) {
    write("mod.lua", "count = (count or 0) + 1 return {name = ...}");
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(folder_);
    EXPECT_EQ(run("package.preload.given = function(n) return 'for ' .. n end "
                  "return require('mod').name .. count .. require('mod').name .. count .. require('given')"),
              "mod1mod1for given");
    EXPECT_NE(run("\nrequire('no.such')").find("s.lua:2:"), std::string::npos);
    std::filesystem::current_path(before);
}

TEST_F(Lua, readsHostileTablesWithoutPanic) {
    EXPECT_EQ(run("t = setmetatable({plain = 1}, {__index = function() error('gotcha') end}) "
                  "e = setmetatable({}, {__index = function() while true do end end}) return 1"),
              "1");
    EXPECT_EQ(qor::luaGetGlobal(L, "t"), LUA_TTABLE);
    EXPECT_EQ(qor::luaGetField(L, -1, "plain"), LUA_TNUMBER);
    EXPECT_EQ(qor::luaGetField(L, -2, "absent"), LUA_TNIL);
    EXPECT_EQ(qor::luaGetIndex(L, 1, 3), LUA_TNIL);
    EXPECT_EQ(qor::luaGetField(L, -1, "of nil"), LUA_TNIL);
    lua_settop(L, 1);
    qor::string error;
    int seen = 0;
    EXPECT_FALSE(qor::luaProtected(
        L, 1,
        [&](lua_State* state) {
            lua_getfield(state, 1, "plain");
            seen = int(lua_tointeger(state, -1));
            lua_getfield(state, 1, "absent");
        },
        &error));
    EXPECT_EQ(seen, 1);
    EXPECT_NE(error.find("gotcha"), qor::string::npos);
    EXPECT_EQ(lua_gettop(L), 1);
    lua_settop(L, 0);

    qor::luaGetGlobal(L, "e");
    EXPECT_EQ(qor::luaGetField(L, -1, "x"), LUA_TNIL);
    EXPECT_TRUE(qor::isLuaSpent(L));
    lua_settop(L, 0);
}

TEST_F(Lua, unwindsTheReadersDestructorsAndSurvivesForeignExceptions) {
    struct Witness {
        int& count;
        ~Witness() { ++count; }
    };
    int destroyed = 0;
    EXPECT_FALSE(qor::luaProtected(L, [&](lua_State* state) {
        Witness const witness{destroyed};
        luaL_error(state, "out");
    }));
    EXPECT_EQ(destroyed, 1);
    qor::string error;
    EXPECT_FALSE(qor::luaProtected(
        L, [](lua_State*) { throw 1; }, &error));
    EXPECT_NE(error.find("C++ exception"), qor::string::npos);
}

TEST_F(Lua, walksATableThatChangesUnderTheWalk) {
    run("t = {a = 1, b = 2, c = 3} return 1");
    qor::luaGetGlobal(L, "t");
    int count = 0;
    lua_pushnil(L);
    while (qor::luaNext(L, 1)) {
        ++count;
        lua_pop(L, 1);
    }
    EXPECT_EQ(count, 3);
    EXPECT_EQ(lua_gettop(L), 1);
    lua_pushliteral(L, "no such key");
    EXPECT_FALSE(qor::luaNext(L, 1));
    EXPECT_EQ(lua_gettop(L), 1);
    lua_settop(L, 0);
}

TEST_F(Lua, writesNumbersWithAPointInAnyLocale) {
    std::string const before = std::setlocale(LC_NUMERIC, nullptr);
    // Without one of these locales the machine cannot tell the difference.
    for (char const* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE", "fr_FR"})
        if (std::setlocale(LC_NUMERIC, name))
            break;
    EXPECT_EQ(run("return '1.5' + 0.25"), "1.75");
    lua_pushliteral(L, "2.5");
    double number = 0;
    EXPECT_TRUE(qor::luaToNumber(L, -1, number));
    EXPECT_EQ(number, 2.5);
    lua_pop(L, 1);
    std::setlocale(LC_NUMERIC, before.c_str());
}

TEST_F(Lua, sendsPrintToTheLog) {
    support::LogCapture log;
    run("print('a', 1, true, nil)");
    EXPECT_TRUE(log.contains("a\t1\ttrue\tnil")) << log.dump();
}

TEST_F(Lua, callsFunctionsWithArgumentsAndResults) {
    run("function f(a, b) return a + b, a * b end return 1");
    lua_pushliteral(L, "below");
    qor::luaGetGlobal(L, "f");
    lua_pushnumber(L, 3);
    lua_pushnumber(L, 4);
    ASSERT_EQ(QOR_lua_pcall(L, 2, LUA_MULTRET, 0), 0);
    ASSERT_EQ(lua_gettop(L), 3);
    EXPECT_EQ(lua_tonumber(L, 2), 7);
    EXPECT_EQ(lua_tonumber(L, 3), 12);
    lua_settop(L, 1);
    qor::luaGetGlobal(L, "f");
    EXPECT_NE(QOR_lua_pcall(L, 0, 2, 0), 0);
    EXPECT_EQ(lua_gettop(L), 2);
    EXPECT_STREQ(lua_tostring(L, 1), "below");
    lua_settop(L, 0);
}

}  // namespace
