#include "gui_lib/windows/WindowBase.h"

#include "gui_lib/base/Application.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/windows/WindowBaseSkin.h"
#include "gui_lib/windows/WindowData.h"
#include "gui_lib/windows/WindowHeader.h"
#include "gui_lib/windows/WindowView.h"

#include <algorithm>

namespace gui {

namespace {

/// What the window's skin says about its parts; zero without data.
struct Frame {
    Insets insets;
    int headerHeight = 0;
};

Frame getFrame(skin::Skin const* skin) {
    Frame frame;
    if (skin::Data const* const data = skin ? skin->getSkinData() : nullptr) {
        frame.insets = data->getInsets();
        if (auto const* const windowData = dynamic_cast<skin::WindowData const*>(data))
            frame.headerHeight = windowData->getHeaderHeight();
    }
    return frame;
}

osg::Vec2i getScreenSize() {
    GUI const* const gui = GUI::get();
    return gui ? gui->getScreenSize() : osg::Vec2i(0, 0);
}

int moveInside(int position, int size, int screen) {
    int const over = std::max(saturatingSubtract(saturatingAdd(position, size), screen), 0);
    return std::max(saturatingSubtract(position, over), 0);
}

}  // namespace

// --- Life ---

WindowBase::WindowBase() { visible = false; }

WindowBase::~WindowBase() {
    beginDestruction_();
    // Before anything is called: the managers must not find half a window.
    if (GUI const* const gui = GUI::get())
        for (int id = 0; gui->getSurfaceIdValid(id); ++id)
            gui->getWindowsManager(id)->forget(this);
    header = nullptr;
    view = nullptr;
    while (!overlayWidgets.empty()) {
        qor::vector<WidgetHandler*> overlays;
        overlays.swap(overlayWidgets);
        for (WidgetHandler* const handle : overlays) {
            if (Widget* const widget = WidgetHandler::get(handle))
                widget->setParent(nullptr);
            Widget::destroy(WidgetHandler::get(handle));
        }
    }
    deleteWidgets_();
}

void WindowBase::makeHeaderAndView_() {
    header = new WindowHeader(*this);
    headerHandler = header->getHandler();
    insertWidget_(header, -1);
    view = new WindowView(*this);
    viewHandler = view->getHandler();
    insertWidget_(view, -1);
}

Widget* WindowBase::clone() const {
    auto* const copy = new WindowBase;
    copyParams(copy);
    return copy;
}

char const* WindowBase::getWidgetType() const { return "WindowBase"; }

int WindowBase::getInnerState() const { return getFocused() ? 2 : 1; }

skin::WindowBaseSkin* WindowBase::getSkin() const { return dynamic_cast<skin::WindowBaseSkin*>(skin); }

void WindowBase::onWidgetDestroy(WidgetHandler* child) {
    forgetChild_(child);
    Container::onWidgetDestroy(child);
}

void WindowBase::forgetChild_(WidgetHandler const* child) {
    if (child == headerHandler)
        header = nullptr;
    if (child == viewHandler)
        view = nullptr;
}

void WindowBase::kill() {
    AliveGuard const self(this);
    setVisible(false);
    if (self.dead())
        return;
    if (GUI* const gui = GUI::get())
        gui->killWindow(this);
    else
        Widget::destroy(this);
}

void WindowBase::onClose_() {
    static int const type = getWidgetCallbackType(closeCallbackName);
    AliveGuard const self(this);
    setVisible(false);
    if (self.alive())
        callWidgetCallbacks_(type);
}

// --- Surface and manager ---

void WindowBase::setSurfaceId(int id) {
    if (id == surfaceId)
        return;
    AliveGuard const self(this);
    if (getVisible(false))
        setVisible(false);
    if (self.alive())
        surfaceId = id;
}

int WindowBase::getSurfaceId() const { return surfaceId; }

int WindowBase::getRootSurfaceId() const { return getParentWidget_() ? Widget::getRootSurfaceId() : getSurfaceId(); }

WindowsManager* WindowBase::enterManager_() {
    enteredManager = WindowsManager::get(getSurfaceId());
    return enteredManager;
}

WindowsManager* WindowBase::leaveManager_() {
    WindowsManager* const manager = enteredManager ? enteredManager : WindowsManager::get(getSurfaceId());
    enteredManager = nullptr;
    return manager;
}

// --- Plain state ---

void WindowBase::setDraggable(bool newDraggable) { draggable = newDraggable; }

bool WindowBase::getDraggable() const { return draggable; }

bool WindowBase::checkOutOfScreenOnDrag() const { return true; }

void WindowBase::setResizable(bool newResizable) { resizable = newResizable; }

bool WindowBase::getResizable() const { return resizable; }

void WindowBase::setClipResizeCursor(bool clip) { clipResizeCursor = clip; }

bool WindowBase::getClipResizeCursor() const { return clipResizeCursor; }

void WindowBase::setAsWidget(bool newAsWidget) { asWidget = newAsWidget; }

bool WindowBase::getAsWidget() const { return asWidget; }

// --- Widgets of the view ---

void WindowBase::insertWidget(Widget* widget, int index) {
    if (view)
        view->insertWidget_(widget, index);
}

void WindowBase::removeWidget(Widget* widget) {
    if (view)
        view->removeWidget_(widget);
}

void WindowBase::clear() {
    if (view)
        view->clear_();
}

void WindowBase::removeAllWidgets() {
    if (view)
        view->removeAllWidgets_();
}

int WindowBase::getWidgetCount() const { return view ? view->getWidgetCount() : 0; }

Widget* WindowBase::getWidget(int index) const { return view ? view->getWidget(index) : nullptr; }

void WindowBase::setLayout(LayoutHandler* newLayout) {
    if (view)
        view->setLayout(newLayout);
    else
        Container::setLayout(newLayout);
}

LayoutHandler* WindowBase::getLayout() const { return view ? view->getLayout() : Container::getLayout(); }

void WindowBase::removeWidget_(Widget* widget) {
    if (!widget)
        return;
    auto const found = std::find(overlayWidgets.begin(), overlayWidgets.end(), widget->getHandler());
    if (found == overlayWidgets.end()) {
        if (getWidgetIndex_(widget) >= 0)
            forgetChild_(widget->getHandler());
        Container::removeWidget_(widget);
        return;
    }
    overlayWidgets.erase(found);
    // One with the focus told this window so, as any child does.
    if (focusedWidget == widget->getHandler())
        focusedWidget = nullptr;
    if (widget->getParent() == handler)
        widget->setParent(nullptr);
}

// --- Overlay widgets ---

void WindowBase::insertOverlayWidget(Widget* widget, int index) {
    if (!widget || refuseAsChild_(widget))
        return;
    WidgetHandler* const handle = widget->getHandler();
    if (std::find(overlayWidgets.begin(), overlayWidgets.end(), handle) != overlayWidgets.end())
        return;
    widget->detachFromParent();
    widget->setParent(handler);
    bool const inside = index >= 0 && index < std::ssize(overlayWidgets);
    overlayWidgets.insert(inside ? overlayWidgets.begin() + index : overlayWidgets.end(), handle);
}

void WindowBase::removeOverlayWidget(Widget* widget) {
    if (widget && std::find(overlayWidgets.begin(), overlayWidgets.end(), widget->getHandler()) != overlayWidgets.end())
        removeWidget_(widget);
}

int WindowBase::getOverlayWidgetCount() const { return static_cast<int>(overlayWidgets.size()); }

Widget* WindowBase::getOverlayWidget(int index) const {
    return index >= 0 && index < getOverlayWidgetCount() ? WidgetHandler::get(overlayWidgets[index]) : nullptr;
}

void WindowBase::draw_() {
    Container::draw_();
    for (std::size_t i = 0; i < overlayWidgets.size(); ++i)
        if (Widget* const widget = WidgetHandler::get(overlayWidgets[i]))
            widget->draw();
}

void WindowBase::make_(GraphicCommands* commands) {
    Container::make_(commands);
    for (std::size_t i = 0; i < overlayWidgets.size(); ++i)
        if (Widget* const widget = WidgetHandler::get(overlayWidgets[i]))
            widget->make(commands);
}

// --- Geometry ---

void WindowBase::updateWidgets_() {
    AliveGuard const self(this);
    Frame const frame = getFrame(skin);
    osg::Vec2i const own = getSize();
    int const x = frame.insets.left;
    int const y = frame.insets.top;
    osg::Vec2i const inside = saturatingSubtract(own, getThickness(frame.insets));
    if (header)
        header->setPosition(osg::Vec2i(x, y));
    if (self.alive() && header)
        header->setSize(osg::Vec2i(inside.x(), frame.headerHeight));
    if (self.alive() && view)
        view->setPosition(osg::Vec2i(x, saturatingAdd(y, frame.headerHeight)));
    if (self.alive() && view)
        view->setSize(osg::Vec2i(inside.x(), saturatingSubtract(inside.y(), frame.headerHeight)));
}

void WindowBase::onSizeChanged_(osg::Vec2i const& newSize) {
    AliveGuard const self(this);
    Container::onSizeChanged_(newSize);
    if (self.alive())
        updateWidgets_();
}

osg::RectImpl<osg::Vec2i> WindowBase::getClientRect() const {
    Frame const frame = getFrame(skin);
    osg::Vec2i const own = getSize();
    // The header comes off the bottom: the rectangle is meant as a size.
    return osg::RectImpl<osg::Vec2i>(
        frame.insets.left, frame.insets.top, saturatingSubtract(own.x(), frame.insets.right),
        saturatingSubtract(own.y(), saturatingAdd(frame.headerHeight, frame.insets.bottom)));
}

osg::Vec2i WindowBase::calcSize() const {
    osg::Vec2i const base = Container::calcSize();
    Frame const frame = getFrame(skin);
    osg::Vec2i wanted = view ? view->getPrefSize() : osg::Vec2i(0, 0);
    if (header) {
        osg::Vec2i const strip = header->getPrefSize();
        wanted.set(std::max(wanted.x(), strip.x()), saturatingAdd(wanted.y(), std::max(strip.y(), frame.headerHeight)));
    }
    wanted = saturatingAdd(wanted, getThickness(frame.insets));
    return osg::Vec2i(std::max(wanted.x(), base.x()), std::max(wanted.y(), base.y()));
}

void WindowBase::onTextChanged_(std::basic_string_view<wchar_t> newText) {
    Container::onTextChanged_(newText);
    if (header)
        header->setText(getText());
}

void WindowBase::centerWindow() {
    if (!GUI::get())
        return;
    osg::Vec2i const space = saturatingSubtract(getScreenSize(), getSize());
    setPosition(osg::Vec2i(space.x() / 2, space.y() / 2));
}

osg::Vec2i WindowBase::calcWindowPositionInsideScreen(osg::Vec2i const& position, osg::Vec2i const& size) {
    osg::Vec2i const screen = getScreenSize();
    return osg::Vec2i(moveInside(position.x(), size.x(), screen.x()), moveInside(position.y(), size.y(), screen.y()));
}

}  // namespace gui
