#include "platform/qor/String.h"

#include <cerrno>
#include <cstdio>
#include <cwchar>

namespace qor {

template <>
string& string::vformat(char const* format, va_list arguments) {
    string text;
    va_list again;
    va_copy(again, arguments);
    int const length = std::vsnprintf(nullptr, 0, format, arguments);
    if (length > 0) {
        text.resize(size_t(length));
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    swap(text);
    return *this;
}

template <>
wstring& wstring::vformat(wchar_t const* format, va_list arguments) {
    // The wide printf does not tell how much room it wants: it fails, as it does for text that it cannot convert.
    constexpr size_t mostElements = size_t(1) << 28;
    wstring text;
    for (size_t room = 128; room <= mostElements; room *= 2) {
        text.resize(room);
        va_list again;
        va_copy(again, arguments);
        errno = 0;
        int const length = std::vswprintf(text.data(), room, format, again);
        bool const refused = length < 0 && errno == EILSEQ;
        va_end(again);
        if (length >= 0) {
            text.resize(size_t(length));
            swap(text);
            return *this;
        }
        if (refused)
            break;
    }
    clear();
    return *this;
}

}  // namespace qor
