#include <limits>
#include <random>

#include "gui_lib/layouts/HorzLayout.h"
#include "gui_lib/layouts/VertLayout.h"
#include "tests/layouts/Blocks.h"
#include "tests/support/LogCapture.h"

namespace layout_test {
namespace {

using gui::HorzLayout;
using gui::VertLayout;

class Lines : public Layouts {
protected:
    HorzLayout* row(int gap, Align const& horz, Align const& vert = {}) {
        HorzLayout* const layout = give(*box, new HorzLayout(gap));
        layout->setHorzAlign(horz);
        layout->setVertAlign(vert);
        return layout;
    }
};

TEST_F(Lines, AnAlignedRowTakesPreferredWidthsFromItsAlignOn) {
    box->corner = Vec2i(3, 4);
    box->add(new Block(Vec2i(10, 20)));
    box->add(new Block(Vec2i(30, 30)));
    HorzLayout* const layout = row(5, {Align::Min, 2}, {Align::Max, -1});
    EXPECT_EQ(describeChildren(*box), "5,43 10x20 | 20,33 30x30");
    layout->setHorzAlign({Align::Center, 0});
    EXPECT_EQ(describeChildren(*box), "30,43 10x20 | 45,33 30x30");
    layout->setHorzAlign({Align::Max, 0});
    layout->setVertAlign({Align::Stretch, 9});
    EXPECT_EQ(describeChildren(*box), "58,4 10x60 | 73,4 30x60");
    layout->setGap(-4);
    EXPECT_EQ(describeChildren(*box), "67,4 10x60 | 73,4 30x60");
}

TEST_F(Lines, PlacesFollowRealSizesWhileTheAlignCountsPreferredOnes) {
    // Prefers 10, and its limits let it be no less than 25.
    struct Stubborn : Block {
        using Block::Block;
        Vec2i getPrefSize() const override { return pref; }
    };
    box->add(new Stubborn(Vec2i(10, 10), Vec2i(25, 0)));
    box->add(new Block(Vec2i(10, 10)));
    row(0, {Align::Max, 0});
    EXPECT_EQ(describeChildren(*box), "80,0 25x10 | 105,0 10x10");
}

TEST_F(Lines, AStretchedRowSharesTheRoomBetweenItsGaps) {
    box->add(new Block(Vec2i(5, 10)));
    box->add(new Block(Vec2i(5, 10), Vec2i(60, 0)));
    box->add(new Block(Vec2i(5, 10), Vec2i(), Vec2i(8, 0)))->setVisible(false);
    HorzLayout* const layout = row(6, {Align::Stretch, 0}, {Align::Center, 0});
    // 88 units, of which 60 and 8 are held: the fourth correction is the last, and the first child has too much. A
    // hidden child keeps its room.
    EXPECT_EQ(describeChildren(*box), "0,25 40x10 | 46,25 60x10 | 112,25 8x10");
    layout->setGap(70);
    EXPECT_EQ(describeChildren(*box), "0,25 0x10 | 70,25 60x10 | 200,25 0x10");
    // A container in the row gives the greatest maximum of its children and all gaps.
    layout->setGap(0);
    auto* const inner = new Box;
    inner->add(new Block(Vec2i(), Vec2i(), Vec2i(4, 0)));
    inner->add(new Block(Vec2i(), Vec2i(), Vec2i(7, 0)));
    box->insertWidget(inner, 0);
    give(*inner, new HorzLayout(3));
    box->updateLayout(true);
    EXPECT_EQ(inner->getSize().x(), 10);
}

TEST_F(Lines, DeadChildrenKeepTheirGapsAndTakeNoShare) {
    for (int i = 0; i < 3; ++i)
        box->add(new Block(Vec2i(10, 10)));
    box->bury(1);
    HorzLayout* const layout = row(6, {Align::Min, 0});
    EXPECT_EQ(describeChildren(*box), "0,0 10x10 | - | 22,0 10x10");
    EXPECT_EQ(layout->getPrefSize(), Vec2i(32, 10));
    layout->setHorzAlign({Align::Stretch, 0});
    EXPECT_EQ(describeChildren(*box), "0,0 44x10 | - | 56,0 44x10");
}

TEST_F(Lines, AnUnknownAlignPlacesNothingAlongTheRowAndIsTakenAsMinAcrossIt) {
    Block* const child = box->add(new Block(Vec2i(10, 10)));
    child->setPosition(Vec2i(40, 40));
    HorzLayout* const layout = row(0, {static_cast<Align::Type>(7), 0});
    child->setPosition(Vec2i(40, 40));
    layout->setGap(1);
    EXPECT_EQ(describeChildren(*box), "40,40 10x10");
    layout->setHorzAlign({Align::Min, 0});
    support::LogCapture log;
    layout->setVertAlign({static_cast<Align::Type>(7), 3});
    EXPECT_TRUE(log.contains("Invalid Align type!"));
    EXPECT_EQ(describeChildren(*box), "0,3 10x10");
}

TEST_F(Lines, SizesAddUpAlongTheRowAndAreTheGreatestAcrossIt) {
    HorzLayout* const layout = row(5, {Align::Min, 0});
    for (Vec2i const& size : {layout->getMinSize(), layout->getMaxSize(), layout->getPrefSize(), layout->calcMaxSize()})
        EXPECT_EQ(size, Vec2i(0, 0));
    Block* const first = box->add(new Block(Vec2i(10, 40), Vec2i(8, 0), Vec2i(50, 70)));
    box->add(new Block(Vec2i(20, 30), Vec2i(), Vec2i(60, 0)));
    EXPECT_EQ(layout->getMinSize(), Vec2i(13, 0));
    EXPECT_EQ(layout->getPrefSize(), Vec2i(35, 40));
    EXPECT_EQ(layout->getMaxSize(), Vec2i(115, 0));
    EXPECT_EQ(layout->calcMaxSize(), Vec2i(65, 70));
    first->least = first->most = Vec2i();
    EXPECT_EQ(layout->getMinSize(), Vec2i(0, 0));
    EXPECT_EQ(layout->getMaxSize(), Vec2i(0, 0));
    first->pref = Vec2i(std::numeric_limits<int>::max(), 1);
    EXPECT_EQ(layout->getPrefSize().x(), std::numeric_limits<int>::max());
}

Vec2i turned(Vec2i const& size) { return {size.y(), size.x()}; }

TEST_F(Lines, AColumnIsARowWithTheAxesExchanged) {
    std::mt19937 random(11);
    auto const draw = [&random](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    for (int trial = 0; trial < 2000; ++trial) {
        Vec2i const size(draw(200), draw(200));
        auto* const across = new Box(size);
        auto* const down = new Box(turned(size));
        for (int i = draw(5); i > 0; --i) {
            Vec2i const pref(draw(60), draw(60));
            Vec2i const least(draw(2) * draw(40), draw(2) * draw(40));
            Vec2i const most(draw(2) * draw(80), draw(2) * draw(80));
            across->add(new Block(pref, least, most));
            down->add(new Block(turned(pref), turned(least), turned(most)));
        }
        int const gap = draw(20) - 5;
        Align const along(static_cast<Align::Type>(draw(4)), draw(9));
        Align const crossing(static_cast<Align::Type>(draw(4)), draw(9));
        auto* const row = give(*across, new HorzLayout(gap));
        auto* const column = give(*down, new VertLayout(gap));
        row->setHorzAlign(along), row->setVertAlign(crossing);
        column->setVertAlign(along), column->setHorzAlign(crossing);
        for (auto const question :
             {&Layout::getMinSize, &Layout::getMaxSize, &Layout::getPrefSize, &Layout::calcMaxSize})
            ASSERT_EQ((row->*question)(), turned((column->*question)())) << trial;
        for (int i = 0; i < across->getWidgetCount(); ++i) {
            ASSERT_EQ(across->getWidget(i)->getPosition(), turned(down->getWidget(i)->getPosition())) << trial;
            ASSERT_EQ(across->getWidget(i)->getSize(), turned(down->getWidget(i)->getSize())) << trial;
        }
        Widget::destroy(across);
        Widget::destroy(down);
    }
}

}  // namespace
}  // namespace layout_test
