#include <gtest/gtest.h>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/buttons/CheckBox.h"
#include "gui_lib/controls/buttons/CheckBoxData.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/Lua.h"
#include "platform/qor/Paths.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/reload/Folder.h"
#include "tests/support/Attach.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SkinText.h"
#include "tests/support/WidgetZoo.h"

#include <lua.hpp>

namespace {

using gui::GUI;
using gui::Widget;
using gui::skin::Data;
using gui::skin::InteractiveStateReleased;

/// The light skin without hover and pressed looks and with other parameters, as new tables at each call.
constexpr char const* variant = R"(
dofile("skins/light.lua")
local function copy(value)
    if type(value) ~= "table" then return value end
    local result = {}
    for key, field in pairs(value) do result[key] = copy(field) end
    return result
end
local function change(skin)
    local data = skin.skinData
    if data.params then
        data.params.insets = { left = 3, top = 5, right = 7, bottom = 2 }
        data.params.focusRectColor = nil
        data.params.headerHeight = 41
        data.params.checkSize = 11
        data.params.vertScrollBarWidth = nil
    end
    if data.states then
        data.states.hover = nil
        data.states.disabled = nil
        for inner, look in pairs(data.states.released or {}) do
            if inner > 1 then look.bkg = nil end
            look.check = nil
        end
    end
    for _, inner in pairs(data.skins or {}) do change(inner) end
    return skin
end
SkinTablesConstant = nil
local functions = Skin
Skin = {}
for name, make in pairs(functions) do
    Skin[name] = function() return change(copy(make())) end
end
)";

bool reload(qor::string const& file, qor::string* error = nullptr) {
    qor::string text;
    bool const reloaded = GUI::get()->reloadSkin(file, &text);
    if (error)
        *error = text;
    else
        EXPECT_EQ(text, "");
    return reloaded;
}

/// A label's colour by the skin "staticSkin" of a file in `folder`.
std::string skinOf(std::string_view color, std::string_view params = "") {
    return "Skin = { staticSkin = " +
           support::skinFunction(params, "text = { font = '" + std::string(support::fontFile) +
                                             "', fontSize = 14, color = '" + std::string(color) + "' }") +
           " }";
}

gui::Text::Info textOf(Widget const& widget) {
    gui::Text::Info const* const info = widget.getWidgetSkin()->getSkinData()->getText(InteractiveStateReleased, 1);
    return info ? *info : gui::Text::Info();
}

// --- The stack ---

TEST(ReloadedSkin, whatTheFileReturnsAndItsTableStayOnTheStackAndFollowTheRunInForce) {
    Folder folder;
    std::string const file = folder.path("skin.lua").c_str();
    support::ZooHost host("skins/dark.lua");
    host.destroyGui();
    auto const write = [&](std::string const& results) {
        folder.write("skin.lua", skinOf("0x11223344") + " Skin.self = '" + results + "' return " + results);
    };
    write("1, 2, 3");
    host.createGui("dofile('" + file + "') return 1, 2, 3");
    lua_State* const L = GUI::get()->getLuaState();
    auto const expect = [L](std::initializer_list<double> results, char const* self) {
        ASSERT_EQ(lua_gettop(L), 4);
        int place = 0;
        for (double const result : results)
            EXPECT_EQ(lua_tonumber(L, ++place), result);
        ASSERT_TRUE(lua_istable(L, 4));
        lua_getfield(L, 4, "self");
        EXPECT_STREQ(lua_tostring(L, -1), self);
        lua_pop(L, 1);
    };
    expect({1, 2, 3}, "1, 2, 3");
    write("4, 5");
    ASSERT_TRUE(reload(file.c_str()));
    expect({4, 5, 0}, "4, 5");
    write("6, 7, 8, 9");
    ASSERT_TRUE(reload(file.c_str()));
    expect({6, 7, 8}, "6, 7, 8, 9");
    write("1, error()");
    EXPECT_FALSE(GUI::get()->reloadSkin(file.c_str(), nullptr));
    expect({6, 7, 8}, "6, 7, 8, 9");
}

TEST(ReloadedSkin, moreResultsThanTheStackHasRoomForAreNotKept) {
    support::ZooHost host("skins/dark.lua");
    host.destroyGui();
    host.createGui("dofile('skins/dark.lua') local t = {} for i = 1, 7500 do t[i] = i end return unpack(t)");
    EXPECT_EQ(lua_gettop(GUI::get()->getLuaState()), 1);
    EXPECT_TRUE(reload("skins/light.lua"));
    EXPECT_EQ(lua_gettop(GUI::get()->getLuaState()), 1);
}

// --- As after a fresh start ---

/// Seconds after which no fade runs any more: one that runs ends in the colour that it began with.
constexpr double fadeTime = 60.0;

class ReloadedZoo : public testing::TestWithParam<support::ZooAnimal> {};

INSTANTIATE_TEST_SUITE_P(Zoo, ReloadedZoo, testing::ValuesIn(support::getZoo()),
                         [](auto const& info) { return std::string(info.param.name); });

TEST_P(ReloadedZoo, LooksAsIfItHadStartedWithTheNewSkin) {
    Folder folder;
    folder.write("variant.lua", variant);
    std::string const other = folder.path("variant.lua").c_str();
    std::pair<std::string, std::string> const changes[] = {
        {"skins/dark.lua", other}, {other, "skins/light.lua"}, {"skins/light.lua", "skins/light.lua"}};
    for (auto const& [before, after] : changes) {
        std::string fresh[2];
        {
            support::ZooHost host(after);
            Widget* const widget = host.show(GetParam());
            host.advance(fadeTime);
            fresh[0] = host.traceFrame();
            widget->setEnabled(false);
            host.settle();
            fresh[1] = host.traceFrame();
        }
        support::ZooHost host(before);
        Widget* const widget = host.show(GetParam());
        host.advance(fadeTime);
        ASSERT_TRUE(reload(after.c_str()));
        host.settle();
        EXPECT_EQ(host.traceFrame(), fresh[0]) << before << " to " << after;
        widget->setEnabled(false);
        host.settle();
        EXPECT_EQ(host.traceFrame(), fresh[1]) << before << " to " << after << ", disabled";
    }
}

TEST_P(ReloadedZoo, ClonesFollowAsWell) {
    if (!GetParam().clones)
        return;
    std::string traces[2];
    for (char const* const start : {"skins/light.lua", "skins/dark.lua"}) {
        support::ZooHost host(start);
        auto* const copy = host.show(GetParam())->clone();
        host.advance(fadeTime);
        ASSERT_TRUE(reload("skins/light.lua"));
        host.settle();
        traces[start == std::string("skins/dark.lua")] = host.traceDraw(*copy);
    }
    EXPECT_EQ(traces[1], traces[0]);
}

// --- What the program has changed ---

TEST(ReloadedSkin, KeepsWhatTheProgramHasChangedAndTakesTheRest) {
    Folder folder;
    folder.write("skin.lua", skinOf("0xff0000ff", "minSize = { x = 5, y = 6 }, textWrapping = true"));
    support::TestHost host("dofile('" + std::string(folder.path("skin.lua").c_str()) + "')");
    gui::Static label, plain;
    Data& data = *label.getWidgetSkin()->getSkinData();
    gui::Text::Info info = textOf(label);
    info.fontSize = 30;
    data.setText(&info, InteractiveStateReleased, 1);
    data.setUseEllipsis(true);
    plain.setTooltipSkin(plain.getWidgetSkin());

    folder.write("skin.lua", skinOf("0x00ff00ff", "insets = { left = 9, top = 9, right = 9, bottom = 9 }"));
    ASSERT_TRUE(reload(folder.path("skin.lua")));
    EXPECT_EQ(textOf(label).color, osg::Vec4f(0, 1, 0, 1));
    EXPECT_EQ(textOf(label).fontSize, 30);
    EXPECT_TRUE(data.getUseEllipsis());
    EXPECT_FALSE(data.getTextWrapping()) << "a key that is gone";
    EXPECT_EQ(data.getMinSize(), osg::Vec2i());
    EXPECT_EQ(data.getInsets().left, 9);
    EXPECT_EQ(textOf(plain).fontSize, 14);
    Data const& tooltip = *plain.getTooltipSkin()->getSkinData();
    EXPECT_EQ(tooltip.getText(InteractiveStateReleased, 1)->color, osg::Vec4f(0, 1, 0, 1)) << "copies follow";

    folder.write("skin.lua", "Skin = {}");
    ASSERT_TRUE(reload(folder.path("skin.lua")));
    EXPECT_EQ(textOf(plain).font, "") << "a skin that is gone";
    EXPECT_EQ(textOf(label).fontSize, 30);

    folder.write("skin.lua", skinOf("0x0000ffff"));
    ASSERT_TRUE(reload(folder.path("skin.lua")));
    EXPECT_EQ(textOf(plain).color, osg::Vec4f(0, 0, 1, 1));
}

TEST(ReloadedSkin, KeepsTheCheckMarkThatTheProgramGaveAndFollowsInDataWithoutAFactory) {
    struct OtherData : gui::skin::CheckBoxData {
        using CheckBoxData::CheckBoxData;
        std::unique_ptr<Data> makeNew_() const override { return std::make_unique<Data>(nullptr); }
    };
    struct OtherSkin : gui::skin::Skin {
        OtherSkin() : Skin(nullptr, false) { setSkinData(new OtherData(this), true); }
    };
    support::ZooHost host("skins/dark.lua");
    gui::CheckBox box, plain;
    OtherSkin other;
    other.load("checkBoxSkin");
    auto const dataOf = [](gui::skin::Skin const* skin) {
        return static_cast<gui::skin::CheckBoxData*>(skin->getSkinData());
    };
    gui::Image::Info check = *dataOf(box.getWidgetSkin())->getCheck(InteractiveStateReleased, 2);
    check.size = {5, 5};
    dataOf(box.getWidgetSkin())->setCheck(&check, InteractiveStateReleased, 2);
    osg::Vec4f const before = textOf(plain).color;
    ASSERT_TRUE(reload("skins/light.lua"));
    EXPECT_EQ(dataOf(box.getWidgetSkin())->getCheck(InteractiveStateReleased, 2)->size, osg::Vec2i(5, 5));
    EXPECT_NE(dataOf(plain.getWidgetSkin())->getCheck(InteractiveStateReleased, 2)->size, osg::Vec2i(5, 5));
    EXPECT_NE(textOf(plain).color, before);
    EXPECT_EQ(dataOf(&other)->getText(InteractiveStateReleased, 1)->color, textOf(plain).color);
    EXPECT_EQ(*dataOf(&other)->getCheck(InteractiveStateReleased, 2),
              *dataOf(plain.getWidgetSkin())->getCheck(InteractiveStateReleased, 2));
}

TEST(ReloadedSkin, KeepsFocusHoverPressAndSizes) {
    support::ZooHost host("skins/dark.lua");
    auto* const window = new gui::Window;
    auto* const first = new gui::Button(false);
    auto* const second = new gui::Button(false);
    for (gui::Button* const button : {first, second})
        window->insertWidget(button, -1);
    first->setPosition({10, 10});
    first->setSize({81, 37});
    second->setPosition({10, 60});
    second->setSize({81, 37});
    window->setSize({333, 222});
    window->setVisible(true);
    host.settle();
    osg::Vec2i const point = second->widgetToScreen({5, 5});
    host.moveMouse(point.x(), point.y());
    host.pressMouse();
    int clicks = 0;
    support::onEvent(*second, Widget::changeCallbackName, [&] { ++clicks; });
    ASSERT_TRUE(reload("skins/light.lua"));
    host.settle();
    EXPECT_TRUE(second->getFocused());
    EXPECT_EQ(second->getInteractiveState(), gui::skin::InteractiveStatePressed);
    EXPECT_EQ(second->getSize(), osg::Vec2i(81, 37));
    EXPECT_EQ(window->getSize(), osg::Vec2i(333, 222));
    host.releaseMouse();
    EXPECT_EQ(clicks, 1);
}

// --- Broken files ---

TEST(ReloadedSkin, ABrokenFileLeavesEverythingAsItWas) {
    struct Case {
        char const* text;
        char const* error;
    };
    Case const cases[] = {
        {"Skin = {}\nSkin = = 1", "broken.lua:2:"},
        {"Skin = {}\ncolor = 'wrong'\nerror('spilt')", "broken.lua:3: spilt"},
        {"color = 'wrong'\nNotSkin = {}", "leaves no global table Skin"},
        {"Skin = { staticSkin = function()\n return nothing.here end }", "broken.lua:2:"},
        {"Skin = {}\ncolor = 'wrong'\nwhile true do end", "broken.lua:3:"},
        {"Skin = {}\ncolor = 'wrong'\nsetmetatable(_G, {__index = error})\nerror('late')", "broken.lua:4: late"},
        {"dofile('no/such/file.lua')", "no/such/file.lua"},
    };
    Folder folder;
    folder.write("skin.lua", "color = '0xff0000ff'\nSkin = { staticSkin = " +
                                 support::skinFunction("", "text = { font = '" + std::string(support::fontFile) +
                                                               "', fontSize = 14, color = color }") +
                                 " }");
    support::TestHost host("dofile('" + std::string(folder.path("skin.lua").c_str()) + "')");
    lua_State* const L = GUI::get()->getLuaState();
    qor::setLuaLimits(L, {.instructions = 1'000'000});
    gui::Static label;
    label.setText(L"text");
    label.setSize({100, 30});
    host.frame();
    std::string const before = host.traceDraw(label);
    auto const expectAsBefore = [&](char const* what) {
        host.frame();
        EXPECT_EQ(host.traceDraw(label), before) << what;
        gui::Static later;
        EXPECT_EQ(textOf(later).color, osg::Vec4f(1, 0, 0, 1)) << what;
    };
    for (Case const& broken : cases) {
        folder.write("broken.lua", broken.text);
        qor::string error;
        EXPECT_FALSE(reload(folder.path("broken.lua"), &error)) << broken.text;
        EXPECT_NE(error.find(broken.error), qor::string::npos) << error.c_str();
        expectAsBefore(broken.text);
    }
    qor::string error;
    EXPECT_FALSE(reload(folder.path("missing.lua"), &error));
    EXPECT_NE(error.find("missing.lua"), qor::string::npos) << error.c_str();
    expectAsBefore("missing");
    ASSERT_TRUE(reload(folder.path("skin.lua")));
    expectAsBefore("mended");
}

TEST(ReloadedSkin, AFunctionThatNeverEndsCanBeMended) {
    Folder folder;
    folder.write("skin.lua", skinOf("0x00ff00ff"));
    qor::LuaLimits const usual = qor::getDefaultLuaLimits();
    qor::setDefaultLuaLimits({.memoryBytes = usual.memoryBytes, .instructions = 1'000'000, .seconds = 20.0});
    support::TestHost host("Skin = { staticSkin = function() while true do end end }");
    qor::setDefaultLuaLimits(usual);
    support::LogCapture log;
    gui::Static label;
    EXPECT_TRUE(log.contains("budget"));
    ASSERT_TRUE(reload(folder.path("skin.lua")));
    EXPECT_EQ(textOf(label).color, osg::Vec4f(0, 1, 0, 1));
}

TEST(ReloadedSkin, AFileFindsTheStateAsAtTheFirstStart) {
    Folder folder;
    qor::addAssetRoot(folder.path("").c_str());
    folder.write("part.lua", "return '0xff0000ff'");
    // Without the skin's old globals, and with the library's, before each run.
    folder.write("skin.lua",
                 "local color = require('part')\nassert(not seen and print, 'left over')\nseen, print = true, nil\n"
                 "Skin = { staticSkin = " +
                     support::skinFunction("", "text = { font = 'x', fontSize = 9, color = color }") +
                     " }\nsetmetatable(_G, { __newindex = function() error('strict') end })");
    support::TestHost host("dofile('" + std::string(folder.path("skin.lua").c_str()) + "')");
    gui::Static label;
    EXPECT_EQ(textOf(label).color, osg::Vec4f(1, 0, 0, 1));
    folder.write("part.lua", "return '0x00ff00ff'");
    ASSERT_TRUE(reload(folder.path("skin.lua")));
    EXPECT_EQ(textOf(label).color, osg::Vec4f(0, 1, 0, 1)) << "a module is read anew";
    ASSERT_TRUE(reload(folder.path("skin.lua")));
}

TEST(ReloadedSkin, IsRefusedWhileAPassOrALuaFunctionRuns) {
    support::TestHost host("Skin = {}");
    gui::Static label;
    qor::string inPass, inLua;
    bool refused = false;
    host.frame();
    label.setRedrawCallback([&] { refused = !GUI::get()->reloadSkin("skins/dark.lua", &inPass); });
    label.setText(L"marked");
    GUI::get()->redraw(false);
    EXPECT_TRUE(refused);
    EXPECT_NE(inPass.find("between frames"), qor::string::npos);
    label.setRedrawCallback({});
    refused = false;
    qor::luaProtected(GUI::get()->getLuaState(),
                      [&](lua_State*) { refused = !GUI::get()->reloadSkin("skins/dark.lua", &inLua); });
    EXPECT_TRUE(refused);
    EXPECT_NE(inLua.find("between frames"), qor::string::npos);
}

// --- Pictures ---

TEST(ReloadedSkin, ChangedPicturesAreReadAnewAndBrokenOnesStay) {
    Folder folder;
    folder.copy("picture.png", "tests/graphics/picture.png");
    std::string const picture = folder.path("picture.png").c_str();
    folder.write("skin.lua",
                 "Skin = { staticSkin = " +
                     support::skinFunction("", "picture = { file = '" + picture + "', color = '0xffffffff' }") + " }");
    support::TestHost host("dofile('" + std::string(folder.path("skin.lua").c_str()) + "')");
    gui::Static label;
    label.setSize({400, 400});
    host.frame();
    vtxTextureManager& textures = *vtxRenderer::get()->getTextureManager();
    auto const sizeOf = [&] { return label.getWidgetSkin()->calcSize(); };
    osg::Vec2i const before = sizeOf();
    std::string const shown = host.traceDraw(label);

    folder.write("picture.png", "no picture");
    qor::string error;
    EXPECT_TRUE(reload(folder.path("skin.lua"), &error));
    EXPECT_NE(error.find("picture.png"), qor::string::npos) << error.c_str();
    host.frame();
    EXPECT_EQ(sizeOf(), before);
    EXPECT_EQ(host.traceDraw(label), shown);

    folder.copy("picture.png", "assets/atlas/parts.png");
    EXPECT_TRUE(reload(folder.path("skin.lua")));
    host.frame();
    EXPECT_GT(sizeOf().x(), before.x());
    EXPECT_NE(host.traceDraw(label), shown);
    EXPECT_EQ(textures.getFiles(), qor::vector<qor::string>{folder.path("picture.png")});

    folder.copy("picture.png", "tests/graphics/picture.png");
    EXPECT_TRUE(reload(folder.path("skin.lua")));
    host.frame();
    EXPECT_EQ(sizeOf(), before);
}

TEST(ReloadedSkin, ChangedFontsAreReadAnewAndBrokenOnesStay) {
    Folder folder;
    folder.copy("font.otf", "assets/fonts/Inter-Regular.otf");
    folder.write("skin.lua",
                 "Skin = { staticSkin = " +
                     support::skinFunction("", "text = { font = '" + std::string(folder.path("font.otf").c_str()) +
                                                   "', fontSize = 20 }") +
                     " }");
    support::TestHost host("dofile('" + std::string(folder.path("skin.lua").c_str()) + "')");
    gui::Static label;
    label.setText(L"iiiiiiii");
    label.setSize({400, 40});
    host.frame();
    auto const getWidth = [&] { return label.getWidgetSkin()->calcSize().x(); };
    int const before = getWidth();
    folder.write("font.otf", "no font");
    qor::string error;
    EXPECT_TRUE(reload(folder.path("skin.lua"), &error));
    EXPECT_NE(error.find("font.otf"), qor::string::npos) << error.c_str();
    host.frame();
    EXPECT_EQ(getWidth(), before);
    folder.copy("font.otf", "assets/fonts/JetBrainsMono-Regular.ttf");
    EXPECT_TRUE(reload(folder.path("skin.lua")));
    host.frame();
    EXPECT_GT(getWidth(), before + 20);
}

// --- Growth ---

TEST(ReloadedSkin, TwoHundredReloadsLeaveNothingBehind) {
    Folder folder;
    folder.write("variant.lua", variant);
    qor::string const files[] = {"skins/light.lua", folder.path("variant.lua"), "skins/dark.lua"};
    support::ZooHost host("skins/dark.lua");
    for (support::ZooAnimal const& animal : support::getZoo())
        host.show(animal);
    lua_State* const L = GUI::get()->getLuaState();
    auto const run = [&](int count) {
        for (int i = 0; i < count; ++i) {
            ASSERT_TRUE(reload(files[i % 3]));
            qor::string error;
            ASSERT_FALSE(reload("no file", &error));
            host.frame();
        }
    };
    // Textures without users stay loaded for a while.
    run(72);
    auto const countBlocks = [] {
        qor::AllocationCounts const counts = qor::getAllocationCounts();
        return counts.allocations - counts.frees;
    };
    size_t const memory = qor::getLuaMemory(L);
    size_t const blocks = countBlocks();
    run(201);
    EXPECT_LE(qor::getLuaMemory(L), memory + memory / 100);
    EXPECT_EQ(countBlocks(), blocks);
}

}  // namespace
