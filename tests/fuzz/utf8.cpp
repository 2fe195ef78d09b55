// Any bytes as text, from a file, from the clipboard and as code points: what comes out is well formed, and writing it
// back and reading it again changes nothing.
#include "platform/qor/Utf8.h"
#include "gui_lib/base/textutil.h"
#include "tests/fuzz/shared/FuzzInput.h"
#include "tests/support/TestApplication.h"

namespace {

using fuzz::check;

void checkBytes(std::string_view bytes) {
    qor::wstring const wide = qor::utf8_to_wchar(bytes);
    for (wchar_t const c : wide)
        check(uint32_t(c) <= 0x10FFFF && !(c >= 0xD800 && c <= 0xDFFF), "what was read are code points");
    check(wide.size() <= bytes.size(), "there are no more of them than bytes");
    qor::string const written = qor::wchar_to_utf8(wide);
    check(qor::utf8_to_wchar(written) == wide, "what was written is read back");
    check(wide.find(L'\xFFFD') != qor::wstring::npos || written == bytes, "right bytes stay");
    qor::string const ended(bytes);
    qor::wstring untilZero;
    qor::iconv_utf8_to_wchar(ended.c_str(), untilZero);
    check(untilZero == wide.substr(0, wide.find(L'\0')), "a text without a length ends at a zero");
}

/// Elements that are no code points stay what they are on the clipboard and are replaced in files.
void checkElements(qor::wstring const& text) {
    qor::wstring const read = qor::utf8_to_wchar(qor::wchar_to_utf8(text));
    check(read.size() == text.size(), "each element is one when read back");
    for (size_t i = 0; i < text.size(); ++i)
        check(read[i] == text[i] || read[i] == 0xFFFD, "and the same, unless it is no code point");

    textutil::copyTextToClipboard(text);
    check(gui::Application::get()->getClipboardText() == text, "the clipboard gets the text as it is");
    qor::wstring const pasted = textutil::getTextFromClipboard();
    check(pasted.size() == text.size(), "nothing is lost on the way back");
    check(pasted.find_first_of(L"\xAB\xBB\xB4") == qor::wstring::npos, "quotation marks become plain");
    for (size_t i = 0; i < text.size(); ++i)
        check(pasted[i] == text[i] || pasted[i] == L'"' || pasted[i] == L'\'', "all else stays");
    textutil::copyTextToClipboard(pasted);
    check(textutil::getTextFromClipboard() == pasted, "pasting twice changes nothing more");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    static auto* const application = new support::TestApplication(osg::Vec2i(800, 600));
    (void)application;
    std::string_view const bytes(reinterpret_cast<char const*>(data), size);
    checkBytes(bytes);
    checkElements(qor::utf8_to_wchar(bytes));
    qor::wstring elements(size / 4, L'\0');
    if (!elements.empty())
        std::memcpy(elements.data(), data, elements.size() * 4);
    checkElements(elements);
    return 0;
}
