#include "tests/support/SkinShapes.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/Lua.h"
#include "platform/trace/vtxTraceLog.h"

#include <lua.hpp>

namespace support {

namespace {

constexpr char const* script = R"(
SkinTablesConstant = false
local file, planted, excluded = Skin, nil, nil
local noted, known

local function noticing(path, name)
    local entries = {}
    if name == "states" then
        noted[#noted + 1] = path .. "/1"
        entries[1] = noticing(path .. "/1", "1")
    end
    return setmetatable(entries, { __index = function(_, key)
        local here = path .. "/" .. key
        if not known[here] then
            known[here] = true
            noted[#noted + 1] = here
        end
        return noticing(here, path:match("[^/]*$"))
    end })
end

-- From now on skins are empty and note what is looked up; those looked up first come first.
function StartNoting()
    noted, known = {}, {}
    Skin = setmetatable({}, { __index = function(_, name)
        if not known[name] then
            known[name] = true
            noted[#noted + 1] = name
        end
        return function() return noticing(name, name) end
    end })
end

function TakeNoted()
    Skin = file
    return table.concat(noted, "\n")
end

local erring = function() error("a function in a skin") end
local long = ("1234567x"):rep(8192)
local wrong = {
    function() return nil end,
    function() return true end,
    function() return -7 end,
    function() return math.huge end,
    function() return 0 / 0 end,
    function() return "" end,
    function() return long end,
    function() return "98765432109876543210" end,
    function() return {} end,
    function()
        local all = {}
        all[1] = all
        return setmetatable(all, { __index = function() return all end })
    end,
    function() return erring end,
    function() return setmetatable({}, { __index = erring }) end,
}

local references = {}

-- What was written is from now on what the skin should be.
function Keep(name) references[name] = Written end

function Begin(name)
    planted, excluded = { [name] = references[name] }, {}
    Skin = setmetatable({ [name] = function() return planted[name] end }, { __index = file })
end

function Plant(path, kind)
    local at, words = planted, {}
    for word in path:gmatch("[^/]+") do words[#words + 1] = tonumber(word) or word end
    for index = 1, #words - 1 do
        local below = rawget(at, words[index])
        if below == nil then
            excluded[table.concat(words, "/", 1, index)] = true
        elseif type(below) ~= "table" or getmetatable(below) then
            return
        end
        local copy = {}
        for key, value in pairs(below or {}) do copy[key] = value end
        rawset(at, words[index], copy)
        at = copy
    end
    excluded[path] = true
    -- A rectangle that is inside out is written as zeros; an align is not read without its word.
    if path:match("/[xy][12]$") or path:match("Align/type$") then excluded[path:match("(.*)/")] = true end
    rawset(at, words[#words], wrong[tonumber(kind) + 1]())
    if #words == 1 then Skin = setmetatable({ [path] = at[path] }, { __index = file }) end
end

function Finish() Skin = file end

local function findDifference(one, other, path)
    if excluded[path] then return nil end
    -- A table without anything in it may be left out.
    if type(one) == "table" then other = other or {} elseif type(other) == "table" then one = one or {} end
    if type(one) ~= "table" or type(other) ~= "table" then
        return one ~= other and path .. ": " .. tostring(one) .. " became " .. tostring(other) or nil
    end
    for key in pairs(one) do
        local found = findDifference(one[key], other[key], path .. "/" .. key)
        if found then return found end
    end
    for key in pairs(other) do
        if one[key] == nil and not excluded[path .. "/" .. key] then return path .. "/" .. key .. " is new" end
    end
end

function Compare(name) return findDifference(references[name], Written, name) or "" end
)";

lua_State* getState() { return gui::GUI::get()->getLuaState(); }

}  // namespace

char const* SkinShapes::getKindName(size_t kind) {
    static constexpr char const* names[kindCount] = {"nothing",           "a boolean",
                                                     "a negative number", "a huge number",
                                                     "not a number",      "an empty string",
                                                     "a long string",     "a string of digits",
                                                     "an empty table",    "a table that holds itself",
                                                     "a function",        "a table that raises errors"};
    return names[kind];
}

SkinShapes::SkinShapes(ZooHost& host) : host_(host), window_(new gui::Window) {
    window_->setSize(osg::Vec2i(500, 300));
    window_->setVisible(true);
    lua_State* const L = getState();
    if (luaL_loadbuffer(L, script, std::char_traits<char>::length(script), "=shapes") != 0 ||
        QOR_lua_pcall(L, 0, 0, 0) != 0)
        std::abort();
    for (ZooAnimal const& animal : getZoo())
        learn_(animal);
}

/// Calls a function of the script.
void SkinShapes::call_(char const* function, std::vector<std::string> const& arguments, int results) {
    lua_State* const L = getState();
    lua_getglobal(L, function);
    for (std::string const& argument : arguments)
        lua_pushlstring(L, argument.data(), argument.size());
    if (QOR_lua_pcall(L, int(arguments.size()), results, 0) == 0)
        return;
    std::fprintf(stderr, "%s: %s\n", function, lua_tostring(L, -1));
    std::abort();
}

std::string SkinShapes::takeText_() {
    lua_State* const L = getState();
    std::string const text = lua_tostring(L, -1);
    lua_pop(L, 1);
    return text;
}

void SkinShapes::learn_(ZooAnimal const& animal) {
    call_("StartNoting", {}, 0);
    gui::Widget::destroy(animal.make());
    call_("TakeNoted", {}, 1);
    std::string const noted = takeText_() + "\n";
    Shape shape;
    // Its own skin is the one that it loads first; those of its children follow.
    shape.skin = noted.substr(0, noted.find('\n'));
    shape.animal = &animal;
    bool const isKnown =
        std::any_of(shapes_.begin(), shapes_.end(), [&](Shape const& other) { return other.skin == shape.skin; });
    if (shape.skin.empty() || isKnown)
        return;
    for (size_t from = 0, end = 0; (end = noted.find('\n', from)) != std::string::npos; from = end + 1) {
        std::string const path = noted.substr(from, end - from);
        if (path == shape.skin || path.starts_with(shape.skin + "/"))
            shape.paths.push_back(path);
    }
    shapes_.push_back(std::move(shape));
}

/// Writes the skin of the widget into the global table Written.
void SkinShapes::write_(gui::Widget& widget) {
    lua_State* const L = getState();
    lua_newtable(L);
    widget.getWidgetSkin()->putIntoScript(L);
    lua_setglobal(L, "Written");
}

/// A window by itself, any other widget in a window that stays.
gui::Widget* SkinShapes::show_(ZooAnimal const& animal) {
    gui::Widget* const widget = animal.make();
    if (animal.window)
        widget->setVisible(true);
    else
        window_->insertWidget(widget, -1);
    widget->setPosition(osg::Vec2i(30, 40));
    return widget;
}

/// In the released state, and in the one that the keys belong to.
void SkinShapes::draw_(gui::Widget& widget, std::vector<std::string> const& paths) {
    auto const names = [&paths](char const* word) {
        return std::any_of(paths.begin(), paths.end(),
                           [word](std::string const& path) { return path.find(word) != std::string::npos; });
    };
    host_.moveMouse(-1000, -1000);
    host_.frame();
    if (names("/hover") || names("/pressed")) {
        osg::Vec2i const middle = widget.widgetToScreen(widget.getSize() / 2);
        host_.moveMouse(middle.x(), middle.y());
        host_.frame();
        host_.pressMouse();
        host_.frame();
        host_.releaseMouse();
    }
    if (names("/disabled")) {
        widget.setEnabled(false);
        host_.frame();
    }
}

std::string SkinShapes::play(Shape const& shape, std::vector<Plant> const& plants) {
    lua_State* const L = getState();
    int const top = lua_gettop(L);
    if (referenced_.insert(&shape).second) {
        gui::Widget* const widget = shape.animal->make();
        write_(*widget);
        gui::Widget::destroy(widget);
        call_("Keep", {shape.skin}, 0);
    }
    call_("Begin", {shape.skin}, 0);
    std::vector<std::string> paths;
    for (Plant const& plant : plants) {
        paths.push_back(shape.paths[plant.path]);
        call_("Plant", {paths.back(), std::to_string(plant.kind)}, 0);
    }
    gui::Widget* const widget = show_(*shape.animal);
    write_(*widget);
    call_("Compare", {shape.skin}, 1);
    std::string result = takeText_();
    draw_(*widget, paths);
    gui::Widget::destroy(widget);
    call_("Finish", {}, 0);
    for (qor::string const& misuse : host_.trace().getMisuses())
        result += std::string(" misuse: ") + misuse.c_str();
    host_.trace().clearMisuses();
    if (lua_gettop(L) != top)
        result += " the Lua stack has another height";
    return result;
}

}  // namespace support
