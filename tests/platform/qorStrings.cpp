#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "platform/osg/RectImpl.h"
#include "platform/qor/Containers.h"
#include "platform/qor/Truncate.h"
#include "platform/qor/Utf8.h"

namespace {

using Rect = osg::RectImpl<osg::Vec2i>;

TEST(QorString, formatsTextOfAnyLengthAndArgumentsFromTheStringItself) {
    qor::string text = "base";
    text.format("%s-%d-%s", text.c_str(), 7, qor::string(5000, 'x').c_str());
    EXPECT_EQ(text, "base-7-" + qor::string(5000, 'x'));

    qor::wstring wide = L"ж";
    wide.format(L"%ls|%s|%ls", wide.c_str(), "narrow", qor::wstring(5000, L'я').c_str());
    EXPECT_EQ(wide, L"ж|narrow|" + qor::wstring(5000, L'я'));
}

TEST(QorString, leavesNothingWhereTheFormatIsRefused) {
    qor::wstring wide = L"before";
    char const notText[] = {char(0xFF), char(0xFE), 0};
    wide.format(L"%s", notText);
    EXPECT_TRUE(wide.empty());
}

TEST(QorString, isFoundInHashMapsByViewAndLiteral) {
    qor::hash_map<qor::string, int> numbers;
    numbers["one"] = 1;
    numbers[qor::string(100, 'k')] = 2;
    EXPECT_NE(numbers.find(std::string_view("one")), numbers.end());
    EXPECT_NE(numbers.find("one"), numbers.end());
    EXPECT_EQ(numbers.find(qor::string(100, 'k'))->second, 2);
    EXPECT_EQ(numbers.find("two"), numbers.end());
}

TEST(Fnv, givesThePublishedValues) {
    EXPECT_EQ(qor::fnv1a("", 0), 0xcbf29ce484222325ULL);
    EXPECT_EQ(qor::fnv1a("a", 1), 0xaf63dc4c8601ec8cULL);
    EXPECT_EQ(qor::fnv1a("foobar", 6), 0x85944171f73967e8ULL);
}

TEST(Utf8, decodesWellFormedTextToOneElementACodePoint) {
    EXPECT_EQ(qor::utf8_to_wchar("aé€\U0001F600"), L"aé€\U0001F600");
    EXPECT_EQ(qor::utf8_to_wchar(std::string_view("a\0b", 3)), qor::wstring(L"a\0b", 3));
    EXPECT_EQ(qor::utf8_to_wchar("\xF4\x8F\xBF\xBF"), L"\U0010FFFF");
    qor::wstring result = L"old";
    qor::iconv_utf8_to_wchar(nullptr, result);
    EXPECT_TRUE(result.empty());
}

TEST(Utf8, replacesEachLongestWrongPieceByOneMark) {
    struct Case {
        char const* bytes;
        wchar_t const* expected;
    };
    for (Case const& each : {
             Case{"\x80", L"\uFFFD"},                                // stray tail
             Case{"a\xFFz", L"a\uFFFDz"},                            // no such byte
             Case{"\xC0\xAF", L"\uFFFD\uFFFD"},                      // overlong
             Case{"\xE2\x82", L"\uFFFD"},                            // cut off at the end
             Case{"\xE2\x82z", L"\uFFFDz"},                          // cut off before a letter
             Case{"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},            // surrogate
             Case{"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond the last code point
             Case{"\xF0\x9F\x98\xE2\x82\xAC", L"\uFFFD€"},           // cut off before a good one
         })
        EXPECT_EQ(qor::utf8_to_wchar(each.bytes), each.expected);
}

TEST(Utf8, returnsEveryCodePointUnchanged) {
    qor::wstring all;
    for (wchar_t c = 1; c <= 0x10FFFF; c += c < 0x3000 ? 1 : 97)
        if (c < 0xD800 || c > 0xDFFF)
            all.push_back(c);
    EXPECT_EQ(qor::utf8_to_wchar(qor::wchar_to_utf8(all)), all);
    wchar_t const wrong[] = {wchar_t(0xD800), wchar_t(0x110000), wchar_t(-1)};
    EXPECT_EQ(qor::wchar_to_utf8(std::wstring_view(wrong, 3)), "\uFFFD\uFFFD\uFFFD");
}

TEST(TruncateToInt, saturatesAndCutsTowardsZero) {
    double const infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(qor::truncateToInt(std::nan("")), 0);
    EXPECT_EQ(qor::truncateToInt(-2.9), -2);
    EXPECT_EQ(qor::truncateToInt(2147483646.9), 2147483646);
    EXPECT_EQ(qor::truncateToInt(2147483647.5), std::numeric_limits<int>::max());
    EXPECT_EQ(qor::truncateToInt(-2147483648.5), std::numeric_limits<int>::min());
    EXPECT_EQ(qor::truncateToInt(infinity), std::numeric_limits<int>::max());
    EXPECT_EQ(qor::truncateToInt(-infinity), std::numeric_limits<int>::min());
}

TEST(RectImpl, measuresTheEmptyRectangleWithoutOverflow) {
    Rect const empty;
    EXPECT_EQ(empty, Rect(2147483647, 2147483647, -2147483647 - 1, -2147483647 - 1));
    EXPECT_EQ(empty.width(), std::numeric_limits<int>::min());
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_TRUE(empty.isInverted());
    EXPECT_EQ(empty.united(Rect(1, 2, 3, 4)), Rect(1, 2, 3, 4));
    Rect const point(5, 5, 5, 5);
    EXPECT_TRUE(point.isEmpty());
    EXPECT_FALSE(point.isInverted());
    EXPECT_FALSE(point.contains({5, 5}));
    EXPECT_TRUE(Rect(0, 0, 10, 10).intersected(Rect(20, 0, 30, 10)).isEmpty());
}

}  // namespace
