#include "gui_lib/Skin/Image.h"

#include <cstdio>
#include <limits>
#include <tuple>

#include "gui_lib/graphics/GraphicCommands.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTexture.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/graphics/TraceFixture.h"
#include "tests/support/LogCapture.h"

namespace {

using gui::Align;
using gui::Align2;
using gui::Image;
using gui::Insets;

class ImageDrawing : public TraceFixture {
protected:
    /// Places of what is drawn in a box, as "x y w h;", with the picture 10 by 8 unless told otherwise.
    std::string places(Image::Info const& info, osg::Vec2i const& box, Insets const& insets = Insets(),
                       osg::Vec2i const& picture = osg::Vec2i(10, 8)) {
        auto const target = makeTarget(picture.x(), picture.y());
        Image image;
        image.set(info);
        image.setTexture(target->getTexture(), false);
        image.setInsets(insets);
        image.redraw(box);
        image.doRedraw();
        // Moved, since what lies left of the screen is cut off.
        vtxRenderer::ModelViewMatrixGuard moved;
        moved.setTranslate(100, 100, 0);
        std::string const direct = quads([&] { image.draw(); });
        EXPECT_EQ(quadsRecorded([&](gui::GraphicCommands& list) { image.make(&list); }), direct);
        std::string result;
        for (std::size_t pos = 0; pos < direct.size(); pos = direct.find('\n', pos) + 1) {
            int x = 0, y = 0, width = 0, height = 0;
            std::sscanf(direct.c_str() + pos, "at %d %d size %d %d", &x, &y, &width, &height);
            char text[64];
            std::snprintf(text, sizeof(text), "%d %d %d %d;", x - 100, y - 100, width, height);
            result += text;
        }
        return result;
    }
};

Image::Info aligned(Align const& horz, Align const& vert) {
    Image::Info info;
    info.align = Align2(horz, vert);
    return info;
}

Image::Info tiled(Align::Type horz, Align::Type vert, bool horizontally, bool vertically) {
    Image::Info info = aligned(Align(horz, 0), Align(vert, 0));
    info.tileHorizontally = horizontally;
    info.tileVertically = vertically;
    return info;
}

TEST(Align, placesALengthWithinAnother) {
    int const most = std::numeric_limits<int>::max();
    int const least = std::numeric_limits<int>::min();
    struct Case {
        Align align;
        int length, available, from, to;
    };
    Case const cases[] = {
        {Align(Align::Min, 3), 10, 50, 3, 13},
        {Align(Align::Center, 3), 10, 51, 23, 33},
        {Align(Align::Center, 0), 13, 10, -1, 12},
        {Align(Align::Max, -3), 10, 50, 37, 47},
        {Align(Align::Stretch, 3), 10, 50, 0, 50},
        {Align(Align::Max, most), 10, most, most, most},
        {Align(Align::Max, least), most, most, least, -1},
    };
    for (Case const& c : cases) {
        int from = 0;
        int to = 0;
        c.align.calc(c.length, c.available, from, to);
        EXPECT_EQ(std::tie(from, to), std::tie(c.from, c.to)) << c.align.type << " " << c.align.offset;
    }
    support::LogCapture log;
    int from = 0;
    int to = 0;
    Align(static_cast<Align::Type>(7), 4).calc(10, 50, from, to);
    EXPECT_EQ(from, 4);
    EXPECT_EQ(to, 14);
    EXPECT_TRUE(log.contains("Invalid Align type!"));
}

TEST_F(ImageDrawing, picturesAreAlignedWithinTheInsets) {
    Insets const insets{1, 2, 3, 4};
    osg::Vec2i const box(54, 46);
    EXPECT_EQ(places(Image::Info(), box), "0 19 10 8;");
    EXPECT_EQ(places(aligned(Align(Align::Min, 5), Align(Align::Max, -5)), box, insets), "6 29 10 8;");
    EXPECT_EQ(places(aligned(Align(Align::Center, 0), Align(Align::Center, 1)), box, insets), "21 19 10 8;");
    EXPECT_EQ(places(aligned(Align(Align::Stretch, 9), Align(Align::Min, 0)), box, insets), "1 2 50 8;");
}

TEST_F(ImageDrawing, resizingToFillCoversALargerBoxOnly) {
    Image::Info info = aligned(Align(Align::Min, 0), Align(Align::Min, 0));
    info.resizeToFill = true;
    osg::Vec2i const picture(100, 50);
    EXPECT_EQ(places(info, osg::Vec2i(150, 150), Insets(), picture), "0 0 300 150;");
    EXPECT_EQ(places(info, osg::Vec2i(90, 50), Insets(), picture), "0 0 100 50;");
    EXPECT_EQ(places(info, osg::Vec2i(101, 20), Insets(), picture), "0 0 101 51;");
    info.size.set(0, 5);
    EXPECT_EQ(places(info, osg::Vec2i(150, 150), Insets(), picture), "");
}

TEST_F(ImageDrawing, rowsAndColumnsStartBeforeTheInsets) {
    osg::Vec2i const box(25, 20);
    Insets const insets{3, 0, 0, 0};
    EXPECT_EQ(places(tiled(Align::Center, Align::Min, true, false), box), "-3 0 10 8;7 0 10 8;17 0 10 8;");
    EXPECT_EQ(places(tiled(Align::Center, Align::Min, true, false), box, insets), "-1 0 10 8;9 0 10 8;19 0 10 8;");
    EXPECT_EQ(places(tiled(Align::Stretch, Align::Min, true, false), box), "0 0 25 8;");
    EXPECT_EQ(places(tiled(Align::Min, Align::Max, false, true), box), "0 -4 10 8;0 4 10 8;0 12 10 8;");
    EXPECT_EQ(places(tiled(Align::Min, Align::Stretch, false, true), box), "0 0 10 20;");
}

TEST_F(ImageDrawing, gridsHaveSomethingOnTop) {
    osg::Vec2i const picture(10, 8);
    EXPECT_EQ(places(tiled(Align::Min, Align::Min, true, true), picture), "0 0 10 8;0 0 10 8;");
    EXPECT_EQ(places(tiled(Align::Stretch, Align::Stretch, true, true), picture), "0 0 10 8;");
    EXPECT_EQ(places(tiled(Align::Stretch, Align::Min, true, true), osg::Vec2i(12, 10)), "0 0 12 8;0 8 12 8;0 0 12 8;");
    EXPECT_EQ(places(tiled(Align::Min, Align::Stretch, true, true), osg::Vec2i(12, 10)),
              "0 0 10 10;10 0 10 10;0 0 10 10;");
    // Upwards the grid steps by the width: the first row starts at 9 - 10.
    EXPECT_EQ(places(tiled(Align::Min, Align::Center, true, true), osg::Vec2i(10, 26)),
              "0 -1 10 8;0 7 10 8;0 15 10 8;0 23 10 8;0 9 10 8;");
}

TEST_F(ImageDrawing, tilesThatNeverEndAreDrawnOnce) {
    Image::Info info = tiled(Align::Min, Align::Min, true, true);
    info.size.set(0, 5);
    EXPECT_EQ(places(info, osg::Vec2i(20, 20)), "");
    info.size.set(5, -1);
    EXPECT_EQ(places(info, osg::Vec2i(20, 20)), "0 -1 5 1;");
    support::LogCapture log;
    info.size.set(1, 1);
    EXPECT_EQ(places(info, osg::Vec2i(2000, 2000)), "0 0 1 1;");
    EXPECT_EQ(log.getLines().size(), 1u) << log.dump();
    int const most = std::numeric_limits<int>::max();
    info.align = Align2(Align(Align::Min, most), Align(Align::Max, most));
    places(info, osg::Vec2i(most, most), Insets{-most, -most, -most, -most});
}

TEST_F(ImageDrawing, thePictureSizeIsCutBeforeItIsSubtracted) {
    auto const target = makeTarget(32, 32);
    vtxTexture* const texture = target->getTexture();
    texture->rect.x1 = 10.9f;
    texture->rect.x2 = 20.2f;
    texture->rect.y2 = 5.0f;
    Image image;
    EXPECT_EQ(image.getSize(), osg::Vec2i(0, 0));
    image.setTexture(texture, false);
    EXPECT_EQ(image.getSize(), osg::Vec2i(10, 5));
    image.setSize(osg::Vec2i(0, 7));
    EXPECT_EQ(image.getSize(), osg::Vec2i(0, 7));
    texture->rect.x1 = std::numeric_limits<float>::quiet_NaN();
    texture->rect.x2 = 1e20f;
    image.setSize(osg::Vec2i(0, 0));
    EXPECT_EQ(image.getSize(), osg::Vec2i(std::numeric_limits<int>::max(), 5));
}

TEST_F(ImageDrawing, aTransparentColourDrawsNothing) {
    auto const target = makeTarget(10, 8);
    Image image;
    image.setTexture(target->getTexture(), false);
    image.redraw(osg::Vec2i(10, 8));
    image.doRedraw();
    osg::Vec4f const transparent(1, 1, 1, 0);
    EXPECT_EQ(operations([&] { image.draw(transparent); }), "");
    EXPECT_EQ(operationsRecorded([&](gui::GraphicCommands& list) { image.make(&list, transparent); }), "");
}

TEST_F(ImageDrawing, aReplacedPictureLivesUntilTheNextRebuild) {
    qor::basic_string<char> const file = "tests/graphics/picture.png";
    Image image;
    image.setTexture(file, osg::RectImpl<osg::Vec2i>(0, 0, 8, 8));
    vtxTexture* const first = image.getTexture();
    ASSERT_TRUE(first);
    EXPECT_EQ(image.getSize(), osg::Vec2i(8, 8));
    image.redraw(osg::Vec2i(8, 8));
    image.doRedraw();
    // Long enough for pictures without users to go.
    auto const flush = [] {
        for (int i = 0; i < 1000; ++i)
            vtxRenderer::get()->getTextureManager()->flushReleased();
    };
    std::string const before = quads([&] { image.draw(); });
    EXPECT_NE(before, "");
    std::string const recorded = quadsRecorded([&](gui::GraphicCommands& commands) {
        image.make(&commands);
        image.setTexture(file, osg::RectImpl<osg::Vec2i>(8, 0, 16, 8));
        flush();
    });
    EXPECT_EQ(recorded, before);
    EXPECT_NE(image.getTexture(), first);
    image.redraw(osg::Vec2i(8, 8));
    image.doRedraw();
    EXPECT_NE(quads([&] { image.draw(); }), before);
}

}  // namespace
