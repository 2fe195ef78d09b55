#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxFont.h"

#include <memory>

/// Opens fonts by file name or family name, with fallback to the shipped fonts.
class VORLEX_API vtxFontManager {
public:
    virtual ~vtxFontManager();

    /// Null only for an empty name, a size below 1, or when not even a shipped font can be read. An unknown name gives
    /// a shipped font and one log line. `size` is in GUI units; one above 65536 counts as that.
    virtual std::shared_ptr<vtxFont> getFont(qor::basic_string<char> const& name, int size, vtxFont::Blur blur) = 0;

    /// Runs first in the toolkit's doRedraw pass: pages without users go, caches are trimmed.
    virtual void doRedraw() = 0;

    /// Counts up whenever measured widths or built glyphs may differ (a change of scale) or a name may stand for
    /// another font: whoever keeps built text or a font compares it.
    virtual unsigned getScaleEpoch() const = 0;

    /// Whether fonts that are installed on the system may be used beside the shipped ones (they are, to begin with).
    /// Without them text looks the same on every machine. Fonts already handed out stay as they are.
    virtual void setSystemFontsUsed(bool used) = 0;
    /// Counts up whenever `getFont` may give other fonts for the same names than before: after the call above, and
    /// after fonts were read anew.
    virtual unsigned getFontEpoch() const = 0;

    // --- Live reload ---
    /// Reads fonts anew whose files have changed since they were read: `getFont` gives
    /// other fonts for them from now on. One that cannot be read stays
    /// as it is; a line about it is appended to `error`.
    virtual void reloadChanged(qor::basic_string<char>& error) = 0;
    /// The files that are in use, also those that could not be read.
    virtual qor::vector<qor::basic_string<char>> getFiles() const = 0;
};
