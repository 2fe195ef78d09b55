#include "gui_lib/base/textutil.h"

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <utility>

#include "gui_lib/base/Application.h"
#include "gui_lib/frame/GUI.h"
#include "platform/qor/Log.h"

namespace textutil {

namespace {

using View = std::basic_string_view<wchar_t>;

/// Set while `getTokens` runs; a diagnostic, not a lock.
bool tokensRunning = false;

// --- Markup ---

/// Appends markup text to a list whose last block is open.
class BlockWriter {
public:
    explicit BlockWriter(qor::list<TextBlock>& blocks) : blocks_(blocks) { blocks_.emplace_back(); }

    void addText(View text) {
        for (std::size_t end = text.find(L'\n'); end != View::npos; end = text.find(L'\n')) {
            blocks_.back().text.append(text.substr(0, end));
            blocks_.back().endsLine = true;
            openBlock_();
            text.remove_prefix(end + 1);
        }
        blocks_.back().text.append(text);
    }

    void addTag(qor::basic_string<wchar_t> const& name, View value, bool closing) {
        if (!blocks_.back().text.empty())
            openBlock_();
        if (closing)
            blocks_.back().attributes.erase(name);
        else
            blocks_.back().attributes[name] = value;
    }

private:
    void openBlock_() {
        TextBlock block;
        block.attributes = blocks_.back().attributes;
        blocks_.push_back(std::move(block));
    }

    qor::list<TextBlock>& blocks_;
};

/// What stands between two brackets, looked at no further than the longest known name reaches.
struct Tag {
    Tag(View inner, std::size_t longestName) {
        bool const slash = !inner.empty() && inner.front() == L'/';
        std::size_t const equals = inner.substr(0, longestName + (slash ? 2 : 1)).find(L'=');
        name = inner;
        if (equals != View::npos && equals > 0) {
            name = inner.substr(0, equals);
            value = inner.substr(equals + 1);
        }
        closing = slash;
        if (closing)
            name.remove_prefix(1);
        canBeKnown = !inner.empty() && name.size() <= longestName;
    }

    View name;
    View value;
    bool closing = false;
    bool canBeKnown = false;
};

// --- Wrapping ---

/// Collects words into lines.
class LineBuilder {
public:
    LineBuilder(MeasureFunction const& measure, int maxWidth, EmitFunction const& emit)
        : measure_(measure), maxWidth_(maxWidth), emit_(emit) {}

    void addWord(wchar_t const* begin, wchar_t const* end) {
        int const width = begin == end ? 0 : measure_(begin, static_cast<int>(end - begin));
        if (hasWords_) {
            if (static_cast<std::int64_t>(width_) + width <= maxWidth_) {
                width_ += width;
                end_ = end;
                return;
            }
            finish();
        }
        // A first word as wide as the line goes out at once, whatever follows.
        if (width < maxWidth_) {
            hasWords_ = true;
            width_ = width;
            begin_ = begin;
            end_ = end;
        } else {
            emitLine_(begin, end, width);
        }
    }

    void finish() {
        if (!hasWords_)
            return;
        hasWords_ = false;
        emitLine_(begin_, end_, width_);
    }

private:
    void emitLine_(wchar_t const* begin, wchar_t const* end, int width) {
        line_.assign(begin, end);
        emit_(line_, width);
    }

    MeasureFunction const& measure_;
    int maxWidth_;
    EmitFunction const& emit_;
    /// The words of a line follow one another in the text.
    wchar_t const* begin_ = nullptr;
    wchar_t const* end_ = nullptr;
    bool hasWords_ = false;
    int width_ = 0;
    qor::basic_string<wchar_t> line_;
};

}  // namespace

// --- Characters ---

bool isEOL(wchar_t c) { return c == L'\n'; }

bool isSymbolWordSeparator(wchar_t c) {
    switch (c) {
        case L'\n':
        case L' ':
        case L'!':
        case L'%':
        case L'\'':
        case L'*':
        case L'+':
        case L',':
        case L'-':
        case L'.':
        case L'/':
        case L':':
        case L';':
        case L'=':
        case L'?':
        case L'\\':
        case L'|':
        case L'\u2013':
            return true;
        default:
            return (c >= 0x3000 && c <= 0xFAFE) || c > 0xFFFF;
    }
}

int getDecimalPoint() {
    std::lconv const* const conventions = std::localeconv();
    return conventions && conventions->decimal_point ? conventions->decimal_point[0] : L'.';
}

// --- Whole texts ---

void cleanupText(qor::basic_string<wchar_t>& text, wchar_t c) {
    text.erase(std::remove(text.begin(), text.end(), c), text.end());
}

void copyTextToClipboard(qor::basic_string<wchar_t> const& text) {
    if (gui::Application* application = gui::Application::get())
        application->setClipboardText(text);
}

qor::basic_string<wchar_t> getTextFromClipboard() {
    gui::Application const* const application = gui::Application::get();
    if (!application)
        return {};
    qor::basic_string<wchar_t> text = application->getClipboardText();
    for (wchar_t& c : text) {
        if (c == 0xAB || c == 0xBB)
            c = L'"';
        else if (c == 0xB4)
            c = L'\'';
    }
    return text;
}

bool getTextHasTabs(View text) { return text.find(L'\t') != View::npos; }

qor::basic_string<wchar_t> replaceTabsBySpaces(qor::basic_string<wchar_t> text) {
    gui::GUI const* const gui = gui::GUI::get();
    std::size_t const tabs = static_cast<std::size_t>(std::count(text.begin(), text.end(), L'\t'));
    if (tabs == 0 || !gui)
        return text;
    std::size_t const spaces = static_cast<std::size_t>(std::max(0, gui->getTabSpacesCount()));
    qor::basic_string<wchar_t> result;
    result.reserve(text.size() - tabs + tabs * spaces);
    for (wchar_t const c : text) {
        if (c == L'\t')
            result.append(spaces, L' ');
        else
            result.push_back(c);
    }
    return result;
}

// --- Dividing ---

void getTokens(View text, bool (*isSeparator)(wchar_t), bool keepSeparators, bool keepLastEmpty,
               qor::vector<qor::basic_string<wchar_t>>& tokens) {
    if (tokensRunning)
        qor_logf("VORLEX", 64, "Function textutil::getTokens() called from itself!");
    tokensRunning = true;
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!isSeparator(text[i]))
            continue;
        tokens.emplace_back(text.substr(start, i + (keepSeparators ? 1 : 0) - start));
        start = i + 1;
    }
    if (start < text.size() || keepLastEmpty)
        tokens.emplace_back(text.substr(start));
    tokensRunning = false;
}

void parseText(qor::basic_string<wchar_t> const& text, qor::set<qor::basic_string<wchar_t>> const& tags,
               qor::list<TextBlock>& blocks) {
    BlockWriter writer(blocks);
    View const all = text;
    std::size_t longestName = 0;
    for (auto const& tag : tags)
        longestName = std::max(longestName, tag.size());

    std::size_t start = 0;
    std::size_t close = 0;  // the bracket found last serves every opening one before it
    qor::basic_string<wchar_t> name;
    for (std::size_t pos = all.find(L'['); pos != View::npos; pos = all.find(L'[', start)) {
        writer.addText(all.substr(start, pos - start));
        if (close <= pos)
            close = all.find(L']', pos + 1);
        start = pos;
        if (close == View::npos)
            break;
        Tag const tag(all.substr(pos + 1, close - pos - 1), longestName);
        bool known = tag.canBeKnown;
        if (known) {
            name = tag.name;
            known = tags.count(name) != 0;
        }
        if (known) {
            writer.addTag(name, tag.closing ? View() : tag.value, tag.closing);
            start = close + 1;
        } else {
            writer.addText(L"[");
            start = pos + 1;
        }
    }
    writer.addText(all.substr(start));
}

void wrapText(wchar_t const* text, int length, MeasureFunction const& measure, int maxWidth, EmitFunction const& emit) {
    LineBuilder builder(measure, maxWidth, emit);
    wchar_t const* const end = text + std::max(0, length);
    wchar_t const* word = text;
    for (wchar_t const* c = text; c != end; ++c) {
        if (!isSymbolWordSeparator(*c))
            continue;
        builder.addWord(word, c + 1);
        word = c + 1;
    }
    builder.addWord(word, end);
    builder.finish();
}

}  // namespace textutil
