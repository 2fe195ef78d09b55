#pragma once

#include "platform/qor/Api.h"

#include <string_view>

/// A font at one size and blur. All results are whole GUI units.
class VORLEX_API vtxFont {
public:
    /// 0 sharp; 1 and 2 soften the blur layer of a text string.
    enum Blur { BlurNone = 0, BlurSmall = 1, BlurLarge = 2 };

    virtual ~vtxFont();

    virtual int getAscender() const = 0;
    /// Negative below the baseline.
    virtual int getDescender() const = 0;
    virtual int getLineHeight() const = 0;
    /// Width of one line of text (advances plus kerning). `scale` -1.0 means the renderer's scale.
    virtual int getTextWidth(std::basic_string_view<wchar_t> text, float scale) const = 0;
};
