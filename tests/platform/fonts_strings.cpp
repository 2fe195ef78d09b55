#include <gtest/gtest.h>

#include "platform/vtx/vtxFontLibrary.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTextString.h"
#include "tests/platform/RendererFixture.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using Rect = osg::RectImpl<osg::Vec2i>;

class TextStrings : public RendererFixture {
protected:
    vtxTextString make(std::shared_ptr<vtxFont> const& font, std::wstring_view text, int x, int y) {
        vtxTextString string;
        string.font = font;
        string.text = text;
        string.textLength = static_cast<int>(text.size());
        string.color.set(0, 0, 0, 1);
        string.position.set(x, y);
        string.redraw(-1.0f);
        return string;
    }
    void draw(vtxTextString const& string) { string.draw(shader(), -1.0f); }
    vtxFontLibrary& library() { return static_cast<vtxFontLibrary&>(fonts()); }
};

TEST_F(TextStrings, PensStandWhereTheWidthsSayAtEveryScale) {
    auto const inter = font("Inter", 13);
    qor::wstring const text = L"Measured AV by. parts Toy illi";
    for (float const scale : {1.0f, 1.25f, 1.5f, 2.0f}) {
        vtxRenderer::get()->setScale(scale);
        for (size_t length = 1; length < text.size(); ++length) {
            if (text[length] == L' ')
                continue;
            // An "l" in place of the rest shows where the rest begins.
            qor::wstring const before = text.substr(0, length);
            vtxTextString const alone = make(inter, L"l", 0, 50);
            vtxTextString const last = make(inter, before + L"l", 0, 50);
            double const pen = last.quads.getQuads().back().x - static_cast<double>(alone.quads.getQuads().front().x);
            double const measured = inter->getTextWidth(before + L"l", -1.0f) - inter->getTextWidth(L"l", -1.0f);
            EXPECT_NEAR(pen, measured, 1.0 + 1.0 / scale) << scale << " " << length;
        }
        paint([&] { draw(make(inter, text, 20, 50)); });
        Rect const ink = canvas.findInk();
        double const right = (20 + inter->getTextWidth(text, -1.0f)) * scale;
        EXPECT_NEAR(ink.x2, right, 2.0 * scale);
        EXPECT_GE(ink.y1, std::floor((50 - inter->getAscender()) * scale));
        EXPECT_LE(ink.y2, std::ceil((50 - inter->getDescender()) * scale));
    }
}

TEST_F(TextStrings, GlyphsStandOnWholePixelsUnderAnyTranslationAndScale) {
    for (float const scale : {1.0f, 1.25f, 1.5f, 1.75f}) {
        vtxRenderer::get()->setScale(scale);
        vtxTextString const string = make(font("Inter", 14), L"Whole pixels only, please: e\u0301 \u2603", 7, 33);
        std::vector<vtxQuadInstance> first;
        for (float const shift : {0.0f, 1.0f, 0.3f, 17.77f}) {
            paint([&] {
                vtxRenderer::ModelViewMatrixGuard guard;
                guard.setTranslate(shift, shift, 0.0f);
                draw(string);
            });
            if (first.empty())
                first = canvas.quads;
            ASSERT_EQ(canvas.quads.size(), first.size());
            for (size_t i = 0; i < first.size(); ++i) {
                vtxQuadInstance const& quad = canvas.quads[i];
                EXPECT_EQ(quad.x, std::round(quad.x));
                EXPECT_EQ(quad.y, std::round(quad.y));
                EXPECT_NEAR(quad.ux, (quad.uMax - quad.uMin) * 1024.0f, 1e-3f) << "a texel a pixel";
                EXPECT_EQ(quad.x - canvas.quads[0].x, first[i].x - first[0].x) << "the spacing does not jitter";
            }
        }
    }
}

TEST_F(TextStrings, SpacingIsEvenToAFractionOfAPixel) {
    paint([&] { draw(make(font("Inter", 13), L"l l l l l l l l", 10, 40)); });
    Rect const ink = canvas.findInk();
    std::vector<double> stems;
    double weight = 0.0, moment = 0.0;
    for (int x = ink.x1; x <= ink.x2; ++x) {
        double const dark = 255.0 - canvas.at(x, (ink.y1 + ink.y2) / 2)[0];
        weight += dark;
        moment += dark * x;
        if (dark == 0.0 && weight > 0.0) {
            stems.push_back(moment / weight);
            weight = moment = 0.0;
        }
    }
    ASSERT_EQ(stems.size(), 8u);
    double const step = (stems.back() - stems.front()) / 7.0;
    ASSERT_GT(std::abs(step - std::round(step)), 0.1) << "the size does not tell anything";
    for (size_t i = 1; i < stems.size(); ++i)
        EXPECT_NEAR(stems[i] - stems[i - 1], step, 0.3) << i;
}

TEST_F(TextStrings, LayersLieWhereTheyBelong) {
    vtxTextString string = make(font("Inter", 20, vtxFont::BlurLarge), L"xxxx", 40, 100);
    int const width = string.font->getTextWidth(string.text, -1.0f);
    string.bkgColor.set(1, 1, 0, 1);
    string.shadowColor.set(0, 1, 0, 1);
    string.shadowOffset.set(30, 40);
    string.blurColor.set(0, 0, 1, 1);
    string.lineThroughColor.set(1, 0, 0, 1);
    string.lineThroughHeight = 3;
    string.lineThroughOffset = 2;
    string.redraw(-1.0f);
    paint([&] { draw(string); });
    auto const& quads = canvas.quads;
    ASSERT_EQ(quads.size(), 14u);
    EXPECT_EQ(quads[0].x, 40.0f);
    EXPECT_EQ(quads[0].y, 100.0f - static_cast<float>(string.font->getAscender()));
    EXPECT_EQ(quads[0].ux, static_cast<float>(width));
    EXPECT_EQ(quads[0].vy, static_cast<float>(string.font->getAscender() - string.font->getDescender()));
    EXPECT_EQ(quads[1].g, 1.0f);
    EXPECT_EQ(quads[5].b, 1.0f);
    EXPECT_EQ(quads[9].r + quads[9].g + quads[9].b, 0.0f);
    EXPECT_EQ(quads[1].x - quads[9].x, 30.0f);
    EXPECT_EQ(quads[1].y - quads[9].y, 40.0f);
    EXPECT_GT(quads[5].ux, quads[9].ux + 6.0f) << "the softened glyph reaches further";
    EXPECT_NEAR(quads[5].x + quads[5].ux / 2, quads[9].x + quads[9].ux / 2, 1.0f);
    EXPECT_EQ(quads[13].r, 1.0f);
    EXPECT_EQ(quads[13].vy, 3.0f);
    EXPECT_EQ(quads[13].ux, static_cast<float>(width));
    float const top = quads[13].y, glyphTop = quads[9].y + 1.0f;
    EXPECT_GT(top, glyphTop);
    EXPECT_LT(top, 100.0f);
    string.lineThroughOffset = -3;
    string.redraw(-1.0f);
    paint([&] { draw(string); });
    EXPECT_EQ(canvas.quads.at(13).y, top + 5.0f) << "its offset counts upwards";

    string.bkgColor.a() = string.shadowColor.a() = string.blurColor.a() = string.lineThroughColor.a() = 0.0f;
    paint([&] { string.draw(shader(), osg::Vec4f(0.5f, 0, 0, 1), -1.0f); });
    ASSERT_EQ(canvas.quads.size(), 4u);
    EXPECT_EQ(canvas.quads[0].r, 0.5f);
}

TEST_F(TextStrings, EveryTextOfAPageShowsItsOwnGlyphs) {
    std::vector<unsigned char> before;
    for (int round = 0; round < 2; ++round) {
        // Between the rounds the pages fill with other glyphs.
        paint([&] { draw(make(font("Inter", 16), L"Identity @#%&", 10, 40)); });
        if (round) {
            EXPECT_EQ(canvas.pixels, before);
        }
        before = canvas.pixels;
        for (int size = 20; size < 60; size += 3)
            paint([&] { draw(make(font("Inter Bold", size), L"ABCDEFGHIJKLMNOPQRSTUVWXYZ", 10, 90)); });
    }
    EXPECT_GE(library().getPageCount(), 1);
}

TEST_F(TextStrings, MissingCharactersComeFromAnotherShippedFont) {
    auto const inter = font("Inter", 30), other = font("DejaVu Sans", 30);
    paint([&] { draw(make(other, L"\u2603", 10, 60)); });
    std::vector<unsigned char> const snowman = canvas.pixels;
    paint([&] { draw(make(inter, L"\u2603", 10, 60)); });
    EXPECT_EQ(canvas.pixels, snowman);
    EXPECT_EQ(inter->getTextWidth(L"\u2603", -1.0f), other->getTextWidth(L"\u2603", -1.0f));
    // Joined letters are narrower than the same letters apart, and stand in the order of their script.
    EXPECT_NE(other->getTextWidth(L"\u0647\u0647\u0647", -1.0f), 3 * other->getTextWidth(L"\u0647", -1.0f));
}

TEST_F(TextStrings, MarksStandOverTheirBase) {
    // No font has one glyph for these two.
    vtxTextString const string = make(font("DejaVu Sans", 40), L"nq\u0308", 10, 100);
    auto const& quads = string.quads.getQuads();
    ASSERT_EQ(quads.size(), 3u);
    EXPECT_NEAR(quads[2].x + quads[2].w / 2, quads[1].x + quads[1].w / 2, 4.0f);
    EXPECT_LT(quads[2].y, quads[1].y);
}

TEST_F(TextStrings, ACopyOutlivesItsSourceAndTheFont) {
    vtxTextString copy;
    {
        vtxTextString const source = make(font("Inter", 18), L"survivor", 10, 40);
        copy = source;
    }
    paint([&] { draw(copy); });
    std::vector<unsigned char> const before = canvas.pixels;
    for (int i = 0; i < 1000; ++i)
        fonts().doRedraw();
    paint([&] { draw(copy); });
    EXPECT_EQ(canvas.pixels, before);
    EXPECT_EQ(library().getFontCount(), 1);
}

TEST_F(TextStrings, AStringForAnotherScaleBuildsItselfWhenDrawn) {
    vtxTextString const string = make(font("Inter", 14), L"Scaled", 10, 40);
    vtxTextString const copy = string;
    for (float const scale : {2.0f, 1.0f}) {
        vtxRenderer::get()->setScale(scale);
        paint([&] { draw(make(font("Inter", 14), L"Scaled", 10, 40)); });
        vtxQuadInstance const& quad = canvas.quads.at(0);
        EXPECT_NEAR(quad.ux, (quad.uMax - quad.uMin) * 1024.0f, 1e-3f) << "a texel a pixel";
        EXPECT_NEAR(quad.vy - 2.0f, 14.0f * 0.75f * scale, 1.5f);
        std::vector<unsigned char> const fresh = canvas.pixels;
        paint([&] { draw(string); });
        EXPECT_EQ(canvas.pixels, fresh);
        paint([&] { draw(copy); });
        EXPECT_EQ(canvas.pixels, fresh);
    }
    vtxTextString const never;
    paint([&] { draw(never); });
    EXPECT_TRUE(canvas.quads.empty());
}

TEST_F(TextStrings, PagesGoWhenNobodyShowsTheirGlyphs) {
    {
        vtxTextString held = make(font("Inter", 30), L"held", 10, 40);
        for (int size = 100; size < 140; size += 2)
            make(font("Inter", size), L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnop", 0, 0);
        EXPECT_GT(library().getPageCount(), 3);
        for (int i = 0; i < 1000; ++i)
            fonts().doRedraw();
        EXPECT_EQ(library().getPageCount(), 1);
        paint([&] { draw(held); });
        EXPECT_EQ(canvas.quads.size(), 4u);
    }
    for (int i = 0; i < 1000; ++i)
        fonts().doRedraw();
    EXPECT_EQ(library().getPageCount(), 0);
    EXPECT_EQ(library().getFontCount(), 0);
}

TEST_F(TextStrings, HugeGlyphsAreStretchedToTheirSize) {
    auto const inter = font("Inter", 1500);
    vtxTextString const string = make(inter, L"M", 0, 0);
    ASSERT_EQ(string.quads.getQuads().size(), 1u);
    EXPECT_NEAR(string.quads.getQuads()[0].h, 1500 * 0.727, 20.0);
    EXPECT_LT(string.quads.getQuads()[0].w, static_cast<float>(inter->getTextWidth(L"M", -1.0f)) + 20.0f);
}

}  // namespace
