#include "gui_lib/Skin/luautil.h"
#include "gui_lib/layouts/AnchorLayout.h"
#include "gui_lib/layouts/BorderLayout.h"
#include "gui_lib/layouts/FormLayout.h"
#include "tests/layouts/Blocks.h"
#include "tests/support/LuaText.h"

#include <lua.hpp>

namespace layout_test {
namespace {

using gui::AnchorLayout;
using gui::BorderLayout;
using gui::FormLayout;
using Info = AnchorLayout::AnchorInfo;

// --- Anchors ---

class Anchors : public Layouts {
protected:
    Anchors() {
        box->setSize(Vec2i(80, 40));
        give(*box, layout);
    }

    static Info anchors(Align const& left, Align const& top, Align const& right, Align const& bottom) {
        Info info;
        info.left = left, info.top = top, info.right = right, info.bottom = bottom;
        return info;
    }
    static Info all(Align::Type type, int offset = 0) {
        return anchors({type, offset}, {type, offset}, {type, offset}, {type, offset});
    }
    Widget* add(Vec2i const& position, Vec2i const& size, Info const& info) {
        auto* const child = new Widget;
        child->setPosition(position);
        child->setSize(size);
        box->insertWidget(child, -1);
        layout->insertAnchorInfo(info, -1);
        return child;
    }
    void run() { box->updateLayout(true); }

    AnchorLayout* layout = new AnchorLayout;
};

TEST_F(Anchors, EachEdgeFollowsItsOwnRule) {
    add(Vec2i(10, 5), Vec2i(21, 11), all(Align::Min, 2));
    add(Vec2i(10, 5), Vec2i(21, 11), all(Align::Center, 1));
    add(Vec2i(10, 5), Vec2i(21, 11), all(Align::Max, -3));
    add(Vec2i(33, 5), Vec2i(20, 11), all(Align::Stretch, 4));
    add(Vec2i(10, 5), Vec2i(21, 11), all(static_cast<Align::Type>(9), 50));
    add(Vec2i(10, 5), Vec2i(21, 11), anchors({Align::Min, 0}, {Align::Max, 0}, {Align::Max, 0}, {Align::Max, 0}));
    run();
    box->setSize(Vec2i(120, 50));
    EXPECT_EQ(describeChildren(*box),
              "12,7 21x11 | 50,20 21x11 | 47,12 21x11 | 53,10 30x14 | 10,5 21x11 | 10,15 61x11");
    box->setSize(Vec2i(20, 20));
    // The centred one is wider than the room: halves are cut towards zero.
    EXPECT_EQ(describe(*box->getWidget(1)), "1,5 20x11");
    EXPECT_EQ(describe(*box->getWidget(3)), "12,6 5x6");
}

TEST_F(Anchors, GeometryIsTakenOnceUnlessTheInfoIsSetAnew) {
    Widget* const child = add(Vec2i(10, 10), Vec2i(20, 10), all(Align::Min));
    run();
    child->setPosition(Vec2i(3, 3));
    child->setSize(Vec2i(5, 5));
    run();
    EXPECT_EQ(describe(*child), "10,10 20x10");
    child->setPosition(Vec2i(3, 3));
    Info const info = *layout->getAnchorInfo(0);
    EXPECT_TRUE(info.initialized);
    layout->setAnchorInfo(info, 0);
    EXPECT_FALSE(info.initialized);
    run();
    EXPECT_EQ(describe(*child), "3,3 20x10");
}

TEST_F(Anchors, InfosGoByIndexAndAskForALayoutAtTheNextRedraw) {
    Widget* const first = add(Vec2i(1, 1), Vec2i(5, 5), all(Align::Min));
    Widget* const second = add(Vec2i(20, 20), Vec2i(5, 5), all(Align::Max));
    run();
    // The info of a child that goes stays where it is: the next child inherits it, geometry included.
    box->removeWidget(first);
    run();
    EXPECT_EQ(describe(*second), "1,1 5x5");
    Widget::destroy(first);

    layout->insertAnchorInfo(all(Align::Center), 0);
    EXPECT_EQ(layout->getAnchorInfoCount(), 3);
    EXPECT_EQ(layout->getAnchorInfo(0)->left.type, Align::Center);
    EXPECT_EQ(layout->getAnchorInfo(3), nullptr);
    EXPECT_EQ(layout->getAnchorInfo(-1), nullptr);
    EXPECT_EQ(describe(*second), "1,1 5x5");
    gui::Widget::redrawAll();
    EXPECT_EQ(describe(*second), "37,17 5x5");
    layout->removeAnchorInfo(7);
    layout->setAnchorInfo(all(Align::Max), 7);
    layout->removeAnchorInfo(0);
    layout->removeAnchorInfo(0);
    EXPECT_EQ(layout->getAnchorInfoCount(), 1);
    EXPECT_EQ(layout->getAnchorInfo(0)->left.type, Align::Max);
}

TEST_F(Anchors, ACopyHasTheInfosAndFindsItsOwnBaseSize) {
    add(Vec2i(10, 10), Vec2i(20, 10), all(Align::Max));
    run();
    auto* const copy = static_cast<AnchorLayout*>(layout->clone());
    ASSERT_EQ(copy->getAnchorInfoCount(), 1);
    EXPECT_TRUE(copy->getAnchorInfo(0)->initialized);
    auto* const other = new Box(Vec2i(100, 100));
    other->add(new Block(Vec2i(1, 1)));
    give(*other, copy);
    EXPECT_EQ(describeChildren(*other), "10,10 20x10");
    other->setSize(Vec2i(110, 100));
    EXPECT_EQ(describeChildren(*other), "20,10 20x10");
    // Without a size at first, the first size that there is counts.
    auto* const late = new Box;
    late->insertWidget(new Widget, -1);
    auto* const lateLayout = give(*late, new AnchorLayout);
    lateLayout->insertAnchorInfo(all(Align::Max), 0);
    late->setSize(Vec2i(50, 50));
    late->setSize(Vec2i(60, 55));
    EXPECT_EQ(describeChildren(*late), "10,5 0x0");
}

TEST_F(Anchors, TheLuaFormHoldsTheFourAligns) {
    support::LuaText lua;
    Info info = anchors({Align::Min, 1}, {Align::Center, -2}, {Align::Max, 3}, {Align::Stretch, 4});
    info.initialized = true;
    luautil::setValue(static_cast<lua_State*>(lua), info);
    std::string const form = lua.describeTop();
    EXPECT_EQ(form.find("initialized"), std::string::npos);
    Info read;
    ASSERT_TRUE(luautil::getValue(static_cast<lua_State*>(lua), -1, read));
    EXPECT_FALSE(read.initialized);
    luautil::setValue(static_cast<lua_State*>(lua), read);
    EXPECT_EQ(lua.describeTop(), form);
    lua.clearStack();
    // What is absent or of another form stays.
    lua.push("{left = {type = 'right', offset = 7}, top = {type = 'nowhere', offset = 7}, right = 5}");
    ASSERT_TRUE(luautil::getValue(static_cast<lua_State*>(lua), -1, read));
    EXPECT_EQ(read.left, Align(Align::Max, 7));
    EXPECT_EQ(read.top, Align(Align::Center, -2));
    EXPECT_EQ(read.right, Align(Align::Max, 3));
    lua.push("12");
    EXPECT_FALSE(luautil::getValue(static_cast<lua_State*>(lua), -1, read));
}

// --- Borders ---

class Borders : public Layouts {
protected:
    Block* add(Vec2i const& pref, Vec2i const& least = {}, Vec2i const& most = {}) {
        return box->add(new Block(pref, least, most));
    }

    BorderLayout* layout = give(*box, new BorderLayout(3, 2));
};

TEST_F(Borders, PlacesGoByIndexAndCountFromTheCorner) {
    box->corner = Vec2i(9, 9);
    add(Vec2i(30, 10));
    box->updateLayout(true);
    EXPECT_EQ(describeChildren(*box), "0,0 100x10");
    add(Vec2i(5, 12));
    add(Vec2i(7, 7));
    box->updateLayout(true);
    EXPECT_EQ(describeChildren(*box), "0,0 100x10 | 0,48 100x12 | 3,12 94x34");
    add(Vec2i(15, 3));
    add(Vec2i(20, 4));
    add(Vec2i(1, 1));
    box->updateLayout(true);
    EXPECT_EQ(describeChildren(*box), "0,0 100x10 | 0,48 100x12 | 18,12 59x34 | 0,12 15x34 | 80,12 20x34 | 0,0 0x0");
    box->setSize(Vec2i(30, 20));
    EXPECT_EQ(describe(*box->getWidget(2)), "18,12 0x0");
    layout->setVertGap(0);
    layout->setHorzGap(0);
    EXPECT_EQ(describe(*box->getWidget(2)), "15,10 0x0");
    // Without its neighbour the centre takes the place.
    box->setSize(Vec2i(100, 60));
    box->bury(3);
    box->updateLayout(true);
    EXPECT_EQ(describe(*box->getWidget(2)), "0,10 80x38");
}

TEST_F(Borders, SizesGrowPlaceByPlace) {
    struct Step {
        Vec2i size;
        Vec2i min;
        Vec2i pref;
        Vec2i max;
    };
    // Each child answers all three questions with its size; north and south are 10 + 50 = 60 wide.
    Step const steps[] = {
        {{10, 4}, {10, 4}, {10, 4}, {10, 4}},      {{50, 5}, {50, 11}, {50, 11}, {50, 9}},
        {{40, 6}, {50, 17}, {50, 19}, {50, 15}},   {{20, 30}, {63, 43}, {63, 43}, {63, 120}},
        {{11, 70}, {77, 83}, {77, 83}, {77, 130}},
    };
    for (Step const& step : steps) {
        add(step.size, step.size, step.size);
        EXPECT_EQ(layout->getMinSize(), step.min) << box->getWidgetCount();
        EXPECT_EQ(layout->getPrefSize(), step.pref) << box->getWidgetCount();
        EXPECT_EQ(layout->getMaxSize(), step.max) << box->getWidgetCount();
    }
    // No question looks past a gap.
    box->bury(1);
    EXPECT_EQ(layout->getMinSize(), Vec2i(10, 4));
    EXPECT_EQ(layout->getPrefSize(), Vec2i(10, 4));
    EXPECT_EQ(layout->getMaxSize(), Vec2i(10, 4));
}

TEST_F(Borders, WhatAsksForNothingAddsNoGapToTheMinimumAndWhatHasNoLimitTakesItFromAll) {
    add(Vec2i(), Vec2i(10, 4), Vec2i(10, 0));
    add(Vec2i(), Vec2i(20, 0), Vec2i(20, 5));
    add(Vec2i(), Vec2i(0, 6), Vec2i(0, 6));
    add(Vec2i(), Vec2i(0, 8), Vec2i(30, 8));
    EXPECT_EQ(layout->getMinSize(), Vec2i(20, 14));
    EXPECT_EQ(layout->getMaxSize(), Vec2i(33, 0));
    add(Vec2i(), Vec2i(15, 0), Vec2i(1, 1));
    EXPECT_EQ(layout->getMinSize(), Vec2i(21, 14));
    static_cast<Block*>(box->getWidget(0))->most = Vec2i(0, 3);
    EXPECT_EQ(layout->getMaxSize().x(), 0);
    // Widths count for the height: with none in north and south, a west without limit takes it from the east too.
    for (int index = 1; index < 4; ++index)
        static_cast<Block*>(box->getWidget(index))->most = Vec2i(0, 0);
    static_cast<Block*>(box->getWidget(4))->most = Vec2i(0, 40);
    EXPECT_EQ(layout->getMaxSize(), Vec2i(0, 0));
}

// --- Forms ---

class Forms : public Layouts {
protected:
    FormLayout* layout = give(*box, new FormLayout(4, 3));
};

TEST_F(Forms, ColumnsAndRowsTakeTheirGreatestSizes) {
    box->corner = Vec2i(5, 6);
    box->add(new Block(Vec2i(20, 10)));
    box->add(new Block(Vec2i(50, 17)));
    box->add(new Block(Vec2i(31, 12)));
    box->updateLayout(true);
    // The second row has no field. Captions stand in the middle of their rows, half units cut off.
    EXPECT_EQ(describeChildren(*box), "5,9 20x10 | 40,6 50x17 | 5,26 31x12");
    layout->setCaptionsAlign({Align::Max, 0}, {Align::Stretch, 0});
    layout->setFieldsAlign({Align::Min, 1}, {Align::Min, 2});
    EXPECT_EQ(describeChildren(*box), "16,6 20x17 | 41,8 50x17 | 5,26 31x12");
    layout->setHorzGap(0);
    layout->setVertGap(-3);
    EXPECT_EQ(describeChildren(*box), "16,6 20x17 | 37,8 50x17 | 5,20 31x12");
    auto* const copy = static_cast<FormLayout*>(layout->clone());
    EXPECT_EQ(copy->getCaptionsAlign(), layout->getCaptionsAlign());
    EXPECT_EQ(copy->getVertGap(), -3);
    Layout::destroy(copy);
}

TEST_F(Forms, SizesComeFromRows) {
    auto const add = [this](Vec2i const& pref, Vec2i const& least, Vec2i const& most) {
        box->add(new Block(pref, least, most));
    };
    add(Vec2i(20, 10), Vec2i(8, 5), Vec2i(40, 30));
    add(Vec2i(50, 17), Vec2i(9, 2), Vec2i(60, 20));
    add(Vec2i(31, 12), Vec2i(0, 7), Vec2i(0, 9));
    EXPECT_EQ(layout->getMinSize(), Vec2i(21, 15));
    EXPECT_EQ(layout->getPrefSize(), Vec2i(74, 29));
    EXPECT_EQ(layout->getMaxSize(), Vec2i(0, 42));
    // A field without a caption in front of it has no gap; a dead caption counts as nothing.
    add(Vec2i(2, 2), Vec2i(40, 1), Vec2i(70, 0));
    EXPECT_EQ(layout->getMinSize(), Vec2i(40, 15));
    EXPECT_EQ(layout->getMaxSize(), Vec2i(104, 42));
    box->bury(0);
    EXPECT_EQ(layout->getMinSize(), Vec2i(40, 12));
    EXPECT_EQ(layout->getPrefSize(), Vec2i(75, 29));
    box->updateLayout(true);
    EXPECT_EQ(describeChildren(*box), "- | 35,0 50x17 | 0,20 31x9 | 35,23 40x2");
}

}  // namespace
}  // namespace layout_test
