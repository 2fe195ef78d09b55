#pragma once

#include "examples/gallery/Place.h"

namespace gui {
class TextureView;
class Window;
}  // namespace gui

/// Labels: plain, wrapped by hand, turned, with a fading colour; a picture of the host; half opaque and zoomed widgets.
struct LabelsWindow {
    gui::Window* window = nullptr;
    /// Waits for a texture.
    Held<gui::TextureView> picture;
};

LabelsWindow makeLabelsWindow();
