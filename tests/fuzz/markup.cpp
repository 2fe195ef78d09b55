// Any text through textutil and onto a label.
#include <string>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/base/textutil.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/Utf8.h"
#include "tests/fuzz/shared/FuzzHost.h"

namespace {

using fuzz::check;
using Text = qor::basic_string<wchar_t>;

void checkCleaning(Text const& text, wchar_t c) {
    Text cleaned = text;
    textutil::cleanupText(cleaned, c);
    check(cleaned.find(c) == Text::npos, "cleanupText removes every one");
    check(cleaned.size() + size_t(std::count(text.begin(), text.end(), c)) == text.size(), "and nothing else");
}

void checkTabs(Text const& text, int spaces) {
    gui::GUI::get()->setTabSpacesCount(spaces);
    size_t const tabs = size_t(std::count(text.begin(), text.end(), L'\t'));
    check(textutil::getTextHasTabs(text) == (tabs > 0), "getTextHasTabs finds tabs");
    Text const expanded = textutil::replaceTabsBySpaces(text);
    check(!textutil::getTextHasTabs(expanded), "no tab stays");
    check(expanded.size() == text.size() - tabs + tabs * size_t(std::max(gui::GUI::get()->getTabSpacesCount(), 0)),
          "a tab is as many spaces as GUI says");
}

void checkTokens(Text const& text, bool lastEmpty) {
    qor::vector<Text> kept, bare;
    textutil::getTokens(text, textutil::isSymbolWordSeparator, true, lastEmpty, kept);
    textutil::getTokens(text, textutil::isSymbolWordSeparator, false, lastEmpty, bare);
    check(kept.size() == bare.size(), "separators do not change the number of tokens");
    Text joined;
    for (size_t i = 0; i < kept.size(); ++i) {
        joined += kept[i];
        check(std::none_of(bare[i].begin(), bare[i].end(), textutil::isSymbolWordSeparator), "a token has none");
        check(kept[i].starts_with(bare[i]) && kept[i].size() <= bare[i].size() + 1, "or one at its end");
    }
    check(joined == text, "tokens with their separators are the text");
}

Text join(qor::list<textutil::TextBlock> const& blocks) {
    Text text;
    for (textutil::TextBlock const& block : blocks)
        text.append(block.text).append(block.endsLine ? 1 : 0, L'\n');
    return text;
}

/// Without [name], [name=value] and [/name].
Text removeTags(Text const& text, qor::set<Text> const& names) {
    Text rest;
    for (size_t i = 0; i < text.size(); ++i) {
        size_t const close = text[i] == L'[' ? text.find(L']', i + 1) : Text::npos;
        Text name = close == Text::npos ? Text() : text.substr(i + 1, close - i - 1);
        name = name.substr(0, name.find(L'='));
        if (names.count(name.starts_with(L'/') ? name.substr(1) : name))
            i = close;
        else
            rest += text[i];
    }
    return rest;
}

void checkMarkup(Text const& text) {
    static qor::set<Text> const names = {L"b", L"color", L"i"};
    qor::list<textutil::TextBlock> blocks;
    textutil::parseText(text, names, blocks);
    check(!blocks.empty() && !blocks.back().endsLine, "the last block is open");
    for (textutil::TextBlock const& block : blocks) {
        check(block.text.find(L'\n') == Text::npos, "a block is on one line");
        for (auto const& [name, value] : block.attributes)
            check(names.count(name) == 1, "only known names are tags");
    }
    check(join(blocks) == removeTags(text, names), "tags are taken out and nothing else");
    qor::list<textutil::TextBlock> plain;
    textutil::parseText(text, {}, plain);
    check(join(plain) == text, "without names all is text");
}

void checkWrapping(Text const& text, int maxWidth) {
    auto const measure = [](wchar_t const* part, int length) {
        int width = 0;
        for (int i = 0; i < length; ++i)
            width += int(unsigned(part[i]) % 9);
        return width;
    };
    Text joined;
    textutil::wrapText(text.data(), int(text.size()), measure, maxWidth, [&](Text const& line, int width) {
        check(width == measure(line.data(), int(line.size())), "the width of a line is that of its text");
        bool const inside =
            std::any_of(line.begin(), std::max(line.begin(), line.end() - 1), textutil::isSymbolWordSeparator);
        check(width <= maxWidth || !inside, "a line is too wide only where it is one word");
        joined += line;
    });
    check(joined == text, "the lines are the text");
}

/// On a label, in a window that stays.
void checkLabel(Text const& text, fuzz::FuzzInput input) {
    static auto* const label = [] {
        auto* const made = static_cast<gui::Static*>(fuzz::getHost().show(*support::findAnimal("Static")));
        made->getWidgetSkin()->getSkinData()->setTextWrapping(true);
        return made;
    }();
    gui::skin::Data& look = *label->getWidgetSkin()->getSkinData();
    look.setUseEllipsis(input.getFlag());
    look.setTextWrapping(input.getFlag());
    label->setSize(osg::Vec2i(int(input.getByte()) * 2, int(input.getByte())));
    label->setText(text);
    label->setSize(input.getFlag() ? label->getPrefSize() : label->getSize());
    fuzz::getHost().frame();
    for (Text const& line : label->getWidgetSkin()->getTextLines())
        check(line.find(L'\n') == Text::npos, "a line has no line feed");
    fuzz::checkMisuse(fuzz::getHost().trace());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    fuzz::getHost();
    fuzz::FuzzInput input(data, size);
    fuzz::FuzzInput const looks = input;
    int const number = input.getInt();
    unsigned const spaces = input.getByte();
    Text const text = qor::utf8_to_wchar(input.getRest());
    checkCleaning(text, wchar_t(number));
    checkTabs(text, int(spaces) - 8);
    checkTokens(text, number > 0);
    checkMarkup(text);
    checkWrapping(text, number);
    if (size < 300)
        checkLabel(text, looks);
    return 0;
}
