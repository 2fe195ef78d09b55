#include <algorithm>
#include <cmath>

#include "platform/vtx/vtxShaderBkgQuads.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/gl/ContractFixture.h"

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
    renderer.setScale(1.5f);
    stage.frame([&] {
        vtxRenderer::ClipRectGuard outer(Rect(3, 1, 19, 21));
        vtxRenderer::ModelViewMatrixGuard move;
        move.setTranslate(-4, 0, 0);
        vtxRenderer::ClipRectGuard inner(Rect(0, 11, 13, 40));
        stage.quad(0, 0, 40, 40, red);
        stage.quad(0, 30, 40, 4, green);
    });
    // Halves of a pixel are rounded up.
    stage.expect(5, 17, redPixel);
    stage.expect(19, 31, redPixel);
    stage.expect(4, 20, blackPixel);
    stage.expect(20, 20, blackPixel);
    stage.expect(8, 16, blackPixel);
    stage.expect(8, 32, blackPixel);
    EXPECT_EQ(renderer.getCounters().runs, 1u) << "a clip of upright quads ends no run";
    EXPECT_EQ(renderer.getCounters().quads, 1u) << "what is clipped away is not sent";

    vtxRenderer::ClipRectGuard pixels(Rect(0, 0, 10, 10));
    stage.frame([&] { stage.quad(0, 0, 40, 40, green); });
    stage.expect(9, 9, greenPixel);
    stage.expect(10, 9, blackPixel);
}

TEST_P(ContractQuads, TurnedQuadsAreCutByTheSameClipAndOnlyThoseThatCrossItEndTheRun) {
    vtxTexture* texture = renderer.getTextureManager()->getTexture(TestPictures::cells(), Rect(), nullptr);
    float const quarter = float(std::acos(0.0));
    stage.frame([&] {
        vtxRenderer::ClipRectGuard clip(Rect(40, 0, 90, 30));
        stage.quad(42, 2, 6, 6, green);
        {
            vtxRenderer::ModelViewMatrixGuard turn;
            turn.makeIdentity().makeRotate(quarter, 0, 0, 1).setTranslate(84, 2, 0);
            stage.quad(0, 0, 24, 24, white, texture);
        }
        {
            vtxRenderer::ModelViewMatrixGuard turn;
            turn.makeTranslate(-20, -20, 0).makeRotate(quarter / 2, 0, 0, 1).setTranslate(40, 30, 0);
            stage.quad(10, 10, 20, 20, red);
        }
        stage.quad(86, 2, 3, 3, green);
    });
    EXPECT_EQ(renderer.getCounters().runs, 2u);
    stage.expect(44, 4, greenPixel);
    stage.expect(87, 3, greenPixel);
    for (int i = 0; i < 9; ++i)  // columns run downwards, rows to the left
        stage.expect(80 - 8 * (i / 3), 6 + 8 * (i % 3), TestPictures::cellColour(i % 3, i / 3));
    stage.expect(40, 29, redPixel);
    stage.expect(50, 27, redPixel);
    stage.expect(39, 29, blackPixel);
    stage.expect(40, 30, blackPixel);
    stage.expect(52, 18, blackPixel);  // outside the turned edge, inside the clip
    renderer.getTextureManager()->releaseTexture(texture);
}

TEST_P(ContractQuads, NineCellsTakeNineColoursByIndexAndMeetWithoutSeamAtAnyScale) {
    vtxTexture* texture = renderer.getTextureManager()->getTexture(TestPictures::cells(), Rect(), nullptr);
    ASSERT_NE(texture, nullptr);
    vtxShaderBkgQuads cells;
    cells.setTexture(texture);
    float colors[9][4];
    float const edges[4] = {1, 9, 20, 28};
    for (int i = 0; i < 9; ++i) {
        int const column = i % 3, row = i / 3;
        cells.addQuad({edges[column], edges[row], edges[column + 1] - edges[column], edges[row + 1] - edges[row],
                       column / 3.0f, row / 3.0f, (column + 1) / 3.0f, (row + 1) / 3.0f});
        std::fill_n(colors[i], 4, 1.0f);
        colors[i][2] = float(i) / 8.0f;
    }
    shader.setColors(colors[0], 9);
    for (float scale : {0.75f, 1.0f, 1.1f, 1.25f, 1.5f, 1.75f, 2.0f}) {
        for (int offset = 0; offset < 4; ++offset) {
            renderer.setScale(scale);
            stage.frame([&] {
                vtxRenderer::ModelViewMatrixGuard place;
                place.setTranslate(float(offset), float(offset), 0);
                cells.draw(&shader);
            });
            auto edge = [&](int i) { return int(std::floor((edges[i] + float(offset)) * scale + 0.501f)); };
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
            stage.expect(edge(0) - 1, edge(1), blackPixel);
            EXPECT_EQ(renderer.getCounters().runs, 1u);
        }
    }
    renderer.getTextureManager()->releaseTexture(texture);
}

TEST_P(ContractQuads, SamplersZeroToThreeFilterAsNumberedOnAPageAndAlone) {
    for (int width : {8, 520}) {
        qor::string name;
        name.format("bars%d.png", width);
        auto const bar = [](int x, int) { return x % 2 ? whitePixel : blackPixel; };
        vtxTexture* texture =
            renderer.getTextureManager()->getTexture(TestPictures::write(name.c_str(), width, 8, bar), Rect(), nullptr);
        ASSERT_NE(texture, nullptr);
        float const two = 2.0f / float(width);
        vtxTexture::Rect const twoBars{0.0f, 0.0f, two, 1.0f}, repeated{1.0f, 0.0f, 1.0f + two, 1.0f};
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
}

TEST_P(ContractQuads, NeighboursOfOneFileShareItsImageAndDoNotBleed) {
    vtxTextureManager& manager = *renderer.getTextureManager();
    for (auto filtering : {vtxRenderer::SamplerNearest, vtxRenderer::SamplerLinear}) {
        renderer.setTextureFiltering(filtering);
        vtxTexture* cells[9];
        stage.frame([&] {
            for (int i = 0; i < 9; ++i) {
                int const x = i % 3 * 8, y = i / 3 * 8;
                cells[i] = manager.getTexture(TestPictures::cells(), Rect(x, y, x + 8, y + 8), nullptr);
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
    }
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

TEST_P(ContractQuads, GammaAndIntensityWorkOnStraightColourUntilChanged) {
    stage.frame([&] {
        shader.setGamma(2.0f);
        shader.setIntensity(0.5f);
        stage.quad(0, 0, 8, 8, osg::Vec4f(0.25f, 1.0f, 0.0f, 1.0f));
        stage.quad(16, 0, 8, 8, osg::Vec4f(0.25f, 0.25f, 1.0f, 0.5f));
        shader.setGamma(1.0f);
        shader.setIntensity(1.0f);
        stage.quad(8, 0, 8, 8, osg::Vec4f(0.25f, 1.0f, 0.0f, 1.0f));
    });
    stage.expect(4, 4, {64, 128, 0, 255});
    stage.expect(20, 4, {32, 32, 64, 255});
    stage.expect(12, 4, {64, 255, 0, 255});
    EXPECT_EQ(renderer.getCounters().runs, 2u);
}

TEST_P(ContractQuads, TechniquesNestAndEachDraws) {
    { vtxRenderer::ShaderTechniqueGuard outside(vtxRenderer::TechniqueNone); }
    stage.frame([&] {
        float x = 0;
        for (auto technique :
             {vtxRenderer::TechniqueTarget, vtxRenderer::TechniqueTargetVR, vtxRenderer::TechniqueNone}) {
            vtxRenderer::ShaderTechniqueGuard guard(technique);
            EXPECT_EQ(renderer.getTechnique(), technique);
            stage.quad(x, 0, 8, 8, red);
            x += 8;
        }
        EXPECT_EQ(renderer.getTechnique(), vtxRenderer::TechniqueNormal);
    });
    EXPECT_EQ(renderer.getTechnique(), vtxRenderer::TechniqueNone);
    for (int x : {4, 12, 20})
        stage.expect(x, 4, redPixel);
}

TEST_P(ContractQuads, NinthLoneTextureOrSamplerBeginsAnotherRun) {
    qor::vector<vtxTexture*> textures;
    for (int i = 0; i < 9; ++i) {
        char const name[] = {'l', char('0' + i), '.', 'p', 'n', 'g', 0};
        qor::string const path = TestPictures::write(name, 520, 2, [i](int, int) { return Pixel{25 * i, 0, 9, 255}; });
        textures.push_back(renderer.getTextureManager()->getTexture(path, Rect(), nullptr));
        ASSERT_NE(textures.back(), nullptr);
    }
    for (int ninth : {-1, 8, 0}) {  // none, another texture, the first one with another sampler
        stage.frame([&] {
            for (int i = 0; i < 8; ++i)
                stage.quad(float(i * 10), 0, 10, 10, white, textures[size_t(i)]);
            if (ninth < 0)
                return;
            shader.setUserTextureFiltering(ninth ? vtxRenderer::SamplerLinear : vtxRenderer::SamplerRepeat);
            stage.quad(80, 0, 10, 10, white, textures[size_t(ninth)]);
            shader.resetTextureSampler();
        });
        EXPECT_EQ(renderer.getCounters().runs, ninth < 0 ? 1u : 2u);
        for (int i = 0; i < 8; ++i)
            stage.expect(i * 10 + 5, 5, {25 * i, 0, 9, 255}, 1);
        stage.expect(85, 5, ninth < 0 ? blackPixel : Pixel{25 * ninth, 0, 9, 255}, 1);
    }
    for (vtxTexture* texture : textures)
        renderer.getTextureManager()->releaseTexture(texture);
}
