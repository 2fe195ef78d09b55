#pragma once

#include <array>

#include "platform/qor/Api.h"
#include "platform/qor/String.h"

namespace host {

/// One piece of input as a host passes it on; `HostApplication::push` takes it, so that what was heard once can be put
/// in again. Coordinates: raw pixels of the main window.
struct HostInput {
    enum Kind {
        MouseMove,    ///< x, y
        MouseButton,  ///< button, down
        MouseWheel,   ///< delta
        Key,          ///< key, modifiers, down
        Char,         ///< key, code point
        RawKey,       ///< scan code, key, modifiers, down, repeated
        RawMouse,     ///< x, y, delta x, delta y, button, down, wheel
        ReleaseAll,   ///< the focus was lost
        Resize,       ///< width, height, and `scale`
        Activate,     ///< active
        Quit          ///< the user asked to end the program
    };
    Kind kind = MouseMove;
    std::array<int, 7> values{};
    /// Pixels per unit, of Resize alone.
    float scale = 1.0f;
};

/// Hears whatever a host learns from outside, in order: what a recorder has to write down.
class VORLEX_API HostListener {
public:
    virtual ~HostListener() = default;

    /// Renderer and GUI have been made; nothing has run yet.
    virtual void onStarted() {}
    /// Input from outside. What the program itself puts in while a frame is at work is not told.
    virtual void onInput(HostInput const&) {}
    /// The input of a frame is in; until the next frame clock and cursor stand still. Also in frames inside frames.
    virtual void onFrame() {}
    /// What the program is about to get from the clipboard; may be replaced.
    virtual void onClipboardRead(qor::basic_string<wchar_t>&) {}
};

}  // namespace host
