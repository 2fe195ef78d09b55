#include <string>

#include <gtest/gtest.h>

#include "gui_lib/base/textutil.h"
#include "gui_lib/frame/GUI.h"
#include "platform/qor/Utf8.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TestHost.h"

namespace {

using Tokens = qor::vector<qor::basic_string<wchar_t>>;

std::string narrow(std::wstring_view text) { return std::string(qor::wchar_to_utf8(text)); }

std::string join(Tokens const& tokens) {
    std::string all;
    for (auto const& token : tokens)
        all += narrow(token) + "|";
    return all;
}

std::string tokens(std::wstring_view text, bool keepSeparators, bool keepLastEmpty) {
    Tokens result;
    textutil::getTokens(
        text, [](wchar_t c) { return c == L','; }, keepSeparators, keepLastEmpty, result);
    return join(result);
}

/// Lines as "text:width;", each character one unit wide, but wide ones three.
std::string wrap(std::wstring_view text, int maxWidth) {
    std::string lines;
    auto const measure = [](wchar_t const* start, int length) {
        int width = 0;
        for (int i = 0; i < length; ++i)
            width += start[i] == L'W' ? 3 : 1;
        return width;
    };
    textutil::wrapText(text.data(), static_cast<int>(text.size()), measure, maxWidth,
                       [&](qor::basic_string<wchar_t> const& line, int width) {
                           lines += narrow(line) + ":" + std::to_string(width) + ";";
                       });
    return lines;
}

/// Blocks as "text{name=value,}" with "$" where the line ends.
std::string parse(std::wstring_view text) {
    qor::set<qor::basic_string<wchar_t>> const tags = {L"color", L"b", L"font", L"=x"};
    qor::list<textutil::TextBlock> blocks;
    textutil::parseText(qor::basic_string<wchar_t>(text), tags, blocks);
    std::string all;
    for (auto const& block : blocks) {
        all += narrow(block.text) + "{";
        for (auto const& tag : tags) {
            auto const found = block.attributes.find(tag);
            if (found != block.attributes.end())
                all += narrow(found->first) + "=" + narrow(found->second) + ",";
        }
        all += block.endsLine ? "}$" : "}";
    }
    return all;
}

TEST(TextUtil, tokensKeepOrDropSeparatorsAndTheLastEmptyOne) {
    EXPECT_EQ(tokens(L"ab,cd", true, false), "ab,|cd|");
    EXPECT_EQ(tokens(L"ab,cd", false, false), "ab|cd|");
    EXPECT_EQ(tokens(L",,", false, false), "||");
    EXPECT_EQ(tokens(L",,", false, true), "|||");
    EXPECT_EQ(tokens(L"a,", true, true), "a,||");
    EXPECT_EQ(tokens(L"", true, false), "");
    EXPECT_EQ(tokens(L"", true, true), "|");
}

TEST(TextUtil, aNestedDivisionIsLoggedAndServed) {
    support::LogCapture log;
    static Tokens inner;
    inner.clear();
    Tokens outer;
    auto const nested = [](wchar_t c) {
        textutil::getTokens(
            L"x y", [](wchar_t d) { return d == L' '; }, false, false, inner);
        return c == L',';
    };
    textutil::getTokens(L"a,b", nested, false, false, outer);
    EXPECT_EQ(join(outer), "a|b|");
    EXPECT_EQ(inner.size(), 6u);
    // The inner call clears the mark, so that only the first is told.
    EXPECT_EQ(log.count("Function textutil::getTokens() called from itself!"), 1u) << log.dump();
}

TEST(TextUtil, wordsBreakBehindSeparatorsOnly) {
    for (wchar_t c : std::wstring_view(L"\n !%'*+,-./:;=?\\|\u2013\u3000\u4E2D\uFAFE\U0001F600"))
        EXPECT_TRUE(textutil::isSymbolWordSeparator(c)) << static_cast<unsigned>(c);
    for (wchar_t c : std::wstring_view(L"a0\"()[]<>_&#@\t\r\u2014\u00A0\u2FFF\uFAFF\uFFFD"))
        EXPECT_FALSE(textutil::isSymbolWordSeparator(c)) << static_cast<unsigned>(c);
    EXPECT_TRUE(textutil::isEOL(L'\n'));
    EXPECT_FALSE(textutil::isEOL(L'\r'));
}

TEST(TextUtil, wrappingFillsLinesAndKeepsSeparators) {
    EXPECT_EQ(wrap(L"", 10), ":0;");
    EXPECT_EQ(wrap(L"one two", 10), "one two:7;");
    EXPECT_EQ(wrap(L"one two six", 8), "one two :8;six:3;");
    EXPECT_EQ(wrap(L"one two six", 7), "one :4;two six:7;");
    EXPECT_EQ(wrap(L"\u4E2D\u4E2D\u4E2D", 2), "\u4E2D\u4E2D:2;\u4E2D:1;");
    EXPECT_EQ(wrap(L"a\U0001F600b", 2), "a\U0001F600:2;b:1;");
}

TEST(TextUtil, aFirstWordAsWideAsTheLineStandsAlone) {
    EXPECT_EQ(wrap(L"abc d", 4), "abc :4;d:1;");
    EXPECT_EQ(wrap(L"ab c d", 4), "ab :3;c d:3;");
    EXPECT_EQ(wrap(L"x W y", 2), "x :2;W :4;y:1;");
    EXPECT_EQ(wrap(L"ab ", 3), "ab :3;:0;");
    EXPECT_EQ(wrap(L"a b ", 0), "a :2;b :2;:0;");
    EXPECT_EQ(wrap(L"", 0), ":0;");
}

TEST(TextUtil, markupOpensAndClosesTags) {
    EXPECT_EQ(parse(L"plain"), "plain{}");
    EXPECT_EQ(parse(L"[color=red]a[/color]b"), "a{color=red,}b{}");
    EXPECT_EQ(parse(L"[color=red][font=x]a"), "a{color=red,font=x,}");
    EXPECT_EQ(parse(L"x[b]y[color=1]z[/b=9]w"), "x{}y{b=,}z{b=,color=1,}w{color=1,}");
    EXPECT_EQ(parse(L"[color=1]a[color=2]b[/color]c[/color]d"), "a{color=1,}b{color=2,}c{}d{}");
    EXPECT_EQ(parse(L"[color=a=b]x"), "x{color=a=b,}");
    EXPECT_EQ(parse(L"[=x]a"), "a{=x=,}");
    EXPECT_EQ(parse(L"a[b]"), "a{}{b=,}");
}

TEST(TextUtil, whatIsNoTagStaysText) {
    EXPECT_EQ(parse(L"[]"), "[]{}");
    EXPECT_EQ(parse(L"[unknown]"), "[unknown]{}");
    EXPECT_EQ(parse(L"[Color=1]x"), "[Color=1]x{}");
    EXPECT_EQ(parse(L"[b"), "[b{}");
    EXPECT_EQ(parse(L"abc["), "abc[{}");
    EXPECT_EQ(parse(L"a]b"), "a]b{}");
    EXPECT_EQ(parse(L"[x[b]y"), "[x{}y{b=,}");
    EXPECT_EQ(parse(L"[/]a[=]"), "[/]a[=]{}");
    EXPECT_EQ(parse(L"[colors=longer than any]"), "[colors=longer than any]{}");
}

TEST(TextUtil, lineFeedsEndBlocksAndKeepTagsOpen) {
    EXPECT_EQ(parse(L"a\nb"), "a{}$b{}");
    EXPECT_EQ(parse(L"[b]a\n\nc[/b]\n"), "a{b=,}${b=,}$c{b=,}{}${}");
    EXPECT_EQ(parse(L""), "{}");
}

TEST(TextUtil, markupOfBracketsAloneStaysLinear) {
    qor::basic_string<wchar_t> text(200'000, L'[');
    text += L"]";
    qor::list<textutil::TextBlock> blocks;
    textutil::parseText(text, {L"b"}, blocks);
    ASSERT_EQ(blocks.size(), 1u);
    EXPECT_EQ(blocks.front().text, text);
}

TEST(TextUtil, cleaningRemovesEveryOccurrence) {
    qor::basic_string<wchar_t> text = L"\ra\r\nb\r";
    textutil::cleanupText(text, L'\r');
    EXPECT_EQ(text, L"a\nb");
}

TEST(TextUtil, tabsBecomeRunsOfTheSetLengthWhateverTheirColumn) {
    EXPECT_TRUE(textutil::getTextHasTabs(L"a\tb"));
    EXPECT_FALSE(textutil::getTextHasTabs(L"a b"));
    support::TestHost const host;
    gui::GUI* const gui = gui::GUI::get();
    gui->setTabSpacesCount(3);
    EXPECT_EQ(textutil::replaceTabsBySpaces(L"\ta\t\tb"), L"   a      b");
    gui->setTabSpacesCount(200);
    EXPECT_EQ(textutil::replaceTabsBySpaces(L"a\t").size(), 201u);
    gui->setTabSpacesCount(0);
    EXPECT_EQ(textutil::replaceTabsBySpaces(L"\ta\tb"), L"ab");
}

TEST(TextUtil, onlyPastedQuotationMarksAreMadePlain) {
    support::TestHost host;
    textutil::copyTextToClipboard(L"\u00ABa\u00BB \u00B4b\r\n");
    EXPECT_EQ(host.app().clipboard, L"\u00ABa\u00BB \u00B4b\r\n");
    EXPECT_EQ(textutil::getTextFromClipboard(), L"\"a\" 'b\r\n");
}

}  // namespace
