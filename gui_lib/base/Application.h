#pragma once

#include "gui_lib/base/Keyboard.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

#include <osg/Vec2i>

#include <functional>
#include <memory>

namespace gui {

/// The host, as the toolkit sees it: clock, key and button state, clipboard, cursor and the main window. The host
/// derives from it, makes one object before the renderer and GUI, and ends it last with `destroy`. The toolkit runs no
/// loop of its own. Coordinates: raw pixels of the main window.
class VORLEX_API Application {
public:
    Application();

    /// The one object, or null.
    static Application* get() { return instance_; }
    /// Deletes the object and clears the pointer.
    static void destroy();

    /// Stores the arguments, then calls `createWindow_`.
    virtual void createMainWindow(int width, int height, bool fullScreen);
    virtual bool getFullScreen() const;
    virtual void setFramerate(int framerate);
    virtual int getFramerate() const;
    virtual void addUpdateCallback(std::shared_ptr<std::function<void()>> callback);
    virtual void removeUpdateCallback(std::shared_ptr<std::function<void()>> callback);
    virtual void setOnQuitCallback(std::function<void()> callback);
    virtual void setOnActivateCallback(std::function<void(bool)> callback);
    virtual qor::basic_string<char> getScreenshotExtention() const;
    virtual void update();
    virtual void draw();
    virtual bool getRunning() const;
    /// Runs one whole frame of the host while a modal window blocks; calls `update` by default.
    virtual void processModal();
    virtual void quit();
    /// Called when the user asks to end the program: the callback if set, otherwise `quit`.
    virtual void onQuit();
    virtual void onActivate(bool active);
    virtual bool getActive() const;
    /// Seconds, rising; starts above 0.
    virtual double getTime() const = 0;
    virtual bool getMouseButtonDown(int button) const = 0;
    virtual bool getKeyDown(KeyboardButton button) const = 0;
    virtual void setClipboardText(qor::basic_string<wchar_t> const& text) = 0;
    virtual qor::basic_string<wchar_t> getClipboardText() const = 0;
    /// Size of the cursor's picture in pixels.
    virtual void getCursorSize(osg::Vec2i& size) const = 0;
    /// Cursor relative to the main window, also while it is outside.
    virtual void getCursorScreenPosition(osg::Vec2i& position) const = 0;
    virtual void windowPlacementInfoInvalidate();
    virtual ~Application();

    /// Size of the main window in pixels.
    int getWidth() const { return width; }
    int getHeight() const { return height; }

    void resetCallbacks();

protected:
    virtual void createWindow_(int width, int height, bool fullScreen) = 0;
    /// Calls the update callbacks in order; one that a callback removed is not called.
    void callUpdateCallbacks_();

    static Application* instance_;

    int width = 0;
    int height = 0;
    bool fullScreen = false;
    bool running = true;
    int framerate = 1000;
    bool active = false;
    qor::vector<std::shared_ptr<std::function<void()>>> updateCallbacks;
    std::function<void()> onQuitCallback;
    std::function<void(bool)> onActivateCallback;
};

}  // namespace gui
