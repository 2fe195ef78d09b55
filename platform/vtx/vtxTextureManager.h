#pragma once

#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

#include <osg/Vec2i>

#include <memory>

class vtxTexture;

/// Loads pictures (PNG and JPEG) and hands out reference-counted textures. Equal file and rectangle give the same
/// texture; sub-rectangles of one file share its image. No GL context is needed: the back end makes its objects at the
/// next pass.
class VORLEX_API vtxTextureManager {
public:
    virtual ~vtxTextureManager();

    /// The texture of `file` and `rect` (picture units; an empty or zero-area rectangle means the whole picture) with
    /// one reference more. When the result equals `previous` no reference is added and the caller does nothing further,
    /// otherwise the caller calls `releaseTexture(previous)`. Null for an empty name (silently) and for a picture that
    /// cannot be read (one log line a file).
    virtual vtxTexture* getTexture(qor::basic_string<char> const& file, osg::RectImpl<osg::Vec2i> const& rect,
                                   vtxTexture* previous) = 0;

    /// Gives one reference back. Null, and textures that `getTexture` never gave out, are ignored.
    virtual void releaseTexture(vtxTexture* texture) = 0;

    /// Ends textures without references that have not been asked for lately, and targets' records that are due.
    virtual void flushReleased() = 0;

    /// Counts up whenever a file may have come to stand for another texture, with a new manager too. `getTexture` gives
    /// the texture that it gave before, as long as that has references.
    static unsigned getChangeCount();

    // --- Live reload ---
    /// Reads pictures anew whose files have changed since they were read: `getTexture` gives
    /// other textures for them from now on. One that cannot be read stays
    /// as it is; a line about it is appended to `error`.
    virtual void reloadChanged(qor::basic_string<char>& error) = 0;
    /// The files that are in use, also those that could not be read.
    virtual qor::vector<qor::basic_string<char>> getFiles() const = 0;
};
