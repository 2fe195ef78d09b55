#include <gtest/gtest.h>

#include "platform/vtx/vtxPictureLibrary.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxShaderQuads.h"
#include "platform/vtx/vtxSkylinePacker.h"
#include "platform/vtx/vtxTexture.h"
#include "tests/platform/RendererFixture.h"
#include "tests/support/LogCapture.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

using Rect = osg::RectImpl<osg::Vec2i>;

class Pictures : public RendererFixture {
protected:
    vtxPictureLibrary& library() { return static_cast<vtxPictureLibrary&>(textures()); }
    vtxTexture* get(char const* name, Rect const& rect = {}, vtxTexture* previous = nullptr) {
        return textures().getTexture(name, rect, previous);
    }
    void flush(unsigned times) {
        for (unsigned i = 0; i < times; ++i)
            textures().flushReleased();
    }
    /// The whole of the texture's rectangle at (x, y), one unit a unit.
    void show(vtxTexture const* texture, float x, float y) {
        auto const width = static_cast<float>(texture->width), height = static_cast<float>(texture->height);
        vtxTexture::Rect const& rect = texture->rect;
        vtxShaderQuads quads;
        quads.beginBatch(texture, 1);
        quads.addBatchQuad(x, y, rect.x2 - rect.x1, rect.y2 - rect.y1, -1.0f);
        quads.addBatchTexCoords(rect.x1 / width, rect.y1 / height, rect.x2 / width, rect.y2 / height);
        quads.endBatch();
        shader()->turnOnDrawQuads();
        shader()->setColor(osg::Vec4f(1, 1, 1, 1));
        quads.draw(shader());
    }
    unsigned colorAt(int x, int y) const {
        unsigned char const* const pixel = canvas.at(x, y);
        return unsigned(pixel[0]) << 16 | unsigned(pixel[1]) << 8 | pixel[2];
    }
};

TEST_F(Pictures, OneTextureForOneFileAndRectangleHoweverItIsSpelled) {
    write("art/x.png", makePng(40, 20, 0xFF0000FFu));
    vtxTexture* const whole = get("art/x.png");
    ASSERT_NE(whole, nullptr);
    EXPECT_EQ(get("art\\x.png"), whole);
    EXPECT_EQ(get("./art//x.png", Rect(0, 0, 40, 20)), whole);
    EXPECT_EQ(get("art/x.png", Rect(7, 3, 7, 9)), whole) << "no area means the whole picture";
    vtxTexture* const part = get("art/x.png", Rect(5, 6, 15, 16));
    EXPECT_NE(part, whole);
    EXPECT_EQ(part->width, 40);
    EXPECT_EQ(part->height, 20);
    EXPECT_EQ(part->rect.x1, 5.0f);
    EXPECT_EQ(part->rect.y2, 16.0f);
    EXPECT_EQ(library().getImageCount(), 1) << "parts of a file share its pixels";
}

TEST_F(Pictures, ATextureLastsAsLongAsItsUsersAndThenAWhile) {
    write("x.png", makePng(8, 8, 0xFF0000FFu));
    vtxTexture* const texture = get("x.png");
    EXPECT_EQ(get("x.png", {}, texture), texture);  // the previous one again: no reference more
    EXPECT_EQ(get("x.png"), texture);               // a second user
    textures().releaseTexture(texture);
    flush(vtxPictureLibrary::idleFlushes * 3);
    EXPECT_EQ(library().getTextureCount(), 1);
    textures().releaseTexture(texture);

    remove("x.png");
    flush(vtxPictureLibrary::idleFlushes - 1);
    EXPECT_EQ(get("x.png"), texture) << "measuring does not read the file again";
    textures().releaseTexture(texture);
    flush(vtxPictureLibrary::idleFlushes + 2);
    EXPECT_EQ(library().getTextureCount(), 0);
    EXPECT_EQ(library().getImageCount(), 0);
    EXPECT_EQ(library().getPageCount(), 0);
    support::LogCapture log;
    EXPECT_EQ(get("x.png"), nullptr);
    EXPECT_EQ(log.getLines().size(), 1u);
}

TEST_F(Pictures, ReleasingWhatWasNeverGivenOutTouchesNothing) {
    write("x.png", makePng(8, 8, 0xFF0000FFu));
    get("x.png");
    vtxTexture* const part = get("x.png", Rect(0, 0, 4, 4));
    textures().releaseTexture(part);
    textures().releaseTexture(part);  // once too often
    EXPECT_EQ(get("x.png", Rect(0, 0, 4, 4)), part);
    textures().releaseTexture(nullptr);
    textures().releaseTexture(reinterpret_cast<vtxTexture*>(std::uintptr_t(0x1234)));
    flush(vtxPictureLibrary::idleFlushes + 2);
    EXPECT_EQ(library().getTextureCount(), 2);
}

TEST_F(Pictures, NeighboursInAPageKeepTheirOwnPixels) {
    std::vector<vtxTexture*> shown;
    for (int i = 0; i < 24; ++i) {
        std::string const name = "p" + std::to_string(i) + ".png";
        write(name, makePng(5 + i, 29 - i, unsigned(i * 10 + 5) << 24 | 0x8000FFu));
        shown.push_back(get(name.c_str()));
    }
    EXPECT_EQ(library().getPageCount(), 1);
    paint([&] {
        for (int i = 0; i < 24; ++i)
            show(shown[size_t(i)], static_cast<float>(i % 8 * 40), static_cast<float>(i / 8 * 40));
    });
    for (int i = 0; i < 24; ++i) {
        unsigned const expected = unsigned(i * 10 + 5) << 16 | 0x8000u;
        int const x = i % 8 * 40, y = i / 8 * 40;
        EXPECT_EQ(colorAt(x, y), expected) << i;
        EXPECT_EQ(colorAt(x + 4 + i, y + 28 - i), expected) << i;
        EXPECT_EQ(colorAt(x + 5 + i, y), 0xFFFFFFu) << i;
    }
}

TEST_F(Pictures, APageEndsWithItsLastPictureAndItsLayerIsUsedAgain) {
    for (int round = 0; round < 3; ++round) {
        unsigned const color = round == 0 ? 0x112233FFu : round == 1 ? 0x445566FFu : 0x778899FFu;
        std::string const name = "round" + std::to_string(round) + ".png";
        write(name, makePng(500, 500, color));
        vtxTexture* const texture = get(name.c_str());
        paint([&] { show(texture, 0, 0); });
        EXPECT_EQ(colorAt(300, 300), color >> 8);
        textures().releaseTexture(texture);
        flush(vtxPictureLibrary::idleFlushes + 2);
        EXPECT_EQ(library().getPageCount(), 0);
    }
}

TEST_F(Pictures, TheDoubledFileIsShownAboveItsScaleAndChangesNoMeasure) {
    write("x.png", makePng(20, 10, 0xFF0000FFu));
    write("x@2x.png", makePng(40, 20, [](int x, int) { return x % 2 ? 0x00FF00FFu : 0x0000FFFFu; }));
    vtxTexture* const texture = get("x.png");
    auto const look = [&](float scale) {
        vtxRenderer::get()->setScale(scale);
        textures().flushReleased();
        paint([&] { show(texture, 0, 0); });
        EXPECT_EQ(texture->width, 20);
        EXPECT_EQ(texture->rect.x2, 20.0f);
    };
    look(1.25f);
    EXPECT_EQ(colorAt(3, 3), 0xFF0000u);
    look(2.0f);
    EXPECT_EQ(colorAt(2, 3), 0x0000FFu);
    EXPECT_EQ(colorAt(3, 3), 0x00FF00u);
    EXPECT_EQ(colorAt(39, 19), 0x00FF00u);
    EXPECT_EQ(colorAt(40, 3), 0xFFFFFFu);
    look(1.0f);
    EXPECT_EQ(colorAt(3, 3), 0xFF0000u);
    EXPECT_EQ(library().getImageCount(), 1);
    EXPECT_EQ(library().getPageCount(), 1);
}

TEST_F(Pictures, ABrokenDoubledFileLeavesTheSingleOneAndOneLine) {
    vtxRenderer::get()->setScale(2.0f);
    write("x.png", makePng(20, 10, 0xFF0000FFu));
    write("x@2x.png", "nonsense");
    support::LogCapture log;
    vtxTexture* const texture = get("x.png");
    ASSERT_NE(texture, nullptr);
    for (float const scale : {1.0f, 2.0f, 1.0f, 2.0f}) {
        vtxRenderer::get()->setScale(scale);
        textures().flushReleased();
    }
    paint([&] { show(texture, 0, 0); });
    EXPECT_EQ(colorAt(39, 19), 0xFF0000u);
    EXPECT_EQ(log.getLines().size(), 1u) << log.dump();
}

TEST(SkylinePacker, NothingOverlapsOrSticksOut) {
    constexpr int side = 200;
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        vtxSkylinePacker packer(side);
        std::vector<char> taken(side * side, 0);
        int covered = 0;
        for (int i = 0; i < 400; ++i) {
            int const width = 1 + static_cast<int>(random() % 40), height = 1 + static_cast<int>(random() % 40);
            int x = 0, y = 0;
            if (!packer.add(width, height, x, y))
                continue;
            ASSERT_TRUE(x >= 0 && y >= 0 && x + width <= side && y + height <= side);
            for (int row = y; row < y + height; ++row) {
                for (int column = x; column < x + width; ++column)
                    ASSERT_EQ(taken[size_t(row * side + column)]++, 0);
            }
            covered += width * height;
        }
        EXPECT_GT(covered, side * side * 7 / 10);
        int x = 0, y = 0;
        EXPECT_FALSE(packer.add(side + 1, 1, x, y));
        packer.reset();
        EXPECT_TRUE(packer.add(side, side, x, y));
        EXPECT_FALSE(packer.add(1, 1, x, y));
    }
}

}  // namespace
