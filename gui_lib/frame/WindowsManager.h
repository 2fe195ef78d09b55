#pragma once

#include "gui_lib/base/Keyboard.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

#include <osg/Vec2i>

#include <functional>
#include <memory>

namespace gui {

namespace skin {
class Skin;
class TooltipSkin;
}  // namespace skin

class CursorHolder;
struct HotKey;
class ModalWindow;
class OverlayWindow;
class PopupWindow;
class Tooltip;
class TooltipUpdateTarget;
class Widget;
class WidgetHandler;
class Window;
class WindowBase;

/// The windows of one surface: four ordered groups, the active and the hovered window, the mouse capture, the tooltip
/// and the cursor. Windows report themselves when they show, hide or raise; GUI hands the input in. Coordinates: GUI
/// units of the surface. Lifetime: owned by GUI, one a surface. Windows are not owned.
class VORLEX_API WindowsManager {
public:
    explicit WindowsManager(int surfaceId);
    ~WindowsManager();
    WindowsManager(WindowsManager const&) = delete;
    WindowsManager& operator=(WindowsManager const&) = delete;

    /// The manager of a surface; null for a bad id and while there is no GUI.
    static WindowsManager* get(int surfaceId);
    int getSurfaceId() const { return surfaceId; }

    // --- Finding ---
    /// The topmost popup, else the topmost modal window, else the topmost window with focus, else null.
    WindowBase* getActiveWindow() const;
    WindowBase* findWindowAtPoint(osg::Vec2i const& point) const;
    /// The deepest widget under the point, or null.
    Widget* findWidgetAtScreenPoint(osg::Vec2i const& point) const;
    bool getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const;
    bool getHasCursorWindow() const;
    /// Adds the shown windows from the bottom to the top: overlays, windows, modal windows, popups.
    void getShownWindows(qor::vector<WindowBase*>& out) const;
    WindowBase* getHoveredWindow() const { return hoveredWindow; }
    WidgetHandler* getCapture() const { return captureHandler; }

    // --- Capture ---
    /// All mouse input goes to the widget until it is released; an earlier capture is told by onMouseReleased.
    void captureMouse(WidgetHandler* handler);
    /// A live widget releases only its own capture; a dead or null handler releases any.
    void releaseMouse(WidgetHandler* handler);

    // --- Groups: called by the window classes ---
    void showWindow(Window* window);
    void hideWindow(Window* window);
    void raiseWindow(Window* window);
    void showModal(ModalWindow* window);
    void hideModal(ModalWindow* window);
    void showPopup(PopupWindow* window);
    void hidePopup(PopupWindow* window);
    void showOverlay(OverlayWindow* window);
    void hideOverlay(OverlayWindow* window);
    /// Takes a dying window out of everything, without a call to anyone.
    void forget(WindowBase* window);
    /// The window that pointer input passes through; null clears.
    void setWindowTransparentForUserInput(Window* window);
    void onWindowCursorChanged(WindowBase* window);
    void setCursorCallback(std::function<void(bool, int, WindowBase*)> callback);

    // --- Input: called by GUI; true if handled ---
    bool onMouseMove(osg::Vec2i const& point);
    bool onMouseDown(MouseButton button, bool doubleClick);
    bool onMouseUp(MouseButton button);
    bool onMouseWheel(int delta);
    bool onKeyDown(KeyboardButton key, int modifiers);
    bool onKeyUp(KeyboardButton key, int modifiers);
    bool onChar(KeyboardButton key, int modifiers);
    bool handleTabButton();

    // --- Passes: called by GUI ---
    void draw();
    void parse();
    /// Marks every shown window with its whole tree.
    void redrawAll();
    /// Takes the snapshots that `draw` and `parse` walk.
    void makeSnapshots();

    // --- Tooltip ---
    bool prepareTooltip();
    /// Shows this text instead of the hovered widget's; empty ends that. A skin, if given, is copied. Flag 1: change a
    /// visible tooltip at once; flag 2: start its time again.
    void forceTooltipText(qor::basic_string<wchar_t> const& text, skin::TooltipSkin const* tooltipSkin, int flags);
    qor::basic_string<wchar_t> const& getTooltipText() const;
    /// Copied.
    void setDefaultTooltipSkin(skin::TooltipSkin const* tooltipSkin);
    skin::TooltipSkin* getDefaultTooltipSkin() const { return defaultTooltipSkin; }
    Tooltip* getTooltip() const;

private:
    using WindowList = qor::vector<WindowBase*>;
    using Snapshot = qor::vector<WidgetHandler*>;

    osg::Vec2i getMousePosition_() const;
    Widget* getLiveCapture_() const;
    void releaseCaptureOf_(WindowBase* window);
    void tellCaptureReleased_();
    template <class WindowType>
    void insertByZOrder_(WindowList& list, WindowType* window);
    void unfocusOthers_(Window* window);
    void putOnTop_(WindowList& list, WindowBase* window);
    void takeAway_(WindowList& list, WindowBase* window);
    void closePopups_(bool spareActive);
    void deactivatePopups_();
    void updateHover_();
    void updateTooltipOnMove_();
    Widget* getTooltipWidget_() const;
    bool runHotKeys_(WindowList const& list, HotKey const& key);
    static bool eraseFrom_(WindowList& list, WindowBase* window);
    static bool contains_(WindowList const& list, WindowBase* window);

    int surfaceId;
    WindowList windows;
    WindowList popups;
    WindowList modals;
    WindowList overlays;
    Snapshot windowsSnapshot;
    Snapshot popupsSnapshot;
    Snapshot modalsSnapshot;
    Snapshot overlaysSnapshot;
    WindowBase* hoveredWindow = nullptr;
    WidgetHandler* captureHandler = nullptr;
    WidgetHandler* lastPressedHandler = nullptr;
    Tooltip* tooltip = nullptr;
    skin::TooltipSkin* forcedTooltipSkin = nullptr;
    skin::TooltipSkin* defaultTooltipSkin = nullptr;
    TooltipUpdateTarget* tooltipTarget = nullptr;
    qor::basic_string<wchar_t> forcedTooltipText;
    int pressedButtons = 0;
    bool skipTooltipRestart = false;
    std::shared_ptr<CursorHolder> cursorHolder;
    WindowBase* transparentWindow = nullptr;
    WidgetHandler* tooltipHandler_ = nullptr;
    unsigned hoverUpdates_ = 0;
    WidgetHandler* leavingHandler_ = nullptr;
    bool releasing_ = false;
};

}  // namespace gui
