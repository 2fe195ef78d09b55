#include <cmath>

#include "host/PngWriter.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxShaderBkgQuads.h"
#include "platform/vtx/vtxTextString.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/gl/ContractFixture.h"

/// One sheet with everything that the contract draws, at three scales, written to out/gl for people to look at, and
/// checked for what a glance may miss: seams, bleeding, and differences between the kinds of context.

namespace {

osg::Vec4f const nothing(0.0f, 0.0f, 0.0f, 0.0f);
osg::Vec4f const ink(0.93f, 0.95f, 0.98f, 1.0f);
osg::Vec4f const accent(0.25f, 0.62f, 0.98f, 1.0f);
osg::Vec2i const sheetSize(480, 330);

/// A rounded box of 24 x 24 with a bright border. What lies around it is bright red, to show if it bleeds.
Pixel boxPixel(int x, int y) {
    if (x < 4 || y < 4 || x >= 28 || y >= 28)
        return redPixel;
    double const dx = std::max(std::abs(x - 15.5) - 6.0, 0.0), dy = std::max(std::abs(y - 15.5) - 6.0, 0.0);
    double const outside = std::hypot(dx, dy) - 5.5;
    int const alpha = int(255 * std::min(std::max(0.5 - outside, 0.0), 1.0));
    double const border = std::min(std::max(2.0 + outside, 0.0), 1.0);
    int const value = int(90 + 150 * border);
    return {value, value, value, alpha};
}

/// A tile of 8 x 8 whose rim continues on the other side.
Pixel tilePixel(int x, int y) {
    bool const diagonal = (x + y) % 8 < 2;
    return diagonal ? Pixel{70, 150, 230, 255} : Pixel{40, 60, 90, 255};
}

class Sheet {
public:
    explicit Sheet(ContractStage& stage) : stage_(stage), renderer_(*stage.renderer) {
        vtxTextureManager& textures = *renderer_.getTextureManager();
        box_ = textures.getTexture(TestPictures::write("box.png", 32, 32, boxPixel), Rect(4, 4, 28, 28), nullptr);
        tile_ = textures.getTexture(TestPictures::write("tile.png", 8, 8, tilePixel), Rect(), nullptr);
        target_.reset(renderer_.createFrameBuffer(osg::Vec2i(101, 41), 0, 1));
    }
    ~Sheet() {
        renderer_.getTextureManager()->releaseTexture(box_);
        renderer_.getTextureManager()->releaseTexture(tile_);
    }

    void draw() {
        target_->renderToTarget([&] {
            vtxRenderer::ProjectionMatrixGuard projection;
            projection.makeOrtho2D(0, 101, 41, 0);
            vtxRenderer::ShaderTechniqueGuard technique(vtxRenderer::TechniqueTarget);
            drawBox_(0, 0, 101, 41, accent);
            drawText_(L"Target", 16, 18, 26);
        });
        stage_.frame([&] {
            stage_.quad(0, 0, 480, 330, osg::Vec4f(0.11f, 0.13f, 0.17f, 1.0f));
            drawTexts_();
            drawBoxes_();
            drawTiles_();
            drawClips_();
            drawTurned_();
            drawTargets_();
            drawShapes_();
        });
    }

private:
    void drawText_(wchar_t const* words, int size, int x, int y, char const* font = "Inter") {
        vtxTextString text = makeText_(words, size, font, vtxFont::BlurNone);
        text.position = osg::Vec2i(x, y);
        finishText_(text);
    }

    vtxTextString makeText_(wchar_t const* words, int size, char const* font, vtxFont::Blur blur) {
        vtxTextString text;
        text.font = renderer_.getFontManager()->getFont(font, size, blur);
        text.text = words;
        text.color = ink;
        text.bkgColor = text.shadowColor = text.blurColor = text.lineThroughColor = nothing;
        return text;
    }

    void finishText_(vtxTextString& text) {
        text.textLength = int(text.text.size());
        text.redraw(-1.0f);
        text.draw(stage_.shader, -1.0f);
    }

    void drawTexts_() {
        drawText_(L"The quick brown fox jumps over the lazy dog 0123456789", 10, 10, 18);
        drawText_(L"AVATAR To Wa Ty: kerning, ÄÖÜ ß é ñ, Ελληνικά, Русский", 13, 10, 38);
        drawText_(L"Inter Bold 18", 18, 10, 62, "Inter Bold");
        drawText_(L"if (mono) return 42;", 13, 150, 62, "JetBrains Mono");
        vtxTextString text = makeText_(L"Shadow", 22, "Inter", vtxFont::BlurNone);
        text.shadowColor = osg::Vec4f(0.0f, 0.0f, 0.0f, 0.9f);
        text.shadowOffset = osg::Vec2i(2, 2);
        text.position = osg::Vec2i(10, 92);
        finishText_(text);
        text = makeText_(L"Glow", 22, "Inter", vtxFont::BlurLarge);
        text.blurColor = accent;
        text.position = osg::Vec2i(110, 92);
        finishText_(text);
        text = makeText_(L"Background", 16, "Inter", vtxFont::BlurNone);
        text.bkgColor = osg::Vec4f(0.2f, 0.4f, 0.25f, 1.0f);
        text.position = osg::Vec2i(185, 90);
        finishText_(text);
        text = makeText_(L"Struck", 16, "Inter", vtxFont::BlurNone);
        text.lineThroughColor = osg::Vec4f(1.0f, 0.4f, 0.3f, 1.0f);
        text.position = osg::Vec2i(290, 90);
        finishText_(text);
    }

    /// Nine cells: corners of 8 units, edges and middle stretched.
    void drawBox_(float x, float y, float w, float h, osg::Vec4f const& color) {
        vtxShaderBkgQuads cells;
        cells.setTexture(box_);
        float const xs[4] = {x, x + 8, x + w - 8, x + w}, ys[4] = {y, y + 8, y + h - 8, y + h};
        float const uvs[4] = {4 / 32.0f, 12 / 32.0f, 20 / 32.0f, 28 / 32.0f};
        float colors[9][4];
        for (int i = 0; i < 9; ++i) {
            int const c = i % 3, r = i / 3;
            cells.addQuad({xs[c], ys[r], xs[c + 1] - xs[c], ys[r + 1] - ys[r], uvs[c], uvs[r], uvs[c + 1], uvs[r + 1]});
            for (int k = 0; k < 4; ++k)
                colors[i][k] = color[unsigned(k)];
        }
        stage_.shader->setColors(colors[0], 9);
        cells.draw(stage_.shader);
    }

    void drawBoxes_() {
        drawBox_(10, 104, 90, 44, accent);
        drawBox_(106, 104, 24, 44, ink);
        drawBox_(136, 104, 61, 17, osg::Vec4f(0.3f, 0.9f, 0.5f, 1.0f));
        drawBox_(136, 127, 61, 21, osg::Vec4f(1.0f, 0.6f, 0.2f, 0.5f));
        // Aligned in a frame: left top, centre, right bottom.
        stage_.quad(206, 104, 70, 44, osg::Vec4f(0.2f, 0.22f, 0.27f, 1.0f));
        vtxTexture::Rect const whole{4 / 32.0f, 4 / 32.0f, 28 / 32.0f, 28 / 32.0f};
        stage_.quad(206, 104, 24, 24, ink, box_, whole);
        stage_.quad(229, 114, 24, 24, ink, box_, whole);
        stage_.quad(252, 124, 24, 24, ink, box_, whole);
    }

    void drawTiles_() {
        for (int row = 0; row < 5; ++row) {
            for (int column = 0; column < 10; ++column)
                stage_.quad(float(284 + column * 8), float(106 + row * 8), 8, 8, osg::Vec4f(1, 1, 1, 1), tile_);
        }
        // The same by repeating coordinates.
        stage_.shader->setUserTextureFiltering(vtxRenderer::SamplerRepeat);
        stage_.quad(372, 106, 80, 40, osg::Vec4f(1, 1, 1, 1), tile_, {0, 0, 10, 5});
        stage_.shader->resetTextureSampler();
    }

    void drawClips_() {
        stage_.quad(10, 160, 140, 70, osg::Vec4f(0.16f, 0.18f, 0.23f, 1.0f));
        vtxRenderer::ModelViewMatrixGuard scrolled;
        scrolled.setTranslate(10, 160, 0);
        vtxRenderer::ClipRectGuard view(Rect(10, 160, 150, 230));
        vtxRenderer::ModelViewMatrixGuard content;
        content.setTranslate(-12, -7, 0);
        for (int line = 0; line < 6; ++line)
            drawText_(L"Clipped line of a scrolled pane", 13, 4, 16 + line * 17);
        vtxRenderer::ClipRectGuard inner(Rect(100, 190, 400, 400));
        stage_.quad(0, 0, 400, 400, osg::Vec4f(0.25f, 0.62f, 0.98f, 0.35f));
    }

    void drawTurned_() {
        stage_.quad(160, 160, 110, 70, osg::Vec4f(0.16f, 0.18f, 0.23f, 1.0f));
        vtxRenderer::ClipRectGuard clip(Rect(160, 160, 270, 230));
        for (int i = 0; i < 4; ++i) {
            vtxRenderer::ModelViewMatrixGuard turn;
            turn.makeTranslate(-20, -20, 0);
            turn.makeRotate(0.35f + float(i) * 0.4f, 0, 0, 1);
            turn.setTranslate(float(172 + i * 30), 195, 0);
            stage_.quad(0, 0, 40, 40, osg::Vec4f(0.9f, 0.9f, 1.0f, 0.8f), tile_);
        }
        vtxRenderer::ModelViewMatrixGuard turn;
        turn.makeRotate(-0.3f, 0, 0, 1);
        turn.setTranslate(165, 215, 0);
        drawText_(L"Turned and cut text", 16, 0, 0);
    }

    void drawTargets_() {
        stage_.quad(280, 160, 190, 70, osg::Vec4f(0.16f, 0.18f, 0.23f, 1.0f));
        for (int i = 0; i < 9; ++i)
            stage_.quad(float(284 + i * 20), 160, 10, 70, osg::Vec4f(0.3f, 0.25f, 0.2f, 1.0f));
        stage_.quad(286, 165, 101, 41, osg::Vec4f(1, 1, 1, 1), target_->getTexture());
        vtxRenderer::OpacityGuard half(0.5f);
        stage_.quad(361, 183, 101, 41, osg::Vec4f(1, 1, 1, 1), target_->getTexture());
    }

    void drawShapes_() {
        {
            vtxRenderer::ModelViewMatrixGuard move;
            move.setTranslate(36, 272, 0);
            renderer_.drawCircle(accent, 24, 48);
        }
        {
            vtxRenderer::ModelViewMatrixGuard move;
            move.setTranslate(80, 256, 0);
            renderer_.drawLifeBar(osg::Vec4f(0.3f, 0.9f, 0.5f, 1.0f), osg::Vec2f(120, 10), 0.7f);
        }
        qor::vector<vtxVertex> vertices;
        for (int i = 0; i < 3; ++i)
            vertices.push_back({i * 40.0, i % 2 ? 0.0 : 50.0, 0, i == 0 ? 1.0f : 0.0f, i == 1 ? 1.0f : 0.0f,
                                i == 2 ? 1.0f : 0.0f, 1.0f, 0, 0});
        std::unique_ptr<vtxGeometry> triangle(renderer_.createGeometry(vertices, {0, 1, 2}));
        double const corners[4][2] = {{0.5, 0.5}, {79.5, 0.5}, {79.5, 39.5}, {0.5, 39.5}};
        vertices.clear();
        for (int i = 0; i < 8; ++i) {
            double const* corner = corners[(i + 1) / 2 % 4];
            vertices.push_back({corner[0], corner[1], 0, 1, 1, 1, 1, 0, 0});
        }
        std::unique_ptr<vtxGeometry> outline(renderer_.createGeometry(vertices, {0, 1, 2, 3, 4, 5, 6, 7}));
        vtxRenderer::ModelViewMatrixGuard move;
        move.setTranslate(220, 250, 0);
        stage_.shader->setTexture(nullptr);
        renderer_.setGeometry(triangle.get());
        renderer_.drawPrimitives(vtxGeometry::PrimitiveTriangles, 1, 0);
        move.setTranslate(110, 5, 0);
        renderer_.setGeometry(outline.get());
        renderer_.drawPrimitives(vtxGeometry::PrimitiveLines, 4, 0);
        renderer_.setGeometry(nullptr);
    }

    ContractStage& stage_;
    vtxRenderer& renderer_;
    vtxTexture* box_ = nullptr;
    vtxTexture* tile_ = nullptr;
    std::unique_ptr<vtxFrameBuffer> target_;
};

Picture drawSheet(BackEnd backEnd, float scale) {
    osg::Vec2i const pixels(int(sheetSize.x() * scale), int(sheetSize.y() * scale));
    ContractStage stage(backEnd, pixels);
    stage.renderer->setScale(scale);
    Picture picture;
    {
        Sheet sheet(stage);
        sheet.draw();
        picture = stage.read();
    }
    stage.renderer->getTextureManager()->flushReleased();
    return picture;
}

}  // namespace

class ContractPicture : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Percent, ContractPicture, testing::Values(100, 150, 200),
                         [](auto const& info) { return std::to_string(info.param); });

TEST_P(ContractPicture, HasNoSeamsNoBleedingAndIsTheSameOnBothContexts) {
    float const scale = float(GetParam()) / 100.0f;
    Picture const picture = drawSheet(BackEnd::GL33, scale);
    qor::string path, error;
    path.format("out/gl/contract-%d.png", GetParam());
    EXPECT_TRUE(host::writePng(path.c_str(), picture.size, picture.bytes.data(), error)) << error;

    auto at = [&](int x, int y) { return picture.at(int(float(x) * scale), int(float(y) * scale)); };
    // The box's surroundings in its picture are bright red; nothing on the upper part of the sheet is.
    for (int y = int(100 * scale); y < int(150 * scale); ++y) {
        for (int x = 0; x < int(280 * scale); ++x) {
            Pixel const pixel = picture.at(x, y);
            ASSERT_FALSE(pixel[0] > 200 && pixel[1] < 80) << "bleeding at " << x << ", " << y;
        }
    }
    // Along the middle of a stretched box one colour holds from border to border: no seam between the cells.
    for (int x = 14; x < 96; ++x)
        ASSERT_TRUE(isNear(at(x, 126), at(50, 126), 1)) << "seam at " << x;
    for (int y = 108; y < 144; ++y)
        ASSERT_TRUE(isNear(at(50, y), at(50, 126), 1)) << "seam at " << y;
    // All tiles are alike to the last pixel, and at scale 1 just as the repeated picture has them.
    int const side = int(8 * scale), left = int(284 * scale), top = int(106 * scale);
    for (int y = 0; y < side * 5; ++y) {
        for (int x = 0; x < side * 10; ++x) {
            Pixel const pixel = picture.at(left + x, top + y);
            ASSERT_EQ(pixel, picture.at(left + x % side, top + y % side)) << "tile at " << x << ", " << y;
            if (GetParam() == 100) {
                ASSERT_EQ(pixel, picture.at(372 + x, 106 + y)) << "repeated at " << x << ", " << y;
            }
        }
    }
    Picture const es = drawSheet(BackEnd::ES30, scale);
    int different = 0;
    for (int y = 0; y < picture.size.y(); ++y) {
        for (int x = 0; x < picture.size.x(); ++x)
            different += !isNear(picture.at(x, y), es.at(x, y), 3);
    }
    EXPECT_EQ(different, 0);
}

TEST(ContractTrace, TheSheetIsTheSameStreamOfOperationsEachTime) {
    auto trace = [] {
        ContractStage stage(BackEnd::Trace, sheetSize);
        Sheet sheet(stage);
        sheet.draw();
        return stage.log->getText();
    };
    qor::string const first = trace();
    EXPECT_GT(first.size(), 1000u);
    EXPECT_EQ(first, trace());
}
