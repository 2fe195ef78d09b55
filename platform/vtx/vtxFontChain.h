#pragma once

#include "platform/qor/Containers.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxFontFace.h"

#include <cstdint>
#include <limits>
#include <string_view>

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
    /// The same width. Calls `sink` with each glyph and the plain character that it shows, 0 for any other.
    template <typename Sink>
    vtxEm layOut(std::wstring_view text, Sink&& sink) {
        Walk walk;
        for (size_t i = 0; i < text.size();) {
            i = layOutPlain_(text, i, walk, sink);
            if (i == text.size())
                break;
            i = addPiece_(text, i, walk);
            for (vtxPlacedGlyph const& glyph : placed_)
                sink(glyph, 0);
        }
        return walk.pen;
    }

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

    static bool isPlain_(char32_t code) { return code >= 0x20 && code < 0x7F; }
    /// Goes on over plain characters; returns where it came to another, or to one that another has to do with.
    template <typename Sink>
    size_t layOutPlain_(std::wstring_view text, size_t index, Walk& walk, Sink& sink) {
        if (walk.left >= plainCount)
            return index;
        // What changes with each character stays out of `walk`, which is seen elsewhere.
        vtxEm pen = walk.pen;
        char32_t left = walk.left;
        for (; index < text.size(); ++index) {
            auto const code = static_cast<char32_t>(text[index]);
            // Marks and joiners begin above.
            bool const alone = index + 1 == text.size() || static_cast<char32_t>(text[index + 1]) < 0x300;
            if (!isPlain_(code) || !alone)
                break;
            std::int32_t step = steps_[left * plainCount + code];
            if (step == unknownStep && (step = noteStep_(left, code)) == unknownStep)
                break;
            Character const& character = ascii_[code];
            pen += step;
            left = code;
            sink(vtxPlacedGlyph{character.face, character.glyph, pen - character.advance, 0}, code);
        }
        walk = {pen, left, left ? ascii_[left].face : -1};
        return index;
    }
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
    qor::vector<vtxPlacedGlyph> placed_;  ///< scratch: what addPiece_ has added
};
