#pragma once

#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

#include <cstdint>
#include <memory>
#include <string_view>

struct FT_FaceRec_;
struct FT_LibraryRec_;
struct hb_blob_t;
struct hb_buffer_t;
struct hb_font_t;

/// Lengths of a face without a size: vtxEmUnit is the size of the font. Sums of a hundred thousand advances stay exact
/// to a fraction of a pixel.
using vtxEm = std::int64_t;
inline constexpr vtxEm vtxEmUnit = vtxEm(1) << 24;

/// Weight as in font files (400 regular, 700 bold).
struct vtxFontStyle {
    int weight = 400;
    bool italic = false;
};

/// A glyph of a shaped piece of text; offsets from the pen, y up.
struct vtxShapedGlyph {
    unsigned glyph = 0;
    vtxEm x = 0;
    vtxEm y = 0;
};

/// Coverage of one glyph, a byte a pixel; `left` and `top` lead from the pen on the baseline to the first pixel, y
/// down.
struct vtxGlyphBitmap {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    qor::vector<unsigned char> coverage;
};

/// One face of a font file: glyph numbers and outlines from FreeType, advances, kerning and shaping from HarfBuzz.
/// Advances are those of the outlines, so that they grow in proportion with the size. For one thread at a time.
class vtxFontFace {
public:
    /// Steps between two pixels at which small glyphs are rasterised.
    static constexpr int phaseCount = 4;
    /// Pixels; larger glyphs are not rasterised.
    static constexpr int maxBitmapSide = 1024;

    /// Null, with the cause in `error`, for what is no scalable font. The library must outlive the face.
    static std::unique_ptr<vtxFontFace> open(FT_LibraryRec_* library, qor::string const& path, int index,
                                             qor::string& error);
    ~vtxFontFace();
    vtxFontFace(vtxFontFace const&) = delete;
    vtxFontFace& operator=(vtxFontFace const&) = delete;

    qor::string const& getPath() const { return path_; }
    qor::string const& getFamily() const { return family_; }
    /// Family and style, as in "DejaVu Sans Bold".
    qor::string const& getFullName() const { return fullName_; }
    vtxFontStyle const& getStyle() const { return style_; }
    bool isFixedPitch() const;

    // --- Metrics; the descender is below 0 ---
    vtxEm getAscender() const { return ascender_; }
    vtxEm getDescender() const { return descender_; }
    vtxEm getLineHeight() const { return lineHeight_; }
    vtxEm getXHeight() const { return xHeight_; }

    // --- Glyphs ---
    /// 0 if the face has none for the code point.
    unsigned getGlyph(char32_t codePoint) const;
    vtxEm getAdvance(unsigned glyph) const;
    /// What stands between two neighbours more than their advances; most often 0 or less. Not cached.
    vtxEm getKerning(char32_t left, char32_t right) const;
    /// Shapes a piece of one script, ligatures and marks included; returns its advance.
    vtxEm shape(std::wstring_view text, qor::vector<vtxShapedGlyph>& glyphs) const;

    /// `size` and `blur` (the radius of the softening, 0 none) in pixels; `phase` quarters of a pixel to the right.
    /// False for a glyph that shows nothing. Of one that is too large only the rough size is told, without coverage.
    bool rasterise(unsigned glyph, double size, int phase, double blur, vtxGlyphBitmap& bitmap) const;

private:
    vtxFontFace() = default;
    bool open_(FT_LibraryRec_* library, int index, qor::string& error);
    void readNames_();
    void readMetrics_();
    vtxEm toEm_(int units) const;

    qor::string path_;
    qor::string family_;
    qor::string fullName_;
    vtxFontStyle style_;
    vtxEm ascender_ = 0, descender_ = 0, lineHeight_ = 0, xHeight_ = 0;
    int unitsPerEm_ = 1000;
    hb_blob_t* blob_ = nullptr;
    FT_FaceRec_* face_ = nullptr;
    hb_font_t* font_ = nullptr;
    hb_buffer_t* buffer_ = nullptr;
    mutable long sizeInForce_ = 0;
};
