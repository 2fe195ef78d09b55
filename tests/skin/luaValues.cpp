#include <gtest/gtest.h>

#include "gui_lib/Skin/StateInfo.h"
#include "gui_lib/Skin/luautil.h"
#include "gui_lib/base/Keyboard.h"
#include "platform/qor/Lua.h"
#include "tests/support/LogCapture.h"
#include "tests/support/LuaText.h"

#include <lua.hpp>

namespace {

using support::LogCapture;
using support::LuaText;
using Rect = osg::RectImpl<osg::Vec2i>;

template <class T>
bool read(LuaText& lua, char const* expression, T& value) {
    int const top = lua.getTop();
    lua.push(expression);
    bool const result = luautil::getValue<T>(lua, -1, value);
    EXPECT_EQ(lua.getTop(), top + 1) << expression;
    lua_settop(lua, top);
    return result;
}

osg::Vec4f readColor(LuaText& lua, char const* expression) {
    osg::Vec4f color(9.0f, 9.0f, 9.0f, 9.0f);
    lua.push(expression);
    luautil::getColor(lua, -1, color);
    lua.clearStack();
    return color;
}

template <class T>
std::string write(LuaText& lua, T const& value) {
    luautil::setValue<T>(lua, value);
    std::string const result = lua.describeTop();
    lua.clearStack();
    return result;
}

TEST(LuaColors, AreHexadecimalStringsAndAnythingElseIsTransparent) {
    LuaText lua;
    EXPECT_EQ(readColor(lua, "'0xff0000ff'"), osg::Vec4f(1.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(readColor(lua, "'ff0000ff'"), osg::Vec4f(1.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(readColor(lua, "255"), osg::Vec4f(0.0f, 0.0f, 2 / 255.0, 85 / 255.0));
    EXPECT_EQ(readColor(lua, "'0xaa00ff00ff'"), osg::Vec4f(0.0f, 1.0f, 0.0f, 1.0f)) << "the low 32 bits count";
    EXPECT_EQ(readColor(lua, "'red'"), osg::Vec4f());
    EXPECT_EQ(readColor(lua, "nil"), osg::Vec4f());
    EXPECT_EQ(readColor(lua, "{r = 1}"), osg::Vec4f());
}

TEST(LuaColors, ComeBackUnchangedForEveryByte) {
    LuaText lua;
    for (int byte = 1; byte < 256; ++byte) {
        qor::string text;
        text.format("0x%.2x%.2x%.2x%.2x", byte, 255 - byte, byte ^ 0x55, byte);
        luautil::setValue(lua, text);
        osg::Vec4f color;
        ASSERT_TRUE(luautil::getColor(lua, -1, color));
        luautil::setColor(lua, color);
        EXPECT_STREQ(lua_tostring(lua, -1), text.c_str());
        lua.clearStack();
    }
}

TEST(LuaColors, AreClampedOnWritingAndNoneAtAllIsNil) {
    LuaText lua;
    luautil::setColor(lua, osg::Vec4f(2.0f, -1.0f, 0.5f, std::nanf("")));
    EXPECT_STREQ(lua_tostring(lua, -1), "0xff007f00");
    luautil::setColor(lua, osg::Vec4f());
    EXPECT_TRUE(lua_isnil(lua, -1));
}

TEST(LuaNumbers, AreTruncatedSaturatedAndTakenFromText) {
    LuaText lua;
    int value = 7;
    EXPECT_TRUE(read(lua, "-5.9", value));
    EXPECT_EQ(value, -5);
    EXPECT_TRUE(read(lua, "'12'", value));
    EXPECT_EQ(value, 12);
    EXPECT_TRUE(read(lua, "1e300", value));
    EXPECT_EQ(value, 2147483647);
    EXPECT_TRUE(read(lua, "0/0", value));
    EXPECT_EQ(value, 0);
    for (char const* wrong : {"true", "'x'", "{}", "nil", "print"})
        EXPECT_FALSE(read(lua, wrong, value)) << wrong;
    EXPECT_EQ(value, 0);
    float number = 0.0f;
    EXPECT_TRUE(read(lua, "'1.5'", number));
    EXPECT_EQ(number, 1.5f);
}

TEST(LuaValues, BooleansAndStringsAreStrictAndLenientAsLuaIs) {
    LuaText lua;
    bool flag = false;
    EXPECT_FALSE(read(lua, "1", flag));
    EXPECT_FALSE(flag);
    EXPECT_TRUE(read(lua, "true", flag));
    qor::string text = "old";
    EXPECT_FALSE(read(lua, "true", text));
    EXPECT_EQ(text, "old");
    EXPECT_TRUE(read(lua, "12.5", text));
    EXPECT_EQ(text, "12.5");
}

TEST(LuaValues, RectanglesStartFromZeroWhilePointsAndInsetsKeepAbsentParts) {
    LuaText lua;
    Rect rect(1, 2, 3, 4);
    EXPECT_TRUE(read(lua, "{x2 = 7}", rect));
    EXPECT_EQ(rect, Rect(0, 0, 7, 0));
    osg::Vec2i point(5, 6);
    EXPECT_TRUE(read(lua, "{vert = 1, horz = 'x'}", point));
    EXPECT_EQ(point, osg::Vec2i(5, 1));
    gui::Insets insets{1, 2, 3, 4};
    EXPECT_TRUE(read(lua, "{top = 9}", insets));
    EXPECT_EQ(insets, (gui::Insets{1, 9, 3, 4}));
    EXPECT_EQ(write(lua, Rect()), write(lua, Rect(0, 0, 0, 0)));
    EXPECT_NE(write(lua, Rect(3, 4, 3, 4)), write(lua, Rect(0, 0, 0, 0)));
}

TEST(LuaAlign, KnowsItsWordsAndLeavesTheRestAlone) {
    LuaText lua;
    struct Case {
        char const* word;
        gui::Align::Type type;
        char const* written;
    };
    for (Case const& test : {Case{"top", gui::Align::Min, "min"}, Case{"center", gui::Align::Center, "middle"},
                             Case{"bottom", gui::Align::Max, "max"}, Case{"stretch", gui::Align::Stretch, "stretch"}}) {
        gui::Align align(gui::Align::Max, 3);
        EXPECT_TRUE(read(lua, ("{type = '" + std::string(test.word) + "'}").c_str(), align));
        EXPECT_EQ(align, gui::Align(test.type, 3));
        EXPECT_EQ(write(lua, align), "{'offset'=3,'type'='" + std::string(test.written) + "',}");
    }
    gui::Align align(gui::Align::Max, 3);
    for (char const* wrong : {"{type = 'Left', offset = 9}", "{offset = 9}", "'left'"})
        EXPECT_FALSE(read(lua, wrong, align)) << wrong;
    EXPECT_EQ(align, gui::Align(gui::Align::Max, 3));
    LogCapture log;
    write(lua, gui::Align(static_cast<gui::Align::Type>(7), 1));
    EXPECT_EQ(log.count("Invalid align type!"), 1u);
}

TEST(LuaHotKey, ComesBackWithItsModifiers) {
    gui::registerKeyboardButtonsNames();
    LuaText lua;
    gui::HotKey key;
    EXPECT_TRUE(read(lua, "{ctrlPressed = true, altPressed = 1, button = 'page up'}", key));
    EXPECT_EQ(key, (gui::HotKey{gui::KeyPageUp, false, true, false}));
    luautil::setValue(lua, key);
    gui::HotKey again;
    EXPECT_TRUE(luautil::getValue(lua, -1, again));
    EXPECT_EQ(again, key);
}

TEST(LuaDrawables, NothingOfAnOldDescriptionSurvives) {
    LuaText lua;
    gui::Image::Info image;
    image.file = "old.png";
    image.align = gui::Align2(gui::Align(gui::Align::Max, 4), gui::Align(gui::Align::Max, 4));
    EXPECT_FALSE(read(lua, "5", image));
    EXPECT_EQ(image.file, "old.png");
    EXPECT_TRUE(read(lua, "{}", image));
    gui::Image::Info expected;
    expected.color = osg::Vec4f();
    EXPECT_EQ(image, expected) << "an absent colour is transparent, not the default white";

    gui::Bkg::Info bkg;
    bkg.cellColors[3] = osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f);
    EXPECT_TRUE(read(lua, "{center_center = '0x0000ff80', insets = {left = 2}}", bkg));
    EXPECT_EQ(bkg.cellColors[gui::Bkg::LeftCenter], osg::Vec4f());
    EXPECT_EQ(bkg.cellColors[gui::Bkg::CenterCenter], osg::Vec4f(0.0f, 0.0f, 1.0f, 128 / 255.0));
    EXPECT_EQ(bkg.insets, (gui::Insets{2, 0, 0, 0}));
    EXPECT_TRUE(bkg.rect.isInverted());
}

TEST(LuaDrawables, TextStylesReadEveryKeyAndLogAnUnknownBlur) {
    LuaText lua;
    gui::Text::Info text;
    EXPECT_TRUE(read(lua, R"({font = 'Sans', fontSize = '12', lineHeight = 3, lineThroughHeight = 2,
        lineThroughOffset = 4, blur = 2, color = 'ffffffff', bkgColor = '000000ff', shadowColor = '0000ff00',
        blurColor = 'ff000000', lineThroughColor = '01020304', shadowOffset = {horz = 1, vert = 2},
        horzAlign = {type = 'right', offset = -3}, vertAlign = {type = 'sideways', offset = 8}})",
                     text));
    EXPECT_EQ(text.fontSize, 12);
    EXPECT_EQ(text.blur, vtxFont::BlurLarge);
    EXPECT_EQ(text.align.getHorzAlign(), gui::Align(gui::Align::Max, -3));
    EXPECT_EQ(text.align.getVertAlign(), gui::Align(gui::Align::Center, 0));
    luautil::setValue(lua, text);
    gui::Text::Info again;
    EXPECT_TRUE(luautil::getValue(lua, -1, again));
    EXPECT_EQ(again, text);

    LogCapture log;
    EXPECT_TRUE(read(lua, "{blur = 3}", text));
    EXPECT_EQ(text.blur, vtxFont::BlurNone);
    EXPECT_EQ(log.count("Invalid blur type!"), 1u);
}

TEST(LuaDrawables, StatesWithoutALookAreNil) {
    LuaText lua;
    EXPECT_EQ(write(lua, gui::skin::StateInfo()), "nil");
    gui::skin::StateInfo* state = nullptr;
    EXPECT_FALSE(read(lua, "'text'", state));
    EXPECT_TRUE(read(lua, "{bkg = {file = 'a.png'}, picture = 1}", state));
    std::unique_ptr<gui::skin::StateInfo> const owned(state);
    EXPECT_TRUE(state->hasBkg);
    EXPECT_FALSE(state->hasImage);
    EXPECT_EQ(state->bkg.file, "a.png");
}

TEST(LuaHostility, MetatablesNeitherEscapeNorUnbalanceTheStack) {
    LuaText lua(R"(
        raising = setmetatable({}, {__index = function() error('no') end})
        looping = setmetatable({}, {__index = function() while true do end end})
        itself = {}; itself.rect = itself; itself.insets = itself
        setmetatable(itself, {__index = itself})
        inherited = setmetatable({file = 'a.png'}, {__index = {center_center = 'ffffffff'}}))");
    gui::Bkg::Info bkg;
    EXPECT_TRUE(read(lua, "inherited", bkg));
    EXPECT_EQ(bkg.cellColors[gui::Bkg::CenterCenter].r(), 1.0f) << "skins may inherit by metatables";
    EXPECT_TRUE(read(lua, "raising", bkg));
    EXPECT_EQ(bkg.file, "");
    LogCapture log;
    EXPECT_TRUE(read(lua, "looping", bkg));
    EXPECT_TRUE(qor::isLuaSpent(lua));
}

TEST(LuaHostility, KeyedReadingWithoutATableChangesNothing) {
    LuaText lua;
    osg::Vec4f color(1.0f, 1.0f, 1.0f, 1.0f);
    int number = 4;
    EXPECT_FALSE(luautil::getColor(lua, "color", color)) << "empty stack";
    lua_pushnumber(lua, 5);
    EXPECT_FALSE(luautil::getColor(lua, "color", color));
    EXPECT_FALSE(luautil::getValue(lua, "x", number));
    EXPECT_EQ(color, osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f));
    lua.push("{}");
    EXPECT_FALSE(luautil::getColor(lua, "color", color));
    EXPECT_EQ(color, osg::Vec4f()) << "an absent key of a table is transparent";
    EXPECT_EQ(lua.getTop(), 2);
}

}  // namespace
