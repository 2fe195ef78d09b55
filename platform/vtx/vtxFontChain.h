#pragma once

#include "platform/qor/Containers.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxFontFace.h"

#include <cstdint>
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

    vtxEm measure(std::wstring_view text);
    /// The same width; the glyphs go to `glyphs`.
    vtxEm layOut(std::wstring_view text, qor::vector<vtxPlacedGlyph>& glyphs);

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
    static constexpr char32_t asciiCount = 128;
    static constexpr size_t maxPieces = 8192;
    static constexpr size_t maxPairs = 65536;

    template <typename Sink>
    bool walkPlain_(std::wstring_view text, vtxEm& width, Sink&& sink);
    template <typename Sink>
    vtxEm walk_(std::wstring_view text, Sink&& sink);
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
    Character ascii_[asciiCount];
    qor::hash_map<char32_t, Character> characters_;
    qor::vector<std::int32_t> steps_;  ///< advances with kerning, by left * asciiCount + right
    qor::hash_map<std::uint64_t, std::int32_t> kerning_;
    qor::hash_map<qor::wstring, Piece> pieces_;
};
