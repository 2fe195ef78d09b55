#pragma once

#include <string_view>

#include "platform/qor/Api.h"
#include "platform/qor/String.h"

namespace qor {

/// UTF-8 to one element a code point, replacing what `result` held. Each longest wrong piece (truncated or overlong
/// form, surrogate, beyond U+10FFFF, stray byte) becomes one U+FFFD. A null text gives an empty result.
VORLEX_API void iconv_utf8_to_wchar(char const* text, wstring& result);

/// The same for a text that may hold zeros.
VORLEX_API void utf8_to_wchar(std::string_view text, wstring& result);
VORLEX_API wstring utf8_to_wchar(std::string_view text);

/// Elements that are no code point become U+FFFD.
VORLEX_API void wchar_to_utf8(std::wstring_view text, string& result);
VORLEX_API string wchar_to_utf8(std::wstring_view text);

}  // namespace qor
