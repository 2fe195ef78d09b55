#pragma once

#include "gui_lib/base/Keyboard.h"
#include "gui_lib/base/RawInput.h"
#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/SmallVector.h"
#include "platform/qor/String.h"

#include <osg/Vec2f>
#include <osg/Vec2i>

#include <functional>
#include <memory>
#include <stdexcept>

struct lua_State;

namespace gui {

namespace skin {
class Skin;
}

class GraphicCommands;
class Image;
class Message;
class MessagePool;
class OffscreenWindow;
class Widget;
class WindowBase;
class WindowsManager;

/// The one object through which a host drives the toolkit: surfaces, input queue, frame passes, skins and coordinates.
/// Order: Application, renderer, `create`; then each frame input calls, `processMessages`,
/// `UpdateManager::updateTargets`, `redraw` if wanted, `doRedraw`, `parse`, `draw`; at the end `destroy`, renderer,
/// `Application::destroy`. Coordinates: GUI units are raw pixels divided by the renderer's scale. Lifetime: between
/// `create` and `destroy`. All calls on one thread.
class VORLEX_API GUI {
public:
    /// What `create` throws.
    class VORLEX_API Exception : public std::runtime_error {
    public:
        explicit Exception(qor::basic_string<char> const& text);
        ~Exception() override;
    };

    /// Hears the mouse before any window. Coordinates: GUI units.
    class VORLEX_API MouseListener {
    public:
        virtual ~MouseListener();
        virtual void onMouseMove(int x, int y);
        virtual void onMouseDown(int x, int y, MouseButton button);
        virtual void onMouseDoubleClick(int x, int y, MouseButton button);
        virtual void onMouseUp(int x, int y, MouseButton button);
        virtual void onMouseWheel(int x, int y, int delta);
    };

    class VORLEX_API RawKeyListener {
    public:
        virtual ~RawKeyListener();
        virtual void onRawKeyInput(RawKeyInfo const& info);
    };

    class VORLEX_API RawMouseListener {
    public:
        virtual ~RawMouseListener();
        virtual void onRawMouseInput(RawMouseInfo const& info);
    };

    /// Switches clipping off for a scope; it is on afterwards, whatever it was before.
    class VORLEX_API DisableClippingGuard {
    public:
        DisableClippingGuard();
        ~DisableClippingGuard();
        DisableClippingGuard(DisableClippingGuard const&) = delete;
        DisableClippingGuard& operator=(DisableClippingGuard const&) = delete;
    };

    using KeyboardCallback = std::function<bool(KeyboardButton, int, bool)>;
    using SurfaceMouseFunc = std::function<osg::Vec2i(int, int)>;

    // --- Life ---
    /// Makes the one GUI; does nothing if it exists. `size` is the viewport in raw pixels; a scale not above 0 counts
    /// as 1. Throws Exception without a renderer, and for a skin file that cannot be loaded, fails, or leaves no table
    /// "Skin".
    static void create(qor::basic_string<char> const& skinFile, osg::Vec2i const& size, float scale);
    /// Ends every widget and layout still alive. Ignored, with a log line, from inside a message, a tick or a pass.
    static void destroy();
    static GUI* get() { return instance_; }

    // --- Frame ---
    void processMessages();
    /// Marks every shown window first if `all`.
    void redraw(bool all);
    void parse();
    void doRedraw();
    /// Draws the background picture and surface 0 into the bound framebuffer.
    void draw();

    // --- Surfaces ---
    /// A new surface, drawn by `drawToSurface`; returns its id.
    int createSurface();
    bool getSurfaceIdValid(int id) const;
    WindowsManager* getWindowsManager(int id) const;
    /// Draws a surface into the bound target. `size` is raw pixels.
    void drawToSurface(int id, osg::Vec2i const& size, osg::Vec2f const& scale, float gamma, float intensity);
    /// The same for one window that no manager shows.
    void drawOffscreenWindow(OffscreenWindow* window, osg::Vec2i const& size, osg::Vec2f const& scale, float gamma,
                             float intensity);
    /// Maps the mouse position (GUI units of surface 0) onto a surface; empty restores the identity.
    void setSurfaceMouseFunc(int id, SurfaceMouseFunc function);
    /// Called with (owns the cursor, cursor number, window) when a window's cursor comes, changes or goes.
    void setSurfaceMouseCursorCallback(int id, std::function<void(bool, int, WindowBase*)> callback);
    osg::Vec2i getMousePosition(int surfaceId) const;

    // --- Overlays and custom windows ---
    long long createCustomOverlay();
    void drawCustomOverlay(long long id);
    void submitCustomOverlay(long long id);
    void submitCustomOverlay(long long id, void (*function)(GraphicCommands*));
    void submitGraphicCommands(void (*function)(GraphicCommands*));

    // --- Input: any time, delivered by processMessages. Points are raw pixels ---
    void mouseMove(int x, int y);
    void mouseDown(MouseButton button);
    void mouseUp(MouseButton button);
    /// Positive away from the user.
    void mouseWheel(int delta);
    void keyDown(KeyboardButton key, int modifiers);
    void keyUp(KeyboardButton key, int modifiers);
    /// `codePoint` is the one character typed.
    void onChar(KeyboardButton key, int codePoint);
    void rawKeyInput(RawKeyInfo const& info);
    void rawMouseInput(RawMouseInfo info);
    /// Ends a window at the next drain.
    void killWindow(WindowBase* window);
    void addUserMessage(std::shared_ptr<std::function<void()>> function);

    // --- Delivery: what the messages call ---
    void onMouseMoveMessage(osg::Vec2i const& position);
    void onMouseDownMessage(MouseButton button);
    void onMouseUpMessage(MouseButton button);
    void onMouseWheelMessage(int delta);
    void onKeyDownMessage(KeyboardButton key, int modifiers);
    void onKeyUpMessage(KeyboardButton key, int modifiers);
    void onCharMessage(KeyboardButton key, int modifiers);
    void onRawKeyInputMessage(RawKeyInfo const& info);
    void onRawMouseInputMessage(RawMouseInfo const& info);

    // --- Listeners: not owned, each at most once ---
    void addMouseListener(MouseListener* listener);
    void removeMouseListener(MouseListener* listener);
    void addRawKeyListener(RawKeyListener* listener);
    void removeRawKeyListener(RawKeyListener* listener);
    void addRawMouseListener(RawMouseListener* listener);
    void removeRawMouseListener(RawMouseListener* listener);

    /// Runs before the windows see a key; true from any callback keeps the key from them.
    void addKeyboardCallback(std::shared_ptr<KeyboardCallback> callback);
    void removeKeyboardCallback(std::shared_ptr<KeyboardCallback> callback);
    bool processKeyboardCallbacks(KeyboardButton key, int modifiers, bool down) const;

    /// Whether a window of surface 0 would take the mouse at a raw point.
    bool getHasMouseInputAtScreenPoint(int x, int y) const;

    // --- Geometry ---
    void setViewportPosition(osg::Vec2i const& position);
    void setViewportSize(osg::Vec2i const& size);
    osg::Vec2i getViewportPosition() const { return viewportPosition; }
    osg::Vec2i getViewportSize() const { return viewportSize; }
    osg::Vec2i getScreenPosition() const { return screenPosition; }
    osg::Vec2i getScreenSize() const { return screenSize; }
    void setMouseOffset(osg::Vec2i const& offset) { mouseOffset = offset; }
    osg::Vec2i getMouseOffset() const { return mouseOffset; }
    void setMouseScale(osg::Vec2f const& scale) { mouseScale = scale; }
    osg::Vec2f getMouseScale() const { return mouseScale; }
    osg::Vec2f getOffscreenScaleFactor() const { return offscreenScaleFactor; }
    /// 1 / the renderer's scale.
    float getScaleFactor() const;
    osg::RectImpl<osg::Vec2i> screenToViewport(osg::RectImpl<osg::Vec2i> const& rect) const;
    osg::RectImpl<osg::Vec2i> viewportToScreen(osg::RectImpl<osg::Vec2i> const& rect) const;
    osg::Vec2i convertFromRawScreenPosition(int x, int y) const;
    osg::Vec2i convertToRawScreenPosition(int x, int y) const;

    // --- Settings ---
    /// The picture behind all windows, centred; `fill` enlarges it to cover the screen.
    void setBkgPicture(qor::basic_string<char> const& file, bool fill);
    void setDebugDraw(bool on);
    bool getDebugDraw() const { return debugDraw; }
    /// Seconds.
    void setDoubleClickTime(double seconds) { doubleClickTime = seconds; }
    double getDoubleClickTime() const { return doubleClickTime; }
    void enableClipping(bool on) { clippingEnabled = on; }
    bool getClippingEnabled() const { return clippingEnabled; }
    void setTabSpacesCount(int count);
    int getTabSpacesCount() const { return tabSpacesCount; }
    void setDrawToTargetVR(bool on) { drawToTargetVR = on; }
    bool getDrawToTargetVR() const { return drawToTargetVR; }
    void setMakeScreenShotCallback(void (*callback)(char const*)) { makeScreenShotCallback = callback; }
    void (*getMakeScreenShotCallback() const)(char const*) { return makeScreenShotCallback; }
    void setTargetWidget(Widget* widget) { targetWidget = widget; }
    Widget* getTargetWidget() const { return targetWidget; }

    // --- Skins ---
    /// Fills a skin from the skin file's function `name`; a failing function is logged and leaves the skin as it was.
    void loadSkin(qor::basic_string<char> const& name, skin::Skin& target);
    /// Runs a skin file, in force or not, and brings all that was loaded by name in line, as if the program had started
    /// with it; what the program has changed in a skin stays. Changed pictures and fonts are read anew; one that cannot
    /// be read stays, with a line in `error`. False, with the cause in `error`, if the file or a function in use fails,
    /// or while `getSkinReloadable` is false: nothing changes then.
    bool reloadSkin(qor::basic_string<char> const& skinFile, qor::basic_string<char>* error);
    bool getSkinReloadable() const;  ///< false inside a pass and inside a Lua function
    qor::basic_string<char> const& getSkinFile() const { return skinFile_; }
    bool getBusy() const { return busy_ > 0; }  ///< inside a message or a pass: widgets are at work further out
    /// The state of the skin file, or null while GUI ends.
    lua_State* getLuaState() const { return luaState; }

    // --- Window resources: made by the script "./vorlex/loader/CreateWindow.lua"; see docs/resources.md ---
    /// A new window from the file `resource`, which the caller ends with `kill`. Null, without a log line from here, if
    /// the script is missing, fails or gives none.
    WindowBase* createWindowFromResource(char const* resource);
    /// Replaces contents and properties of a window by what the file describes.
    void loadWindowFromResource(char const* resource, WindowBase* window);

    ~GUI();

    /// For messages, which give themselves back.
    MessagePool& getMessagePool() { return *messagePool; }

protected:
    friend class MessageKillWindow;
    /// Change the custom windows while the rendering thread is between frames.
    void addCustomWindow(WindowBase* window);
    void removeCustomWindow(WindowBase* window);

private:
    struct SurfaceEntry {
        WindowBase* window = nullptr;
        std::unique_ptr<WindowsManager> windowsManager;
        /// Shared, so that it may replace itself or make a surface while it runs. Null in overlays and custom windows.
        std::shared_ptr<SurfaceMouseFunc const> mouseFunc;
    };
    class BusyScope;
    class PassScope;

    explicit GUI(osg::Vec2i const& size);
    GUI(GUI const&) = delete;
    GUI& operator=(GUI const&) = delete;

    void initialize_(qor::basic_string<char> const& skinFile, osg::Vec2i const& size, float scale);
    void initSkinLuaState_(qor::basic_string<char> const& skinFile);
    template <class T, class... Payload>
    void post_(Payload&&... payload);
    template <class Deliver>
    bool deliverToSurfaces_(Deliver deliver);
    template <class Draw>
    void drawIntoTarget_(osg::Vec2i const& size, osg::Vec2f const& scale, float gamma, float intensity, Draw draw);

    static GUI* instance_;

    qor::vector<SurfaceEntry> surfaces;
    qor::vector<SurfaceEntry> customWindows;
    qor::vector<SurfaceEntry> customOverlays;
    osg::Vec2i viewportPosition;
    osg::Vec2i viewportSize;
    osg::Vec2i screenPosition;
    osg::Vec2i screenSize;
    osg::Vec2i mouseOffset;
    osg::Vec2f mouseScale;
    osg::Vec2f offscreenScaleFactor;
    double doubleClickTime = 0.3;
    osg::Vec2i mousePosition;
    MouseButton lastMouseButton = MouseButtonNone;
    double lastMouseDownTime = 0.0;
    bool clippingEnabled = true;
    qor::vector<Message*> queue;
    std::size_t queueCount = 0;
    std::unique_ptr<MessagePool> messagePool;
    qor::small_vector<std::shared_ptr<KeyboardCallback>, 8> keyboardCallbacks;
    qor::vector<MouseListener*> mouseListeners;
    qor::vector<RawMouseListener*> rawMouseListeners;
    qor::vector<RawKeyListener*> rawKeyListeners;
    std::unique_ptr<Image> bkgPicture;
    int tabSpacesCount = 4;
    bool debugDraw = false;
    void (*makeScreenShotCallback)(char const*) = nullptr;
    Widget* targetWidget = nullptr;
    lua_State* luaState = nullptr;
    bool drawToTargetVR = false;
    bool resourceStackFullLogged_ = false;
    int busy_ = 0;
    int passes_ = 0;
    int skinHeld_ = 0;  ///< values at the bottom of the Lua stack: results of the skin file, and the table "Skin"
    qor::basic_string<char> skinFile_;
    qor::basic_string<char> bkgFile_;
};

}  // namespace gui
