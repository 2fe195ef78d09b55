#include "platform/vtx/vtxFontFace.h"

#include "platform/qor/Paths.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H
#include <hb-ot.h>
#include <hb.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// Softens a bitmap by a bell curve; the bitmap grows by the reach of the curve on each side.
class Softener {
public:
    explicit Softener(double radius) {
        double const sigma = std::max(radius * 0.6, 0.3);
        reach_ = static_cast<int>(std::ceil(2.5 * sigma));
        double sum = 0.0;
        for (int i = -reach_; i <= reach_; ++i) {
            weights_.push_back(static_cast<float>(std::exp(-0.5 * i * i / (sigma * sigma))));
            sum += weights_.back();
        }
        for (float& weight : weights_)
            weight = static_cast<float>(weight / sum);
    }

    void apply(vtxGlyphBitmap& bitmap) const {
        int const width = bitmap.width + 2 * reach_;
        int const height = bitmap.height + 2 * reach_;
        qor::vector<float> rows(size_t(width) * size_t(bitmap.height));
        for (int y = 0; y < bitmap.height; ++y)
            spread_(&bitmap.coverage[size_t(y) * size_t(bitmap.width)], bitmap.width, 1,
                    &rows[size_t(y) * size_t(width)], 1);
        qor::vector<float> all(size_t(width) * size_t(height));
        for (int x = 0; x < width; ++x)
            spread_(&rows[size_t(x)], bitmap.height, width, &all[size_t(x)], width);
        bitmap.coverage.resize(all.size());
        std::transform(all.begin(), all.end(), bitmap.coverage.begin(),
                       [](float value) { return static_cast<unsigned char>(std::min(value + 0.5f, 255.0f)); });
        bitmap.left -= reach_;
        bitmap.top -= reach_;
        bitmap.width = width;
        bitmap.height = height;
    }

private:
    template <typename Value>
    void spread_(Value const* from, int count, int fromStep, float* to, int toStep) const {
        for (int i = 0; i < count; ++i) {
            float const value = static_cast<float>(from[i * fromStep]);
            if (value == 0.0f)
                continue;
            for (int k = 0; k <= 2 * reach_; ++k)
                to[(i + k) * toStep] += value * weights_[static_cast<size_t>(k)];
        }
    }

    int reach_;
    qor::vector<float> weights_;
};

void fillBuffer(hb_buffer_t* buffer, std::uint32_t const* text, int length) {
    hb_buffer_clear_contents(buffer);
    hb_buffer_add_utf32(buffer, text, length, 0, length);
    hb_buffer_guess_segment_properties(buffer);
}

/// Pixels that a side touches, from bounds in 64ths.
int getPixels(FT_Pos low, FT_Pos high) {
    return static_cast<int>(std::min<FT_Pos>((high + 63) / 64 - low / 64 + 1, std::numeric_limits<int>::max()));
}

}  // namespace

// --- Opening ---

std::unique_ptr<vtxFontFace> vtxFontFace::open(FT_LibraryRec_* library, qor::string const& path, int index,
                                               qor::string& error) {
    std::unique_ptr<vtxFontFace> face(new vtxFontFace);
    face->path_ = path;
    if (!face->open_(library, index, error))
        return nullptr;
    face->readNames_();
    face->readMetrics_();
    return face;
}

vtxFontFace::~vtxFontFace() {
    hb_buffer_destroy(buffer_);
    hb_font_destroy(font_);
    if (face_)
        FT_Done_Face(face_);
    hb_blob_destroy(blob_);
}

bool vtxFontFace::open_(FT_LibraryRec_* library, int index, qor::string& error) {
    // Not mapped: a file that is overwritten while it is in use would pull the pages away.
    qor::string file, cause;
    if (!qor::readFile(path_, file, cause)) {
        error = "it cannot be read";
        return false;
    }
    blob_ = hb_blob_create(file.data(), static_cast<unsigned>(file.size()), HB_MEMORY_MODE_DUPLICATE, nullptr, nullptr);
    unsigned size = 0;
    auto const* const bytes = reinterpret_cast<FT_Byte const*>(hb_blob_get_data(blob_, &size));
    if (FT_New_Memory_Face(library, bytes, static_cast<FT_Long>(size), index, &face_)) {
        face_ = nullptr;
        error = "it is no font";
        return false;
    }
    if (!FT_IS_SCALABLE(face_) || !FT_IS_SFNT(face_) || face_->units_per_EM < 1) {
        error = "it is no scalable TrueType or OpenType font";
        return false;
    }
    unitsPerEm_ = face_->units_per_EM;
    hb_face_t* const shaped = hb_face_create(blob_, static_cast<unsigned>(index) & 0xFFFF);
    font_ = hb_font_create(shaped);
    hb_face_destroy(shaped);
    hb_ot_font_set_funcs(font_);
    if (unsigned const instance = static_cast<unsigned>(index) >> 16)
        hb_font_set_var_named_instance(font_, instance - 1);
    hb_font_set_scale(font_, unitsPerEm_, unitsPerEm_);
    buffer_ = hb_buffer_create();
    return true;
}

void vtxFontFace::readNames_() {
    family_ = face_->family_name ? face_->family_name : "";
    fullName_ = family_;
    if (face_->style_name)
        fullName_.append(" ").append(face_->style_name);
    style_.italic = (face_->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
    auto const* const table = static_cast<TT_OS2 const*>(FT_Get_Sfnt_Table(face_, FT_SFNT_OS2));
    if (table && table->version != 0xFFFF && table->usWeightClass)
        style_.weight = table->usWeightClass;
    else if (face_->style_flags & FT_STYLE_FLAG_BOLD)
        style_.weight = 700;
}

void vtxFontFace::readMetrics_() {
    ascender_ = toEm_(face_->ascender);
    descender_ = std::min<vtxEm>(toEm_(face_->descender), 0);
    lineHeight_ = std::max(toEm_(face_->height), ascender_ - descender_);
    hb_glyph_extents_t extents;
    bool const measured = hb_font_get_glyph_extents(font_, getGlyph('x'), &extents) && extents.y_bearing > 0;
    xHeight_ = measured ? toEm_(extents.y_bearing) : vtxEmUnit / 2;
}

bool vtxFontFace::isFixedPitch() const { return FT_IS_FIXED_WIDTH(face_) != 0; }

vtxEm vtxFontFace::toEm_(int units) const { return (vtxEm(units) * vtxEmUnit) / unitsPerEm_; }

// --- Glyphs ---

unsigned vtxFontFace::getGlyph(char32_t codePoint) const {
    hb_codepoint_t glyph = 0;
    return hb_font_get_nominal_glyph(font_, codePoint, &glyph) ? glyph : 0;
}

vtxEm vtxFontFace::getAdvance(unsigned glyph) const { return toEm_(hb_font_get_glyph_h_advance(font_, glyph)); }

vtxEm vtxFontFace::getKerning(char32_t left, char32_t right) const {
    // Ligatures and contextual forms are off: a caret may stand between any two letters, and text is measured by parts.
    static hb_feature_t const features[] = {
        {HB_TAG('k', 'e', 'r', 'n'), 1, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
        {HB_TAG('l', 'i', 'g', 'a'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
        {HB_TAG('c', 'l', 'i', 'g'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
        {HB_TAG('c', 'a', 'l', 't'), 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END}};
    std::uint32_t const text[] = {left, right};
    fillBuffer(buffer_, text, 2);
    hb_shape(font_, buffer_, features, std::size(features));
    unsigned count = 0;
    hb_glyph_position_t const* const positions = hb_buffer_get_glyph_positions(buffer_, &count);
    hb_glyph_info_t const* const infos = hb_buffer_get_glyph_infos(buffer_, &count);
    if (count != 2 || infos[0].codepoint != getGlyph(left) || infos[1].codepoint != getGlyph(right))
        return 0;
    return toEm_(positions[0].x_advance + positions[1].x_advance -
                 hb_font_get_glyph_h_advance(font_, infos[0].codepoint) -
                 hb_font_get_glyph_h_advance(font_, infos[1].codepoint));
}

vtxEm vtxFontFace::shape(std::wstring_view text, qor::vector<vtxShapedGlyph>& glyphs) const {
    static_assert(sizeof(wchar_t) == sizeof(std::uint32_t));
    glyphs.clear();
    fillBuffer(buffer_, reinterpret_cast<std::uint32_t const*>(text.data()), static_cast<int>(text.size()));
    hb_shape(font_, buffer_, nullptr, 0);
    unsigned count = 0;
    hb_glyph_position_t const* const positions = hb_buffer_get_glyph_positions(buffer_, &count);
    hb_glyph_info_t const* const infos = hb_buffer_get_glyph_infos(buffer_, &count);
    vtxEm pen = 0;
    for (unsigned i = 0; i < count; ++i) {
        glyphs.push_back({infos[i].codepoint, pen + toEm_(positions[i].x_offset), toEm_(positions[i].y_offset)});
        pen += toEm_(positions[i].x_advance);
    }
    return pen;
}

bool vtxFontFace::rasterise(unsigned glyph, double size, int phase, double blur, vtxGlyphBitmap& bitmap) const {
    long const wanted = std::max(1L, std::lround(size * 64.0));
    if (wanted != sizeInForce_ && FT_Set_Char_Size(face_, 0, wanted, 72, 72))
        return false;
    sizeInForce_ = wanted;
    // Hinted upwards only: stems keep their true distance, so that outlines fit the proportional advances.
    if (FT_Load_Glyph(face_, glyph, FT_LOAD_TARGET_LIGHT | FT_LOAD_NO_BITMAP) ||
        face_->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return false;
    FT_Outline_Translate(&face_->glyph->outline, phase * 64 / phaseCount, 0);
    // A font may have outlines thousands of times its size.
    FT_BBox box;
    FT_Outline_Get_CBox(&face_->glyph->outline, &box);
    bitmap.width = getPixels(box.xMin, box.xMax);
    bitmap.height = getPixels(box.yMin, box.yMax);
    bitmap.coverage.clear();
    if (bitmap.width > maxBitmapSide || bitmap.height > maxBitmapSide)
        return true;
    if (FT_Render_Glyph(face_->glyph, FT_RENDER_MODE_NORMAL))
        return false;
    FT_Bitmap const& source = face_->glyph->bitmap;
    if (!source.width || !source.rows)
        return false;
    bitmap.left = face_->glyph->bitmap_left;
    bitmap.top = -face_->glyph->bitmap_top;
    bitmap.width = static_cast<int>(source.width);
    bitmap.height = static_cast<int>(source.rows);
    bitmap.coverage.resize(size_t(source.width) * source.rows);
    for (unsigned row = 0; row < source.rows; ++row)
        std::copy_n(source.buffer + std::ptrdiff_t(row) * source.pitch, source.width,
                    &bitmap.coverage[size_t(row) * source.width]);
    if (blur > 0.0)
        Softener(blur).apply(bitmap);
    return true;
}
