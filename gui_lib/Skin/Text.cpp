#include "gui_lib/Skin/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <limits>
#include <tuple>

#include "gui_lib/Skin/LookEpoch.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/base/textutil.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTextString.h"

namespace gui {

namespace {

constexpr float rendererScale = -1.0f;

std::shared_ptr<vtxFont> findFont(Text::Info const& info) {
    return vtxRenderer::get()->getFontManager()->getFont(info.font, info.fontSize, info.blur);
}

/// The longest beginning of `line` that fits with three dots behind it, without the dots; found as if one character
/// after the other were taken away.
class EllipsisSearch {
public:
    EllipsisSearch(vtxFont const& font, std::basic_string_view<wchar_t> line, int availableWidth)
        : font_(font), line_(line), availableWidth_(availableWidth) {}

    /// Leaves the shortened text in `result` and returns its width.
    int run(qor::basic_string<wchar_t>& result) {
        std::size_t best = findCandidate_();
        // Kerning and marks without a width of their own let a longer text be narrower, by less than an em or two.
        int const margin = 2 * std::max(1, font_.getLineHeight());
        for (std::size_t length = best + 1; length <= line_.size(); ++length) {
            int const width = measure_(length);
            if (width <= availableWidth_)
                best = length;
            else if (width > saturatingAdd(availableWidth_, margin))
                break;
        }
        int const width = measure_(best);
        result = buffer_;
        return width;
    }

private:
    /// A length that fits while the next one does not, or 0.
    std::size_t findCandidate_() {
        std::size_t fits = 0;
        std::size_t tooLong = line_.size() + 1;
        while (tooLong - fits > 1) {
            std::size_t const middle = fits + (tooLong - fits) / 2;
            if (measure_(middle) <= availableWidth_)
                fits = middle;
            else
                tooLong = middle;
        }
        return fits;
    }

    int measure_(std::size_t length) {
        buffer_.assign(line_.substr(0, length));
        buffer_.append(L"...");
        return font_.getTextWidth(buffer_, rendererScale);
    }

    vtxFont const& font_;
    std::basic_string_view<wchar_t> line_;
    int availableWidth_;
    qor::basic_string<wchar_t> buffer_;
};

bool isSeen(osg::Vec4f const& color) { return color.a() > 0.0f; }

/// Whether nothing but the values of colours differs, which strings take over as they are.
bool differInColorsOnly(Text::Info const& one, Text::Info const& other) {
    auto const getShape = [](Text::Info const& info) {
        return std::tuple(info.fontSize, info.lineHeight, info.lineThroughHeight, info.lineThroughOffset, info.blur,
                          isSeen(info.bkgColor), isSeen(info.shadowColor), isSeen(info.blurColor),
                          isSeen(info.lineThroughColor));
    };
    return getShape(one) == getShape(other) && one.shadowOffset == other.shadowOffset && one.align == other.align &&
           one.font == other.font;
}

}  // namespace

Text::Text() = default;

Text::~Text() { destroyTextStrings_(0); }

// --- Style and layout ---

template <typename T>
void Text::change_(T& field, T const& value) {
    if (field == value)
        return;
    field = value;
    shared_ = nullptr;
    inputChanged_ = true;
    textDirty = true;
}

void Text::set(Info const& newInfo) {
    if (differInColorsOnly(info, newInfo)) {
        colorsChanged_ = true;
        shared_ = nullptr;
    } else {
        setFont(newInfo.font, newInfo.fontSize, newInfo.blur);
        inputChanged_ = true;
    }
    info = newInfo;
    textDirty = true;
}

void Text::setShared(Info const& newInfo) {
    unsigned const epoch = skin::LookEpoch::now();
    if (shared_ != &newInfo || sharedEpoch_ != epoch) {
        set(newInfo);
        shared_ = &newInfo;
        sharedEpoch_ = epoch;
    }
    textDirty = true;
}

void Text::setFont(qor::basic_string<char> const& font, int size, vtxFont::Blur blur) {
    if (info.font == font && info.fontSize == size && info.blur == blur)
        return;
    info.font = font;
    info.fontSize = size;
    info.blur = blur;
    font_.reset();
    shared_ = nullptr;
    inputChanged_ = true;
    textDirty = true;
}

void Text::setColor(osg::Vec4f const& color) { change_(info.color, color); }
void Text::setBkgColor(osg::Vec4f const& color) { change_(info.bkgColor, color); }
void Text::setBlurColor(osg::Vec4f const& color) { change_(info.blurColor, color); }
void Text::setLineThroughColor(osg::Vec4f const& color) { change_(info.lineThroughColor, color); }
void Text::setLineThroughHeight(int height) { change_(info.lineThroughHeight, height); }
void Text::setLineThroughOffset(int offset) { change_(info.lineThroughOffset, offset); }
void Text::setShadowColor(osg::Vec4f const& color) { change_(info.shadowColor, color); }
void Text::setShadowOffset(osg::Vec2i const& offset) { change_(info.shadowOffset, offset); }
void Text::setAlign(Align2 const& align) { change_(info.align, align); }
void Text::setInsets(Insets const& newInsets) { change_(insets, newInsets); }
void Text::setLineHeight(int height) { change_(info.lineHeight, height); }
void Text::setUseEllipsis(bool use) { change_(useEllipsis, use); }
void Text::setWrapping(bool wrap) { change_(wrapping, wrap); }

int Text::calcLineHeight() const {
    if (info.lineHeight != 0)
        return info.lineHeight;
    std::shared_ptr<vtxFont> const font = findFont(info);
    return font ? font->getLineHeight() : 0;
}

int Text::calcLineHeight_(vtxFont const& font) const {
    return info.lineHeight != 0 ? info.lineHeight : font.getLineHeight();
}

osg::Vec2i Text::calcSize(qor::basic_string<wchar_t> const& text, osg::Vec2i const& size) const {
    std::shared_ptr<vtxFont> const font = findFont(info);
    if (!font || text.empty())
        return osg::Vec2i(0, 0);
    int width = 0;
    int count = 0;
    divideTextIntoLines_(*font, text, size, [&](std::basic_string_view<wchar_t>, int lineWidth) {
        width = std::max(width, lineWidth);
        ++count;
    });
    int const height = saturatingAdd(saturatingMultiply(count - 1, calcLineHeight_(*font)),
                                     font->getAscender() - font->getDescender());
    auto const room = [](Align const& align) { return saturate(std::abs(static_cast<std::int64_t>(align.offset))); };
    return osg::Vec2i(saturatingAdd(width, room(info.align.getHorzAlign())),
                      saturatingAdd(height, room(info.align.getVertAlign())));
}

// --- Lines ---

/// For a line that is to be wrapped or shortened.
int Text::calcAvailableWidth_(osg::Vec2i const& size) const {
    return saturate(static_cast<std::int64_t>(size.x()) - info.align.getHorzAlign().offset - insets.right -
                    insets.left);
}

template <typename Emit>
void Text::divideTextIntoLines_(vtxFont const& font, qor::basic_string<wchar_t> const& text, osg::Vec2i const& size,
                                Emit const& emit) const {
    int const availableWidth = calcAvailableWidth_(size);
    qor::basic_string<wchar_t> shortened;
    using View = std::basic_string_view<wchar_t>;
    // Inline, since most texts are one line.
    auto const addLine = [&](View line, int width) __attribute__((always_inline)) {
        if (useEllipsis && width > availableWidth) [[unlikely]] {
            width = EllipsisSearch(font, line, availableWidth).run(shortened);
            line = shortened;
        }
        emit(line, width);
    };

    std::size_t const firstEnd = text.find(L'\n');
    if (!wrapping) {
        View const line = View(text).substr(0, firstEnd);
        addLine(line, font.getTextWidth(line, rendererScale));
        return;
    }
    auto const measure = [&font](wchar_t const* start, int length) {
        return font.getTextWidth({start, static_cast<std::size_t>(length)}, rendererScale);
    };
    for (std::size_t start = 0, end = firstEnd;; start = end + 1, end = text.find(L'\n', start)) {
        std::size_t const length = std::min(end, text.size()) - start;
        if (length < 1)
            addLine(View(), 0);
        else
            textutil::wrapText(text.data() + start, static_cast<int>(length), measure, availableWidth,
                               std::cref(addLine));
        if (end == text.npos)
            return;
    }
}

Text::FontEpoch Text::FontEpoch::now() {
    vtxRenderer& renderer = *vtxRenderer::get();
    return {renderer.getGeneration(), renderer.getFontManager()->getScaleEpoch()};
}

bool Text::isFontKnown_(FontEpoch const& epoch) const { return font_ && fontEpoch_ == epoch; }

bool Text::isLaidOutText_(qor::basic_string<wchar_t> const& text) const {
    return laidOutText_ ? *laidOutText_ == text : lines.size() == 1 && lines.front() == text;
}

void Text::noteText_(qor::basic_string<wchar_t> const& text) {
    laidOutText_.reset();
    bool const onlyLine = !wrapping && !useEllipsis && lines.front().size() == text.size();
    if (!onlyLine && !isLaidOutText_(text))
        laidOutText_ = std::make_unique<qor::basic_string<wchar_t>>(text);
}

/// Whether the text that is laid out makes the same lines in a box of another size.
bool Text::keepsLines_(osg::Vec2i const& size) const {
    return !wrapping && (!useEllipsis || (!laidOutText_ && lineWidth_ <= calcAvailableWidth_(size)));
}

/// Whether each of them stays where it is, too.
bool Text::keepsPlaces_(osg::Vec2i const& size) const {
    return size.y() == laidOutSize_.y() && info.align.getHorzAlign().type == Align::Min && keepsLines_(size);
}

void Text::redraw(qor::basic_string<wchar_t> const& text, osg::Vec2i const& size, bool deleteInvisibleLines) {
    if (!textDirty)
        return;
    textDirty = false;
    FontEpoch const epoch = FontEpoch::now();
    bool const fontKnown = isFontKnown_(epoch);
    bool const textKnown = fontKnown && !inputChanged_ && isLaidOutText_(text);
    if (textKnown && deletedInvisibleLines_ == deleteInvisibleLines && (laidOutSize_ == size || keepsPlaces_(size))) {
        laidOutSize_ = size;
        if (colorsChanged_)
            styleTextStrings_(0);
        return;
    }
    if (!fontKnown) {
        font_ = findFont(info);
        stringsDirty = true;
    }
    if (!font_) {
        destroyTextStrings_(0);
        return;
    }
    if (!textKnown || !keepsLines_(size))
        divide_(text, size);
    std::size_t const known = std::min(textStrings.size(), lines.size());
    updateTextStrings_(size, calcLineHeight_(*font_), deleteInvisibleLines);
    styleTextStrings_(inputChanged_ || colorsChanged_ ? 0 : known);
    placeTextStrings_(size);
    fontEpoch_ = epoch;
    laidOutSize_ = size;
    deletedInvisibleLines_ = deleteInvisibleLines;
    inputChanged_ = false;
    if (!textKnown)
        noteText_(text);
}

/// Fills `lines`.
void Text::divide_(qor::basic_string<wchar_t> const& text, osg::Vec2i const& size) {
    std::size_t count = 0;
    divideTextIntoLines_(*font_, text, size, [&](std::basic_string_view<wchar_t> line, int width) {
        if (count < lines.size())
            lines[count] = line;
        else
            lines.emplace_back(line);
        lineWidth_ = width;
        ++count;
    });
    lines.resize(count);
}

void Text::updateTextStrings_(osg::Vec2i const& size, int lineHeight, bool deleteInvisibleLines) {
    int visible = std::numeric_limits<int>::max();
    if (lineHeight != 0) {
        double const height = static_cast<double>(size.y()) - info.align.getVertAlign().offset;
        visible = qor::truncateToInt(std::ceil(height / lineHeight));
    }
    std::size_t const wanted = lines.size();
    if (textStrings.size() >= wanted) {
        destroyTextStrings_(wanted);
        if (deleteInvisibleLines)
            destroyTextStrings_(static_cast<std::size_t>(std::max(0, visible)));
        return;
    }
    // More strings than `visible` never equal it again, so that all lines get one.
    do {
        textStrings.push_back(new vtxTextString);
    } while (static_cast<int>(textStrings.size()) != visible && textStrings.size() != wanted);
}

void Text::destroyTextStrings_(std::size_t keep) {
    while (textStrings.size() > keep) {
        delete textStrings.back();
        textStrings.pop_back();
    }
}

/// Gives strings all of the style but the font.
void Text::styleTextStrings_(std::size_t first) {
    for (std::size_t i = first; i < textStrings.size(); ++i) {
        vtxTextString& string = *textStrings[i];
        if (inputChanged_)
            string.setStale(), stringsDirty = true;
        string.color = info.color;
        string.bkgColor = info.bkgColor;
        string.shadowColor = info.shadowColor;
        string.blurColor = info.blurColor;
        string.lineThroughColor = info.lineThroughColor;
        string.lineThroughHeight = info.lineThroughHeight;
        string.lineThroughOffset = info.lineThroughOffset;
        string.shadowOffset = info.shadowOffset;
    }
    colorsChanged_ = false;
}

void Text::placeTextStrings_(osg::Vec2i const& size) {
    if (lines.empty())
        return;
    int const lineHeight = calcLineHeight_(*font_);
    int const ascender = font_->getAscender();
    int const count = static_cast<int>(textStrings.size());
    int y0 = 0;
    int y1 = 0;
    info.align.getVertAlign().calc(saturatingMultiply(count, lineHeight),
                                   saturatingSubtract(saturatingSubtract(size.y(), insets.bottom), insets.top), y0, y1);
    y0 = saturatingAdd(y0, insets.top);
    int const availableWidth = saturatingSubtract(saturatingSubtract(size.x(), insets.right), insets.left);
    for (int i = 0; i < count; ++i) {
        std::size_t const line = static_cast<std::size_t>(i);
        // A wrapped line was measured word by word.
        int const width = wrapping ? font_->getTextWidth(lines[line], rendererScale) : lineWidth_;
        int x0 = 0;
        int x1 = 0;
        info.align.getHorzAlign().calc(width, availableWidth, x0, x1);
        osg::Vec2i const position(saturatingAdd(insets.left, x0),
                                  saturate(std::int64_t(y0) + ascender + std::int64_t(i) * lineHeight));
        if (textStrings[line]->setLine(font_, lines[line], position))
            stringsDirty = true;
    }
}

// --- Drawing ---

void Text::doRedraw() {
    if (!stringsDirty)
        return;
    for (vtxTextString* string : textStrings)
        string->update(rendererScale);
    stringsDirty = false;
}

void Text::draw() const {
    vtxShader* const shader = vtxRenderer::get()->getShader();
    for (vtxTextString const* string : textStrings)
        string->draw(shader, rendererScale);
}

void Text::draw(osg::Vec4f const& color) const {
    vtxShader* const shader = vtxRenderer::get()->getShader();
    for (vtxTextString const* string : textStrings)
        string->draw(shader, color, rendererScale);
}

void Text::make(GraphicCommands* commands) const { make_(commands, nullptr); }

void Text::make(GraphicCommands* commands, osg::Vec4f const& color) const { make_(commands, &color); }

void Text::make_(GraphicCommands* commands, osg::Vec4f const* color) const {
    if (textStrings.size() == 1 && textStrings.front()->text.empty())
        return;
    commands->drawText(textStrings, color, rendererScale);
}

}  // namespace gui
