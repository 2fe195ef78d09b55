#pragma once

#include <functional>
#include <memory>

#include "examples/gallery/DebugView.h"
#include "examples/gallery/EffectsPage.h"
#include "examples/gallery/GalleryPages.h"
#include "examples/gallery/LabelsWindow.h"
#include "examples/gallery/Options.h"
#include "examples/gallery/ScreenSurface.h"
#include "examples/gallery/WindowsPage.h"
#include "gui_lib/base/Keyboard.h"
#include "host/HostApplication.h"

class Scene;

/// The gallery's windows and scene in a host that has been started.
class Gallery {
public:
    Gallery(host::HostApplication& application, Options const& options);
    ~Gallery();
    Gallery(Gallery const&) = delete;
    Gallery& operator=(Gallery const&) = delete;

    ScreenSurface& getScreen() { return *screen_; }
    DebugView& getDebugView() { return *debugView_; }
    GalleryPages& getPages() { return pages_; }
    gui::Window* getControls() const { return controls_; }
    gui::Window* getStates() const { return states_; }
    gui::Window* getLabels() const { return labels_.window; }

    bool getTurning() const { return turning_; }
    void setTurning(bool turning) { turning_ = turning; }
    /// Of the turning object, radians.
    void setAngle(double radians);

private:
    void addPages_();
    void arrange_();
    void drawSurfaces_();
    void turn_();
    void draw_();
    bool onKey_(gui::KeyboardButton key, bool down);

    host::HostApplication& application_;
    /// Null with a back end without pixels.
    std::unique_ptr<Scene> scene_;
    std::unique_ptr<ScreenSurface> screen_;
    std::unique_ptr<DebugView> debugView_;
    gui::Window* controls_ = nullptr;
    gui::Window* states_ = nullptr;
    LabelsWindow labels_;
    WindowsPage windows_;
    EffectsPage effects_;
    GalleryPages pages_;
    std::shared_ptr<std::function<bool(gui::KeyboardButton, int, bool)>> keyCallback_;
    std::shared_ptr<std::function<void()>> turnCallback_;
    bool turning_ = true;
    double swing_ = 0.0;
    double lastTime_ = 0.0;
};
