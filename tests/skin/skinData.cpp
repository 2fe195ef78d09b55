#include <gtest/gtest.h>

#include <memory>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/Skin/StateInfo.h"
#include "gui_lib/Skin/luautil.h"
#include "tests/support/LogCapture.h"
#include "tests/support/LuaText.h"

#include <lua.hpp>

namespace {

using gui::skin::Data;
using gui::skin::InteractiveState;
using gui::skin::Skin;
using support::LuaText;

constexpr auto released = gui::skin::InteractiveStateReleased;
constexpr auto hover = gui::skin::InteractiveStateHover;
constexpr auto pressed = gui::skin::InteractiveStatePressed;
constexpr auto disabled = gui::skin::InteractiveStateDisabled;

gui::Bkg::Info makeBkg(char const* file) {
    gui::Bkg::Info info;
    info.file = file;
    return info;
}

std::string bkgFile(Data const& data, InteractiveState state, int inner) {
    gui::Bkg::Info const* const info = data.getBkg(state, inner);
    return info ? std::string(info->file.c_str()) : "none";
}

void setBkg(Data& data, char const* file, InteractiveState state, int inner) {
    gui::Bkg::Info const info = makeBkg(file);
    data.setBkg(&info, state, inner);
}

void load(Data& data, LuaText& lua, char const* expression) {
    lua.push(expression);
    data.loadParams(lua);
    data.loadStates(lua);
    EXPECT_EQ(lua.getTop(), 1);
    lua.clearStack();
}

std::string unload(Data const& data, LuaText& lua) {
    lua.push("{}");
    data.unloadParams(lua);
    data.unloadStates(lua);
    return lua.describeTop();
}

TEST(DataFallback, SearchesTheOwnStateFirstAndThenTheReleasedOne) {
    Data data(nullptr);
    EXPECT_EQ(bkgFile(data, released, 1), "none");
    setBkg(data, "r1", released, 1);
    for (InteractiveState state : {released, hover, pressed, disabled})
        for (int inner : {1, 2, -4})
            EXPECT_EQ(bkgFile(data, state, inner), "r1");

    setBkg(data, "r2", released, 2);
    EXPECT_EQ(bkgFile(data, hover, 2), "r2");
    setBkg(data, "h1", hover, 1);
    EXPECT_EQ(bkgFile(data, hover, 2), "h1") << "inner 1 of the same state comes before the released state";
    setBkg(data, "p5", pressed, 5);
    EXPECT_EQ(bkgFile(data, pressed, 1), "r1");
    EXPECT_EQ(bkgFile(data, pressed, 2), "r2");
    EXPECT_EQ(bkgFile(data, pressed, 5), "p5");
}

TEST(DataFallback, IsDoneForEachDrawableByItself) {
    Data data(nullptr);
    setBkg(data, "r1", released, 1);
    gui::Text::Info text;
    text.font = "Sans";
    data.setText(&text, hover, 1);
    EXPECT_EQ(bkgFile(data, hover, 1), "r1");
    EXPECT_EQ(data.getText(hover, 1)->font, "Sans");
    EXPECT_EQ(data.getText(released, 1), nullptr);
    EXPECT_EQ(data.getImage(hover, 1), nullptr);
}

TEST(DataLooks, NullHidesAnEntryAndCreatesNone) {
    Data data(nullptr);
    data.setBkg(nullptr, released, 1);
    EXPECT_EQ(data.getBkg(released, 1), nullptr);
    setBkg(data, "r1", released, 1);
    setBkg(data, "h1", hover, 1);
    data.setBkg(nullptr, hover, 1);
    EXPECT_EQ(bkgFile(data, hover, 1), "r1");
    data.setBkg(data.getBkg(released, 1), pressed, 1);
    EXPECT_EQ(bkgFile(data, pressed, 1), "r1") << "a look of the same data can be given back to it";
}

TEST(DataLua, ReadsParamsAndStatesAndMergesASecondTable) {
    LuaText lua(R"(
        first = {params = {minSize = {horz = -5, vert = 10}, insets = {left = 3}, textWrapping = 1, textLineHeight = 7,
                           focusRectColor = 'ff0000ff', clipInsets = {bottom = 2}},
                 states = {released = {[1] = {bkg = {file = 'a'}, text = {font = 'Sans'}}, x = {bkg = {file = 'no'}}},
                           hover = {[2.7] = {bkg = {file = 'b'}}}, pressed = 'none'}}
        second = {params = {textWrapping = true}, states = {released = {[1] = {bkg = {file = 'c'}}}}})");
    Data data(nullptr);
    load(data, lua, "first");
    EXPECT_EQ(data.getMinSize(), osg::Vec2i(0, 10));
    EXPECT_EQ(data.getInsets(), (gui::Insets{3, 0, 0, 0}));
    EXPECT_FALSE(data.getTextWrapping());
    EXPECT_EQ(data.getTextLineHeight(), 7);
    EXPECT_EQ(data.getFocusRectInsets(), (gui::Insets{2, 2, 2, 2}));
    EXPECT_FALSE(data.getClipInsetsEmpty());
    EXPECT_EQ(bkgFile(data, hover, 2), "b");
    EXPECT_EQ(bkgFile(data, pressed, 1), "a");

    load(data, lua, "second");
    EXPECT_TRUE(data.getTextWrapping());
    EXPECT_EQ(data.getInsets(), (gui::Insets{3, 0, 0, 0}));
    EXPECT_EQ(data.getFocusRectColor(), osg::Vec4f()) << "an absent colour is transparent";
    EXPECT_EQ(bkgFile(data, released, 1), "c");
    EXPECT_EQ(data.getText(released, 1), nullptr) << "a state is read as a whole";
    EXPECT_EQ(bkgFile(data, hover, 2), "b");
}

TEST(DataLua, WrongTypesLeaveTheDefaults) {
    LuaText lua;
    for (char const* whole : {"1", "{params = 1, states = 1}", "{states = {released = {released = 1}}}",
                              "{params = {minSize = 'text', insets = print, focusRectInsets = 0/0}}"}) {
        Data data(nullptr);
        load(data, lua, whole);
        EXPECT_EQ(data.getBkg(released, 1), nullptr);
        EXPECT_EQ(data.getMinSize(), osg::Vec2i());
        EXPECT_EQ(data.getInsets(), gui::Insets());
        EXPECT_EQ(data.getFocusRectInsets(), (gui::Insets{2, 2, 2, 2}));
        EXPECT_FALSE(data.getLoaded());
    }
}

TEST(DataLua, HostileTablesEndNothingButTheirOwnReading) {
    LuaText lua(R"(
        raising = {__index = function() error({}) end}
        hostile = {params = setmetatable({insets = {left = 4}}, raising),
                   states = {released = setmetatable({[1] = setmetatable({bkg = {file = 'a'}}, raising)}, raising)}}
        shifting = {states = {released = {}}}
        for i = 1, 50 do
            shifting.states.released[i] = setmetatable({}, {__index = function(_, key)
                shifting.states.released[i + 1] = nil
                shifting.states.released['new' .. i .. key] = {}
            end})
        end)");
    Data data(nullptr);
    load(data, lua, "hostile");
    EXPECT_EQ(data.getInsets().left, 4);
    EXPECT_EQ(bkgFile(data, released, 1), "a");
    load(data, lua, "shifting");
    lua.run("sealed = setmetatable({}, {__newindex = function() error('sealed') end})");
    lua.push("sealed");
    {
        support::LogCapture log;
        data.unloadParams(lua);
        EXPECT_EQ(log.count("cannot be written to Lua"), 1u);
    }
    EXPECT_EQ(lua.getTop(), 1);
}

char const* const everything = R"({
    params = {minSize = {horz = 1, vert = 2}, maxSize = {horz = 30, vert = 40}, insets = {left = 1, top = 2, right = 3,
        bottom = 4}, textWrapping = true, useEllipsis = true, textLineHeight = 12, focusRectColor = '0x12345678',
        focusRectInsets = {left = 5, top = 6, right = 7, bottom = 8}, clipInsets = {left = 9}},
    states = {
        released = {{bkg = {file = 'a.png', rect = {x1 = 1, y1 = 2, x2 = 3, y2 = 4}, insets = {top = 2},
                            left_top = '0x010203ff', right_bottom = '0xff000080'},
                     picture = {file = 'b.png', color = '0xffffffff', size = {horz = 3, vert = 4}, userTexSampler = 3,
                                resizeToFill = true, tileHorizontally = true, tileVertically = true,
                                horzAlign = {type = 'stretch', offset = 1}, vertAlign = {type = 'max', offset = -2}}},
                    [-7] = {text = {font = 'Sans', fontSize = 11, blur = 1, color = '0x7f7f7fff',
                                    shadowOffset = {horz = 1, vert = -1}}}},
        disabled = {[2] = {bkg = {center_center = '0x000000ff'}}}}})";

TEST(DataLua, WhatIsWrittenReadsBackAsTheSame) {
    LuaText lua;
    Data data(nullptr);
    load(data, lua, everything);
    std::string const written = unload(data, lua);
    Data again(nullptr);
    again.loadParams(lua);
    again.loadStates(lua);
    lua.clearStack();
    EXPECT_EQ(unload(again, lua), written);
    EXPECT_EQ(again.getMaxSize(), osg::Vec2i(30, 40));
    EXPECT_EQ(again.getText(released, -7)->fontSize, 11);
    EXPECT_EQ(again.getImage(released, 1)->align, data.getImage(released, 1)->align);
    EXPECT_EQ(again.getBkg(released, 1)->cellColors, data.getBkg(released, 1)->cellColors);
}

/// A skin with a part that has a skin of its own, and one with only data.
class WholeSkin : public Skin {
public:
    WholeSkin() : Skin(nullptr, true), part(nullptr, true), item(nullptr) {}
    void loadSubSkins_(lua_State* L) override {
        loadSubSkin_(L, "part", &part);
        loadSubSkin_(L, "item", item);
    }
    void unloadSubSkins_(lua_State* L) const override {
        unloadSubSkin_(L, "part", &part);
        unloadSubSkin_(L, "item", item);
    }

    Skin part;
    Data item;
};

TEST(SkinLua, AWholeSkinIsWrittenSoThatItReadsBack) {
    LuaText lua;
    WholeSkin skin;
    lua.push(
        "{skinData = {params = {textLineHeight = 1}, skins = {"
        "part = {skinData = {params = {textLineHeight = 2}, states = {hover = {{bkg = {file = 'p'}}}}}},"
        "item = {skinData = {params = {textLineHeight = 3}}}}}}");
    skin.loadFromScript(lua);
    EXPECT_EQ(lua.getTop(), 1);
    EXPECT_EQ(skin.item.getTextLineHeight(), 3);
    EXPECT_FALSE(skin.item.getLoaded());
    EXPECT_TRUE(skin.part.getSkinData()->getLoaded());
    lua.push("{}");
    skin.putIntoScript(lua);
    std::string const written = lua.describeTop();
    WholeSkin again;
    again.loadFromScript(lua);
    EXPECT_EQ(bkgFile(*again.part.getSkinData(), hover, 1), "p");
    lua.push("{}");
    again.putIntoScript(lua);
    EXPECT_EQ(lua.describeTop(), written);
    EXPECT_EQ(lua.getTop(), 3);

    for (char const* table :
         {"{skinData = {skins = {part = 1, item = {skinData = 1}}}}", "{skinData = {skins = 1}}", "5"}) {
        lua.push(table);
        again.loadFromScript(lua);
    }
    EXPECT_EQ(again.item.getTextLineHeight(), 3);
}

TEST(DataCopy, GivesTheResolvedLooksAndKeepsTheOthersOwn) {
    LuaText lua;
    Data source(nullptr);
    load(source, lua, everything);
    setBkg(source, "h", hover, 5);
    Data target(nullptr);
    setBkg(target, "old", pressed, 1);
    source.copyTo(&target);
    EXPECT_TRUE(target.getLoaded());
    EXPECT_EQ(target.getFocusRectColor(), source.getFocusRectColor());
    EXPECT_EQ(bkgFile(target, pressed, 1), "old");
    EXPECT_EQ(target.getImage(hover, 5)->file, "b.png") << "the copy holds what the search finds";
    source.setImage(nullptr, released, 1);
    EXPECT_EQ(target.getImage(released, 1)->file, "b.png");
    source.copyTo(nullptr);
    source.copyTo(&source);
}

TEST(DataOwners, EitherSideMayDieFirst) {
    auto lender = std::make_unique<Skin>(nullptr, true);
    auto first = std::make_unique<Skin>(nullptr, false);
    auto second = std::make_unique<Skin>(nullptr, false);
    Data* const data = lender->getSkinData();
    EXPECT_EQ(data->getOwner(), lender.get());
    first->setSkinData(data, false);
    second->setSkinData(data, false);
    EXPECT_EQ(data->getOwner(), second.get());
    second.reset();
    EXPECT_EQ(data->getOwner(), nullptr);
    data->setInsets({1, 1, 1, 1});
    lender.reset();
    EXPECT_EQ(first->getSkinData(), nullptr);
    EXPECT_EQ(first->calcSize(), osg::Vec2i());
    first->redraw();
}

TEST(DataOwners, GivingASkinItsOwnDataAgainKeepsIt) {
    Skin skin(nullptr, true);
    Data* const data = skin.getSkinData();
    data->setTextLineHeight(4);
    skin.setSkinData(data, true);
    EXPECT_EQ(skin.getSkinData(), data);
    EXPECT_EQ(data->getTextLineHeight(), 4);
    skin.setSkinData(nullptr, true);
    EXPECT_EQ(skin.getSkinData(), nullptr);
    EXPECT_EQ(skin.calcSize(), osg::Vec2i());
    Skin other(nullptr, true);
    skin.copyTo(&other);
    other.copyTo(&skin);
}

}  // namespace
