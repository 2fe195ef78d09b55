#include "platform/vtx/vtxFontChain.h"

#include "platform/vtx/vtxFontCatalog.h"

#include <hb.h>

#include <algorithm>
#include <limits>

namespace {

constexpr size_t maxPieceLength = 64;
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
    steps_.assign(plainCount * plainCount, unknownStep);
}

vtxEm vtxFontChain::measure(std::wstring_view text) {
    Walk walk;
    for (size_t i = 0; i < text.size();) {
        i = addPlain_<false>(text, i, walk);
        if (i != text.size())
            i = addPiece_(text, i, walk);
    }
    return walk.pen;
}

void vtxFontChain::trim() {
    if (pieces_.size() > maxPieces)
        pieces_.clear();
    if (kerning_.size() > maxPairs)
        kerning_.clear();
}

// --- Layout ---

/// The step from behind `left`, or from the start for 0, to behind `right`.
std::int32_t vtxFontChain::noteStep_(char32_t left, char32_t right) {
    Character const& character = find_(right);
    vtxEm step = character.advance;
    if (left && find_(left).face == character.face)
        step += getKerning_(left, right, character.face);
    if (step <= unknownStep || step > std::numeric_limits<std::int32_t>::max())
        return unknownStep;
    return steps_[left * plainCount + right] = static_cast<std::int32_t>(step);
}

template <bool wantPens>
size_t vtxFontChain::addPlain_(std::wstring_view text, size_t index, Walk& walk) {
    if (walk.left >= plainCount)
        return index;
    if (wantPens && pens_.size() < text.size() - index)
        pens_.resize(text.size() - index);
    Walk const before = walk;
    size_t const end = walkPlain_<wantPens>(text, index, walk);
    // The last one stands alone only if no mark or joiner follows; they begin at 0x300.
    if (end == index || end == text.size() || static_cast<char32_t>(text[end]) < 0x300) [[likely]]
        return end;
    walk = before;
    return walkPlain_<wantPens>(text.substr(0, end - 1), index, walk);
}

template size_t vtxFontChain::addPlain_<true>(std::wstring_view text, size_t index, Walk& walk);

template <bool wantPens>
size_t vtxFontChain::walkPlain_(std::wstring_view text, size_t index, Walk& walk) {
    // What is seen elsewhere stays out of the loop.
    std::int32_t const* const steps = steps_.data();
    std::int32_t const* row = steps + walk.left * plainCount;
    vtxEm pen = walk.pen;
    vtxEm* nextPen = pens_.data();
    for (; index < text.size(); ++index) {
        std::size_t const code = static_cast<char32_t>(text[index]);
        if (!isPlain_(code))
            break;
        vtxEm step = row[code];
        if (step == unknownStep) [[unlikely]] {
            step = noteStep_(static_cast<char32_t>((row - steps) / plainCount), static_cast<char32_t>(code));
            if (step == unknownStep)
                break;
        }
        pen += step;
        row = steps + code * plainCount;
        if (wantPens)
            *nextPen++ = pen - ascii_[code].advance;
    }
    auto const left = static_cast<char32_t>((row - steps) / plainCount);
    walk = {pen, left, left ? ascii_[left].face : -1};
    return index;
}

/// Fills `placed_` with what stands at `index` and returns where that ends.
size_t vtxFontChain::addPiece_(std::wstring_view text, size_t index, Walk& walk) {
    placed_.clear();
    char32_t const code = getCodePoint(text[index]);
    if (isInvisible(code)) {
        walk.left = 0;
        walk.leftFace = -1;
        return index + 1;
    }
    size_t const end = findPieceEnd(text, index);
    if (end == index + 1 && !isShaped(code) && !isMark(code)) {
        Character const& character = find_(code);
        if (character.face == walk.leftFace)
            walk.pen += getKerning_(walk.left, code, walk.leftFace);
        placed_.push_back({character.face, character.glyph, walk.pen, 0});
        walk.pen += character.advance;
        walk.left = code;
        walk.leftFace = character.face;
    } else {
        Piece const& piece = shape_(text.substr(index, end - index));
        for (vtxShapedGlyph const& glyph : piece.glyphs)
            placed_.push_back({piece.face, glyph.glyph, walk.pen + glyph.x, -glyph.y});
        walk.pen += piece.advance;
        walk.left = 0;
        walk.leftFace = -1;
    }
    return end;
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
    Character& character = codePoint < plainCount ? ascii_[codePoint] : characters_[codePoint];
    if (character.face < 0)
        character = lookUp_(codePoint);
    return character;
}

vtxEm vtxFontChain::getKerning_(char32_t left, char32_t right, int face) {
    if (left < plainCount && right < plainCount) {
        std::int32_t const step = steps_[left * plainCount + right];
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
