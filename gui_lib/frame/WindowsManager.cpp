#include "gui_lib/frame/WindowsManager.h"

#include "gui_lib/base/Application.h"
#include "gui_lib/base/HotKey.h"
#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/controls/small/Tooltip.h"
#include "gui_lib/controls/small/TooltipSkin.h"
#include "gui_lib/frame/CursorHolder.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/TooltipUpdateTarget.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/OverlayWindow.h"
#include "gui_lib/windows/PopupWindow.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/SmallVector.h"

#include <algorithm>
#include <utility>

namespace gui {

namespace {

using WindowCopy = qor::small_vector<WindowBase*, 16>;

/// Gives a field another value for a scope.
template <class T>
class ValueScope {
public:
    ValueScope(T& field, T value) : field_(field), before_(std::exchange(field, value)) {}
    ~ValueScope() { field_ = before_; }
    ValueScope(ValueScope const&) = delete;
    ValueScope& operator=(ValueScope const&) = delete;

private:
    T& field_;
    T before_;
};

/// Tells after a call out whether the window died, or was shown or hidden by what was called: then that nested call has
/// had the last word.
class ShowGuard {
public:
    explicit ShowGuard(WindowBase const* window)
        : alive_(window), window_(window), visible_(window->getVisible(false)) {}

    bool overtaken() const { return alive_.dead() || window_->getVisible(false) != visible_; }
    /// The same, or it has become a widget, which enters no group.
    bool refused() const { return overtaken() || window_->getAsWidget(); }

private:
    AliveGuard alive_;
    WindowBase const* window_;
    bool visible_;
};

int zOrderOf(Window const* window) { return window->getZOrder(); }

int zOrderOf(OverlayWindow const* window) { return window->getZOrder(); }

bool isKeyDown(KeyboardButton first, KeyboardButton second) {
    Application const* application = Application::get();
    return application->getKeyDown(first) || application->getKeyDown(second);
}

}  // namespace

// --- Life ---

WindowsManager::WindowsManager(int newSurfaceId)
    : surfaceId(newSurfaceId),
      tooltip(new Tooltip(this)),
      forcedTooltipSkin(new skin::TooltipSkin(nullptr)),
      defaultTooltipSkin(new skin::TooltipSkin(nullptr)),
      tooltipTarget(new TooltipUpdateTarget(*this)),
      cursorHolder(std::make_shared<CursorHolder>()),
      tooltipHandler_(tooltip->getHandler()) {
    tooltip->setVisible(false);
    tooltip->getWidgetSkin()->copyTo(forcedTooltipSkin);
    tooltip->getWidgetSkin()->copyTo(defaultTooltipSkin);
}

WindowsManager::~WindowsManager() {
    if (UpdateManager::exists())
        UpdateManager::get().removeTarget(tooltipTarget);
    delete tooltipTarget;
    delete defaultTooltipSkin;
    delete forcedTooltipSkin;
    Widget::destroy(WidgetHandler::get(tooltipHandler_));
}

WindowsManager* WindowsManager::get(int id) {
    GUI const* gui = GUI::get();
    return gui ? gui->getWindowsManager(id) : nullptr;
}

// --- Finding ---

WindowBase* WindowsManager::getActiveWindow() const {
    if (!popups.empty())
        return popups.back();
    if (!modals.empty())
        return modals.back();
    for (auto window = windows.rbegin(); window != windows.rend(); ++window)
        if ((*window)->getFocused())
            return *window;
    return nullptr;
}

WindowBase* WindowsManager::findWindowAtPoint(osg::Vec2i const& point) const {
    auto const takes = [&point](WindowBase* window) {
        return window->getHasCursor() && window->getScreenPointInside(point);
    };
    for (auto window = popups.rbegin(); window != popups.rend(); ++window)
        if (takes(*window))
            return *window;
    if (!modals.empty())
        return modals.back();
    for (auto window = windows.rbegin(); window != windows.rend(); ++window)
        if (*window != transparentWindow && takes(*window))
            return *window;
    return nullptr;
}

Widget* WindowsManager::findWidgetAtScreenPoint(osg::Vec2i const& point) const {
    Widget* widget = findWindowAtPoint(point);
    if (!widget)
        return nullptr;
    for (;;) {
        Widget* const inner = widget->getWidgetAtScreenPoint(point);
        if (!inner)
            return nullptr;
        if (inner == widget)
            return widget;
        widget = inner;
    }
}

bool WindowsManager::getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const {
    if (!modals.empty())
        return true;
    WindowBase const* window = findWindowAtPoint(point);
    return window && window->getHasMouseInputAtScreenPoint(point);
}

bool WindowsManager::getHasCursorWindow() const {
    auto const any = [](WindowList const& list) {
        return std::any_of(list.rbegin(), list.rend(), [](WindowBase* window) { return window->getHasCursor(); });
    };
    return any(modals) || any(popups) || any(windows);
}

void WindowsManager::getShownWindows(qor::vector<WindowBase*>& out) const {
    for (WindowList const* list : {&overlays, &windows, &modals, &popups})
        out.insert(out.end(), list->begin(), list->end());
}

osg::Vec2i WindowsManager::getMousePosition_() const { return GUI::get()->getMousePosition(surfaceId); }

bool WindowsManager::contains_(WindowList const& list, WindowBase* window) {
    return std::find(list.begin(), list.end(), window) != list.end();
}

bool WindowsManager::eraseFrom_(WindowList& list, WindowBase* window) {
    auto found = std::find(list.begin(), list.end(), window);
    if (found == list.end())
        return false;
    list.erase(found);
    return true;
}

// --- Capture ---

Widget* WindowsManager::getLiveCapture_() const {
    Widget* const widget = WidgetHandler::get(captureHandler);
    return widget && widget->getEnabled() ? widget : nullptr;
}

void WindowsManager::tellCaptureReleased_() {
    Widget* const widget = WidgetHandler::get(captureHandler);
    // A "released" callback that releases again must not be called again.
    if (!widget || releasing_)
        return;
    ValueScope const scope(releasing_, true);
    widget->onMouseReleased();
}

void WindowsManager::captureMouse(WidgetHandler* handler) {
    if (handler != captureHandler)
        tellCaptureReleased_();
    captureHandler = handler;
}

void WindowsManager::releaseMouse(WidgetHandler* handler) {
    bool const live = WidgetHandler::get(handler) != nullptr;
    if (live ? handler != captureHandler : captureHandler == nullptr)
        return;
    if (releasing_)
        return;
    tellCaptureReleased_();
    captureHandler = nullptr;
}

void WindowsManager::releaseCaptureOf_(WindowBase* window) {
    Widget* const widget = WidgetHandler::get(captureHandler);
    if (widget && widget->getRoot() == window)
        releaseMouse(captureHandler);
}

// --- Groups ---

template <class WindowType>
void WindowsManager::insertByZOrder_(WindowList& list, WindowType* window) {
    // Halving over the list as it stands: a window that was put back by index may have left it unsorted.
    auto const place = std::upper_bound(list.begin(), list.end(), zOrderOf(window), [](int zOrder, WindowBase* other) {
        return zOrder < zOrderOf(static_cast<WindowType*>(other));
    });
    list.insert(place, window);
}

void WindowsManager::showWindow(Window* window) {
    if (window->getAsWidget())
        return;
    ShowGuard const guard(window);
    closePopups_(false);
    if (guard.overtaken())
        return;
    if (eraseFrom_(windows, window))
        cursorHolder->onLeft(window);
    if (guard.refused())
        return;
    insertByZOrder_(windows, window);
    cursorHolder->onArrived(window);
    updateHover_();
}

void WindowsManager::hideWindow(Window* window) {
    if (window->getAsWidget())
        return;
    ShowGuard const guard(window);
    closePopups_(false);
    if (guard.overtaken())
        return;
    window->setFocused(false);
    if (guard.overtaken())
        return;
    if (eraseFrom_(windows, window))
        cursorHolder->onLeft(window);
    if (guard.overtaken())
        return;
    releaseCaptureOf_(window);
    updateHover_();
}

void WindowsManager::raiseWindow(Window* window) {
    if (window->getAsWidget())
        return;
    AliveGuard const guard(window);
    closePopups_(false);
    if (!modals.empty() || guard.dead())
        return;
    unfocusOthers_(window);
    if (guard.dead())
        return;
    tellCaptureReleased_();
    captureHandler = nullptr;
    if (guard.dead() || window->getAsWidget())
        return;

    auto const found = transparentWindow ? std::find(windows.begin(), windows.end(), transparentWindow) : windows.end();
    WindowBase* const keptInPlace = found != windows.end() ? transparentWindow : nullptr;
    auto const keptIndex = found - windows.begin();
    if (keptInPlace)
        windows.erase(found);
    bool const wasIn = keptInPlace == window || eraseFrom_(windows, window);
    // Focusing a child of a hidden window must not let it be found under the mouse.
    if (keptInPlace != window && window->getVisible(false))
        insertByZOrder_(windows, window);
    if (keptInPlace)
        windows.insert(windows.begin() + std::min<std::ptrdiff_t>(keptIndex, std::ssize(windows)), keptInPlace);
    if (wasIn)
        cursorHolder->onLeft(window);
    if (guard.alive() && contains_(windows, window))
        cursorHolder->onArrived(window);
}

void WindowsManager::unfocusOthers_(Window* window) {
    WindowCopy const copy(windows.begin(), windows.end());
    for (std::size_t i = 0; i < copy.size(); ++i) {
        WindowBase* const other = copy[i];
        // Callbacks of the focus may take windows away; most are where they were.
        bool const stays = (i < windows.size() && windows[i] == other) || contains_(windows, other);
        if (other != window && stays && other->getFocused())
            other->setFocused(false);
    }
}

void WindowsManager::putOnTop_(WindowList& list, WindowBase* window) {
    eraseFrom_(list, window);
    list.push_back(window);
    cursorHolder->onArrived(window);
    updateHover_();
}

void WindowsManager::takeAway_(WindowList& list, WindowBase* window) {
    eraseFrom_(list, window);
    cursorHolder->onLeft(window);
    updateHover_();
}

void WindowsManager::showModal(ModalWindow* window) {
    if (window->getAsWidget())
        return;
    ShowGuard const guard(window);
    tellCaptureReleased_();
    captureHandler = nullptr;
    if (guard.overtaken())
        return;
    closePopups_(false);
    if (guard.overtaken())
        return;
    window->setFocused(true);
    if (guard.refused())
        return;
    putOnTop_(modals, window);
}

void WindowsManager::hideModal(ModalWindow* window) {
    if (window->getAsWidget())
        return;
    ShowGuard const guard(window);
    closePopups_(false);
    if (guard.overtaken())
        return;
    window->setFocused(false);
    if (guard.overtaken())
        return;
    takeAway_(modals, window);
}

void WindowsManager::showPopup(PopupWindow* window) {
    if (window->getAsWidget())
        return;
    ShowGuard const guard(window);
    window->setFocused(true);
    if (guard.overtaken())
        return;
    window->setActive(true);
    if (guard.refused())
        return;
    putOnTop_(popups, window);
}

void WindowsManager::hidePopup(PopupWindow* window) {
    if (window->getAsWidget())
        return;
    ShowGuard const guard(window);
    window->setFocused(false);
    if (guard.overtaken())
        return;
    window->setActive(false);
    if (guard.overtaken())
        return;
    takeAway_(popups, window);
}

void WindowsManager::showOverlay(OverlayWindow* window) {
    if (window->getAsWidget())
        return;
    eraseFrom_(overlays, window);
    insertByZOrder_(overlays, window);
}

void WindowsManager::hideOverlay(OverlayWindow* window) {
    if (!window->getAsWidget())
        eraseFrom_(overlays, window);
}

void WindowsManager::forget(WindowBase* window) {
    for (WindowList* list : {&windows, &popups, &modals, &overlays})
        eraseFrom_(*list, window);
    if (hoveredWindow == window)
        hoveredWindow = nullptr;
    if (transparentWindow == window)
        transparentWindow = nullptr;
    cursorHolder->forget(window);
}

void WindowsManager::closePopups_(bool spareActive) {
    if (popups.empty())
        return;
    WindowCopy const copy(popups.begin(), popups.end());
    for (WindowBase* popup : copy)
        if (contains_(popups, popup) && !(spareActive && static_cast<PopupWindow*>(popup)->getActive()))
            popup->setVisible(false);
}

void WindowsManager::deactivatePopups_() {
    WindowCopy const copy(popups.begin(), popups.end());
    for (WindowBase* popup : copy)
        if (contains_(popups, popup))
            static_cast<PopupWindow*>(popup)->setActive(false);
}

void WindowsManager::setWindowTransparentForUserInput(Window* window) {
    transparentWindow = window;
    updateHover_();
}

void WindowsManager::onWindowCursorChanged(WindowBase* window) { cursorHolder->onChanged(window); }

void WindowsManager::setCursorCallback(std::function<void(bool, int, WindowBase*)> callback) {
    cursorHolder->setCallback(std::move(callback));
}

void WindowsManager::updateHover_() {
    osg::Vec2i const point = getMousePosition_();
    WindowBase* const entered = findWindowAtPoint(point);
    unsigned const update = ++hoverUpdates_;
    if (entered == hoveredWindow)
        return;
    WidgetHandler* const enteredHandler = entered ? entered->getHandler() : nullptr;
    // A window that is hearing of the leave already is not told again.
    if (hoveredWindow && hoveredWindow->getHandler() != leavingHandler_) {
        ValueScope const leaving(leavingHandler_, hoveredWindow->getHandler());
        hoveredWindow->onMouseLeave(point);
    }
    // A leave callback may have hidden or ended windows; if that updated the hover, the nested update has decided.
    if (hoverUpdates_ != update)
        return;
    hoveredWindow = WidgetHandler::get(enteredHandler) ? entered : nullptr;
    if (hoveredWindow)
        hoveredWindow->onMouseEnter(point);
}

// --- Input ---

bool WindowsManager::onMouseDown(MouseButton button, bool doubleClick) {
    if (forcedTooltipText.empty()) {
        tooltipTarget->stop();
        ++pressedButtons;
        skipTooltipRestart = true;
    }
    osg::Vec2i const point = getMousePosition_();
    if (Widget* const capture = getLiveCapture_()) {
        WidgetHandler* const pressed = captureHandler;
        if (doubleClick && lastPressedHandler == pressed)
            capture->onMouseDoubleClick(point, button);
        else
            capture->onMouseDown(point, button);
        lastPressedHandler = pressed;
        return true;
    }

    WindowBase* const window = findWindowAtPoint(point);
    bool handled = window != nullptr;
    closePopups_(window && contains_(popups, window));
    if (hoveredWindow) {
        handled = true;
        deactivatePopups_();
        if (hoveredWindow)
            hoveredWindow->setFocused(true);
        // Taking the focus calls out; press whatever is under the cursor now.
        if (hoveredWindow) {
            if (doubleClick && lastPressedHandler == hoveredWindow->getHandler())
                hoveredWindow->onMouseDoubleClick(point, button);
            else
                hoveredWindow->onMouseDown(point, button);
        }
    }
    lastPressedHandler = hoveredWindow ? hoveredWindow->getHandler() : nullptr;
    return handled;
}

bool WindowsManager::onMouseMove(osg::Vec2i const& point) {
    bool handled = false;
    if (Widget* const capture = getLiveCapture_()) {
        capture->onMouseMove(point);
        handled = true;
    } else {
        updateHover_();
        if (hoveredWindow) {
            hoveredWindow->onMouseMove(point);
            handled = true;
        }
    }
    updateTooltipOnMove_();
    return handled;
}

bool WindowsManager::onMouseUp(MouseButton button) {
    if (pressedButtons > 0)
        --pressedButtons;
    // First: the surface's mouse function is the host's, and may end the target.
    osg::Vec2i const point = getMousePosition_();
    Widget* target = getLiveCapture_();
    if (!target)
        target = hoveredWindow;
    if (!target)
        return false;
    target->onMouseUp(point, button);
    return true;
}

bool WindowsManager::onMouseWheel(int delta) {
    osg::Vec2i const point = getMousePosition_();
    WindowBase* const active = getActiveWindow();
    if (active && active->onMouseWheel(point, delta))
        return true;
    WindowBase* const window = findWindowAtPoint(point);
    return window && window != active && window->onMouseWheel(point, delta);
}

bool WindowsManager::onChar(KeyboardButton key, int modifiers) {
    WindowBase* const active = getActiveWindow();
    return active && active->onChar(key, modifiers);
}

bool WindowsManager::onKeyUp(KeyboardButton key, int modifiers) {
    WindowBase* const active = getActiveWindow();
    return active && active->onKeyUp(key, modifiers);
}

bool WindowsManager::onKeyDown(KeyboardButton key, int modifiers) {
    WindowBase* const active = getActiveWindow();
    if (active && active->onKeyDown(key, modifiers))
        return true;

    HotKey hotKey;
    hotKey.button = key;
    hotKey.altPressed = isKeyDown(KeyLeftAlt, KeyRightAlt);
    hotKey.ctrlPressed = isKeyDown(KeyLeftCtrl, KeyRightCtrl);
    hotKey.shiftPressed = isKeyDown(KeyLeftShift, KeyRightShift);

    bool const handled = key == KeyTab && handleTabButton();
    if (!modals.empty())
        return handled || modals.back()->onHotKey(hotKey);
    return handled || runHotKeys_(popups, hotKey) || runHotKeys_(windows, hotKey);
}

bool WindowsManager::runHotKeys_(WindowList const& list, HotKey const& key) {
    WindowCopy const copy(list.rbegin(), list.rend());
    for (WindowBase* window : copy)
        if (contains_(list, window) && window->onHotKey(key))
            return true;
    return false;
}

bool WindowsManager::handleTabButton() {
    WindowBase* const active = getActiveWindow();
    if (!active)
        return false;
    if (isKeyDown(KeyLeftShift, KeyRightShift))
        active->setPrevWidgetFocused();
    else
        active->setNextWidgetFocused();
    return true;
}

// --- Passes ---

void WindowsManager::makeSnapshots() {
    auto const take = [](WindowList const& list, Snapshot& snapshot) {
        snapshot.clear();
        for (WindowBase* window : list)
            snapshot.push_back(window->getHandler());
    };
    take(windows, windowsSnapshot);
    take(popups, popupsSnapshot);
    take(modals, modalsSnapshot);
    take(overlays, overlaysSnapshot);
}

void WindowsManager::draw() {
    for (Snapshot const* snapshot : {&overlaysSnapshot, &windowsSnapshot, &modalsSnapshot, &popupsSnapshot})
        for (WidgetHandler* handler : *snapshot)
            if (Widget* const window = WidgetHandler::get(handler))
                window->draw();
    if (Tooltip* const live = getTooltip())
        live->draw();
}

void WindowsManager::parse() {
    // Host functions run here and may end windows or open surfaces: walk by index.
    for (Snapshot const* snapshot : {&overlaysSnapshot, &windowsSnapshot, &modalsSnapshot, &popupsSnapshot})
        for (std::size_t i = 0; i < snapshot->size(); ++i)
            if (Widget* const window = WidgetHandler::get((*snapshot)[i]))
                window->parse();
}

void WindowsManager::redrawAll() {
    for (WindowList const* list : {&overlays, &windows, &modals, &popups})
        for (WindowBase* window : *list)
            window->setDirty(Widget::DirtyTree);
}

// --- Tooltip ---

Tooltip* WindowsManager::getTooltip() const { return WidgetHandler::get(tooltipHandler_) ? tooltip : nullptr; }

Widget* WindowsManager::getTooltipWidget_() const {
    // The point first: the surface's mouse function may end the window.
    osg::Vec2i const point = getMousePosition_();
    return hoveredWindow ? hoveredWindow->getTooltipWidget(point) : nullptr;
}

qor::basic_string<wchar_t> const& WindowsManager::getTooltipText() const {
    if (!forcedTooltipText.empty())
        return forcedTooltipText;
    Widget const* widget = getTooltipWidget_();
    return widget && !widget->getTooltipText().empty() ? widget->getTooltipText() : forcedTooltipText;
}

bool WindowsManager::prepareTooltip() {
    Tooltip* const shown = getTooltip();
    if (!shown)
        return false;
    if (!forcedTooltipText.empty()) {
        forcedTooltipSkin->copyTo(shown->getWidgetSkin());
        AliveGuard const guard(shown);
        shown->setText(forcedTooltipText);
        return guard.alive();
    }
    Widget const* widget = getTooltipWidget_();
    if (!widget || widget->getTooltipText().empty())
        return false;
    skin::Skin* const source = widget->getTooltipSkin() ? widget->getTooltipSkin() : defaultTooltipSkin;
    source->copyTo(shown->getWidgetSkin());
    AliveGuard const guard(shown);
    shown->setText(widget->getTooltipText());
    // The same text in another skin takes another size.
    if (guard.alive())
        shown->setSize(shown->calcSize());
    return guard.alive();
}

void WindowsManager::forceTooltipText(qor::basic_string<wchar_t> const& text, skin::TooltipSkin const* tooltipSkin,
                                      int flags) {
    forcedTooltipText = text;
    if (tooltipSkin)
        tooltipSkin->copyTo(forcedTooltipSkin);
    Tooltip* const shown = getTooltip();
    if (!shown || !shown->getVisible(false))
        return;
    if (flags & 1)
        shown->setText(forcedTooltipText);
    if (flags & 2)
        tooltipTarget->resetStartTime();
}

void WindowsManager::setDefaultTooltipSkin(skin::TooltipSkin const* tooltipSkin) {
    if (tooltipSkin && tooltipSkin != defaultTooltipSkin)
        tooltipSkin->copyTo(defaultTooltipSkin);
}

void WindowsManager::updateTooltipOnMove_() {
    if (pressedButtons != 0)
        return;
    if (skipTooltipRestart)
        skipTooltipRestart = false;
    else
        tooltipTarget->restart();
}

}  // namespace gui
