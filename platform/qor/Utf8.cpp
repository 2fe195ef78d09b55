#include "platform/qor/Utf8.h"

namespace qor {

namespace {

constexpr wchar_t replacement = 0xFFFD;

struct Decoded {
    wchar_t codePoint;
    size_t length;
};

// Follows the table of well-formed sequences: the range of the second byte depends on the first.
Decoded decode(std::string_view text, size_t at) {
    auto const byte = [&](size_t i) { return i < text.size() ? unsigned(static_cast<unsigned char>(text[i])) : 0u; };
    unsigned const first = byte(at);
    if (first < 0x80)
        return {wchar_t(first), 1};
    unsigned low = 0x80;
    unsigned high = 0xBF;
    size_t length = 0;
    unsigned value = 0;
    if (first >= 0xC2 && first <= 0xDF) {
        length = 2;
        value = first & 0x1F;
    } else if (first >= 0xE0 && first <= 0xEF) {
        length = 3;
        value = first & 0x0F;
        low = first == 0xE0 ? 0xA0 : low;
        high = first == 0xED ? 0x9F : high;
    } else if (first >= 0xF0 && first <= 0xF4) {
        length = 4;
        value = first & 0x07;
        low = first == 0xF0 ? 0x90 : low;
        high = first == 0xF4 ? 0x8F : high;
    } else {
        return {replacement, 1};
    }
    for (size_t i = 1; i < length; ++i) {
        unsigned const next = byte(at + i);
        if (next < low || next > high)
            return {replacement, i};
        value = value << 6 | (next & 0x3F);
        low = 0x80;
        high = 0xBF;
    }
    return {wchar_t(value), length};
}

bool isCodePoint(uint32_t value) { return value <= 0x10FFFF && !(value >= 0xD800 && value <= 0xDFFF); }

}  // namespace

void iconv_utf8_to_wchar(char const* text, wstring& result) {
    utf8_to_wchar(text ? std::string_view(text) : std::string_view(), result);
}

void utf8_to_wchar(std::string_view text, wstring& result) {
    result.clear();
    result.reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        Decoded const decoded = decode(text, at);
        result.push_back(decoded.codePoint);
        at += decoded.length;
    }
}

wstring utf8_to_wchar(std::string_view text) {
    wstring result;
    utf8_to_wchar(text, result);
    return result;
}

void wchar_to_utf8(std::wstring_view text, string& result) {
    result.clear();
    result.reserve(text.size());
    for (wchar_t const element : text) {
        auto value = uint32_t(element);
        if (!isCodePoint(value))
            value = replacement;
        auto const tail = [&](int shift) { result.push_back(char(0x80 | (value >> shift & 0x3F))); };
        if (value < 0x80) {
            result.push_back(char(value));
        } else if (value < 0x800) {
            result.push_back(char(0xC0 | value >> 6));
            tail(0);
        } else if (value < 0x10000) {
            result.push_back(char(0xE0 | value >> 12));
            tail(6);
            tail(0);
        } else {
            result.push_back(char(0xF0 | value >> 18));
            tail(12);
            tail(6);
            tail(0);
        }
    }
}

string wchar_to_utf8(std::wstring_view text) {
    string result;
    wchar_to_utf8(text, result);
    return result;
}

}  // namespace qor
