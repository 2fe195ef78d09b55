#include <algorithm>
#include <cstdio>
#include <functional>
#include <set>

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/CheckBox.h"
#include "gui_lib/controls/buttons/RadioButton.h"
#include "gui_lib/controls/buttons/SwitchButton.h"
#include "gui_lib/controls/buttons/ToggleButton.h"
#include "gui_lib/controls/labels/AnimatedColorStatic.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/controls/scroll/HorzScrollBar.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/controls/scroll/VertScrollBar.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/controls/small/TabGroupItem.h"
#include "gui_lib/controls/small/Tooltip.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/Lua.h"
#include "tests/skins/SkinDocument.h"
#include "tests/skins/SkinTree.h"
#include "tests/support/TestHost.h"

#include <gtest/gtest.h>
#include <lua.hpp>

namespace skintest {

namespace {

/// A skin file whose tables are empty and note each key that is looked up, under the path that led there.
constexpr char const* noticingSkins = R"(
LookedUp = {}
local kindBelow = { skin = "skinData", skins = "skin", states = "state", look = "drawable" }
local function noticing(path, kind)
    local entries = kind == "state" and { noticing(path, "look") } or {}
    return setmetatable(entries, { __index = function(_, key)
        local here = path .. "/" .. key
        LookedUp[here] = true
        local below = kind == "skinData" and key or kindBelow[kind]
        return below and noticing(here, below)
    end })
end
Skin = setmetatable({}, { __index = function(_, name)
    return function() return noticing(name, "skin") end
end })
)";

/// By the headings of the document: the keys that were looked up. Those of the drawables are told apart by theirs.
using LookedUp = std::map<std::string, std::set<std::string>>;

std::vector<std::string> splitPath(std::string const& path) {
    std::vector<std::string> words;
    for (size_t start = 0; start <= path.size();) {
        size_t const end = std::min(path.find('/', start), path.size());
        if (path.compare(start, end - start, "skinData") != 0)
            words.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return words;
}

/// "windowSkin/skinData/skins/header/skinData/params/x" is "params.x" of "windowSkin.header".
void addPath(std::string const& path, LookedUp& lookedUp) {
    std::vector<std::string> const words = splitPath(path);
    std::string heading = words[0];
    size_t next = 1;
    for (; next + 1 < words.size() && words[next] == "skins"; next += 2) {
        lookedUp[heading].insert("skins." + words[next + 1]);
        heading += "." + words[next + 1];
    }
    size_t const left = words.size() - next;
    if (left == 2 && words[next] == "params") {
        lookedUp[heading].insert("params." + words[next + 1]);
    } else if (left >= 3 && words[next] == "states") {
        std::string const& drawable = words[next + 2];
        lookedUp[heading].insert("states." + drawable);
        if (left == 4)
            lookedUp[drawable == "check" ? "picture" : drawable].insert(words[next + 3]);
    }
}

/// A default as the document writes it.
std::string describe(Value const* value, std::string const& form) {
    auto const number = [value](char const* name) {
        Value const* const field = value->find(name);
        char text[32];
        std::snprintf(text, sizeof text, "%g", field == nullptr ? 0.0 : field->number);
        return std::string(text);
    };
    if (value == nullptr)
        return form == "colour" ? "transparent" : "nothing";
    if (form == "boolean")
        return value->number != 0 ? "true" : "false";
    if (form == "number") {
        char text[32];
        std::snprintf(text, sizeof text, "%g", value->number);
        return text;
    }
    if (form == "string")
        return value->text.empty() ? "empty" : value->text;
    if (form == "size")
        return number("horz") + ", " + number("vert");
    if (form == "insets") {
        bool const equal =
            number("left") == number("top") && number("top") == number("right") && number("right") == number("bottom");
        return equal ? number("left") : "not equal";
    }
    std::string const word = value->find("type") == nullptr ? "" : value->find("type")->text;
    return (word == "max" ? "right" : word == "middle" ? "center" : "left") + (", " + number("offset"));
}

/// What a class looks up and what it has by default, against the document.
void compareSkin(std::string const& heading, std::string const& documented, LookedUp const& lookedUp,
                 Value const& defaults, SkinDocument const& document) {
    SCOPED_TRACE(heading);
    std::set<std::string> keys = {"states.bkg", "states.picture", "states.text"};
    Value const* const data = defaults.find("skinData");
    ASSERT_NE(data, nullptr);
    for (std::string const& table : {std::string("Every skin"), documented}) {
        for (auto const& [key, about] : document.getKeys(table)) {
            keys.insert(key);
            if (key.compare(0, 7, "params.") == 0) {
                EXPECT_EQ(describe(data->find("params")->find(key.substr(7)), about.form), about.byDefault) << key;
            } else if (key.compare(0, 6, "skins.") == 0) {
                std::string const part = key.substr(6);
                Value const* const below = data->find("skins") == nullptr ? nullptr : data->find("skins")->find(part);
                ASSERT_NE(below, nullptr) << part;
                compareSkin(heading + "." + part, document.findPartHeading(documented, part), lookedUp, *below,
                            document);
            }
        }
    }
    auto const found = lookedUp.find(heading);
    EXPECT_EQ(keys, found == lookedUp.end() ? std::set<std::string>() : found->second);
}

/// What the skin of a widget has after it found nothing in its file.
Value readDefaults(gui::skin::Skin const& skin) {
    Value value;
    qor::string error;
    bool const done = qor::luaProtected(
        gui::GUI::get()->getLuaState(),
        [&](lua_State* L) {
            lua_newtable(L);
            skin.putIntoScript(L);
            value = readValue(L, lua_gettop(L));
        },
        &error);
    EXPECT_TRUE(done) << error;
    return value;
}

LookedUp readLookedUp() {
    LookedUp lookedUp;
    Value paths;
    qor::luaProtected(gui::GUI::get()->getLuaState(), [&paths](lua_State* L) {
        lua_getglobal(L, "LookedUp");
        paths = readValue(L, lua_gettop(L));
    });
    for (auto const& [path, noted] : paths.fields)
        addPath(path, lookedUp);
    return lookedUp;
}

/// One widget for each skin name that a class loads by itself.
std::map<std::string, std::function<gui::Widget*()>> getMakers() {
    return {
        {"windowSkin", [] { return new gui::Window; }},
        {"modalWindowSkin", [] { return new gui::ModalWindow(false); }},
        {"tooltipSkin", [] { return new gui::Tooltip(gui::WindowsManager::get(0)); }},
        {"buttonSkin", [] { return new gui::Button; }},
        {"toggleButtonSkin", [] { return new gui::ToggleButton; }},
        {"switchButtonSkin", [] { return new gui::SwitchButton; }},
        {"checkBoxSkin", [] { return new gui::CheckBox; }},
        {"radioButtonSkin", [] { return new gui::RadioButton; }},
        {"staticSkin", [] { return new gui::Static; }},
        {"animatedColorStaticSkin", [] { return new gui::AnimatedColorStatic; }},
        {"tabGroupItemSkin", [] { return new gui::TabGroupItem; }},
        {"panelSkin", [] { return new gui::Panel; }},
        {"horzScrollBarSkin", [] { return new gui::HorzScrollBar; }},
        {"vertScrollBarSkin", [] { return new gui::VertScrollBar; }},
        {"scrollPaneSkin", [] { return new gui::ScrollPane; }},
        {"debugSkin",
         [] {
             auto* const panel = new gui::Panel;
             panel->getWidgetSkin()->load("debugSkin");
             return panel;
         }},
    };
}

TEST(SkinDocument, TellsTheKeysAndDefaultsThatEachClassReads) {
    support::TestHost const host(noticingSkins);
    SkinDocument const document;
    std::map<std::string, Value> defaults;
    for (auto const& [name, make] : getMakers()) {
        gui::Widget* const widget = make();
        defaults[name] = readDefaults(*widget->getWidgetSkin());
        gui::Widget::destroy(widget);
    }
    LookedUp const lookedUp = readLookedUp();
    for (auto const& [name, value] : defaults) {
        EXPECT_GT(lookedUp.count(name), 0u) << "no class loads " << name;
        compareSkin(name, name, lookedUp, value, document);
    }
    for (auto const& [name, keys] : lookedUp)
        EXPECT_TRUE(document.hasHeading(name) || name.find('.') != std::string::npos) << name << " is not described";
    for (char const* const drawable : {"bkg", "picture", "text"}) {
        std::set<std::string> described;
        for (auto const& [key, about] : document.getKeys(drawable))
            described.insert(key);
        EXPECT_EQ(described, lookedUp.at(drawable)) << drawable;
    }
}

}  // namespace

}  // namespace skintest
