#include "gui_lib/Skin/Bkg.h"

#include <regex>

#include "gui_lib/graphics/GraphicCommands.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxTexture.h"
#include "tests/graphics/TraceFixture.h"

namespace {

using gui::Bkg;
using gui::Insets;

class BkgDrawing : public TraceFixture {
protected:
    void SetUp() override {
        TraceFixture::SetUp();
        for (int i = 0; i < Bkg::CellCount; ++i)
            colors[static_cast<std::size_t>(i)].set(static_cast<float>(i) / 10.0f, 0, 0, 1);
    }

    /// What is drawn, whether directly or recorded.
    std::string draw(Bkg& bkg) {
        bkg.redraw();
        bkg.doRedraw();
        std::string const direct = quads([&] { bkg.draw(); });
        EXPECT_EQ(quadsRecorded([&](gui::GraphicCommands& list) { bkg.make(&list); }), direct);
        return direct;
    }

    qor::vector<osg::Vec4f> colors = qor::vector<osg::Vec4f>(Bkg::CellCount);
};

std::string withoutColors(std::string const& quads) {
    return std::regex_replace(quads, std::regex(" color [-.0-9e ]*[0-9]"), "");
}

TEST_F(BkgDrawing, nineCellsStretchTheMiddleAndStopATexelShort) {
    auto const target = makeTarget(64, 32);
    Bkg bkg;
    bkg.setTexture(target->getTexture());
    bkg.setCellColors(colors);
    bkg.setInsets(Insets{8, 4, 16, 8});
    bkg.setPosition(osg::Vec2i(100, 50));
    bkg.setSize(osg::Vec2i(124, 72));
    EXPECT_EQ(withoutColors(draw(bkg)),
              "at 100 50 size 8 4 uv 0 0 0.125 0.125\n"
              "at 108 50 size 100 4 uv 0.125 0 0.7344 0.125\n"
              "at 208 50 size 16 4 uv 0.75 0 1 0.125\n"
              "at 100 54 size 8 60 uv 0 0.125 0.125 0.7188\n"
              "at 108 54 size 100 60 uv 0.125 0.125 0.7344 0.7188\n"
              "at 208 54 size 16 60 uv 0.75 0.125 1 0.7188\n"
              "at 100 114 size 8 8 uv 0 0.75 0.125 1\n"
              "at 108 114 size 100 8 uv 0.125 0.75 0.7344 1\n"
              "at 208 114 size 16 8 uv 0.75 0.75 1 1\n");
    bkg.setTexture(nullptr);
}

TEST_F(BkgDrawing, insetsWiderThanTheSizeOverlapTheColumns) {
    Bkg bkg;
    bkg.setCellColors(colors);
    bkg.setInsets(Insets{10, 0, 20, 0});
    bkg.setSize(osg::Vec2i(15, 6));
    EXPECT_EQ(withoutColors(draw(bkg)), "at 0 0 size 10 6\nat 0 0 size 20 6\n");
    bkg.setInsets(Insets());
    EXPECT_EQ(draw(bkg), "at 0 0 size 15 6 color 0.4 0 0 1\n");
    bkg.setInsets(Insets{2147483647, 2147483647, 2147483647, -2147483647});
    draw(bkg);
}

TEST_F(BkgDrawing, cellsWithoutColourAreLeftOutAndColoursStandInTheOrderOfQuads) {
    colors.assign(Bkg::CellCount, osg::Vec4f());
    colors[Bkg::CenterTop].set(2.0f, -1.0f, 0.5f, 1.0f);
    colors[Bkg::RightBottom].set(1, 1, 1, 0);
    Bkg bkg;
    bkg.setCellColors(colors);
    bkg.setInsets(Insets{1, 1, 1, 1});
    bkg.setSize(osg::Vec2i(10, 10));
    EXPECT_EQ(draw(bkg), "at 1 0 size 8 1 color 1 0 0.498 1\n");
    EXPECT_EQ(bkg.getColorsToDraw()[1], osg::Vec4f(1, 1, 1, 0));
}

TEST_F(BkgDrawing, coloursAloneWaitForTheNextLayout) {
    Bkg bkg;
    bkg.setCellColors(colors);
    bkg.setSize(osg::Vec2i(10, 10));
    std::string const before = draw(bkg);
    bkg.setCellColors(qor::vector<osg::Vec4f>(8, osg::Vec4f(1, 1, 1, 1)));
    bkg.setDirty(true);
    EXPECT_EQ(draw(bkg), before);
    bkg.setCellColors(qor::vector<osg::Vec4f>(9, osg::Vec4f(0, 1, 0, 1)));
    EXPECT_EQ(draw(bkg), before);
    bkg.setDirty(true);
    EXPECT_EQ(draw(bkg), "at 0 0 size 10 10 color 0 1 0 1\n");
}

TEST_F(BkgDrawing, anEmptyOneRecordsNothing) {
    Bkg bkg;
    bkg.setCellColors(colors);
    bkg.setInsets(Insets{3, 3, 3, 3});
    draw(bkg);
    bkg.setInsets(Insets());
    EXPECT_EQ(draw(bkg), "");
    gui::GraphicCommands list;
    bkg.make(&list);
    EXPECT_TRUE(list.getCommands().empty());
    EXPECT_EQ(operations([&] { bkg.draw(); }), "");
}

TEST_F(BkgDrawing, packedColoursComeBackExactly) {
    for (int value = 0; value < 256; ++value) {
        float const component = static_cast<float>(value) / 255.0f;
        Bkg bkg;
        bkg.setCellColors(qor::vector<osg::Vec4f>(9, osg::Vec4f(component, 1, component, 1)));
        bkg.setSize(osg::Vec2i(1, 1));
        bkg.redraw();
        bkg.doRedraw();
        EXPECT_EQ(bkg.getColorsToDraw()[0].r(), component);
        EXPECT_EQ(bkg.getColorsToDraw()[0].b(), component);
    }
}

TEST_F(BkgDrawing, otherCellsAreSeenOnlyAfterALayout) {
    Bkg::Info some, others;
    some.insets = others.insets = Insets{2, 0, 2, 0};
    some.cellColors = colors;
    others.cellColors[Bkg::RightCenter].set(0, 1, 0, 1);
    Bkg bkg;
    bkg.setShared(some);
    bkg.setSize(osg::Vec2i(10, 10));
    std::string const before = draw(bkg);
    auto const drawWithoutLayout = [&] {
        bkg.doRedraw();
        return quads([&] { bkg.draw(); });
    };
    bkg.setShared(others);
    EXPECT_EQ(drawWithoutLayout(), before);
    EXPECT_EQ(draw(bkg), "at 8 0 size 2 10 color 0 1 0 1\n");
    bkg.setShared(some);
    EXPECT_EQ(draw(bkg), before);
    // Colours that are still to be shown are written over.
    Bkg::Info red = some;
    red.cellColors.assign(Bkg::CellCount, osg::Vec4f(1, 0, 0, 1));
    bkg.setShared(red);
    bkg.setCellColors(others.cellColors);
    EXPECT_EQ(drawWithoutLayout(), before);
    EXPECT_EQ(draw(bkg), "at 8 0 size 2 10 color 0 1 0 1\n");
}

}  // namespace
