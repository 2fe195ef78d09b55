#include "tests/resources/ResourceHost.h"

#include <filesystem>
#include <fstream>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "host/lua/Bindings.h"
#include "host/lua/Objects.h"
#include "host/lua/WindowResources.h"
#include "platform/qor/Lua.h"

#include <lua.hpp>

#include <unistd.h>

namespace {

lua_State* state() { return gui::GUI::get()->getLuaState(); }

}  // namespace

ResourceHost::ResourceHost()
    : folder_((std::filesystem::temp_directory_path() / ("resources_" + std::to_string(getpid()))).string()) {
    host::registerWindowResources();
    std::filesystem::create_directories(folder_);
}

ResourceHost::~ResourceHost() { std::filesystem::remove_all(folder_); }

std::string ResourceHost::write(std::string_view text) {
    lastFile_ = folder_ + "/r" + std::to_string(++files_) + ".lua";
    std::ofstream(lastFile_, std::ios::binary) << text;
    return lastFile_;
}

gui::WindowBase* ResourceHost::make(std::string_view text) {
    std::string const path = write(text);
    return gui::GUI::get()->createWindowFromResource(path.c_str());
}

void ResourceHost::fill(gui::WindowBase& window, std::string_view text) {
    std::string const path = write(text);
    gui::GUI::get()->loadWindowFromResource(path.c_str(), &window);
}

std::vector<std::string> ResourceHost::takeErrors() {
    std::vector<std::string> errors;
    for (qor::string const& error : host::takeResourceErrors()) {
        std::string text(error.c_str());
        for (std::size_t at = text.find(folder_); at != std::string::npos; at = text.find(folder_))
            text.replace(at, text.find(".lua", at) + 4 - at, "FILE");
        errors.push_back(text);
    }
    return errors;
}

std::string ResourceHost::takeErrorText() {
    std::string text;
    for (std::string const& error : takeErrors())
        text += error + "\n";
    return text;
}

bool ResourceHost::run(gui::WindowBase& window, std::string const& statements) {
    lua_State* const L = state();
    qor::LuaStackGuard const guard(L);
    std::string const chunk = "local w = ...\n" + statements;
    if (luaL_loadbuffer(L, chunk.data(), chunk.size(), "=test") == 0) {
        host::lua::pushObject(L, {&window});
        if (QOR_lua_pcall(L, 1, 1, 0) == 0)
            return lua_toboolean(L, -1) != 0;
    }
    host::lua::Bindings::open(L).report(lua_tostring(L, -1));
    return false;
}

bool ResourceHost::check(gui::WindowBase& window, std::string const& expression) {
    return run(window, "return " + expression);
}

int ResourceHost::countWidgets() {
    int count = 0;
    for (int i = 0; i < gui::WidgetHandler::getCount(); ++i)
        count += gui::WidgetHandler::get(gui::WidgetHandler::getAt(i)) ? 1 : 0;
    return count;
}

int ResourceHost::countKept() { return host::lua::Bindings::open(state()).getKeptCount(); }

std::size_t ResourceHost::measureLua() {
    lua_gc(state(), LUA_GCCOLLECT, 0);
    lua_gc(state(), LUA_GCCOLLECT, 0);
    return qor::getLuaMemory(state());
}

void clickWidget(support::TestHost& host, gui::Widget& widget) {
    osg::Vec2i const size = widget.getSize();
    osg::Vec2i const point = widget.widgetToScreen(osg::Vec2i(size.x() / 2, size.y() / 2));
    host.click(point.x(), point.y());
}
