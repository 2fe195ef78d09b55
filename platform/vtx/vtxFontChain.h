#pragma once

#include "platform/qor/Containers.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxFontFace.h"

#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>

class vtxFontCatalog;

/// A glyph of a laid-out line; the pen's place is in ems from the start of the baseline, y down.
struct vtxPlacedGlyph {
    int face = 0;
    unsigned glyph = 0;
    vtxEm x = 0;
    vtxEm y = 0;
};

/// A face with those that stand in for characters it lacks, and the layout of text in them, for every size at once.
/// The width of a text is the sum of the advances of its characters and of the kerning of its neighbours, so that the
/// width of a part tells where the rest begins. Marks are shaped with their base, and pieces in a script whose letters
/// join or change places are shaped as one. Ligatures and contextual forms are off for all other text. Control
/// characters and invisible formatting characters, tabs included, have no width and show nothing.
/// All that is found is kept, so text that was seen before allocates nothing. For one thread at a time.
class vtxFontChain {
public:
    vtxFontChain(vtxFontCatalog& catalog, vtxFontFace& face);

    /// Face 0 is the one that was asked for.
    vtxFontFace const& getFace(int index) const { return *faces_[static_cast<size_t>(index)]; }

    /// Printable characters of ASCII have tables of their own, by their codes, which are below this.
    static constexpr char32_t plainCount = 128;

    vtxEm measure(std::wstring_view text);
    /// The same width. Stretches of plain characters go to `plain(characters, pens)` with the pen of each, all other
    /// glyphs one by one to `other(placed)`, in the order of the text.
    template <typename Plain, typename Other>
    vtxEm layOut(std::wstring_view text, Plain&& plain, Other&& other) {
        Walk walk;
        for (size_t i = 0; i < text.size();) {
            size_t const begin = std::exchange(i, addPlain_(text, i, walk));
            if (i != begin)
                plain(text.substr(begin, i - begin), pens_.data());
            if (i == text.size())
                break;
            i = addPiece_(text, i, walk);
            for (vtxPlacedGlyph const& glyph : placed_)
                other(glyph);
        }
        return walk.pen;
    }
    /// The glyph of a plain character that was laid out, at the start of a line.
    vtxPlacedGlyph getPlain(char32_t code) const { return {ascii_[code].face, ascii_[code].glyph, 0, 0}; }

    /// Forgets shaped pieces and kerned pairs when there are very many.
    void trim();

private:
    struct Character {
        vtxEm advance = 0;
        unsigned glyph = 0;
        int face = -1;  ///< -1: not looked up yet
    };
    struct Piece {
        vtxEm advance = 0;
        int face = 0;
        qor::vector<vtxShapedGlyph> glyphs;
    };
    /// How far a layout has come.
    struct Walk {
        vtxEm pen = 0;
        /// The character on the left and its face if it stood alone, else 0 and -1.
        char32_t left = 0;
        int leftFace = -1;
    };
    static constexpr std::int32_t unknownStep = std::numeric_limits<std::int32_t>::min();
    static constexpr size_t maxPieces = 8192;
    static constexpr size_t maxPairs = 65536;

    static bool isPlain_(std::size_t code) { return code - 0x20 < 0x7F - 0x20; }
    /// Goes on over plain characters that stand alone, whose pens go into `pens_` if wanted; returns where that ends.
    template <bool wantPens = true>
    size_t addPlain_(std::wstring_view text, size_t index, Walk& walk);
    /// The same, whatever follows.
    template <bool wantPens>
    size_t walkPlain_(std::wstring_view text, size_t index, Walk& walk);
    size_t addPiece_(std::wstring_view text, size_t index, Walk& walk);
    Character const& find_(char32_t codePoint);
    Character lookUp_(char32_t codePoint);
    bool addNextFace_(char32_t codePoint);
    bool addFace_(vtxFontFace* face);
    int findFaceFor_(std::wstring_view piece);
    vtxEm getKerning_(char32_t left, char32_t right, int face);
    std::int32_t noteStep_(char32_t left, char32_t right);
    Piece const& shape_(std::wstring_view piece);

    vtxFontCatalog& catalog_;
    qor::vector<vtxFontFace*> faces_;
    size_t shippedTried_ = 0;
    Character ascii_[plainCount];
    qor::hash_map<char32_t, Character> characters_;
    qor::vector<std::int32_t> steps_;  ///< advances with kerning, by left * plainCount + right
    qor::hash_map<std::uint64_t, std::int32_t> kerning_;
    qor::hash_map<qor::wstring, Piece> pieces_;
    qor::vector<vtxEm> pens_;             ///< scratch: of what addPlain_ has added
    qor::vector<vtxPlacedGlyph> placed_;  ///< scratch: what addPiece_ has added
};
