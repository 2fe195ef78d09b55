#pragma once

#include "examples/gallery/PictureTarget.h"
#include "examples/gallery/Place.h"

namespace gui {
class OffscreenWindow;
class TextureView;
class Window;
}  // namespace gui

/// A page with the kinds of windows: modal ones, popups, one that passes keys on, overlays, and one that is drawn into
/// a picture.
class WindowsPage {
public:
    WindowsPage();

    gui::Window* getWindow() const { return window_; }
    /// Draws the window off the screen. Between doRedraw and the scene.
    void draw();
    PictureTarget const& getPicture() const { return picture_; }

private:
    void addOffscreen_();

    gui::Window* window_;
    Held<gui::OffscreenWindow> offscreen_;
    Held<gui::TextureView> view_;
    PictureTarget picture_;
};
