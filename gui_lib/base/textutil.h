#pragma once

#include <functional>
#include <string_view>

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

/// Free functions on display text: word breaks, wrapping, tokens, tag markup, tabs and the clipboard.
/// One element of a text is one code point; indexes and lengths count those. Nothing keeps a pointer into its
/// arguments.
namespace textutil {

/// A run of text with one set of open tags.
struct VORLEX_API TextBlock {
    qor::basic_string<wchar_t> text;
    /// Name of each open tag and its value, empty for a tag without one.
    qor::hash_map<qor::basic_string<wchar_t>, qor::basic_string<wchar_t>> attributes;
    /// A line feed stood behind this run: the next block starts a line.
    bool endsLine = false;
};

/// Removes every `c`.
VORLEX_API void cleanupText(qor::basic_string<wchar_t>& text, wchar_t c);

/// To and from the host's clipboard. On the way in guillemets become quotation marks and acute accents apostrophes;
/// carriage returns stay.
VORLEX_API void copyTextToClipboard(qor::basic_string<wchar_t> const& text);
VORLEX_API qor::basic_string<wchar_t> getTextFromClipboard();

/// First byte of the C locale's decimal point, or '.'.
VORLEX_API int getDecimalPoint();

VORLEX_API bool getTextHasTabs(std::basic_string_view<wchar_t> text);
/// Each tab becomes as many spaces as GUI's tab setting says, whatever its column.
VORLEX_API qor::basic_string<wchar_t> replaceTabsBySpaces(qor::basic_string<wchar_t> text);

/// Only a line feed ends a line.
VORLEX_API bool isEOL(wchar_t c);
/// A line may be broken behind such a character. Ideographs, and all above U+FFFF, are words of their own.
VORLEX_API bool isSymbolWordSeparator(wchar_t c);

/// Appends to `tokens` what stands between the separators. With `keepSeparators` a token ends in its separator.
/// An empty rest behind the last separator counts only with `keepLastEmpty`. A nested call is logged, and served.
VORLEX_API void getTokens(std::basic_string_view<wchar_t> text, bool (*isSeparator)(wchar_t), bool keepSeparators,
                          bool keepLastEmpty, qor::vector<qor::basic_string<wchar_t>>& tokens);

/// Appends the blocks of a text with the markup [name], [name=value] and [/name] for the names in `tags`; other
/// brackets are text. Tags stay open across line ends and do not nest. The last block is open for more text and may be
/// empty.
VORLEX_API void parseText(qor::basic_string<wchar_t> const& text, qor::set<qor::basic_string<wchar_t>> const& tags,
                          qor::list<TextBlock>& blocks);

/// Width of `length` characters.
using MeasureFunction = std::function<int(wchar_t const* text, int length)>;
/// Takes a finished line and its measured width.
using EmitFunction = std::function<void(qor::basic_string<wchar_t> const& line, int width)>;

/// Divides one paragraph into lines not wider than `maxWidth`, broken behind separators only; a longer word keeps a
/// line of its own. Separators stay in the line. An empty paragraph gives one empty line.
VORLEX_API void wrapText(wchar_t const* text, int length, MeasureFunction const& measure, int maxWidth,
                         EmitFunction const& emit);

}  // namespace textutil
