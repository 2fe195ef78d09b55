#pragma once

#include <epoxy/gl.h>

/// Internal to the GL back end: viewport and scissor. GL is told only what is new to it.
class vtxGLRegion {
public:
    struct Box {
        GLint x = 0, y = 0;
        GLsizei width = 0, height = 0;
        bool operator==(Box const&) const = default;
    };

    /// With `save` the host's are read and are what `leave` puts back.
    void enter(bool save);
    /// Without: what `leave` sets, for both; the scissor is off then.
    void setLeft(Box const& box);
    void leave();

    /// Asks GL, unless it was asked in this pass.
    Box readViewport();
    void setViewport(Box const& box);
    void setScissor(Box const& box);
    void turnScissorOff();

private:
    /// What GL has, as far as that is known.
    struct State {
        Box viewport, scissor;
        bool scissorOn = false;
    };
    void setScissorSwitch_(bool on);
    void setScissorBox_(Box const& box);

    State left_;
    State current_;
    bool viewportKnown_ = false;
    bool scissorKnown_ = false;
    bool switchKnown_ = false;
};
