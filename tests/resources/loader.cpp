#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/Lua.h"
#include "platform/qor/Paths.h"
#include "tests/resources/ResourceHost.h"
#include "tests/support/LogCapture.h"

#include <lua.hpp>

#include <unistd.h>

namespace {

namespace fs = std::filesystem;

int openFortyTwo(lua_State* L) {
    lua_pushinteger(L, 42);
    return 1;
}

/// A working directory of its own, with a loader script that the test writes, or none.
class OwnLoader {
public:
    OwnLoader() : before_(fs::current_path()), roots_(qor::getAssetRoots()) {
        fs::create_directories(folder_ / "vorlex/loader");
        fs::current_path(folder_);
        qor::setAssetRoots({});
    }
    ~OwnLoader() {
        fs::current_path(before_);
        fs::remove_all(folder_);
        qor::setAssetRoots(roots_);
    }
    void write(std::string const& text) { std::ofstream("vorlex/loader/CreateWindow.lua") << text; }

private:
    fs::path folder_ = fs::temp_directory_path() / ("loader_" + std::to_string(getpid()));
    fs::path before_;
    qor::vector<qor::string> roots_;
};

lua_State* state() { return gui::GUI::get()->getLuaState(); }

TEST(LoaderScript, aMissingOneGivesNullWithoutAWordAndTwoLinesForAFill) {
    support::TestHost host;
    OwnLoader const loader;
    int const top = lua_gettop(state());
    EXPECT_EQ(gui::GUI::get()->createWindowFromResource("x.lua"), nullptr);
    EXPECT_EQ(lua_gettop(state()), top);
    gui::Window* const window = new gui::Window;
    support::LogCapture log;
    gui::GUI::get()->loadWindowFromResource("x.lua", window);
    ASSERT_EQ(log.getLines().size(), 2u) << log.dump();
    EXPECT_EQ(log.getLines()[0].level, 8);
    EXPECT_TRUE(log.contains("CreateWindow.lua: not found"));
    EXPECT_TRUE(log.contains("attempt to call a nil value"));
    EXPECT_EQ(lua_gettop(state()), top);
}

TEST(LoaderScript, getsTheNameAndTheHandlerAndItsErrorIsLoggedAsItIs) {
    support::TestHost host;
    OwnLoader loader;
    loader.write("local name, window = ... error(name .. ' 100%d %s ' .. type(window))");
    support::LogCapture log;
    EXPECT_EQ(gui::GUI::get()->createWindowFromResource("x.lua"), nullptr);
    EXPECT_TRUE(log.getLines().empty());
    int const top = lua_gettop(state());
    gui::Window* const window = new gui::Window;
    gui::GUI::get()->loadWindowFromResource("x.lua", window);
    ASSERT_EQ(log.getLines().size(), 1u) << log.dump();
    EXPECT_EQ(log.getLines()[0].text, "vorlex/loader/CreateWindow.lua:1: x.lua 100%d %s userdata");
    EXPECT_EQ(lua_gettop(state()), top);
}

TEST(LoaderScript, whatItGivesStaysOnTheStackUntilThatIsFull) {
    support::TestHost host;
    OwnLoader loader;
    loader.write("return 5");
    int const top = lua_gettop(state());
    support::LogCapture log;
    EXPECT_EQ(gui::GUI::get()->createWindowFromResource("x"), nullptr) << "a number is no window";
    EXPECT_EQ(lua_gettop(state()), top + 1);
    for (int i = 0; i < 9000; ++i)
        gui::GUI::get()->createWindowFromResource("x");
    EXPECT_GT(lua_gettop(state()), top + 5000);
    ASSERT_EQ(log.getLines().size(), 1u) << log.dump();
    EXPECT_TRUE(log.contains("The Lua stack is full"));
    lua_settop(state(), top);
}

TEST(LoaderScript, aloneMayRequireWhatIsNative) {
    qor::registerLuaModule("fortytwo", openFortyTwo);
    support::TestHost host;
    OwnLoader loader;
    std::ofstream("result.lua") << "return 0";
    int const top = lua_gettop(state());
    auto const ask = [&](std::string const& script) {
        loader.write(script);
        gui::GUI::get()->createWindowFromResource("x");
        std::string const text = lua_isstring(state(), -1) ? lua_tostring(state(), -1) : "";
        lua_settop(state(), top);
        return text;
    };
    EXPECT_EQ(ask("return require 'fortytwo'"), "42");
    EXPECT_EQ(ask("return require('fortytwo') + require('fortytwo')"), "84");
    // Neither what it loads, nor what it calls, nor what names itself after it.
    for (char const* const script :
         {"return select(2, pcall(require, 'fortytwo'))",
          "return select(2, pcall(function() return require 'fortytwo' end))",
          "return select(2, pcall(loadstring('return require [[fortytwo]]', '@vorlex/loader/CreateWindow.lua')))",
          "return select(2, pcall(coroutine.wrap(function() return require 'fortytwo' end)))"})
        EXPECT_NE(ask(script).find("fortytwo.lua: not found"), std::string::npos) << script;
    // It reads no text modules, and no name leads out of its folder.
    for (char const* const name : {"result", "../x", "a.b", ""}) {
        support::LogCapture log;
        EXPECT_EQ(ask("return require '" + std::string(name) + "'"), "") << name;
        EXPECT_TRUE(log.contains("cannot be loaded")) << name;
    }
    // A file beside it that is no library, and one that is linked to nothing of ours.
    std::ofstream("vorlex/loader/broken.so") << "no library";
    fs::create_symlink("/lib/x86_64-linux-gnu/libm.so.6", "vorlex/loader/stranger.so");
    support::LogCapture log;
    EXPECT_EQ(ask("return require 'broken'"), "");
    EXPECT_EQ(ask("return require 'stranger'"), "");
    EXPECT_TRUE(log.contains("linked to another copy of the toolkit")) << log.dump();
}

TEST(LoaderScript, windowFilesAndSkinsNeverReachTheBindingsOrNativeCode) {
    ResourceHost host;
    ASSERT_TRUE(host.make("return Window { }"));
    support::LogCapture log;
    EXPECT_FALSE(host.make("return require 'vorlexgui'"));
    EXPECT_NE(host.takeErrorText().find("vorlexgui.lua: not found"), std::string::npos);
    EXPECT_FALSE(host.make("return dofile, loadfile, loadstring, debug, package, setfenv"));
    EXPECT_NE(host.takeErrorText().find("returns a nil"), std::string::npos);
    lua_State* const L = state();
    for (char const* const chunk : {"return require 'vorlexgui'", "return dofile './vorlex/loader/CreateWindow.lua'",
                                    "return package.loaded.vorlexgui.read"}) {
        luaL_loadstring(L, chunk);
        EXPECT_NE(QOR_lua_pcall(L, 0, 1, 0), 0) << chunk;
        lua_pop(L, 1);
    }
}

}  // namespace
