// Any bytes as text: what comes out is well formed, and writing it back and reading it again changes nothing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/qor/Utf8.h"

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    qor::wstring const wide = qor::utf8_to_wchar(std::string_view(reinterpret_cast<char const*>(data), size));
    for (wchar_t const c : wide)
        if (uint32_t(c) > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
            std::abort();
    if (wide.size() > size || qor::utf8_to_wchar(qor::wchar_to_utf8(wide)) != wide)
        std::abort();
    return 0;
}
