#pragma once

#include "platform/qor/String.h"
#include "platform/vtx/vtxFontFace.h"

struct _FcConfig;
struct _FcPattern;

/// The fonts installed on the system, asked for through Fontconfig, which is opened at the first question.
/// For one thread at a time.
class vtxSystemFonts {
public:
    struct Place {
        qor::string path;
        int index = 0;
    };

    vtxSystemFonts() = default;
    ~vtxSystemFonts();
    vtxSystemFonts(vtxSystemFonts const&) = delete;
    vtxSystemFonts& operator=(vtxSystemFonts const&) = delete;

    /// False if no family has that name.
    bool findFamily(qor::string const& family, vtxFontStyle const& style, Place& place);
    /// A font that shows the code point.
    bool findForCodePoint(char32_t codePoint, vtxFontStyle const& style, Place& place);
    /// Any font, preferably without serifs.
    bool findAny(vtxFontStyle const& style, Place& place);

private:
    bool open_();
    _FcPattern* match_(char const* family, char32_t codePoint, vtxFontStyle const& style);

    _FcConfig* config_ = nullptr;
    bool opened_ = false;
};

/// Small letters without blanks and hyphens, by which names of families are compared.
qor::string vtxGetFamilyKey(std::string_view name);
