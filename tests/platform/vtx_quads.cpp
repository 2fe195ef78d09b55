#include "tests/platform/vtx_Fixture.h"

#include "platform/vtx/vtxShaderBkgQuads.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

namespace {

using support::Rect;
using support::TracedQuad;

class Quads : public support::RendererTest {
protected:
    /// Where an edge of whole GUI units belongs.
    static double edge(double pixels) { return std::floor(pixels + 0.5 + 1e-3); }
};

TEST_F(Quads, areClippedInGuiUnitsOfTheTargetWhateverTheModelView) {
    renderer_->setScale(1.5f);
    {
        Frame const frame(*renderer_);
        vtxRenderer::ModelViewMatrixGuard inner;
        inner.setTranslate(10.0f, 20.0f, 0.0f);
        vtxRenderer::ClipRectGuard const clip(Rect(11, 21, 30, 41));
        drawQuad(0.0, 0.0, 100.0, 100.0);
        vtxRenderer::ClipRectGuard const smaller(Rect(0, 0, 20, 25));
        drawQuad(0.0, 0.0, 100.0, 100.0);
        drawQuad(10.0, 0.0, 5.0, 5.0);
    }
    auto const quads = getQuads();
    ASSERT_EQ(quads.size(), 2u) << log_->getText();
    EXPECT_EQ(quads[0].x, 17.0);
    EXPECT_EQ(quads[0].y, 32.0);
    EXPECT_EQ(quads[0].x + quads[0].w, 45.0);
    EXPECT_EQ(quads[0].y + quads[0].h, 62.0);
    EXPECT_EQ(quads[1].x + quads[1].w, 30.0);
    EXPECT_EQ(quads[1].y + quads[1].h, 38.0);
    EXPECT_EQ(log_->getCounters().runs, 1u);
}

TEST_F(Quads, aClipPushedWithNothingOpenIsInRawPixels) {
    renderer_->setScale(0.5f);
    {
        vtxRenderer::ClipRectGuard const clip(Rect(0, 0, 200, 50));
        Frame const frame(*renderer_);
        drawQuad(0.0, 0.0, 1000.0, 1000.0);
    }
    auto const quads = getQuads();
    ASSERT_EQ(quads.size(), 1u);
    EXPECT_EQ(quads[0].w, 200.0);
    EXPECT_EQ(quads[0].h, 50.0);
}

TEST_F(Quads, clippingKeepsThePictureInPlace) {
    Picture const& picture = addPicture({64, 64}, vtxImagePlace::Alone);
    std::mt19937 random(7);
    auto const pick = [&](int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); };
    for (int round = 0; round < 300; ++round) {
        log_->clearLines();
        double const rect[4] = {double(pick(-60, 190)), double(pick(-60, 90)), double(pick(1, 120)),
                                double(pick(1, 90))};
        double uv[4] = {0.0, 0.25, 1.0, 0.75};
        if (round % 3 == 1)
            std::swap(uv[0], uv[2]);
        Rect const clip(pick(-10, 150), pick(-10, 80), pick(50, 210), pick(20, 110));
        {
            Frame const frame(*renderer_);
            vtxRenderer::ClipRectGuard const guard(clip);
            if (round % 3 == 2)
                drawPart({rect[0] + rect[2], rect[1] + rect[3], -rect[2], -rect[3]}, uv, picture.texture.get());
            else
                drawPart(rect, uv, picture.texture.get());
        }
        Rect const visible =
            clip.intersected(Rect(0, 0, 200, 100))
                .intersected(Rect(int(rect[0]), int(rect[1]), int(rect[0] + rect[2]), int(rect[1] + rect[3])));
        auto const quads = getQuads();
        ASSERT_EQ(quads.size(), visible.isEmpty() ? 0u : 1u);
        if (quads.empty())
            continue;
        TracedQuad const& quad = quads[0];
        ASSERT_EQ(quad.x, visible.x1);
        ASSERT_EQ(quad.y, visible.y1);
        ASSERT_EQ(quad.w, visible.width());
        ASSERT_EQ(quad.h, visible.height());
        if (round % 3 == 2) {
            std::swap(uv[0], uv[2]);
            std::swap(uv[1], uv[3]);
        }
        auto const expected = [](double at, double from, double length, double first, double last) {
            return first + (at - from) / length * (last - first);
        };
        ASSERT_NEAR(quad.u1, expected(quad.x, rect[0], rect[2], uv[0], uv[2]), 2e-4);
        ASSERT_NEAR(quad.u2, expected(quad.x + quad.w, rect[0], rect[2], uv[0], uv[2]), 2e-4);
        ASSERT_NEAR(quad.v1, expected(quad.y, rect[1], rect[3], uv[1], uv[3]), 2e-4);
        ASSERT_NEAR(quad.v2, expected(quad.y + quad.h, rect[1], rect[3], uv[1], uv[3]), 2e-4);
    }
}

TEST_F(Quads, abuttingCellsLeaveNoSeamAtAnyScale) {
    for (float const scale : {0.75f, 1.0f, 1.1f, 1.25f, 1.5f, 1.75f, 2.0f, 2.5f}) {
        renderer_->setScale(scale);
        for (int offset = 0; offset < 12; ++offset) {
            log_->clearLines();
            {
                Frame const frame(*renderer_, Rect(0, 0, 200, 200));
                vtxRenderer::ModelViewMatrixGuard place;
                place.setTranslate(static_cast<float>(offset), static_cast<float>(offset), 0.0f);
                vtxShaderBkgQuads quads;
                float const edges[] = {0, 5, 31, 36};
                std::array<float, 36> colors;
                colors.fill(1.0f);
                for (int i = 0; i < 9; ++i) {
                    float const x = edges[i % 3];
                    float const y = edges[i / 3];
                    quads.addQuad({x, y, edges[i % 3 + 1] - x, edges[i / 3 + 1] - y, 0, 0, 0, 0});
                }
                shader().setColors(colors.data(), 9);
                quads.draw(&shader());
            }
            auto const quads = getQuads();
            ASSERT_EQ(quads.size(), 9u);
            for (int i = 0; i < 9; ++i) {
                TracedQuad const& quad = quads[static_cast<std::size_t>(i)];
                ASSERT_EQ(quad.x, edge((i % 3 == 0 ? 0 : i % 3 == 1 ? 5 : 31) * scale + offset * scale)) << scale;
                if (i % 3 != 2) {
                    ASSERT_EQ(quad.x + quad.w, quads[static_cast<std::size_t>(i + 1)].x) << scale << ' ' << offset;
                }
                if (i < 6) {
                    ASSERT_EQ(quad.y + quad.h, quads[static_cast<std::size_t>(i + 3)].y) << scale << ' ' << offset;
                }
            }
        }
    }
}

TEST_F(Quads, aThinQuadStaysVisible) {
    renderer_->setScale(0.5f);
    {
        Frame const frame(*renderer_);
        for (int i = 0; i < 4; ++i)
            drawQuad(10.0 * i + i, 0.0, 1.0, 20.0);
    }
    for (TracedQuad const& quad : getQuads())
        EXPECT_EQ(quad.w, 1.0);
    EXPECT_EQ(getQuads().size(), 4u);
}

TEST_F(Quads, glyphsKeepOneTexelAPixel) {
    Picture const& glyphs =
        addPicture({vtxTextureStore::glyphPageSide, vtxTextureStore::glyphPageSide}, vtxImagePlace::GlyphPage);
    double const side = vtxTextureStore::glyphPageSide;
    for (float const scale : {1.0f, 1.25f, 1.5f, 1.75f}) {
        renderer_->setScale(scale);
        for (int offset = 0; offset < 8; ++offset) {
            log_->clearLines();
            {
                Frame const frame(*renderer_);
                vtxRenderer::ModelViewMatrixGuard place;
                place.setTranslate(static_cast<float>(offset), 0.0f, 0.0f);
                drawPart({3.0 / scale, 4.0 / scale, 11.0 / scale, 13.0 / scale},
                         {20.0 / side, 30.0 / side, 31.0 / side, 43.0 / side}, glyphs.texture.get());
            }
            auto const quads = getQuads();
            ASSERT_EQ(quads.size(), 1u);
            EXPECT_EQ(quads[0].w, 11.0) << scale << ' ' << offset;
            EXPECT_EQ(quads[0].h, 13.0);
            EXPECT_EQ(quads[0].x, edge(3.0 + offset * scale));
        }
    }
}

TEST_F(Quads, turnedQuadsAreCutByTheScissorAndOnlyThey) {
    {
        Frame const frame(*renderer_);
        vtxRenderer::ClipRectGuard const clip(Rect(10, 10, 60, 60));
        drawQuad(0.0, 0.0, 40.0, 40.0);
        {
            vtxRenderer::ModelViewMatrixGuard turn;
            turn.makeIdentity().makeRotate(0.3f, 0.0f, 0.0f, 1.0f).setTranslate(35.0f, 30.0f, 0.0f);
            drawQuad(0.0, 0.0, 10.0, 10.0);
            EXPECT_EQ(log_->getCounters().runs, 0u);
            drawQuad(0.0, 0.0, 40.0, 40.0);
        }
        drawQuad(20.0, 20.0, 10.0, 10.0);
        EXPECT_EQ(log_->getCounters().runs, 1u);
    }
    EXPECT_EQ(countLines("scissor 10 10 60 60"), 1);
    EXPECT_EQ(log_->getCounters().runs, 2u);
    EXPECT_EQ(countLines("edges"), 2);
}

TEST_F(Quads, whatCannotBeSeenIsNotSent) {
    {
        Frame const frame(*renderer_, Rect(50, 0, 150, 100));
        drawQuad(-30.0, 0.0, 20.0, 20.0);
        drawQuad(100.0, 0.0, 20.0, 20.0);
        vtxRenderer::OpacityGuard const invisible(0.0f);
        drawQuad(0.0, 0.0, 20.0, 20.0);
    }
    EXPECT_EQ(log_->getCounters().quads, 0u);
    EXPECT_EQ(log_->getCounters().runs, 0u);
}

TEST_F(Quads, anEmptyClipShowsNothingNotEvenGeometry) {
    {
        Frame const frame(*renderer_);
        vtxRenderer::ClipRectGuard const nothing{Rect()};
        vtxRenderer::ClipRectGuard const inside(Rect(0, 0, 50, 50));
        drawQuad(0.0, 0.0, 50.0, 50.0);
        renderer_->drawCircle(osg::Vec4f(1, 1, 1, 1), 10.0f, 16);
    }
    EXPECT_EQ(log_->getCounters().runs, 0u);
    EXPECT_EQ(log_->getCounters().geometryDraws, 0u);
}

TEST_F(Quads, surfacesOfAnotherScaleAreClippedInTheirOwnPixels) {
    renderer_->setScale(2.0f);
    {
        vtxRenderer::ViewportGuard const viewport(Rect(0, 0, 90, 60));
        vtxRenderer::ProjectionMatrixGuard projection;
        projection.makeOrtho2D(0.0f, 90.0f / 3.0f, 60.0f / 3.0f, 0.0f);
        vtxRenderer::ModelViewMatrixGuard modelView;
        modelView.setIdentity();
        renderer_->beginDraw(vtxRenderer::TechniqueNormal);
        {
            // 10 units times the surface's scale of 3 over the renderer's of 2.
            vtxRenderer::ClipRectGuard const clip(Rect(0, 0, 15, 15));
            drawQuad(0.0, 0.0, 100.0, 100.0);
        }
        renderer_->endDraw();
    }
    auto const quads = getQuads();
    ASSERT_EQ(quads.size(), 1u);
    // The instance is in the projection's space: 30 pixels of the surface are 20 of its 60.
    EXPECT_NEAR(quads[0].w, 20.0, 1e-3);
    EXPECT_NEAR(quads[0].h, 20.0, 1e-3);
}

TEST_F(Quads, opacityAndShiftApplyToQuads) {
    renderer_->setScale(2.0f);
    {
        Frame const frame(*renderer_);
        vtxRenderer::OpacityGuard const half(0.5f);
        {
            vtxRenderer::OpacityGuard const quarter(0.25f);
            vtxRenderer::ShiftPositionGuard const shift(3.0f, 4.0f, 0.0f);
            vtxRenderer::ShiftPositionGuard const raw(1.0f, 0.0f, 1.0f);
            drawQuad(1.0, 1.0, 10.0, 10.0);
        }
        drawQuad(1.0, 1.0, 10.0, 10.0);
    }
    auto const quads = getQuads();
    ASSERT_EQ(quads.size(), 2u);
    EXPECT_EQ(quads[0].alpha, 0.25);
    EXPECT_EQ(quads[0].x, 2.0 + 6.0 + 1.0);
    EXPECT_EQ(quads[0].y, 2.0 + 8.0);
    EXPECT_EQ(quads[1].alpha, 0.5);
    EXPECT_EQ(quads[1].x, 2.0);
    EXPECT_EQ(renderer_->getOpacity(), 1.0f);
}

TEST_F(Quads, anOutlineOfLinesCoversEachOfItsPixelsOnce) {
    qor::vector<vtxVertex> vertices;
    qor::vector<int> indices;
    double const corners[][2] = {{0.5, 0.5}, {19.5, 0.5}, {19.5, 9.5}, {0.5, 9.5}};
    for (int i = 0; i < 8; ++i) {
        double const* corner = corners[(i + 1) / 2 % 4];
        vertices.push_back({corner[0], corner[1], 0, 1, 0, 0, 0.5f, 0, 0});
        indices.push_back(i);
    }
    std::unique_ptr<vtxGeometry> const outline(renderer_->createGeometry(vertices, indices));
    {
        Frame const frame(*renderer_);
        vtxRenderer::ModelViewMatrixGuard place;
        place.setTranslate(5.0f, 5.0f, 0.0f);
        drawQuad(0.0, 30.0, 5.0, 5.0);
        renderer_->setGeometry(outline.get());
        renderer_->drawPrimitives(vtxGeometry::PrimitiveLines, 4, 0);
    }
    EXPECT_EQ(log_->getCounters().runs, 1u);
    int covered[20][40] = {};
    auto const quads = getQuads();
    ASSERT_EQ(quads.size(), 5u);
    for (std::size_t i = 1; i < quads.size(); ++i) {
        TracedQuad const& quad = quads[i];
        for (int y = int(quad.y); y < int(quad.y + quad.h); ++y)
            for (int x = int(quad.x); x < int(quad.x + quad.w); ++x)
                ++covered[y][x];
    }
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 40; ++x) {
            bool const inside = x >= 5 && x < 25 && y >= 5 && y < 15;
            bool const inner = x >= 6 && x < 24 && y >= 6 && y < 14;
            ASSERT_EQ(covered[y][x], inside && !inner ? 1 : 0) << x << ' ' << y;
        }
    }
}

}  // namespace
