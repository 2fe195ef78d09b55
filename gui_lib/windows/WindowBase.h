#pragma once

#include "gui_lib/base/HotKey.h"
#include "gui_lib/widget/Container.h"

namespace gui {

class WindowHeader;
class WindowsManager;
class WindowView;

namespace skin {
class WindowBaseSkin;
}

/// The base of every top-level element: a place on a surface, an optional header and view, hot keys, a stack of mouse
/// cursors, resizing by the border, overlay widgets and the tab chain. The host's widgets go into the view. Made
/// hidden; shown and hidden by `setVisible`, ended by `kill`. Handed to the skin: inner state 2 with focus, else 1.
/// Coordinates: `position` is relative to the surface, GUI units.
class VORLEX_API WindowBase : public Container {
public:
    using HotKey = gui::HotKey;
    using HotKeyCallback = std::shared_ptr<std::function<void()>>;

    /// The cursor numbers that the toolkit asks the host for.
    enum Cursor {
        CursorNone = -1,
        CursorDefault = 0,
        CursorColumnResize = 36,
        CursorResizeRising = 38,
        CursorResizeVert = 39,
        CursorResizeFalling = 40,
        CursorResizeHorz = 41
    };
    /// Bits of the borders that a resize moves.
    enum ResizeMask { ResizeLeft = 1, ResizeRight = 2, ResizeTop = 4, ResizeBottom = 8 };

    static constexpr char const* closeCallbackName = "window close";

    WindowBase();
    ~WindowBase() override;

    // --- Surface and life ---
    /// Hides a visible window first; it is not shown again.
    virtual void setSurfaceId(int id);
    virtual int getSurfaceId() const;

    // --- Widgets: children of the view; nothing happens without one ---
    /// At `index` if a child is there, else at the end. The window owns the widget from now on.
    virtual void insertWidget(Widget* widget, int index);
    /// Takes a widget out without destroying it.
    virtual void removeWidget(Widget* widget);
    /// Hides the window; it dies at the next drain of the message queue.
    virtual void kill();

    // --- Behaviour ---
    /// Without a cursor the window is not found under the mouse either.
    virtual void setHasCursor(bool newHasCursor);
    virtual bool getHasCursor() const;
    virtual void setDraggable(bool newDraggable);
    virtual bool getDraggable() const;
    /// Whether a drag that ends outside brings the header back onto the screen.
    virtual bool checkOutOfScreenOnDrag() const;
    virtual void setResizable(bool newResizable);
    virtual bool getResizable() const;
    /// Stops a resize while the cursor is outside the main window.
    virtual void setClipResizeCursor(bool clip);
    virtual bool getClipResizeCursor() const;

    // --- Hot keys ---
    /// Runs every callback whose key and modifiers are exactly these; true if any ran.
    virtual bool onHotKey(HotKey const& key);
    /// Those with more modifiers are tried first.
    virtual void addHotKeyCallback(HotKey const& key, HotKeyCallback callback);
    /// True if it was there.
    virtual bool removeHotKeyCallback(HotKey const& key, HotKeyCallback const& callback);

    /// Makes the managers ignore the window, so that it lives as a child of another container.
    virtual void setAsWidget(bool newAsWidget);
    virtual bool getAsWidget() const;
    /// Move the focus along the tab chain of the view, around its ends.
    virtual void setNextWidgetFocused();
    virtual void setPrevWidgetFocused();

    // --- Overlay widgets: drawn over the window, owned by it, out of reach of the mouse ---
    virtual void insertOverlayWidget(Widget* widget, int index);
    virtual void removeOverlayWidget(Widget* widget);
    virtual int getOverlayWidgetCount() const;
    virtual Widget* getOverlayWidget(int index) const;

    // --- Mouse cursor ---
    virtual void pushMouseCursor(int cursor);
    virtual void popMouseCursor();
    /// The top of the stack; CursorNone if the window has no cursor.
    virtual int getMouseCursor() const;

    /// Destroys the widgets of the view.
    void clear();
    /// Lets go of the widgets of the view.
    void removeAllWidgets();
    /// Hides the window and calls the "window close" callbacks.
    void close() { onClose_(); }
    void centerWindow();
    /// The nearest position that keeps a window of this size on the screen; the left top corner wins.
    static osg::Vec2i calcWindowPositionInsideScreen(osg::Vec2i const& position, osg::Vec2i const& size);
    WindowHeader* getHeader() const { return header; }
    WindowView* getView() const { return view; }
    /// Null in a window with another skin or none.
    skin::WindowBaseSkin* getSkin() const;

    // Container:
    void setLayout(LayoutHandler* newLayout) override;
    LayoutHandler* getLayout() const override;
    int getWidgetCount() const override;
    Widget* getWidget(int index) const override;
    void onWidgetDestroy(WidgetHandler* child) override;

    // Widget:
    int getRootSurfaceId() const override;
    Widget* clone() const override;
    char const* getWidgetType() const override;
    int getInnerState() const override;
    osg::Vec2i calcSize() const override;
    osg::RectImpl<osg::Vec2i> getClientRect() const override;
    void onMouseDown(osg::Vec2i const& point, MouseButton button) override;
    void onMouseEnter(osg::Vec2i const& point) override;
    void onMouseLeave(osg::Vec2i const& point) override;
    void onMouseMove(osg::Vec2i const& point) override;
    void onMouseUp(osg::Vec2i const& point, MouseButton button) override;
    void onMouseReleased() override;
    bool onKeyDown(KeyboardButton key, int modifiers) override;
    bool onChar(KeyboardButton key, int modifiers) override;
    bool onKeyUp(KeyboardButton key, int modifiers) override;

protected:
    virtual void onHasCursorChanged_(bool newHasCursor);
    virtual void onClose_();
    /// Places header and view.
    virtual void updateWidgets_();
    virtual void getSortedTabOrderedWidgets_(qor::vector<WidgetHandler*>& out);
    /// The border under the point as bits of ResizeMask; 0 unless resizable.
    virtual int getResizeMask_(osg::Vec2i const& point) const;
    virtual int getResizeCursor_(int mask) const;

    // Container:
    void removeWidget_(Widget* widget) override;

    // Widget:
    void onSizeChanged_(osg::Vec2i const& newSize) override;
    void onTextChanged_(std::basic_string_view<wchar_t> newText) override;
    void draw_() override;
    void make_(GraphicCommands* commands) override;

    // --- For the concrete windows ---
    void makeHeaderAndView_();
    /// The manager of the window's surface, remembered for leaving; null if there is none.
    WindowsManager* enterManager_();
    /// The manager to leave: the one entered, else that of the surface; null if there is none. It is remembered no
    /// longer.
    WindowsManager* leaveManager_();

    int surfaceId = 0;
    /// Children; null in classes that make none.
    WindowHeader* header = nullptr;
    WindowView* view = nullptr;
    qor::vector<WidgetHandler*> overlayWidgets;
    bool hasCursor = true;
    bool draggable = true;
    bool resizable = false;
    bool resizeCursorPushed = false;
    int resizeBorder = 5;
    int resizeMask = 0;
    osg::Vec2i dragMousePosition;
    bool asWidget = false;
    bool clipResizeCursor = false;
    qor::vector<std::pair<HotKey, HotKeyCallback>> hotKeys;
    qor::deque<int> cursors;

private:
    void forgetChild_(WidgetHandler const* child);
    void tellCursorChanged_();
    void pushResizeCursor_(int mask);
    void resizeTo_(osg::Vec2i const& point);
    void moveTabFocus_(bool forwards);

    /// Tell the children apart when they die, without a look at the pointers.
    WidgetHandler* headerHandler = nullptr;
    WidgetHandler* viewHandler = nullptr;
    WindowsManager* enteredManager = nullptr;
};

}  // namespace gui
