#pragma once

#include <functional>
#include <memory>

#include "platform/vtx/vtxDevice.h"

/// The framebuffer that the toolkit draws to when no target is bound: its GL name and the part of it that is drawn to,
/// in pixels from its bottom left, as GL's viewport has it.
struct vtxGLHostFramebuffer {
    unsigned name = 0;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

struct vtxGLOptions {
    /// True: the host's GL state is read when a pass opens and put back when it closes. False: nothing is read, and a
    /// pass leaves behind the defaults that docs/renderer.md lists.
    bool saveHostState = true;
    /// In a debug context, errors that GL reports during a pass are counted and logged. Other contexts pay nothing for
    /// it.
    bool debugOutput = true;
    /// Asked when the outermost pass opens. Empty: the draw framebuffer and the viewport that are bound then, by two
    /// queries.
    std::function<vtxGLHostFramebuffer()> hostFramebuffer;
};

/// The back end over OpenGL 3.3 core or OpenGL ES 3.0, whichever the current context is.
///
/// Lifetime: made, used and ended on one thread with one context current; GL objects are not shared between contexts.
/// Coordinates: pixel rows go from the top of the host's viewport or of a target downwards.
/// Colours: premultiplied and never converted; the host's framebuffer is written without sRGB encoding.
class VORLEX_API vtxGLDevice : public vtxDevice {
public:
    ~vtxGLDevice() override;

    /// Errors that GL reported so far in passes; always 0 outside a debug context.
    virtual unsigned getErrorCount() const = 0;
    /// The GL name of a plain texture, for a host that draws with it; 0 if there is none of that handle. Row 0 is the
    /// top, colours are premultiplied. It may change whenever the toolkit draws.
    virtual unsigned getTextureName(vtxDeviceHandle texture) = 0;
    /// Whether the context is OpenGL ES.
    virtual bool getIsES() const = 0;
};

/// A device for the context that is current on this thread. Null, after one log line with cause and remedy, where there
/// is no current context or where it is too old.
VORLEX_API std::unique_ptr<vtxGLDevice> vtxCreateGLDevice(vtxGLOptions const& options = {});
