#include "tests/platform/vtx_Fixture.h"

#include "platform/vtx/vtxEffectShader.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxPictureLibrary.h"
#include "tests/support/LogCapture.h"

#include <functional>
#include <limits>

namespace {

using support::Rect;

class Misuse : public support::RendererTest {
protected:
    support::LogCapture lines_;
    double const nan_ = std::numeric_limits<double>::quiet_NaN();
};

TEST_F(Misuse, isReportedEachTimeAndLoggedOnce) {
    vtxTexture* const gone = getPicture();
    renderer_->getTextureManager()->releaseTexture(gone);
    for (unsigned i = 0; i < vtxPictureLibrary::idleFlushes + 2; ++i)
        renderer_->getTextureManager()->flushReleased();
    std::unique_ptr<vtxFrameBuffer> const target(renderer_->createFrameBuffer(osg::Vec2i(8, 8), 0, 1));
    target->renderToTarget([] {});
    std::unique_ptr<vtxGeometry> const broken(renderer_->createGeometry({{}, {}}, {0, 1, 2}));
    std::unique_ptr<vtxGeometry> const infinite(renderer_->createGeometry({{nan_}, {}, {}}, {0, 1, 2}));
    std::unique_ptr<vtxGeometry> ended(renderer_->createGeometry({{}, {}, {}}, {0, 1, 2}));
    vtxGeometry* dangling = ended.get();
    ended.reset();
    auto const drawTriangle = [&](vtxGeometry* geometry) {
        Frame const frame(*renderer_);
        renderer_->setGeometry(geometry);
        renderer_->drawPrimitives(vtxGeometry::PrimitiveTriangles, 1, 0);
        renderer_->setGeometry(nullptr);
    };
    struct Case {
        char const* text;
        std::function<void()> use;
    };
    Case const cases[] = {
        {"no pass is open", [&] { drawQuad(0, 0, 5, 5); }},
        {"no pass is open", [&] { renderer_->drawCircle(osg::Vec4f(1, 1, 1, 1), 5.0f, 8); }},
        {"no pass is open", [&] { target->renderToTarget([&] { drawQuad(0, 0, 5, 5); }); }},
        {"beginDraw inside a pass",
         [&] {
             Frame const frame(*renderer_);
             renderer_->beginDraw(vtxRenderer::TechniqueNormal);
         }},
        {"endDraw without beginDraw", [&] { renderer_->endDraw(); }},
        {"a pop without its push", [&] { renderer_->popClipRect(); }},
        {"a pop without its push", [&] { renderer_->popViewport(); }},
        {"a pop without its push", [&] { renderer_->popModelViewMatrix(); }},
        {"a pop without its push", [&] { renderer_->popProjectionMatrix(); }},
        {"a pop without its push", [&] { renderer_->popTechnique(); }},
        {"a pop without its push",
         [&] {
             vtxRenderer::ClipRectGuard const outer(Rect(0, 0, 5, 5));
             target->renderToTarget([&] { renderer_->popClipRect(); });
         }},
        {"do not match at endDraw",
         [&] {
             {
                 Frame const frame(*renderer_);
                 renderer_->pushClipRect(Rect(0, 0, 5, 5));
             }
             renderer_->popClipRect();
         }},
        {"inside a target", [&] { target->renderToTarget([&] { renderer_->pushModelViewMatrix(); }); }},
        {"inside a target",
         [&] { target->renderToTarget([&] { renderer_->beginDraw(vtxRenderer::TechniqueNormal); }); }},
        {"after it was released",
         [&] {
             Frame const frame(*renderer_);
             drawQuad(0, 0, 5, 5, gone);
         }},
        {"drawn into itself", [&] { target->renderToTarget([&] { target->renderToTarget([] {}); }); }},
        {"drawn into itself",
         [&] {
             target->renderToTarget([&] {
                 vtxRenderer::ShaderTechniqueGuard const technique(vtxRenderer::TechniqueTarget);
                 drawQuad(0, 0, 5, 5, target->getTexture());
             });
         }},
        {"not finite",
         [&] {
             Frame const frame(*renderer_);
             drawQuad(nan_, 0, 5, 5);
             drawQuad(std::numeric_limits<double>::infinity(), 0, 5, 5);
             EXPECT_EQ(log_->getMisuses().size(), 2u);
         }},
        {"not finite", [&] { renderer_->setModelViewMatrix(osg::Matrixf::translate(nan_, 0, 0)); }},
        {"not finite", [&] { drawTriangle(infinite.get()); }},
        {"indices past its vertices", [&] { drawTriangle(broken.get()); }},
        {"a geometry was drawn after", [&] { drawTriangle(dangling); }},
    };
    for (Case const& each : cases) {
        for (int i = 0; i < 2; ++i) {
            each.use();
            EXPECT_TRUE(takeMisuse(each.text)) << each.text;
        }
        EXPECT_EQ(lines_.count(each.text), 1u) << lines_.dump();
    }
    // Nothing of it lingers: a proper frame is drawn as ever.
    log_->clearLines();
    {
        Frame const frame(*renderer_);
        drawQuad(0, 0, 5, 5);
    }
    EXPECT_EQ(getQuads().size(), 1u);
    EXPECT_EQ(renderer_->getTechnique(), vtxRenderer::TechniqueNone);
}

TEST_F(Misuse, ofAnEffectIsReportedAndNothingIsDrawn) {
    vtxEffectShader* effect = renderer_->createEffectShader("tests/platform/vtx_effect.fx");
    ASSERT_NE(effect, nullptr);
    std::unique_ptr<vtxGeometry> const geometry(renderer_->createGeometry({{}, {}, {}}, {0, 1, 2}));
    effect->setGeometry(geometry.get());
    auto const drawBadly = [&](osg::Matrixf const& projection, osg::Matrixf const& modelView, char const* text) {
        effect->setMatrices(projection, modelView);
        effect->drawEffect(vtxGeometry::PrimitiveTriangles, 1, 0);
        EXPECT_TRUE(takeMisuse(text));
    };
    drawBadly({}, {}, "belong together");
    effect->endPass();
    EXPECT_TRUE(takeMisuse("belong together"));
    Frame const frame(*renderer_);
    effect->beginPass();
    drawBadly(osg::Matrixf::translate(nan_, 0, 0), {}, "not finite");
    drawBadly({}, osg::Matrixf::scale(1, nan_, 1), "not finite");
    effect->endPass();
    EXPECT_EQ(countLines("drawEffect E"), 0);
}

TEST_F(Misuse, aSecondRendererIsRefused) {
    EXPECT_EQ(vtxRenderer::create(std::make_unique<vtxTraceDevice>()), renderer_);
    EXPECT_EQ(vtxRenderer::get(), renderer_);
    EXPECT_EQ(lines_.count("renderer exists"), 1u) << lines_.dump();
}

}  // namespace
