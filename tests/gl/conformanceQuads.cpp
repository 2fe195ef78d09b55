#include <cmath>

#include "platform/vtx/vtxShaderBkgQuads.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/gl/ContractFixture.h"
#include "tests/support/LogCapture.h"

using ContractQuads = Contract;
INSTANTIATE_ON_ALL_BACK_ENDS(ContractQuads);

using namespace colours;

TEST_P(ContractQuads, PositionsFollowScaleModelViewAndShift) {
    for (float scale : {1.0f, 2.0f}) {
        renderer.setScale(scale);
        stage.frame([&] {
            vtxRenderer::ModelViewMatrixGuard outer;
            outer.setTranslate(3, 2, 0);
            {
                vtxRenderer::ModelViewMatrixGuard inner;
                inner.setTranslate(10, 0, 0);
                stage.quad(1, 1, 4, 4, red);
            }
            vtxRenderer::ShiftPositionGuard shift(0, 10, 0);
            vtxRenderer::ShiftPositionGuard pixels(5, 0, 1);
            stage.quad(1, 1, 4, 4, green);
        });
        auto at = [scale](float units) { return int(units * scale); };
        stage.expect(at(14), at(3), redPixel);
        stage.expect(at(18) - 1, at(7) - 1, redPixel);
        stage.expect(at(14) - 1, at(3), blackPixel);
        stage.expect(at(18), at(3), blackPixel);
        stage.expect(at(4) + 5, at(13), greenPixel);
        stage.expect(at(4) + 4, at(13), blackPixel);
        stage.expect(at(8) + 4, at(17) - 1, greenPixel);
        EXPECT_EQ(renderer.getCounters().runs, 1u);
        EXPECT_EQ(renderer.getCounters().quads, 2u);
    }
}

TEST_P(ContractQuads, OpacityReplacesAndIsPutBack) {
    stage.frame([&] {
        vtxRenderer::OpacityGuard outer(0.5f);
        {
            vtxRenderer::OpacityGuard inner(0.25f);
            stage.quad(0, 0, 8, 8, white);
        }
        stage.quad(8, 0, 8, 8, white);
    });
    EXPECT_EQ(renderer.getOpacity(), 1.0f);
    stage.expect(4, 4, {64, 64, 64, 255});
    stage.expect(12, 4, {128, 128, 128, 255});
    EXPECT_EQ(renderer.getCounters().runs, 1u);
}

TEST_P(ContractQuads, ClipsIntersectInUnitsWithinAPassAndInPixelsOutside) {
    renderer.setScale(2.0f);
    stage.frame([&] {
        vtxRenderer::ClipRectGuard outer(Rect(2, 2, 20, 20));
        vtxRenderer::ModelViewMatrixGuard move;
        move.setTranslate(4, 0, 0);
        vtxRenderer::ClipRectGuard inner(Rect(0, 10, 12, 40));
        stage.quad(0, 0, 40, 40, red);
    });
    stage.expect(8, 20, redPixel);
    stage.expect(23, 39, redPixel);
    stage.expect(7, 20, blackPixel);
    stage.expect(24, 20, blackPixel);
    stage.expect(8, 19, blackPixel);
    stage.expect(8, 40, blackPixel);
    EXPECT_EQ(renderer.getCounters().runs, 1u) << "a clip of upright quads ends no run";

    vtxRenderer::ClipRectGuard pixels(Rect(0, 0, 10, 10));
    stage.frame([&] { stage.quad(0, 0, 40, 40, green); });
    stage.expect(9, 9, greenPixel);
    stage.expect(10, 9, blackPixel);
}

TEST_P(ContractQuads, TurnedQuadsAreCutByTheSameClip) {
    stage.frame([&] {
        vtxRenderer::ModelViewMatrixGuard turn;
        turn.makeTranslate(-20, -20, 0);
        turn.makeRotate(float(std::acos(-1.0)) / 4.0f, 0, 0, 1);
        turn.setTranslate(40, 30, 0);
        vtxRenderer::ClipRectGuard clip(Rect(40, 0, 90, 30));
        stage.quad(10, 10, 20, 20, red);
    });
    stage.expect(40, 29, redPixel);
    stage.expect(50, 27, redPixel);
    stage.expect(39, 29, blackPixel);
    stage.expect(40, 30, blackPixel);
    stage.expect(52, 18, blackPixel);  // outside the turned edge, inside the clip
}

TEST_P(ContractQuads, NineCellsTakeNineColoursByIndexAndMeetWithoutSeam) {
    vtxTexture* texture = renderer.getTextureManager()->getTexture(TestPictures::cells(), Rect(), nullptr);
    ASSERT_NE(texture, nullptr);
    for (float scale : {1.0f, 1.5f, 2.0f}) {
        renderer.setScale(scale);
        vtxShaderBkgQuads cells;
        cells.setTexture(texture);
        float colors[9][4];
        float const edges[4] = {1, 9, 20, 28};
        for (int i = 0; i < 9; ++i) {
            int const column = i % 3, row = i / 3;
            cells.addQuad({edges[column], edges[row], edges[column + 1] - edges[column], edges[row + 1] - edges[row],
                           column / 3.0f, row / 3.0f, (column + 1) / 3.0f, (row + 1) / 3.0f});
            for (float& component : colors[i])
                component = 1.0f;
            colors[i][2] = float(i) / 8.0f;
        }
        stage.frame([&] {
            shader.setColors(colors[0], 9);
            cells.draw(&shader);
        });
        auto edge = [&](int i) { return int(std::floor(edges[i] * scale + 0.5f)); };
        for (int i = 0; i < 9; ++i) {
            Pixel expected = TestPictures::cellColour(i % 3, i / 3);
            expected[2] = int(std::lround(expected[2] * i / 8.0));
            // Corners and middle of each cell: neither the neighbour's texels nor the ground show.
            int const left = edge(i % 3), right = edge(i % 3 + 1), top = edge(i / 3), bottom = edge(i / 3 + 1);
            for (int y : {top, (top + bottom) / 2, bottom - 1}) {
                for (int x : {left, (left + right) / 2, right - 1})
                    stage.expect(x, y, expected, 1);
            }
        }
        EXPECT_EQ(renderer.getCounters().runs, 1u);
    }
    renderer.getTextureManager()->releaseTexture(texture);
}

TEST_P(ContractQuads, SamplersZeroToThreeFilterAsNumbered) {
    qor::string const path =
        TestPictures::write("bars.png", 8, 8, [](int x, int) { return x % 2 ? whitePixel : blackPixel; });
    vtxTexture* texture = renderer.getTextureManager()->getTexture(path, Rect(), nullptr);
    ASSERT_NE(texture, nullptr);
    vtxTexture::Rect const twoBars{0.0f, 0.0f, 0.25f, 1.0f}, repeated{1.0f, 0.0f, 1.25f, 1.0f};
    stage.frame([&] {
        shader.setUserTextureFiltering(vtxRenderer::SamplerLinear);
        stage.quad(0, 0, 32, 8, white, texture, twoBars);
        shader.setUserTextureFiltering(vtxRenderer::SamplerNearest);
        stage.quad(0, 8, 32, 8, white, texture, twoBars);
        shader.setUserTextureFiltering(vtxRenderer::SamplerMips);
        stage.quad(0, 16, 2, 2, white, texture);
        shader.setUserTextureFiltering(vtxRenderer::SamplerRepeat);
        stage.quad(0, 24, 32, 8, white, texture, repeated);
        shader.resetTextureSampler();
        renderer.setTextureFiltering(vtxRenderer::SamplerNearest);
        stage.quad(0, 32, 32, 8, white, texture, twoBars);
        renderer.setTextureFiltering(vtxRenderer::SamplerLinear);
    });
    stage.expect(16, 4, {132, 132, 132, 255}, 12);
    stage.expect(15, 12, blackPixel);
    stage.expect(16, 12, whitePixel);
    stage.expect(1, 17, {128, 128, 128, 255}, 4);
    stage.expect(8, 28, blackPixel, 8);
    stage.expect(24, 28, whitePixel, 8);
    stage.expect(15, 36, blackPixel);
    stage.expect(16, 36, whitePixel);
    renderer.getTextureManager()->releaseTexture(texture);
}

TEST_P(ContractQuads, NeighboursOfOneFileShareItsImageAndDoNotBleed) {
    vtxTextureManager& manager = *renderer.getTextureManager();
    vtxTexture* cells[9];
    for (int i = 0; i < 9; ++i) {
        int const x = i % 3 * 8, y = i / 3 * 8;
        cells[i] = manager.getTexture(TestPictures::cells(), Rect(x, y, x + 8, y + 8), nullptr);
        ASSERT_NE(cells[i], nullptr);
        EXPECT_EQ(cells[i]->width, 24);
        EXPECT_EQ(cells[i]->rect.x1, float(x));
    }
    stage.frame([&] {
        for (int i = 0; i < 9; ++i) {
            vtxTexture::Rect const& rect = cells[i]->rect;
            stage.quad(float(i % 3 * 21), float(i / 3 * 21), 21, 21, white, cells[i],
                       {rect.x1 / 24, rect.y1 / 24, rect.x2 / 24, rect.y2 / 24});
        }
    });
    for (int y = 0; y < 63; ++y) {
        for (int x = 0; x < 63; ++x)
            stage.expect(x, y, TestPictures::cellColour(x / 21, y / 21), 0);
    }
    EXPECT_EQ(renderer.getCounters().runs, 1u);
    for (vtxTexture* cell : cells)
        manager.releaseTexture(cell);
    manager.flushReleased();
}

TEST_P(ContractQuads, ViewportAndProjectionPlaceWhatFollows) {
    stage.frame([&] {
        stage.quad(0, 0, 96, 64, red);
        {
            vtxRenderer::ViewportGuard viewport(Rect(32, 16, 64, 48));
            vtxRenderer::ProjectionMatrixGuard projection;
            projection.makeOrtho2D(0, 1, 1, 0);
            stage.quad(0, 0, 0.5f, 0.5f, green);
            stage.quad(0.5f, 0.5f, 5, 5, white);
        }
        stage.quad(0, 0, 4, 4, white);
    });
    stage.expect(32, 16, greenPixel);
    stage.expect(47, 31, greenPixel);
    stage.expect(31, 16, redPixel);
    stage.expect(48, 31, redPixel);
    stage.expect(63, 47, whitePixel);
    stage.expect(64, 48, redPixel);
    stage.expect(3, 3, whitePixel);
    EXPECT_EQ(renderer.getCounters().runs, 3u);
}

TEST_P(ContractQuads, GammaAndIntensityHoldUntilChanged) {
    stage.frame([&] {
        shader.setGamma(2.0f);
        shader.setIntensity(0.5f);
        stage.quad(0, 0, 8, 8, osg::Vec4f(0.25f, 1.0f, 0.0f, 1.0f));
        shader.setGamma(1.0f);
        shader.setIntensity(1.0f);
        stage.quad(8, 0, 8, 8, osg::Vec4f(0.25f, 1.0f, 0.0f, 1.0f));
    });
    stage.expect(4, 4, {64, 128, 0, 255});
    stage.expect(12, 4, {64, 255, 0, 255});
    EXPECT_EQ(renderer.getCounters().runs, 2u);
}

TEST_P(ContractQuads, TechniquesNestAndEachDraws) {
    EXPECT_EQ(renderer.getTechnique(), vtxRenderer::TechniqueNone);
    {
        vtxRenderer::ShaderTechniqueGuard effect(vtxRenderer::TechniqueNone);
        EXPECT_EQ(renderer.getTechnique(), vtxRenderer::TechniqueNone);
    }
    stage.frame([&] {
        EXPECT_EQ(renderer.getTechnique(), vtxRenderer::TechniqueNormal);
        stage.quad(0, 0, 8, 8, red);
        int x = 8;
        for (auto technique :
             {vtxRenderer::TechniqueTarget, vtxRenderer::TechniqueTargetVR, vtxRenderer::TechniqueNone}) {
            vtxRenderer::ShaderTechniqueGuard guard(technique);
            EXPECT_EQ(renderer.getTechnique(), technique);
            stage.quad(float(x), 0, 8, 8, red);
            x += 8;
        }
        EXPECT_EQ(renderer.getTechnique(), vtxRenderer::TechniqueNormal);
    });
    EXPECT_EQ(renderer.getTechnique(), vtxRenderer::TechniqueNone);
    for (int x : {4, 12, 20, 28})
        stage.expect(x, 4, redPixel);
}

TEST_P(ContractQuads, NinthLoneTextureBeginsAnotherRun) {
    qor::vector<vtxTexture*> textures;
    for (int i = 0; i < 9; ++i) {
        char const name[] = {'l', char('0' + i), '.', 'p', 'n', 'g', 0};
        qor::string const path = TestPictures::write(name, 520, 2, [i](int, int) { return Pixel{25 * i, 0, 9, 255}; });
        textures.push_back(renderer.getTextureManager()->getTexture(path, Rect(), nullptr));
        ASSERT_NE(textures.back(), nullptr);
    }
    for (int count : {8, 9}) {
        stage.frame([&] {
            for (int i = 0; i < count; ++i)
                stage.quad(float(i * 10), 0, 10, 10, white, textures[size_t(i)]);
        });
        EXPECT_EQ(renderer.getCounters().runs, count == 8 ? 1u : 2u);
        for (int i = 0; i < count; ++i)
            stage.expect(i * 10 + 5, 5, {25 * i, 0, 9, 255}, 1);
    }
    for (vtxTexture* texture : textures)
        renderer.getTextureManager()->releaseTexture(texture);
}

TEST_P(ContractQuads, MisuseGivesOneLineEachAndTheRestIsDrawn) {
    support::LogCapture lines;
    stage.quad(0, 0, 8, 8, red);
    renderer.popClipRect();
    renderer.endDraw();
    stage.frame([&] {
        stage.quad(NAN, 0, 8, 8, red);
        stage.quad(INFINITY, 0, 8, 8, red);
        stage.quad(8, 0, 8, 8, green);
    });
    EXPECT_EQ(lines.count("no pass is open"), 1u) << lines.dump();
    EXPECT_EQ(lines.count("a pop without its push"), 1u);
    EXPECT_EQ(lines.count("endDraw without beginDraw"), 1u);
    EXPECT_EQ(lines.count("not finite"), 1u);
    EXPECT_EQ(lines.getLines().size(), 4u) << lines.dump();
    stage.expect(4, 4, blackPixel);
    stage.expect(12, 4, greenPixel);
    if (stage.log) {
        EXPECT_EQ(stage.log->getMisuses().size(), 5u) << "the trace counts every case";
        stage.log->clearMisuses();
    }
}
