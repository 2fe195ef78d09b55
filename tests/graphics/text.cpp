#include "gui_lib/Skin/Text.h"

#include <cmath>
#include <random>

#include "gui_lib/graphics/GraphicCommands.h"
#include "platform/qor/Utf8.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTextString.h"
#include "tests/graphics/TraceFixture.h"
#include "tests/support/HeapScope.h"

namespace {

using gui::Align;
using gui::Align2;
using gui::Insets;
using gui::Text;

class TextDrawing : public TraceFixture {
protected:
    void SetUp() override {
        TraceFixture::SetUp();
        info.font = "assets/fonts/DejaVuSans.ttf";
        info.fontSize = 16;
        info.align = Align2(Align(Align::Min, 0), Align(Align::Min, 0));
        font = vtxRenderer::get()->getFontManager()->getFont(info.font, info.fontSize, info.blur);
        ASSERT_TRUE(font);
        height = font->getLineHeight();
    }
    void TearDown() override {
        font.reset();
        TraceFixture::TearDown();
    }

    int width(std::wstring_view text) const { return font->getTextWidth(text, -1.0f); }

    /// Lines as "one|two|".
    std::string lines(Text& text, wchar_t const* content, osg::Vec2i const& size) {
        text.set(info);
        text.redraw(content, size, false);
        std::string all;
        for (auto const& line : text.getTextLines())
            all += std::string(qor::wchar_to_utf8(line)) + "|";
        return all;
    }

    /// What one line of the info's style draws with its baseline at the place.
    void drawLine(wchar_t const* content, int x, int y) {
        vtxTextString string;
        string.font = font;
        string.text = content;
        string.color = info.color;
        string.bkgColor = info.bkgColor;
        string.shadowColor = info.shadowColor;
        string.shadowOffset = info.shadowOffset;
        string.lineThroughColor = info.lineThroughColor;
        string.lineThroughHeight = info.lineThroughHeight;
        string.lineThroughOffset = info.lineThroughOffset;
        string.position.set(x, y);
        string.redraw(-1.0f);
        string.draw(vtxRenderer::get()->getShader(), -1.0f);
    }

    Text::Info info;
    std::shared_ptr<vtxFont> font;
    int height = 0;
};

TEST_F(TextDrawing, linesEndAtLineFeedsOnlyWhereTextWraps) {
    Text text;
    osg::Vec2i const size(500, 100);
    EXPECT_EQ(lines(text, L"a\nb", size), "a|");
    EXPECT_EQ(lines(text, L"\nb", size), "|");
    EXPECT_EQ(lines(text, L"", size), "|");
    text.setWrapping(true);
    EXPECT_EQ(lines(text, L"", size), "|");
    EXPECT_EQ(text.getLineCount(), 1);
    EXPECT_EQ(operationsRecorded([&](gui::GraphicCommands& list) { text.make(&list); }), "");
    EXPECT_EQ(lines(text, L"abc\n", size), "abc||");
    EXPECT_EQ(lines(text, L"a\n\nb", size), "a||b|");
    EXPECT_EQ(lines(text, L"one two", osg::Vec2i(width(L"one two") - 1, 100)), "one |two|");
    text.setInsets(Insets{3, 0, 4, 0});
    info.align.setHorzAlign(Align(Align::Min, 5));
    EXPECT_EQ(lines(text, L"one two", osg::Vec2i(width(L"one ") + width(L"two") + 12, 100)), "one two|");
    EXPECT_EQ(lines(text, L"one two", osg::Vec2i(width(L"one ") + width(L"two") + 11, 100)), "one |two|");
}

TEST_F(TextDrawing, ellipsisEqualsTakingAwayCharacterByCharacter) {
    auto const literal = [&](std::wstring line, int available) {
        if (width(line) <= available)
            return line;
        line += L"...";
        while (line.size() > 3 && width(line) > available)
            line.erase(line.size() - 4, 1);
        return line;
    };
    wchar_t const* const samples[] = {L"The quick brown fox",
                                      L"AVAVAVATATToToLTLTYoYo",
                                      L"iiiiiillllll.....",
                                      L"a\u0301e\u0301i\u0301o\u0301u\u0301",
                                      L"\u200B\u200B\u200B\u200Bx\u200B\u200B",
                                      L"W"};
    Text text;
    text.setUseEllipsis(true);
    for (wchar_t const* sample : samples) {
        for (int available = -3; available <= width(sample) + 2; ++available) {
            lines(text, sample, osg::Vec2i(available, 20));
            ASSERT_EQ(text.getTextLines().size(), 1u);
            EXPECT_EQ(std::wstring(text.getTextLines()[0].c_str()), literal(sample, available)) << available;
        }
    }
}

TEST_F(TextDrawing, ellipsisOfALongLineIsFoundQuickly) {
    Text text;
    text.setUseEllipsis(true);
    qor::basic_string<wchar_t> const content(20'000, L'm');
    text.set(info);
    text.redraw(content, osg::Vec2i(10'000 * width(L"m"), 20), false);
    EXPECT_GT(text.getTextLines()[0].size(), 9'000u);
}

TEST_F(TextDrawing, sizeIsThatOfTheLinesWithTheOffsets) {
    Text text;
    text.setWrapping(true);
    info.lineHeight = 20;
    text.set(info);
    int const glyphs = font->getAscender() - font->getDescender();
    EXPECT_EQ(text.calcSize(L"longword\nx", osg::Vec2i(500, 0)), osg::Vec2i(width(L"longword"), 20 + glyphs));
    info.align = Align2(Align(Align::Max, -7), Align(Align::Center, 3));
    text.set(info);
    EXPECT_EQ(text.calcSize(L"x", osg::Vec2i(500, 0)), osg::Vec2i(width(L"x") + 7, glyphs + 3));
    EXPECT_EQ(text.calcSize(L"", osg::Vec2i(500, 0)), osg::Vec2i(0, 0));
    EXPECT_EQ(text.calcLineHeight(), 20);
    text.setLineHeight(0);
    EXPECT_EQ(text.calcLineHeight(), height);
    text.setFont("", 16, vtxFont::BlurNone);
    EXPECT_EQ(text.calcSize(L"x", osg::Vec2i(500, 0)), osg::Vec2i(0, 0));
}

TEST_F(TextDrawing, blocksAreAlignedVerticallyAndLinesHorizontally) {
    info.align = Align2(Align(Align::Max, -2), Align(Align::Center, 1));
    info.bkgColor.set(0, 0, 1, 1);
    info.shadowColor.set(1, 0, 0, 1);
    info.shadowOffset.set(2, 1);
    info.lineThroughColor.set(0, 1, 0, 1);
    Insets const insets{10, 20, 30, 40};
    osg::Vec2i const size(400, 300);
    Text text;
    text.setWrapping(true);
    text.setInsets(insets);
    lines(text, L"a wider line\nshort", size);
    text.doRedraw();

    int const top = 1 + (240 - 2 * height) / 2 + 20 + font->getAscender();
    auto const left = [&](wchar_t const* line) { return 10 - 2 + 360 - width(line); };
    std::string const expected = quads([&] {
        drawLine(L"a wider line", left(L"a wider line"), top);
        drawLine(L"short", left(L"short"), top + height);
    });
    EXPECT_NE(expected, "");
    EXPECT_EQ(quads([&] { text.draw(); }), expected);
    EXPECT_EQ(quadsRecorded([&](gui::GraphicCommands& list) { text.make(&list); }), expected);

    info.align = Align2(Align(Align::Stretch, 5), Align(Align::Min, 0));
    lines(text, L"x", size);
    text.doRedraw();
    EXPECT_EQ(quads([&] { text.draw(); }), quads([&] { drawLine(L"x", 10, 20 + font->getAscender()); }));
    osg::Vec4f const red(1, 0, 0, 1);
    std::string const recolored = quads([&] { text.draw(red); });
    EXPECT_NE(recolored, quads([&] { text.draw(); }));
    EXPECT_EQ(quadsRecorded([&](gui::GraphicCommands& list) { text.make(&list, red); }), recolored);
}

TEST_F(TextDrawing, linesBelowTheBoxHaveNoStrings) {
    info.lineHeight = 20;
    wchar_t const* const five = L"1\n2\n3\n4\n5";
    struct Case {
        int boxHeight;
        bool deleteInvisible;
        int count;
    };
    for (Case const& c : {Case{30, true, 2}, Case{30, false, 2}, Case{100, true, 5}, Case{0, true, 5}}) {
        Text text;
        text.setWrapping(true);
        text.set(info);
        text.redraw(five, osg::Vec2i(100, c.boxHeight), c.deleteInvisible);
        EXPECT_EQ(text.getLineCount(), c.count) << c.boxHeight;
        EXPECT_EQ(text.getTextLines().size(), 5u);
    }
    Text text;
    text.setWrapping(true);
    text.set(info);
    text.redraw(five, osg::Vec2i(100, 100), true);
    text.setDirty(true);
    text.redraw(five, osg::Vec2i(100, 45), true);
    EXPECT_EQ(text.getLineCount(), 3);
    text.setDirty(true);
    text.redraw(L"1\n2\n3\n4", osg::Vec2i(100, 20), true);
    EXPECT_EQ(text.getLineCount(), 4);
}

TEST_F(TextDrawing, withoutAFontNothingIsLeft) {
    Text text;
    lines(text, L"abc", osg::Vec2i(100, 20));
    EXPECT_EQ(text.getLineCount(), 1);
    text.setFont("", 16, vtxFont::BlurNone);
    text.redraw(L"abc", osg::Vec2i(100, 20), false);
    EXPECT_EQ(text.getLineCount(), 0);
    lines(text, L"abc", osg::Vec2i(100, 20));
    EXPECT_EQ(text.getLineCount(), 1);
}

TEST_F(TextDrawing, equalInputKeepsTheStrings) {
    Text text;
    text.setWrapping(true);
    qor::basic_string<wchar_t> const content = L"some words that are longer than one line";
    auto const layOut = [&] {
        text.set(info);
        text.redraw(content, osg::Vec2i(100, 45), true);
        text.doRedraw();
    };
    layOut();
    int const count = text.getLineCount();
    std::string const before = quads([&] { text.draw(); });
    {
        support::HeapScope const heap;
        layOut();
        EXPECT_EQ(heap.getAllocations(), 0u);
    }
    EXPECT_EQ(text.getLineCount(), count);
    EXPECT_EQ(quads([&] { text.draw(); }), before);
    info.color.set(1, 0, 0, 1);
    layOut();
    EXPECT_NE(quads([&] { text.draw(); }).find("color 1 0 0 1"), std::string::npos);
}

TEST_F(TextDrawing, aTextThatChangesBitByBitDrawsAsOneMadeNew) {
    std::mt19937 random(7);
    auto const pick = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    auto const pickColor = [&] { return osg::Vec4f(pick(3) * 0.5f, 1, 0, pick(3) * 0.5f); };
    wchar_t const* const contents[] = {L"Words in a line", L"AV e\u0301\u0416 A\tV", L"two\nlines", L""};
    qor::basic_string<wchar_t> content = contents[0];
    // High enough for all lines: how many strings there are below a box depends on what was there before.
    osg::Vec2i size(100, 900);
    bool wrapping = false;
    bool ellipsis = false;
    Text kept;
    auto const layOut = [&](Text& text) {
        text.setWrapping(wrapping);
        text.setUseEllipsis(ellipsis);
        text.set(info);
        text.redraw(content, size, false);
        text.doRedraw();
        return quads([&] { text.draw(); });
    };
    osg::Vec4f* const colors[] = {&info.color, &info.bkgColor, &info.shadowColor, &info.lineThroughColor};
    for (int round = 0; round < 1000; ++round) {
        switch (pick(14)) {
            case 0:
                content = contents[pick(4)];
                break;
            case 1:
            case 2:
                size.x() = 20 + pick(3) * 60;
                break;
            case 3:
                size.y() = 900 + pick(3);
                break;
            case 4:
                wrapping = !wrapping;
                break;
            case 5:
                ellipsis = !ellipsis;
                break;
            case 6:
                if (!content.empty())
                    content[static_cast<std::size_t>(pick(static_cast<int>(content.size())))] = L'a' + pick(26);
                break;
            case 7:
                info.align = Align2(Align(Align::Type(pick(3)), pick(2)), Align(Align::Type(pick(3)), 0));
                break;
            case 8:
                info.shadowOffset.set(pick(3), 1), info.lineThroughOffset = pick(3);
                break;
            case 9:
                info.fontSize = 14 + pick(3);
                break;
            default:
                *colors[pick(4)] = pickColor();
                break;
        }
        Text fresh;
        ASSERT_EQ(layOut(kept), layOut(fresh)) << "round " << round;
    }
}

TEST_F(TextDrawing, aChangeOfScaleLaysTheTextOutAnew) {
    info.fontSize = 11;
    info.align.setHorzAlign(Align(Align::Max, 0));
    qor::basic_string<wchar_t> const content = L"illicit willow";
    osg::Vec2i const size(200, 20);
    Text kept;
    auto const layOut = [&](Text& text) {
        text.set(info);
        text.redraw(content, size, false);
        text.doRedraw();
        return quads([&] { text.draw(); });
    };
    for (float scale : {1.0f, 1.25f, 1.5f, 1.75f, 2.0f, 1.0f}) {
        vtxRenderer::get()->setScale(scale);
        Text fresh;
        EXPECT_EQ(layOut(kept), layOut(fresh)) << scale;
    }
}

}  // namespace
