#include "tests/platform/vtx_Fixture.h"

#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxTextString.h"

#include <functional>

namespace {

using support::Rect;

class Runs : public support::RendererTest {
protected:
    /// Runs that two quads need with `between` happening between them.
    unsigned countRuns(std::function<void()> const& between) {
        log_->takeFrame();
        renderer_->pushProjectionMatrix();
        {
            Frame const frame(*renderer_);
            drawQuad(0.0, 0.0, 10.0, 10.0);
            between();
            drawQuad(10.0, 0.0, 10.0, 10.0);
        }
        renderer_->popProjectionMatrix();
        return log_->getCounters().runs;
    }
};

TEST_F(Runs, goOnThroughEverythingThatOnlyConcernsQuads) {
    vtxTexture const* const paged = getPicture();
    std::vector<vtxTexture*> alone;
    for (int i = 0; i < 8; ++i)
        alone.push_back(getPicture(true));
    vtxTextString glyphs;
    glyphs.font = renderer_->getFontManager()->getFont("assets/fonts/Inter-Regular.otf", 14, vtxFont::BlurNone);
    glyphs.text = L"glyphs";
    glyphs.color = osg::Vec4f(1, 1, 1, 1);
    glyphs.redraw(-1.0f);
    EXPECT_EQ(countRuns([&] {
                  vtxRenderer::ClipRectGuard const clip(Rect(0, 0, 50, 50));
                  drawQuad(5.0, 5.0, 100.0, 100.0);
                  vtxRenderer::ModelViewMatrixGuard move;
                  move.setTranslate(3.0f, 3.0f, 0.0f);
                  shader().setColor(osg::Vec4f(1, 0, 0, 1));
                  vtxRenderer::OpacityGuard const half(0.5f);
                  drawQuad(5.0, 5.0, 5.0, 5.0, paged);
                  shader().setUserTextureFiltering(vtxRenderer::SamplerNearest);
                  drawQuad(5.0, 5.0, 5.0, 5.0, paged);
                  glyphs.draw(&shader(), -1.0f);
                  shader().resetTextureSampler();
                  for (vtxTexture const* picture : alone)
                      drawQuad(5.0, 5.0, 5.0, 5.0, picture);
                  shader().turnOffDrawQuads();
                  shader().turnOnDrawQuads();
                  move.makeRotate(0.2f, 0.0f, 0.0f, 1.0f).setTranslate(10.0f, 10.0f, 0.0f);
                  drawQuad(0.0, 0.0, 5.0, 5.0);
                  vtxRenderer::ProjectionMatrixGuard unused;
                  unused.makeOrtho2D(0.0f, 5.0f, 5.0f, 0.0f);
                  vtxRenderer::ShaderTechniqueGuard const nothingDrawn(vtxRenderer::TechniqueTarget);
              }),
              1u)
        << log_->getText();
}

TEST_F(Runs, endWhereTheirStateChangesAndNowhereElse) {
    std::unique_ptr<vtxFrameBuffer> const target(renderer_->createFrameBuffer(osg::Vec2i(10, 10), 0, 1));
    std::unique_ptr<vtxGeometry> const geometry(renderer_->createGeometry(
        {{0, 0, 0, 1, 1, 1, 1, 0, 0}, {9, 0, 0, 1, 1, 1, 1, 0, 0}, {0, 9, 0, 1, 1, 1, 1, 0, 0}}, {0, 1, 2}));
    struct Case {
        char const* name;
        std::function<void()> between;
    };
    Case const cases[] = {
        {"geometry",
         [&] {
             renderer_->setGeometry(geometry.get());
             renderer_->drawPrimitives(vtxGeometry::PrimitiveTriangles, 1, 0);
         }},
        {"circle", [&] { renderer_->drawCircle(osg::Vec4f(1, 1, 1, 1), 5.0f, 8); }},
        {"bar", [&] { renderer_->drawLifeBar(osg::Vec4f(1, 1, 1, 1), osg::Vec2f(10, 3), 0.5f); }},
        {"target", [&] { target->renderToTarget([] {}); }},
        {"projection", [&] { renderer_->setProjectionMatrix(osg::Matrixf::ortho2D(0, 400, 200, 0)); }},
        {"gamma", [&] { shader().setGamma(2.2f); }},
        {"intensity", [&] { shader().setIntensity(0.5f); }},
        {"end of the pass",
         [&] {
             renderer_->endDraw();
             renderer_->beginDraw(vtxRenderer::TechniqueNormal);
         }},
        {"reading back",
         [&] {
             unsigned char pixel[4];
             renderer_->readPixels(nullptr, Rect(0, 0, 1, 1), pixel);
         }},
    };
    for (Case const& each : cases) {
        EXPECT_EQ(countRuns(each.between), 2u) << each.name;
        shader().setGamma(1.0f);
        shader().setIntensity(1.0f);
    }
    EXPECT_EQ(countRuns([&] {
                  vtxRenderer::ViewportGuard const viewport(Rect(0, 0, 100, 50));
                  drawQuad(0.0, 0.0, 5.0, 5.0);
              }),
              3u);
    EXPECT_EQ(countRuns([&] {
                  vtxRenderer::ShaderTechniqueGuard const technique(vtxRenderer::TechniqueTarget);
                  drawQuad(0.0, 0.0, 5.0, 5.0);
              }),
              3u);
}

TEST_F(Runs, endAtAnUploadIntoAPageThatTheyShow) {
    vtxTexture const* const first = getPicture();
    {
        Frame const frame(*renderer_);
        drawQuad(0.0, 0.0, 16.0, 16.0, first);
        vtxTexture const* const second = getPicture();
        EXPECT_EQ(log_->getCounters().runs, 0u);
        drawQuad(20.0, 0.0, 16.0, 16.0, second);
        EXPECT_EQ(log_->getCounters().runs, 1u);
        int const layer = core().getTextureStore().addPage(vtxTextureStore::Pages::Picture);
        qor::vector<unsigned char> const pixels(16, 255);
        core().getTextureStore().queueUpload(vtxTextureStore::Pages::Picture, layer, Rect(0, 0, 2, 2), pixels.data());
        drawQuad(40.0, 0.0, 16.0, 16.0, second);
        EXPECT_EQ(log_->getCounters().runs, 1u) << "a page that no queued quad shows";
        EXPECT_EQ(countLines("resizeTextureArray"), 1);
        renderer_->drawCircle(osg::Vec4f(1, 1, 1, 1), 10.0f, 32);
        EXPECT_EQ(renderer_->getCounters().uploads, 4u) << "three pictures and the circle";
    }
    EXPECT_EQ(log_->getCounters().runs, 2u);
}

TEST_F(Runs, takeAPictureAloneWhereItsPageWillNotDo) {
    getPicture();
    vtxTexture const* const picture = getPicture();
    {
        Frame const frame(*renderer_);
        drawPart({0, 0, 16, 16}, {0, 0, 1, 1}, picture);
        EXPECT_EQ(countLines("createTexture"), 1);
        drawPart({20, 0, 16, 16}, {-1, 0, 2, 1}, picture);
        drawPart({40, 0, 16, 16}, {0, 0, 1, 1}, picture);
        shader().setUserTextureFiltering(vtxRenderer::SamplerRepeat);
        drawPart({60, 0, 16, 16}, {0, 0, 3, 3}, picture);
        shader().resetTextureSampler();
        drawPart({80, 0, 16, 16}, {0, 0, 1, 1}, picture);
    }
    auto const quads = getQuads();
    ASSERT_EQ(quads.size(), 5u);
    double const side = vtxTextureStore::picturePageSide;
    EXPECT_EQ(quads[0].source, int(vtxQuadSource::PictureLinear));
    EXPECT_GT(quads[0].u1, 16.0 / side) << "beside the other one";
    EXPECT_NEAR(quads[0].u2 - quads[0].u1, 16.0 / side, 1e-4);
    EXPECT_NEAR(quads[0].v2 - quads[0].v1, 16.0 / side, 1e-4);
    EXPECT_EQ(quads[1].source, int(vtxQuadSource::Lone));
    EXPECT_EQ(quads[1].u1, -1.0);
    EXPECT_EQ(quads[2].source, int(vtxQuadSource::PictureLinear));
    EXPECT_EQ(quads[3].source, int(vtxQuadSource::Lone + 1));
    EXPECT_EQ(quads[4].source, int(vtxQuadSource::PictureLinear));
    EXPECT_EQ(countLines("createTexture"), 2) << "made once";
}

}  // namespace
