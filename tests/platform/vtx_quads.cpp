#include "tests/platform/vtx_Fixture.h"

#include <algorithm>
#include <cstdio>
#include <random>

namespace {

using support::Rect;
using support::TracedQuad;

using Quads = support::RendererTest;

TEST_F(Quads, clippingKeepsThePictureInPlace) {
    vtxTexture const* const picture = getPicture(true);
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
                drawPart({rect[0] + rect[2], rect[1] + rect[3], -rect[2], -rect[3]}, uv, picture);
            else
                drawPart(rect, uv, picture);
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

TEST_F(Quads, whatCannotBeSeenIsNotSentNorGeometryIntoAnEmptyClip) {
    {
        Frame const frame(*renderer_, Rect(50, 0, 150, 100));
        drawQuad(-30.0, 0.0, 20.0, 20.0);
        drawQuad(100.0, 0.0, 20.0, 20.0);
        {
            vtxRenderer::OpacityGuard const invisible(0.0f);
            drawQuad(0.0, 0.0, 20.0, 20.0);
        }
        vtxRenderer::ClipRectGuard const nothing{Rect()};
        vtxRenderer::ClipRectGuard const inside(Rect(0, 0, 50, 50));
        drawQuad(0.0, 0.0, 50.0, 50.0);
        renderer_->drawCircle(osg::Vec4f(1, 1, 1, 1), 10.0f, 16);
    }
    EXPECT_EQ(log_->getCounters().quads, 0u);
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
    auto quads = getQuads();
    ASSERT_EQ(quads.size(), 5u);
    quads.erase(quads.begin());
    for (TracedQuad const& quad : quads) {
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

TEST_F(Quads, TurnedOnesKeepTheirPlaceWhateverAUnitOfTheProjectionIs) {
    osg::Matrixf const turn = osg::Matrixf::rotate(0.5, 0.0, 0.0, 1.0);
    double const x = 0.6, y = 0.3;
    {
        Frame const frame(*renderer_);
        renderer_->setProjectionMatrix(osg::Matrixf::ortho2D(0, 1, 1, 0));
        renderer_->setModelViewMatrix(turn);
        drawQuad(x, y, 0.01, 0.01);
    }
    double corner[2] = {}, edge[2] = {};
    int read = 0;
    for (qor::string const& line : log_->getLines())
        read +=
            std::sscanf(line.c_str(), "  quad at %lf %lf edges %lf %lf", &corner[0], &corner[1], &edge[0], &edge[1]);
    ASSERT_EQ(read, 4);
    for (int axis = 0; axis < 2; ++axis) {
        EXPECT_NEAR(corner[axis], x * turn(0, axis) + y * turn(1, axis), 1e-4);
        EXPECT_NEAR(edge[axis], 0.01 * turn(0, axis), 1e-4);
    }
}

}  // namespace
