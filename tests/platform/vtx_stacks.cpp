#include "tests/platform/vtx_Fixture.h"
#include "tests/support/LogCapture.h"

#include <cmath>
#include <cstring>
#include <iterator>
#include <limits>
#include <random>

namespace {

using support::RendererTest;

using Stacks = RendererTest;

osg::Matrixf getScaling(float x, float y) {
    osg::Matrixf matrix;
    matrix(0, 0) = x;
    matrix(1, 1) = y;
    return matrix;
}

bool areSameBits(osg::Matrixf const& a, osg::Matrixf const& b) {
    return std::memcmp(a.ptr(), b.ptr(), 16 * sizeof(float)) == 0;
}

TEST_F(Stacks, ModelViewsAreComposedToTheBitAsWholeProductsAre) {
    std::mt19937 random(11);
    auto const pick = [&](int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); };
    float const places[] = {0.0f, -0.0f, 1.0f, -7.0f, 0.1f, 3e7f, 1e-40f, -2.5f};
    auto const pickPlace = [&] { return places[pick(0, int(std::size(places)) - 1)]; };
    for (float const scale : {1.0f, 1.25f, 0.3f}) {
        renderer_->setScale(scale);
        for (int round = 0; round < 300; ++round) {
            osg::Matrixf expected = osg::Matrixf::translate(pickPlace(), pickPlace(), pickPlace());
            if (round % 3 == 1)
                expected.postMult(getScaling(pickPlace(), 2.0f));
            if (round % 5 == 1)
                expected.postMult(osg::Matrixf::rotate(pick(-4, 4) * osg::PI_2, 0.0, 0.0, 1.0));
            if (round % 7 == 1)
                expected(pick(0, 3), pick(0, 3)) = pickPlace();
            vtxRenderer::ModelViewMatrixGuard const outer;
            renderer_->setModelViewMatrix(expected);
            for (int step = 0; step < 3; ++step) {
                osg::Matrixf const before = expected;
                float const x = pickPlace(), y = pickPlace(), z = pickPlace();
                {
                    vtxRenderer::ModelViewMatrixGuard guard;
                    guard.setTranslate(x, y, z);
                    expected.postMult(osg::Matrixf::translate(scale * x, scale * y, scale * z));
                    ASSERT_TRUE(areSameBits(renderer_->getModelViewMatrix(), expected)) << round << " " << step;
                }
                ASSERT_TRUE(areSameBits(renderer_->getModelViewMatrix(), before));
                {
                    osg::Vec2i const place(pick(-3, 3), pick(-900, 900));
                    vtxRenderer::PlaceGuard const guard(place, nullptr);
                    expected = before;
                    expected.postMult(
                        osg::Matrixf::translate(scale * float(place.x()), scale * float(place.y()), 0.0f));
                    ASSERT_TRUE(areSameBits(renderer_->getModelViewMatrix(), expected)) << round << " " << step;
                }
                expected = before;
                expected.postMult(osg::Matrixf::translate(x, y, z));
                renderer_->setModelViewMatrix(expected);
            }
        }
    }
}

TEST_F(Stacks, AModelViewThatIsNotFiniteIsRefusedWhereverTheNumberStands) {
    support::LogCapture const lines;
    for (bool const translation : {true, false}) {
        osg::Matrixf const good = translation ? osg::Matrixf::translate(3e38f, 3e38f, 3e38f) : getScaling(3e38f, 2.0f);
        for (int place = 0; place < 16; ++place) {
            renderer_->setModelViewMatrix(good);
            ASSERT_TRUE(areSameBits(renderer_->getModelViewMatrix(), good));
            for (float const number :
                 {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(), std::nanf("")}) {
                osg::Matrixf bad = good;
                bad(place / 4, place % 4) = number;
                renderer_->setModelViewMatrix(bad);
                EXPECT_TRUE(takeMisuse("setModelViewMatrix")) << place;
                EXPECT_TRUE(areSameBits(renderer_->getModelViewMatrix(), good)) << place;
            }
        }
    }
}

TEST_F(Stacks, APlaceWithAClipIsRecordedAsItsTwoGuardsAre) {
    support::Rect const clip(3, 4, 50, 40);
    log_->setContractWanted(true);
    auto const record = [&](auto draw) {
        log_->clearLines();
        Frame const frame(*renderer_);
        draw();
        drawQuad(0, 0, 100, 100);
        return log_->getText();
    };
    renderer_->setScale(1.5f);
    auto const apart = [&] {
        vtxRenderer::ModelViewMatrixGuard place;
        place.setTranslate(5.0f, 6.0f, 0.0f);
        vtxRenderer::ClipRectGuard const guard(clip);
        drawQuad(0, 0, 100, 100);
    };
    auto const together = [&] {
        vtxRenderer::PlaceGuard const guard(osg::Vec2i(5, 6), &clip);
        drawQuad(0, 0, 100, 100);
    };
    EXPECT_EQ(record(together), record(apart));
}

}  // namespace
