#pragma once

#include <functional>
#include <memory>

#include <osg/Vec2i>

#include "gui_lib/base/Application.h"
#include "gui_lib/base/RawInput.h"
#include "host/HostListener.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

namespace host {

/// What a host starts with.
struct HostOptions {
    qor::string title = "Vorlex GUI";
    /// Skin file, found by qor::findFile.
    qor::string skin = "skins/dark.lua";
    /// Of the main window, GUI units.
    osg::Vec2i size{1280, 800};
    /// The same in pixels; counts instead of `size` unless it is 0.
    osg::Vec2i pixels{0, 0};
    /// Pixels per GUI unit; 0 asks the display, where there is one.
    float scale = 0.0f;
};

/// The part of a host that needs no display: input state, the order of a frame, and start and end in the right order.
/// A subclass supplies a context, a clock, a clipboard and where input comes from.
/// Order: `start`, then `runFrame` until `getRunning` is false, then `stop`. A frame: pump input, update callbacks,
/// processMessages, updateTargets, redraw, doRedraw, parse, surfaces, the scene, draw, what lies over it, present.
/// Coordinates: points are raw pixels of the main window.
class VORLEX_API HostApplication : public gui::Application {
public:
    ~HostApplication() override;

    /// Opens the window or framebuffer, the renderer and GUI. False, with the cause logged, if one of them fails.
    bool start(HostOptions const& options);
    /// Ends GUI, renderer and window. Allowed after a failed start, and twice.
    void stop();

    /// One whole frame.
    void runFrame();
    /// Drawn under the windows, with the host's context current and its framebuffer bound; it clears what it does not
    /// cover. Without one the windows lie on a plain colour.
    void setDrawScene(std::function<void()> function) { drawScene_ = std::move(function); }
    /// Runs in each frame after doRedraw and before the scene: surfaces are drawn into their targets here.
    void setDrawSurfaces(std::function<void()> function) { drawSurfaces_ = std::move(function); }
    /// Drawn over the windows.
    void setDrawOver(std::function<void()> function) { drawOver_ = std::move(function); }
    unsigned getFrameCount() const { return frameCount_; }

    /// The skin file of the start.
    qor::string const& getSkinFile() const { return skin_; }
    float getScale() const { return scale_; }
    /// No scale was asked for at the start: the display's counts.
    bool getFollowsDisplayScale() const { return followsDisplayScale_; }
    /// Changes pixels per unit while running; the size in pixels stays.
    void setScale(float scale);

    /// Writes what was drawn last as a PNG file. False, with the cause logged, if it cannot be written.
    virtual bool saveScreenshot(char const* path);

    // --- Input: keeps the state that the toolkit asks for and passes the event on ---
    /// The one way in, which all below take.
    void push(HostInput const& input);
    void pushMouseMove(int x, int y);
    void pushMouseButton(int button, bool down);
    /// Positive away from the user.
    void pushMouseWheel(int delta);
    /// Repeated downs are passed on.
    void pushKey(gui::KeyboardButton key, int modifiers, bool down);
    void pushChar(gui::KeyboardButton key, int codePoint);
    void pushRawKey(gui::RawKeyInfo const& info);
    void pushRawMouse(gui::RawMouseInfo const& info);
    /// The window lost the focus: every key and button held is let go, and nothing is clicked by that.
    void releaseAllInput();
    void pushActivate(bool active);
    /// The user asked to end the program.
    void pushQuit();
    /// Where the cursor is, if that is not where the mouse was moved to last: outside, or over another program.
    void setCursorPosition(osg::Vec2i const& position) { cursor_ = position; }

    /// Not owned; null ends it.
    void setListener(HostListener* listener) { listener_ = listener; }
    HostListener* getListener() const { return listener_; }

    // Application:
    void update() override;
    void processModal() override;
    bool getMouseButtonDown(int button) const override;
    bool getKeyDown(gui::KeyboardButton button) const override;
    void getCursorSize(osg::Vec2i& size) const override;
    void getCursorScreenPosition(osg::Vec2i& position) const override;

protected:
    HostApplication();

    // --- What a subclass supplies ---
    /// Makes the renderer over the back end of the context; false with the cause logged.
    virtual bool createRenderer_() = 0;
    /// Ends window and context.
    virtual void destroyWindow_() = 0;
    /// Takes in what has arrived.
    virtual void pumpInput_() = 0;
    /// Gives the window another size in pixels, where the host and not the display decides.
    virtual void resizeWindow_(osg::Vec2i const&) {}
    /// Binds the framebuffer that the frame is drawn to.
    virtual void beginPicture_() = 0;
    /// Fills that framebuffer with a plain colour: for a host without a scene of its own.
    virtual void clearPicture_() = 0;
    /// Shows the frame.
    virtual void present_() = 0;
    /// RGBA, rows from the top; empty if there are no pixels.
    virtual qor::vector<unsigned char> readPicture_() = 0;
    /// Pixels per unit of the display, 1 where unknown.
    virtual float getDisplayScale_();
    /// GUI has been made.
    virtual void onStarted_() {}

    /// The window has another size in pixels or another scale.
    void applySize_(osg::Vec2i const& pixels, float scale);

    qor::string title_;

private:
    /// Until it ends, what is pushed is the program's own doing.
    class WorkScope;

    void takeInput_();
    void deliver_(HostInput const& input);
    void pushMouseButton_(int button, bool down);
    void pushKey_(gui::KeyboardButton key, int modifiers, bool down);
    void releaseAllInput_();

    qor::hash_set<int> keysDown_;
    qor::hash_set<int> buttonsDown_;
    osg::Vec2i cursor_;
    float scale_ = 1.0f;
    unsigned frameCount_ = 0;
    bool followsDisplayScale_ = false;
    bool started_ = false;
    bool rendererMade_ = false;
    bool atWork_ = false;
    HostListener* listener_ = nullptr;
    qor::string skin_;
    std::function<void()> drawScene_;
    std::function<void()> drawSurfaces_;
    std::function<void()> drawOver_;
};

}  // namespace host
