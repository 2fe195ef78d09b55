#include <gtest/gtest.h>

#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxTextString.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/gl/ContractFixture.h"

namespace {

using namespace colours;

/// Something of all that the contract draws.
class Sheet {
public:
    explicit Sheet(ContractStage& stage)
        : stage_(stage), renderer_(*stage.renderer), target_(renderer_.createFrameBuffer(osg::Vec2i(61, 41), 4, 2)) {}

    void draw() {
        vtxTextureManager& textures = *renderer_.getTextureManager();
        vtxTexture* const cells = textures.getTexture(TestPictures::cells(), Rect(), nullptr);
        stage_.drawIn(*target_, [&] {
            stage_.quad(0, 0, 61, 41, osg::Vec4f(1, 1, 1, 0.75f), cells);
            drawText_(L"Target", "Inter", 5, 25);
        });
        stage_.frame([&] {
            stage_.quad(0, 0, 240, 150, osg::Vec4f(0.11f, 0.13f, 0.17f, 1.0f));
            drawText_(L"AVATAR To Ty, ÄÖÜ Русский", "Inter", 4, 18);
            drawText_(L"return 42;", "JetBrains Mono", 4, 44);
            stage_.quad(130, 30, 101, 33, white, target_->getTexture());
            stage_.shader->setUserTextureFiltering(vtxRenderer::SamplerRepeat);
            stage_.quad(4, 52, 50, 30, white, cells, {0, 0, 3, 2.5f});
            stage_.shader->resetTextureSampler();
            drawTurned_(cells);
            drawShapes_();
        });
        textures.releaseTexture(cells);
    }

private:
    void drawText_(wchar_t const* words, char const* font, int x, int y) {
        vtxTextString text;
        text.font = renderer_.getFontManager()->getFont(font, 16, vtxFont::BlurLarge);
        text.text = words;
        text.color = white;
        text.blurColor = green;
        text.position = osg::Vec2i(x, y);
        text.redraw(-1.0f);
        text.draw(stage_.shader, -1.0f);
    }

    void drawTurned_(vtxTexture const* picture) {
        vtxRenderer::ClipRectGuard const clip(Rect(60, 56, 120, 100));
        for (int i = 0; i < 4; ++i) {
            vtxRenderer::ModelViewMatrixGuard turn;
            turn.makeTranslate(-20, -20, 0).makeRotate(0.35f + float(i) * 0.4f, 0, 0, 1);
            turn.setTranslate(float(62 + i * 18), 80, 0);
            stage_.quad(0, 0, 40, 40, osg::Vec4f(0.9f, 0.9f, 1.0f, 0.8f), picture);
        }
        drawText_(L"Cut text", "Inter", 50, 70);
    }

    void drawShapes_() {
        vtxRenderer::ModelViewMatrixGuard move;
        move.setTranslate(150, 90, 0);
        renderer_.drawCircle(red, 20, 48);
        renderer_.drawLifeBar(green, osg::Vec2f(80, 10), 0.7f);
        stage_.shader->setGamma(1.4f);
        stage_.quad(-140, 10, 30, 30, osg::Vec4f(0.3f, 0.5f, 0.7f, 0.5f));
        std::unique_ptr<vtxGeometry> const triangle(renderer_.createGeometry(
            {{0, 40, 0, 1, 0, 0, 1, 0, 0}, {40, 20, 0, 0, 1, 0, 1, 0, 0}, {80, 50, 0, 0, 0, 1, 1, 0, 0}}, {0, 1, 2}));
        stage_.shader->setTexture(nullptr);
        renderer_.setGeometry(triangle.get());
        renderer_.drawPrimitives(vtxGeometry::PrimitiveTriangles, 1, 0);
        renderer_.drawPrimitives(vtxGeometry::PrimitiveLineStrip, 2, 0);
        renderer_.setGeometry(nullptr);
        stage_.shader->setGamma(1.0f);
    }

    ContractStage& stage_;
    vtxRenderer& renderer_;
    std::unique_ptr<vtxFrameBuffer> target_;
};

Picture drawSheet(BackEnd backEnd) {
    ContractStage stage(backEnd, osg::Vec2i(360, 225));
    stage.renderer->setScale(1.5f);
    Sheet(stage).draw();
    Picture picture = stage.read();
    stage.renderer->getTextureManager()->flushReleased();
    return picture;
}

}  // namespace

TEST(ContractPicture, IsTheSameOnBothContexts) {
    Picture const desktop = drawSheet(BackEnd::GL33), es = drawSheet(BackEnd::ES30);
    int different = 0, shown = 0;
    for (int y = 0; y < desktop.size.y(); ++y) {
        for (int x = 0; x < desktop.size.x(); ++x) {
            different += !isNear(desktop.at(x, y), es.at(x, y), 3);
            shown += !isNear(desktop.at(x, y), desktop.at(0, 0), 20);
        }
    }
    EXPECT_EQ(different, 0);
    EXPECT_GT(shown, 15000);
}
