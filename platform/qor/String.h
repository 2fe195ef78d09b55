#pragma once

#include <cstdarg>
#include <functional>
#include <string>
#include <string_view>

#include "platform/qor/Api.h"
#include "platform/qor/Fnv.h"
#include "platform/qor/Memory.h"

namespace qor {

/// The toolkit's string: the standard one over the counted allocator, with printf formatting.
/// One element of a wide string is one code point.
template <typename Char>
class basic_string : public std::basic_string<Char, std::char_traits<Char>, allocator<Char>> {
public:
    using Base = std::basic_string<Char, std::char_traits<Char>, allocator<Char>>;
    using View = std::basic_string_view<Char>;

    using Base::Base;
    using Base::operator=;
    basic_string() = default;
    basic_string(basic_string const&) = default;
    basic_string(basic_string&&) noexcept = default;
    basic_string(Base const& other) : Base(other) {}
    basic_string(Base&& other) noexcept : Base(std::move(other)) {}
    basic_string(View text) : Base(text) {}
    basic_string& operator=(basic_string const&) = default;
    basic_string& operator=(basic_string&&) noexcept = default;

    /// Replaces the text by a printf; an argument may point into this string. In a wide format "%ls" takes wide text
    /// and "%s" narrow text. A format that the C library refuses leaves the string empty.
    basic_string& format(Char const* format, ...);
    basic_string& vformat(Char const* format, va_list arguments);
};

using string = basic_string<char>;
using wstring = basic_string<wchar_t>;

template <>
VORLEX_API string& string::vformat(char const* format, va_list arguments);
template <>
VORLEX_API wstring& wstring::vformat(wchar_t const* format, va_list arguments);

template <typename Char>
basic_string<Char>& basic_string<Char>::format(Char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vformat(format, arguments);
    va_end(arguments);
    return *this;
}

template <typename Char>
struct FnvHash<basic_string<Char>> : FnvStringHash<Char> {};
template <typename Char>
struct FnvHash<std::basic_string_view<Char>> : FnvStringHash<Char> {};

}  // namespace qor

template <typename Char>
struct std::hash<qor::basic_string<Char>> : qor::FnvStringHash<Char> {};
