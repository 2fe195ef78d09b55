#include <algorithm>
#include <cmath>
#include <fstream>

#include "platform/vtx/vtxEffectShader.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxTextString.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/gl/ContractFixture.h"
#include "tests/support/LogCapture.h"

using ContractObjects = Contract;
INSTANTIATE_ON_ALL_BACK_ENDS(ContractObjects);

using namespace colours;

namespace {

/// A rectangle of two triangles.
std::unique_ptr<vtxGeometry> makeRectangle(vtxRenderer& renderer, double width, double height) {
    qor::vector<vtxVertex> const vertices = {{0, 0, 0, 1, 1, 1, 1, 0, 0},
                                             {width, 0, 0, 1, 1, 1, 1, 1, 0},
                                             {width, height, 0, 1, 1, 1, 1, 1, 1},
                                             {0, height, 0, 1, 1, 1, 1, 0, 1}};
    return std::unique_ptr<vtxGeometry>(renderer.createGeometry(vertices, {0, 1, 2, 0, 2, 3}));
}

}  // namespace

// --- Text ---

TEST_P(ContractObjects, TextShowsItsLayersWhereItsMetricsSay) {
    vtxTextString text;
    text.font = renderer.getFontManager()->getFont("Inter", 20, vtxFont::BlurNone);
    ASSERT_NE(text.font, nullptr);
    text.text = L"Hill";
    text.position = osg::Vec2i(10, 30);
    text.color = white;
    text.bkgColor = osg::Vec4f(0.0f, 0.0f, 1.0f, 1.0f);
    text.shadowColor = red;
    text.shadowOffset = osg::Vec2i(40, 20);
    text.lineThroughColor = green;
    text.lineThroughHeight = 2;
    text.redraw(-1.0f);
    stage.frame([&] { text.draw(&shader, -1.0f); });
    EXPECT_EQ(renderer.getCounters().runs, 1u) << "text and its layers are one run";
    int const width = text.font->getTextWidth(L"Hill", -1.0f);
    int const top = 30 - text.font->getAscender(), bottom = 30 - text.font->getDescender();
    stage.expect(10, top, bluePixel);
    stage.expect(10 + width - 1, bottom - 1, bluePixel);
    stage.expect(9, top, blackPixel);
    stage.expect(10, top - 1, blackPixel);
    stage.expect(10, bottom, blackPixel);
    if (!stage.hasPixels())
        return;
    Picture const picture = stage.read();
    int strokes = 0, shadow = 0, bar = 0;
    for (int y = top; y < 30; ++y) {
        for (int x = 10; x < 10 + width; ++x) {
            strokes += picture.at(x, y)[0] > 200;
            shadow += picture.at(x + 40, y + 20)[0] > 200;
            bar += picture.at(x, y) == greenPixel;
        }
    }
    EXPECT_GT(strokes, 20);
    EXPECT_GT(shadow, strokes) << "nothing strikes it through";
    EXPECT_EQ(bar, 2 * width);
}

// --- Geometry ---

TEST_P(ContractObjects, GeometryIsDrawnWithTextureMatrixOpacityAndClip) {
    vtxTexture* texture = renderer.getTextureManager()->getTexture(TestPictures::cells(), Rect(), nullptr);
    auto geometry = makeRectangle(renderer, 24, 24);
    renderer.setScale(2.0f);
    stage.frame([&] {
        vtxRenderer::ModelViewMatrixGuard move;
        move.setTranslate(2, 1, 0);
        vtxRenderer::OpacityGuard opacity(0.5f);
        vtxRenderer::ClipRectGuard clip(Rect(0, 0, 20, 32));
        shader.turnOffDrawQuads();
        shader.setTexture(texture);
        renderer.setGeometry(geometry.get());
        renderer.drawPrimitives(vtxGeometry::PrimitiveTriangles, 2, 0);
        shader.turnOnDrawQuads();
    });
    for (int i = 0; i < 9; ++i) {
        if (i % 3 == 2)
            continue;
        Pixel const cell = TestPictures::cellColour(i % 3, i / 3);
        stage.expect(4 + 16 * (i % 3) + 8, 2 + 16 * (i / 3) + 8, {cell[0] / 2, cell[1] / 2, cell[2] / 2, 255});
    }
    stage.expect(39, 10, {125, 25, 64, 255});
    stage.expect(40, 10, blackPixel);
    EXPECT_EQ(renderer.getCounters().geometryDraws, 1u);
    renderer.getTextureManager()->releaseTexture(texture);
}

TEST_P(ContractObjects, CircleAndLifeBarStandAtTheModelViewsOrigin) {
    stage.frame([&] {
        vtxRenderer::ModelViewMatrixGuard move;
        move.setTranslate(20, 20, 0);
        renderer.drawCircle(red, 10, 32);
        move.setTranslate(20, 10, 0);
        renderer.drawLifeBar(green, osg::Vec2f(40, 6), 0.25f);
    });
    stage.expect(20, 20, redPixel);
    stage.expect(12, 20, redPixel);
    stage.expect(20, 28, redPixel);
    stage.expect(12, 12, blackPixel);
    stage.expect(31, 20, blackPixel);
    stage.expect(41, 31, greenPixel);
    stage.expect(49, 35, greenPixel);
    stage.expect(51, 31, {0, 64, 0, 255});
    stage.expect(79, 35, {0, 64, 0, 255});
    stage.expect(80, 33, blackPixel);
    stage.expect(60, 36, blackPixel);
}

// --- Targets ---

TEST_P(ContractObjects, ATargetIsIsolatedAndEverythingIsPutBack) {
    std::unique_ptr<vtxFrameBuffer> target(renderer.createFrameBuffer(osg::Vec2i(20, 10), 0, 1));
    for (float scale : {1.0f, 1.5f, 2.0f}) {
        renderer.setScale(scale);
        stage.frame([&] {
            vtxRenderer::ClipRectGuard clip(Rect(0, 0, 30, 30));
            vtxRenderer::OpacityGuard opacity(0.5f);
            vtxRenderer::ShiftPositionGuard shift(2, 2, 1);
            target->renderToTarget([&] {
                vtxRenderer::ProjectionMatrixGuard projection;
                projection.makeOrtho2D(0, 20, 10, 0);
                renderer.beginDraw(vtxRenderer::TechniqueTarget);
                stage.quad(0, 0, 20, 2, red);
                stage.quad(16, 6, 40, 40, green);
                renderer.endDraw();
            });
            stage.quad(0, 0, 20, 10, white, target->getTexture());
            stage.quad(25, 0, 20, 1, white);
        });
        auto at = [scale](float units) { return int(std::floor(units * scale + 0.5f)) + 2; };
        stage.expect(at(1), at(1), {128, 0, 0, 255});
        stage.expect(at(19), at(1), {128, 0, 0, 255});
        stage.expect(at(19), at(9), {0, 128, 0, 255});
        stage.expect(at(1), at(5), blackPixel);
        stage.expect(at(21), at(9), blackPixel);
        stage.expect(at(26), at(0.4f), {128, 128, 128, 255});
        stage.expect(at(31), at(0.4f), blackPixel);  // the clip holds again
        EXPECT_EQ(renderer.getCounters().targets, 1u);
        if (stage.hasPixels()) {
            osg::Vec2i const pixels(int(std::ceil(20 * scale)), int(std::ceil(10 * scale)));
            Picture const picture = stage.read(target.get(), pixels);
            EXPECT_EQ(picture.at(1, 1), redPixel);
            EXPECT_EQ(picture.at(1, pixels.y() - 1), clearPixel);
            EXPECT_EQ(picture.at(pixels.x() - 1, pixels.y() - 1), greenPixel);
        }
    }
    target.reset();
    renderer.getTextureManager()->flushReleased();
}

TEST_P(ContractObjects, TargetsNestAndComeWithSamplesAndMips) {
    std::unique_ptr<vtxFrameBuffer> outer(renderer.createFrameBuffer(osg::Vec2i(16, 16), 4, 1));
    std::unique_ptr<vtxFrameBuffer> inner(renderer.createFrameBuffer(osg::Vec2i(8, 8), 0, 4));
    stage.drawIn(*outer, [&] {
        stage.quad(0, 0, 8, 8, red);
        stage.drawIn(*inner, [&] {
            for (int x = 0; x < 20; x += 2)
                stage.quad(float(x), 0, 1, 80, white);
        });
        shader.setUserTextureFiltering(vtxRenderer::SamplerMips);
        stage.quad(8, 8, 2, 2, white, inner->getTexture());
        shader.resetTextureSampler();
        stage.quad(14, 0, 50, 50, green);
    });
    stage.frame([&] { stage.quad(0, 0, 16, 16, white, outer->getTexture()); });
    stage.expect(4, 4, redPixel);
    stage.expect(9, 9, {128, 128, 128, 255}, 4);
    stage.expect(12, 4, blackPixel);
    stage.expect(15, 15, greenPixel);
    outer.reset();
    inner.reset();
    renderer.getTextureManager()->flushReleased();
}

// --- Effects ---

TEST_P(ContractObjects, AnEffectDrawsATargetWithItsParameters) {
    qor::string const path = TestPictures::write("unused.png", 1, 1, [](int, int) { return redPixel; }) + ".fx";
    std::ofstream(path.c_str()) << "[parameters]\nfloat alpha = 1.0\nfloat[3] tint = 1.0\n"
                                   "[vertex]\nout vec2 at;\nvoid effectVertex() { at = uv;\n"
                                   "gl_Position = projection * modelView * vec4(position, 1.0); }\n"
                                   "[fragment]\nin vec2 at;\nvoid effectFragment()\n"
                                   "{ result = texture(image, at) * alpha;\n"
                                   "result.rgb *= vec3(tint[0], tint[1], tint[2]); }\n";
    vtxEffectShader* effect = renderer.createEffectShader(path.c_str());
    ASSERT_NE(effect, nullptr);
    qor::string spelled = path;
    std::replace(spelled.begin(), spelled.end(), '/', '\\');
    EXPECT_EQ(renderer.createEffectShader(spelled.c_str()), effect) << "loaded once a path";
    EXPECT_EQ(effect->getParameter("beta"), -1);
    renderer.setScale(1.5f);
    // 15 x 9 units are 22.5 x 13.5 pixels: the last row and column are only half used.
    std::unique_ptr<vtxFrameBuffer> target(renderer.createFrameBuffer(osg::Vec2i(15, 9), 0, 1));
    auto geometry = makeRectangle(renderer, 15, 9);
    stage.frame([&] {
        stage.drawIn(*target, [&] { stage.quad(0, 0, 15, 4, white); });
        vtxRenderer::ModelViewMatrixGuard move;
        move.setTranslate(4, 4, 0);
        vtxRenderer::OpacityGuard opacity(0.5f);
        vtxRenderer::ShaderTechniqueGuard technique(vtxRenderer::TechniqueNone);
        effect->beginPass();
        effect->setGeometry(geometry.get());
        effect->setTexture(target->getTexture());
        effect->setMatrices(renderer.getProjectionMatrix(), renderer.getModelViewMatrix());
        float const tint[5] = {1.0f, 0.5f, 0.0f, 9.0f, 9.0f};  // two more than there are
        effect->setFloatArray(effect->getParameter("tint"), tint, 5);
        effect->setFloat(effect->getParameter("alpha"), 0.5f);
        effect->setFloat(-1, 9.0f);
        effect->drawEffect(3, 2, 0);
        effect->endPass();
    });
    stage.expect(8, 8, {64, 32, 0, 255});
    stage.expect(26, 8, {64, 32, 0, 255});
    stage.expect(8, 18, blackPixel);  // the lower part of the target is empty: nothing is upside down
    stage.expect(4, 8, blackPixel);
    stage.expect(30, 8, blackPixel);
    target.reset();
    renderer.getTextureManager()->flushReleased();
}

TEST_P(ContractObjects, AMissingEffectGivesNullAndABrokenOneDrawsNothing) {
    support::LogCapture lines;
    EXPECT_EQ(renderer.createEffectShader("no/such.fx"), nullptr);
    EXPECT_EQ(renderer.createEffectShader("no\\such.fx"), nullptr);
    qor::string const path = TestPictures::write("unused.png", 1, 1, [](int, int) { return redPixel; }) + ".bad.fx";
    std::ofstream(path.c_str()) << "[vertex]\nvoid effectVertex() {}\n[fragment]\nvoid effectFragment()\n{ wrong; }\n";
    vtxEffectShader* effect = renderer.createEffectShader(path.c_str());
    ASSERT_NE(effect, nullptr);
    auto geometry = makeRectangle(renderer, 96, 64);
    for (int i = 0; i < 2; ++i) {
        stage.frame([&] {
            effect->beginPass();
            effect->setGeometry(geometry.get());
            effect->setMatrices(renderer.getProjectionMatrix(), renderer.getModelViewMatrix());
            effect->drawEffect(3, 2, 0);
            effect->endPass();
            stage.quad(0, 0, 4, 4, green);
        });
    }
    stage.expect(2, 2, greenPixel);
    stage.expect(40, 30, blackPixel);
    EXPECT_EQ(lines.count("no/such.fx"), 1u) << lines.dump();
    EXPECT_EQ(lines.count(".bad.fx:5: "), stage.hasPixels() ? 1u : 0u) << lines.dump();
    EXPECT_EQ(lines.getLines().size(), stage.hasPixels() ? 2u : 1u) << lines.dump();
}
