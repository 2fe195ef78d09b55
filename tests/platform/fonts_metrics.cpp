#include <gtest/gtest.h>

#include "platform/qor/Memory.h"
#include "platform/qor/Paths.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxFontLibrary.h"
#include "tests/platform/RendererFixture.h"
#include "tests/support/LogCapture.h"

#include <cstdlib>
#include <string>

namespace {

class Fonts : public RendererFixture {
protected:
    static int width(std::shared_ptr<vtxFont> const& font, std::wstring_view text) {
        return font->getTextWidth(text, -1.0f);
    }
};

TEST_F(Fonts, WidthsAreWholeUnitsThatNoScaleChanges) {
    auto const inter = font("Inter", 14);
    qor::wstring const text = L"The quick brown fox, AVATAR To. e\u0301\u0308 \u05E9\u05DC\u05D5\u05DD \u2603";
    int const once = width(inter, text);
    EXPECT_GT(once, 200);
    for (float const scale : {1.0f, 1.5f, 2.0f, 0.75f}) {
        vtxRenderer::get()->setScale(scale);
        fonts().doRedraw();
        EXPECT_EQ(width(font("Inter", 14), text), once);
        EXPECT_EQ(inter->getTextWidth(text, 1.0f), once);
        EXPECT_EQ(font("Inter", 14)->getAscender(), inter->getAscender());
    }
}

TEST_F(Fonts, TheWidthOfATextIsThatOfItsPartsButForKerning) {
    auto const inter = font("Inter", 100);
    EXPECT_NEAR(width(inter, L"hello world"), width(inter, L"hello") + width(inter, L" world"), 3);
    EXPECT_LT(width(inter, L"AV") + 2, width(inter, L"A") + width(inter, L"V"));
    EXPECT_NEAR(width(inter, L"AVAVAV") - width(inter, L"AVAV"), width(inter, L"AVAV") - width(inter, L"AV"), 1);
    EXPECT_NEAR(width(inter, L"fi"), width(inter, L"f") + width(inter, L"i"), 6) << "no ligature joins letters";
}

TEST_F(Fonts, AVeryLongTextIsAsWideAsItsPiecesTogether) {
    auto const mono = font("JetBrains Mono", 10);
    double const one = width(mono, qor::wstring(1000, L'x')) / 1000.0;
    EXPECT_NEAR(width(mono, qor::wstring(100000, L'x')), one * 100000.0, 51.0);
    auto const inter = font("Inter", 10);
    qor::wstring shaped;
    while (shaped.size() < 100000)
        shaped += L"e\u0301\u0645\u0631\u062D\u0628\u0627 ";
    EXPECT_GT(width(inter, shaped), 100000);
}

TEST_F(Fonts, ControlCharactersTakeNoRoomAndMarksNoneOfTheirOwn) {
    auto const inter = font("Inter", 40);
    EXPECT_EQ(width(inter, L"\t\n\r\x01\x7F\x85\u200B\uFEFF"), 0);
    EXPECT_EQ(width(inter, L"a\tb"), width(inter, L"a\nb"));
    EXPECT_NEAR(width(inter, L"a\tb"), width(inter, L"a") + width(inter, L"b"), 1);
    EXPECT_NEAR(width(inter, L"e\u0301"), width(inter, L"e"), 1);
    EXPECT_NEAR(width(inter, L"x\u0301y"), width(inter, L"xy"), 2);
    wchar_t const wrong[] = {wchar_t(0xD800), wchar_t(0x110000), wchar_t(-1), 0};
    EXPECT_NEAR(width(inter, wrong), 3 * width(inter, L"\uFFFD"), 1);
}

TEST_F(Fonts, LinesHoldEveryRowOfTheirGlyphs) {
    for (int size = 1; size < 60; ++size) {
        auto const inter = font("Inter", size);
        EXPECT_GT(inter->getAscender(), 0);
        EXPECT_LT(inter->getDescender(), 0);
        EXPECT_GE(inter->getLineHeight(), inter->getAscender() - inter->getDescender());
        EXPECT_NEAR(inter->getAscender() - inter->getDescender(), size * 1.21, 2.0);
    }
}

TEST_F(Fonts, MeasuringWhatWasSeenAllocatesNothing) {
    qor::string const name = "fonts/Inter-Regular.otf";
    qor::wstring const text = L"Steady: AVATAR e\u0301 \u05E9\u05DC\u05D5\u05DD \u2603 \u0416";
    fonts().getFont(name, 13, vtxFont::BlurNone)->getTextWidth(text, -1.0f);
    qor::ForbidAllocations const forbid;
    qor::AllocationScope const scope;
    for (int i = 0; i < 3; ++i) {
        fonts().getFont(name, 13, vtxFont::BlurNone)->getTextWidth(text, -1.0f);
        fonts().doRedraw();
    }
    EXPECT_EQ(scope.getCount(), 0u);
}

TEST_F(Fonts, AFontIsFoundByFileAndByFamilyWithStyleWords) {
    auto const bold = font("fonts/Inter-Bold.otf", 50);
    auto const regular = font("Inter", 50);
    int const wide = width(bold, L"mmmm"), narrow = width(regular, L"mmmm");
    ASSERT_NE(wide, narrow);
    for (char const* const name :
         {"Inter Bold", "inter bold", "Inter-Bold.otf", "fonts\\Inter-Bold.otf", "Inter Extra Bold", "InterBold"}) {
        EXPECT_EQ(width(font(name, 50), L"mmmm"), wide) << name;
    }
    for (char const* const name : {"Inter Regular", "INTER", "Inter-Regular.otf"})
        EXPECT_EQ(width(font(name, 50), L"mmmm"), narrow) << name;
    int const semi = width(font("Inter-SemiBold.otf", 50), L"mmmm");
    EXPECT_EQ(width(font("Inter SemiBold", 50), L"mmmm"), semi);
    EXPECT_EQ(width(font("Inter Semi Bold", 50), L"mmmm"), semi);
    EXPECT_EQ(font("sans-serif", 50), regular);
    EXPECT_EQ(font("monospace", 50), font("JetBrains Mono", 50));
    EXPECT_EQ(font("Inter", 50), regular) << "one object for one font";
}

TEST_F(Fonts, AnUnknownNameGivesAShippedFontAndOneLine) {
    write("broken.ttf", "nonsense");
    support::LogCapture log;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(width(font("No Such Family Bold", 50), L"mmmm"), width(font("Inter Bold", 50), L"mmmm"));
        EXPECT_EQ(width(font("fonts/nothing.ttf", 50), L"mmmm"), width(font("Inter", 50), L"mmmm"));
        EXPECT_NE(font("broken.ttf", 50), nullptr);
        EXPECT_EQ(font("", 50), nullptr);
        EXPECT_EQ(font("Inter", 0), nullptr);
        EXPECT_EQ(font("Inter", -7), nullptr);
    }
    EXPECT_EQ(log.count("No Such Family Bold"), 1u);
    EXPECT_EQ(log.count("nothing.ttf"), 1u);
    EXPECT_EQ(log.count("broken.ttf"), 1u);
    EXPECT_EQ(log.getLines().size(), 3u) << log.dump();
}

TEST_F(Fonts, WithoutAnyFontThereIsNoneUntilOneIsShipped) {
    qor::vector<qor::string> const roots = qor::getAssetRoots();
    qor::setAssetRoots({});
    support::LogCapture log;
    EXPECT_EQ(font("Some Family", 12), nullptr);
    EXPECT_EQ(font("Some Family", 14), nullptr);
    EXPECT_EQ(log.getLines().size(), 1u) << log.dump();
    qor::setAssetRoots(roots);
    EXPECT_NE(font("Some Family", 12), nullptr);
}

TEST_F(Fonts, FontsOutliveTheRenderer) {
    auto const inter = font("Inter", 20);
    int const before = width(inter, L"still here");
    vtxRenderer::destroy();
    EXPECT_EQ(width(inter, L"still here"), before);
    vtxRenderer::create(std::make_unique<PaintDevice>(canvas));
}

}  // namespace
