#include "tests/platform/vtx_Fixture.h"

#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/support/LogCapture.h"

#include <stdexcept>

namespace {

using support::Rect;

class Targets : public support::RendererTest {
protected:
    using Target = std::unique_ptr<vtxFrameBuffer>;
    Target make(int width, int height, int msaa = 0, int mips = 1) {
        return Target(renderer_->createFrameBuffer(osg::Vec2i(width, height), msaa, mips));
    }

    /// As the toolkit draws into a target.
    void render(vtxFrameBuffer& target, std::function<void()> const& draw) {
        target.renderToTarget([&] {
            vtxRenderer::ProjectionMatrixGuard projection;
            osg::Vec2i const size = target.getSize();
            projection.makeOrtho2D(0.0f, static_cast<float>(size.x()), static_cast<float>(size.y()), 0.0f);
            vtxRenderer::ModelViewMatrixGuard modelView;
            modelView.setIdentity();
            vtxRenderer::ClipRectGuard const clip(Rect(0, 0, size.x(), size.y()));
            vtxRenderer::ShaderTechniqueGuard const technique(vtxRenderer::TechniqueTarget);
            draw();
        });
    }

    /// Where the run of a single full quad lands: pixels of the target that the projection gives its corners.
    std::string describeDraw() {
        log_->clearLines();
        drawQuad(0.0, 0.0, 1000.0, 1000.0);
        renderer_->drawCircle(osg::Vec4f(1, 1, 1, 1), 1.0f, 3);
        return std::string(log_->getText());
    }
};

TEST_F(Targets, startCleanAndPutBackWhatTheyFound) {
    Target const target = make(40, 30);
    Frame const frame(*renderer_);
    vtxRenderer::ClipRectGuard const clip(Rect(5, 5, 20, 20));
    vtxRenderer::ViewportGuard const viewport(Rect(0, 0, 150, 50));
    vtxRenderer::ShiftPositionGuard const shift(2.0f, 3.0f, 1.0f);
    vtxRenderer::OpacityGuard const opacity(0.5f);
    shader().setGamma(2.0f);
    shader().setIntensity(0.5f);
    shader().setUserTextureFiltering(vtxRenderer::SamplerNearest);
    renderer_->setTextureFiltering(vtxRenderer::SamplerNearest);
    renderer_->pushTechnique(vtxRenderer::TechniqueNormal);
    describeDraw();
    std::string const before = describeDraw();
    osg::Matrixf const projection = renderer_->getProjectionMatrix();
    EXPECT_TRUE(log_->getMisuses().empty());
    target->renderToTarget([&] {
        EXPECT_EQ(renderer_->getOpacity(), 1.0f);
        EXPECT_EQ(renderer_->getTechnique(), vtxRenderer::TechniqueNone);
        EXPECT_EQ(renderer_->getProjectionMatrix(), projection);
        EXPECT_EQ(core().getSettings().shiftX, 0.0f);
        EXPECT_EQ(core().getSettings().sampler, 0);
        vtxRenderer::ShaderTechniqueGuard const technique(vtxRenderer::TechniqueTarget);
        std::string const inside = describeDraw();
        EXPECT_NE(inside.find("viewport 0 0 40 30"), std::string::npos) << inside;
        EXPECT_EQ(inside.find("scissor"), std::string::npos);
        EXPECT_EQ(inside.find("gamma"), std::string::npos);
    });
    EXPECT_EQ(describeDraw(), before);
    EXPECT_THROW(target->renderToTarget([&] {
        renderer_->setOpacity(0.1f);
        renderer_->pushTechnique(vtxRenderer::TechniqueTarget);
        renderer_->pushClipRect(Rect(0, 0, 1, 1));
        throw std::runtime_error("while drawing");
    }),
                 std::runtime_error);
    EXPECT_EQ(describeDraw(), before);
    renderer_->popTechnique();
    shader().setGamma(1.0f);
    shader().setIntensity(1.0f);
}

TEST_F(Targets, areOneToOneWithPixelsAtAnyScale) {
    for (float const scale : {1.0f, 1.1f, 1.25f, 1.5f, 2.0f}) {
        renderer_->setScale(scale);
        Target const target = make(101, 33);
        for (int offset = 0; offset < 5; ++offset) {
            log_->clearLines();
            render(*target, [&] { drawQuad(0.0, 0.0, 101.0, 33.0); });
            {
                Frame const frame(*renderer_, Rect(0, 0, 400, 200));
                vtxRenderer::ModelViewMatrixGuard place;
                place.setTranslate(static_cast<float>(offset), 0.0f, 0.0f);
                drawQuad(0.0, 0.0, 101.0, 33.0, target->getTexture());
            }
            auto const quads = getQuads();
            ASSERT_EQ(quads.size(), 2u);
            double const storage = std::ceil(101.0 * double(scale) - 1e-3);
            ASSERT_LE(quads[0].w, storage);
            // A unit is exactly scale pixels, although the storage is rounded up: edges on pixels are edges in units.
            ASSERT_EQ(quads[0].w, std::floor(quads[0].w)) << scale;
            // The part of the texture that is shown has as many texels as the quad has pixels.
            ASSERT_NEAR((quads[1].u2 - quads[1].u1) * storage, quads[1].w, 0.05) << scale << ' ' << offset;
            ASSERT_EQ(quads[1].x, std::floor(quads[1].x));
            ASSERT_EQ(quads[1].w, std::floor(quads[1].w));
        }
        EXPECT_EQ(target->getSize(), osg::Vec2i(101, 33));
        EXPECT_EQ(target->getTexture()->width, 101);
    }
}

TEST_F(Targets, takeStorageOfTheNewScaleAtTheirNextRendering) {
    Target const target = make(10, 10);
    render(*target, [] {});
    renderer_->setScale(2.0f);
    render(*target, [] {});
    renderer_->setScale(1.0f);
    render(*target, [] {});
    EXPECT_EQ(countLines("20x20"), 1);
    EXPECT_EQ(countLines("10x10"), 1) << "taken back from those that were given up";
}

TEST_F(Targets, storageOfEndedOnesServesTheNextAndGoesInTheEnd) {
    for (int i = 0; i < 5; ++i) {
        render(*make(64, 32, 4, 1), [] {});
        renderer_->getTextureManager()->flushReleased();
    }
    EXPECT_EQ(countLines("createTarget"), 1);
    render(*make(64, 32, 0, 1), [] {});
    EXPECT_EQ(countLines("createTarget"), 2);
    for (int i = 0; i < 100; ++i)
        renderer_->getTextureManager()->flushReleased();
    { Frame const frame(*renderer_); }
    EXPECT_EQ(log_->getLiveObjects(), 0) << log_->getText();
}

TEST_F(Targets, theirTextureLivesUntilTheNextFlush) {
    Target target = make(16, 16);
    render(*target, [] {});
    vtxTexture* texture = target->getTexture();
    renderer_->getTextureManager()->releaseTexture(texture);
    target.reset();
    {
        Frame const frame(*renderer_);
        drawQuad(0.0, 0.0, 16.0, 16.0, texture);
    }
    EXPECT_EQ(getQuads().size(), 1u);
    renderer_->getTextureManager()->flushReleased();
    support::LogCapture const lines;
    {
        Frame const frame(*renderer_);
        drawQuad(0.0, 0.0, 16.0, 16.0, texture);
    }
    EXPECT_TRUE(takeMisuse("texture was drawn after it was released"));
    EXPECT_EQ(getQuads().size(), 1u);
}

TEST_F(Targets, mayBeEndedWhileTheyAreDrawnInto) {
    Target outer = make(16, 16);
    Target inner = make(8, 8);
    Frame const frame(*renderer_);
    outer->renderToTarget([&] {
        inner->renderToTarget([&] {
            inner.reset();
            outer.reset();
            vtxRenderer::ShaderTechniqueGuard const technique(vtxRenderer::TechniqueTarget);
            log_->clearLines();
            drawQuad(0.0, 0.0, 1000.0, 1000.0);
        });
        EXPECT_EQ(countLines("viewport 0 0 8 8"), 1) << log_->getText();
        vtxRenderer::ShaderTechniqueGuard const technique(vtxRenderer::TechniqueTarget);
        log_->clearLines();
        drawQuad(0.0, 0.0, 1000.0, 1000.0);
    });
    EXPECT_EQ(countLines("viewport 0 0 16 16"), 1) << log_->getText();
}

TEST_F(Targets, objectsThatOutliveTheRendererEndQuietly) {
    Target target = make(16, 16);
    render(*target, [] {});
    std::unique_ptr<vtxGeometry> const geometry(renderer_->createGeometry({}, {}));
    unsigned const generation = renderer_->getGeneration();
    vtxRenderer::destroy();
    EXPECT_EQ(log_->getLiveObjects(), 0);
    EXPECT_EQ(vtxRenderer::get(), nullptr);
    auto device = std::make_unique<vtxTraceDevice>();
    log_ = device->getLog();
    renderer_ = vtxRenderer::create(std::move(device));
    EXPECT_NE(renderer_->getGeneration(), generation);
    target->renderToTarget([] { ADD_FAILURE(); });
    geometry->update({}, nullptr);
    target.reset();
    EXPECT_EQ(log_->getLines().size(), 0u);
}

}  // namespace
