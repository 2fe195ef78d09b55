#include "platform/vtx/vtxFontChain.h"

#include "platform/vtx/vtxFontCatalog.h"

#include <hb.h>

#include <algorithm>
#include <limits>

namespace {

constexpr size_t maxPieceLength = 64;
constexpr std::int32_t unknownStep = std::numeric_limits<std::int32_t>::min();
constexpr size_t maxFaces = 32;

constexpr char32_t zeroWidthNonJoiner = 0x200C;
constexpr char32_t zeroWidthJoiner = 0x200D;

char32_t getCodePoint(wchar_t letter) {
    auto const code = static_cast<char32_t>(letter);
    return code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF) ? 0xFFFD : code;
}

/// Shows nothing and takes no room when it stands alone.
bool isInvisible(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0xAD || (code >= 0x200B && code <= 0x200F) ||
           (code >= 0x2028 && code <= 0x202E) || (code >= 0x2060 && code <= 0x206F) || code == 0xFEFF ||
           (code >= 0xFE00 && code <= 0xFE0F) || (code >= 0xE0000 && code <= 0xE0FFF);
}

bool isMark(char32_t code) {
    if (code < 0x300)
        return false;
    hb_unicode_general_category_t const category = hb_unicode_general_category(hb_unicode_funcs_get_default(), code);
    return category == HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK ||
           category == HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK ||
           category == HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK;
}

/// Letters of scripts that join, change places or stack: Hebrew to Mongolian and their supplements.
bool isShaped(char32_t code) {
    return code >= 0x590 && ((code <= 0x109F) || (code >= 0x1100 && code <= 0x11FF) ||
                             (code >= 0x1700 && code <= 0x18AF) || (code >= 0x1900 && code <= 0x1CFF) ||
                             (code >= 0xA800 && code <= 0xABFF) || (code >= 0xD7B0 && code <= 0xD7FF) ||
                             (code >= 0xFB1D && code <= 0xFDFF) || (code >= 0xFE70 && code <= 0xFEFE) ||
                             (code >= 0x10800 && code <= 0x11FFF) || (code >= 0x1E800 && code <= 0x1EEFF));
}

/// Characters that are neither marks nor invisible and join with nothing.
bool isPlain(char32_t code) { return code >= 0x20 && code < 0x7F; }

/// Where the piece that begins at `begin` ends; one character that stands alone is a piece of its own.
size_t findPieceEnd(std::wstring_view text, size_t begin) {
    size_t end = begin + 1;
    bool const shaped = isShaped(getCodePoint(text[begin]));
    size_t const limit = std::min(text.size(), begin + maxPieceLength);
    for (; end < limit; ++end) {
        char32_t const code = getCodePoint(text[end]);
        if (code < 0x300)
            break;
        bool const joins = code == zeroWidthJoiner || code == zeroWidthNonJoiner || isMark(code) ||
                           (shaped && isShaped(code)) ||
                           (getCodePoint(text[end - 1]) == zeroWidthJoiner && !isInvisible(code));
        if (!joins)
            break;
    }
    return end;
}

}  // namespace

vtxFontChain::vtxFontChain(vtxFontCatalog& catalog, vtxFontFace& face) : catalog_(catalog) {
    faces_.push_back(&face);
    steps_.assign(asciiCount * asciiCount, unknownStep);
}

vtxEm vtxFontChain::measure(std::wstring_view text) {
    vtxEm width = 0;
    auto const ignore = [](vtxPlacedGlyph const&) {};
    return walkPlain_(text, width, ignore) ? width : walk_(text, ignore);
}

vtxEm vtxFontChain::layOut(std::wstring_view text, qor::vector<vtxPlacedGlyph>& glyphs) {
    vtxEm width = 0;
    glyphs.resize(text.size());
    vtxPlacedGlyph* place = glyphs.data();
    if (walkPlain_(text, width, [&place](vtxPlacedGlyph const& glyph) { *place++ = glyph; }))
        return width;
    glyphs.clear();
    return walk_(text, [&glyphs](vtxPlacedGlyph const& glyph) { glyphs.push_back(glyph); });
}

void vtxFontChain::trim() {
    if (pieces_.size() > maxPieces)
        pieces_.clear();
    if (kerning_.size() > maxPairs)
        kerning_.clear();
}

// --- Layout ---

/// For text of plain characters that follow one another as before, which is most text; false for any other.
template <typename Sink>
bool vtxFontChain::walkPlain_(std::wstring_view text, vtxEm& width, Sink&& sink) {
    vtxEm pen = 0;
    char32_t left = 0;
    for (wchar_t const letter : text) {
        auto const code = static_cast<char32_t>(letter);
        if (!isPlain(code))
            return false;
        std::int32_t step = steps_[left * asciiCount + code];
        if (step == unknownStep && (step = noteStep_(left, code)) == unknownStep)
            return false;
        Character const& character = ascii_[code];
        pen += step;
        sink(vtxPlacedGlyph{character.face, character.glyph, pen - character.advance, 0});
        left = code;
    }
    width = pen;
    return true;
}

/// The step from behind `left`, or from the start for 0, to behind `right`.
std::int32_t vtxFontChain::noteStep_(char32_t left, char32_t right) {
    Character const& character = find_(right);
    vtxEm step = character.advance;
    if (left && find_(left).face == character.face)
        step += getKerning_(left, right, character.face);
    if (step <= unknownStep || step > std::numeric_limits<std::int32_t>::max())
        return unknownStep;
    return steps_[left * asciiCount + right] = static_cast<std::int32_t>(step);
}

template <typename Sink>
vtxEm vtxFontChain::walk_(std::wstring_view text, Sink&& sink) {
    vtxEm pen = 0;
    char32_t left = 0;
    int leftFace = -1;
    for (size_t i = 0, end = 0; i < text.size(); i = end) {
        char32_t const code = getCodePoint(text[i]);
        end = i + 1;
        if (isInvisible(code)) {
            leftFace = -1;
            continue;
        }
        end = findPieceEnd(text, i);
        if (end == i + 1 && !isShaped(code) && !isMark(code)) {
            Character const& character = find_(code);
            if (character.face == leftFace)
                pen += getKerning_(left, code, leftFace);
            sink(vtxPlacedGlyph{character.face, character.glyph, pen, 0});
            pen += character.advance;
            left = code;
            leftFace = character.face;
        } else {
            Piece const& piece = shape_(text.substr(i, end - i));
            for (vtxShapedGlyph const& glyph : piece.glyphs)
                sink(vtxPlacedGlyph{piece.face, glyph.glyph, pen + glyph.x, -glyph.y});
            pen += piece.advance;
            leftFace = -1;
        }
    }
    return pen;
}

vtxFontChain::Piece const& vtxFontChain::shape_(std::wstring_view text) {
    auto const known = pieces_.find(text);
    if (known != pieces_.end())
        return known->second;
    qor::wstring clean(text);
    for (wchar_t& letter : clean)
        letter = static_cast<wchar_t>(getCodePoint(letter));
    Piece& piece = pieces_[qor::wstring(text)];
    piece.face = findFaceFor_(clean);
    piece.advance = getFace(piece.face).shape(clean, piece.glyphs);
    return piece;
}

// --- Characters and faces ---

vtxFontChain::Character const& vtxFontChain::find_(char32_t codePoint) {
    Character& character = codePoint < asciiCount ? ascii_[codePoint] : characters_[codePoint];
    if (character.face < 0)
        character = lookUp_(codePoint);
    return character;
}

vtxEm vtxFontChain::getKerning_(char32_t left, char32_t right, int face) {
    if (left < asciiCount && right < asciiCount) {
        std::int32_t const step = steps_[left * asciiCount + right];
        if (step != unknownStep)
            return step - ascii_[right].advance;
    }
    auto const [entry, isNew] = kerning_.try_emplace((std::uint64_t(left) << 32) | right, 0);
    if (isNew)
        entry->second = static_cast<std::int32_t>(getFace(face).getKerning(left, right));
    return entry->second;
}

vtxFontChain::Character vtxFontChain::lookUp_(char32_t codePoint) {
    // A face that lacks these two has what looks the same.
    char32_t const like = codePoint == 0xA0 ? U' ' : codePoint == 0x2011 ? U'-' : codePoint;
    size_t index = 0;
    do {
        for (; index < faces_.size(); ++index) {
            for (char32_t const wanted : {codePoint, like}) {
                if (unsigned const glyph = faces_[index]->getGlyph(wanted))
                    return {faces_[index]->getAdvance(glyph), glyph, static_cast<int>(index)};
            }
        }
    } while (addNextFace_(codePoint));
    if (codePoint != 0xFFFD && faces_.front()->getGlyph(0xFFFD) && !faces_.front()->getAdvance(0))
        return lookUp_(0xFFFD);
    return {faces_.front()->getAdvance(0), 0, 0};
}

bool vtxFontChain::addFace_(vtxFontFace* face) {
    if (!face || faces_.size() >= maxFaces || std::find(faces_.begin(), faces_.end(), face) != faces_.end())
        return false;
    faces_.push_back(face);
    return true;
}

/// The next shipped face, and when all have been tried one of the system that shows the code point.
bool vtxFontChain::addNextFace_(char32_t codePoint) {
    qor::vector<vtxFontFace*> const& shipped = catalog_.getShipped();
    while (shippedTried_ < shipped.size()) {
        if (addFace_(shipped[shippedTried_++]))
            return true;
    }
    return addFace_(catalog_.findForCodePoint(codePoint, faces_.front()->getStyle()));
}

/// The first face that has every character of the piece, else the one that has its first.
int vtxFontChain::findFaceFor_(std::wstring_view piece) {
    auto const showsAll = [&](int face) {
        return std::all_of(piece.begin(), piece.end(), [&](wchar_t letter) {
            auto const code = static_cast<char32_t>(letter);
            return isInvisible(code) || getFace(face).getGlyph(code);
        });
    };
    for (wchar_t const letter : piece) {
        auto const code = static_cast<char32_t>(letter);
        if (isInvisible(code))
            continue;
        int const face = find_(code).face;
        if (showsAll(face))
            return face;
    }
    return find_(static_cast<char32_t>(piece.front())).face;
}
