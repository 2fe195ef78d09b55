#pragma once

#include "gui_lib/base/CallbackTypes.h"
#include "gui_lib/base/InteractiveState.h"
#include "gui_lib/base/Keyboard.h"
#include "gui_lib/base/VirtualTable.h"
#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

#include <osg/Vec2i>

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace gui {

class Container;
class GraphicCommands;
class Layout;
class WidgetHandler;
class WidgetWorkLists;
struct CallbackTables;

namespace skin {
class Skin;
class ShaderEffectParams;
}  // namespace skin

/// The base of every visible element: geometry, state, texts, a skin and callbacks, and the operations that the tree
/// dispatches through. Make widgets on the heap only and end them with `destroy` (windows with `WindowBase::kill`); a
/// parent owns its children, and whatever is alive when GUI ends is deleted then. Coordinates: `position` is relative
/// to the parent; points of mouse events are GUI units of the surface. Sizes are GUI units. Order: a change marks
/// `dirty`; `redraw` lays out what is dirty; `doRedraw` builds renderer objects; `draw` or `make` show them. Callbacks
/// may destroy any widget, the one that calls included.
class VORLEX_API Widget {
public:
    enum DirtyFlag { DirtySelf = 0, DirtyChildren = 1, DirtyTree = 2 };

    using MouseCallback = std::shared_ptr<std::function<void(int, int, int)>>;
    using MouseWheelCallback = std::shared_ptr<std::function<bool(int, int, int)>>;
    using KeyboardCallback = std::shared_ptr<std::function<bool(KeyboardButton, int)>>;
    using WidgetCallback = std::shared_ptr<std::function<void()>>;
    using LocalizationMap = qor::hash_map<qor::basic_string<wchar_t>, qor::basic_string<wchar_t>>;

    static constexpr char const* changeCallbackName = "widget change";
    static constexpr char const* focusCallbackName = "widget focus";
    static constexpr char const* positionCallbackName = "widget position";
    static constexpr char const* sizeCallbackName = "widget size";

    Widget();
    Widget(Widget const&) = delete;
    Widget& operator=(Widget const&) = delete;

    /// Ends a widget; null is ignored, and so is one that is being ended already.
    static void destroy(Widget* widget);
    /// Runs `redraw` on every marked widget; marks made meanwhile wait for the next call. A nested call returns at
    /// once.
    static void redrawAll();
    /// Runs `doRedraw` on every widget that was redrawn since the last call.
    static void doRedrawAll();
    /// How many widgets `redrawAll` has redrawn so far.
    static unsigned long getRedrawCount();

    /// The own handle; valid for ever, answers null after the widget's death.
    WidgetHandler* getHandler() const { return handler; }
    /// Gives the target name, text, geometry, state, tooltip text and resource string through its setters; callbacks
    /// stay.
    void copyParams(Widget* target) const;

    // --- Identity and look ---
    /// The surface of the window that holds this widget, 0 without one.
    virtual int getRootSurfaceId() const;
    /// A new widget of the class with the same skin parameters and params; the caller owns it.
    virtual Widget* clone() const;
    /// The class word of window resources.
    virtual char const* getWidgetType() const;
    virtual skin::InteractiveState getInteractiveState() const;
    /// Picks the look within an interactive state; 1 is the usual one.
    virtual int getInnerState() const;
    /// The widget's skin (still owned by it) or null.
    virtual skin::Skin* getWidgetSkin() const;
    /// Keeps a copy of `source`; null removes the copy.
    virtual void setTooltipSkin(skin::Skin const* source);
    virtual skin::Skin* getTooltipSkin() const;

    // --- Tree ---
    virtual void setParent(WidgetHandler* newParent);
    virtual WidgetHandler* getParent() const;
    /// Forgets the parent without telling anybody.
    virtual void resetParent();
    /// Takes this widget out of its parent container.
    virtual void detachFromParent();
    /// The topmost ancestor; null for a widget without a parent.
    virtual Widget* getRoot() const;
    virtual Widget* getFocusedWidget();

    // --- Text and geometry ---
    virtual void setText(std::basic_string_view<wchar_t> newText);
    virtual qor::basic_string<wchar_t> const& getText() const;
    /// Relative to the parent.
    virtual void setPosition(osg::Vec2i const& newPosition);
    virtual osg::Vec2i getPosition() const;
    /// The size is raised to the minimum and lowered to the maximum first; the maximum wins.
    virtual void setSize(osg::Vec2i const& newSize);
    virtual osg::Vec2i getSize() const;
    /// Lays the widget out again at its present size.
    virtual void updateSize();
    /// A component of 0 in a minimum or maximum means no limit. Overrides must be free of side effects, and answer the
    /// same until something of the widget, its skin or its children changes, or `setDirtySize(true)` or `updateLayout`
    /// of a container tells so: containers remember answers while a resize runs.
    virtual osg::Vec2i getMinSize() const;
    virtual osg::Vec2i getMaxSize() const;
    virtual osg::Vec2i calcMaxSize() const;
    virtual osg::Vec2i getPrefSize() const;
    virtual osg::Vec2i calcSize() const;
    /// The area inside the skin's insets, in widget coordinates.
    virtual osg::RectImpl<osg::Vec2i> getClientRect() const;

    // --- State ---
    /// 0 keeps the widget out of the tab chain; dropped on a widget that cannot take the focus.
    virtual void setTabOrder(int order);
    virtual int getTabOrder() const;
    virtual void getTabOrderedWidgets(qor::vector<WidgetHandler*>& out);
    virtual void setVisible(bool newVisible);
    /// The own flag, or with `recursive` whether all ancestors are visible too.
    virtual bool getVisible(bool recursive) const;
    virtual void setFocused(bool newFocused);
    /// The focus arrives by the Tab key.
    virtual void setTabFocused();
    virtual bool getFocused() const;
    virtual bool getFocusable() const;
    virtual void setEnabled(bool newEnabled);
    /// True if this widget and all its ancestors are enabled.
    virtual bool getEnabled() const;
    virtual void setTooltipText(std::basic_string_view<wchar_t> newText);
    virtual qor::basic_string<wchar_t> const& getTooltipText() const;
    virtual void setResourceString(std::basic_string_view<char> newString);
    virtual qor::basic_string<char> const& getResourceString() const;
    virtual void setName(std::basic_string_view<wchar_t> newName);
    virtual qor::basic_string<wchar_t> const& getName() const;
    /// The exact, case-sensitive name; two empty names match.
    virtual Widget* findWidgetByName(std::basic_string_view<wchar_t> wantedName);
    /// Ignored unless above 0. A zoom other than 1 draws the widget to a target.
    virtual void setZoom(float newZoom);
    virtual float getZoom() const;
    /// 0 to 1, anything else is ignored. An opacity other than 1 draws the widget to a target.
    virtual void setOpacity(float newOpacity);
    virtual float getOpacity() const;

    // --- Points: screen coordinates are GUI units of the surface ---
    virtual Widget* getTooltipWidget(osg::Vec2i const& point);
    /// The deepest visible widget at the point.
    virtual Widget* findWidgetAtScreenPoint(osg::Vec2i const& point);
    /// The visible child at the point, one level down, or this; null outside.
    virtual Widget* getWidgetAtScreenPoint(osg::Vec2i const& point);
    /// All four edges count as inside.
    virtual bool getScreenPointInside(osg::Vec2i const& point) const;
    virtual bool getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const;
    virtual osg::Vec2i screenToWidget(osg::Vec2i const& point) const;
    virtual osg::Vec2i widgetToScreen(osg::Vec2i const& point) const;

    // --- Mouse ---
    virtual void onMouseMove(osg::Vec2i const& point);
    virtual void onMouseEnter(osg::Vec2i const& point);
    virtual void onMouseLeave(osg::Vec2i const& point);
    virtual void onMouseDown(osg::Vec2i const& point, MouseButton button);
    virtual void onMouseDoubleClick(osg::Vec2i const& point, MouseButton button);
    virtual void onMouseUp(osg::Vec2i const& point, MouseButton button);
    /// `delta` is positive upwards. True if the widget used it.
    virtual bool onMouseWheel(osg::Vec2i const& point, int delta);

    // --- Callbacks: each kept at most once, called in order of addition ---
    virtual void addMouseCallback(MouseCallbackType type, MouseCallback callback);
    virtual void removeMouseCallback(MouseCallbackType type, MouseCallback const& callback);
    virtual void addMouseWheelCallback(MouseWheelCallback callback);
    virtual void removeMouseWheelCallback(MouseWheelCallback const& callback);
    virtual void addKeyboardCallback(KeyboardCallbackType type, KeyboardCallback callback);
    virtual void removeKeyboardCallback(KeyboardCallbackType type, KeyboardCallback const& callback);
    /// `type` is the number of a callback name: see `getWidgetCallbackType`.
    virtual void addWidgetCallback(int type, WidgetCallback callback);
    virtual void removeWidgetCallback(int type, WidgetCallback const& callback);

    /// The widget moved or woke under a resting cursor.
    virtual void onMouseCursorMove(osg::Vec2i const& point);
    /// The widget has lost the mouse capture.
    virtual void onMouseReleased();
    virtual bool onKeyDown(KeyboardButton key, int modifiers);
    virtual bool onChar(KeyboardButton key, int modifiers);
    virtual bool onKeyUp(KeyboardButton key, int modifiers);

    // --- Drawing ---
    /// Asks for a redraw at the next `redrawAll`.
    virtual void setDirty(DirtyFlag flag);
    virtual void setDirtySize(bool newDirtySize);
    virtual bool getDirtySize() const;
    virtual void doRedraw();
    virtual void doRedrawChildren();
    virtual void redraw();
    virtual void redrawChildren();
    virtual void draw();
    virtual void drawChildren();
    virtual void parse();
    virtual void make(GraphicCommands* commands);
    virtual void makeChildren(GraphicCommands* commands);
    virtual void makeParse(GraphicCommands* commands);
    /// Always marks the widget, also when nothing changes.
    virtual void setDrawToTarget(bool newDrawToTarget);
    /// True if the widget is drawn into a target of its own: asked for, half transparent, zoomed or under an effect.
    virtual bool getDrawToTarget() const;
    /// Replaces a text and a tooltip text that begin with "$" by what the map holds for the rest; unknown ones stay.
    virtual void localize(LocalizationMap const& map);
    /// Both arguments may be null; a null name removes the effect.
    virtual void setShaderEffect(char const* name, skin::ShaderEffectParams const* params);
    virtual void setRedrawCallback(std::function<void()> callback);
    virtual void setDoRedrawCallback(std::function<void()> callback);

    virtual ~Widget();

protected:
    friend class Container;
    friend class Layout;
    friend class LayoutRun;
    friend class MessageKillWindow;
    friend class WidgetWorkLists;
    friend class skin::Skin;

    virtual void destroy_();

    // --- Changes: a setter has found a difference; the override stores or calls up ---
    virtual void onParentChanged_(WidgetHandler* newParent);
    virtual void onTextChanged_(std::basic_string_view<wchar_t> newText);
    virtual void onPositionChanged_(osg::Vec2i const& newPosition);
    virtual void onSizeChanged_(osg::Vec2i const& newSize);
    virtual void onVisibleChanged_(bool newVisible);
    virtual void onFocusChanged_(bool newFocused);
    virtual void onEnableChanged_(bool newEnabled);
    virtual void onZoomChanged_(float newZoom);
    /// Travels to the root; every ancestor that draws to a target becomes dirty.
    virtual void onChildBecomeDirty_(Widget* child);
    virtual osg::Vec2i validateSize_(osg::Vec2i const& wanted) const;
    virtual osg::RectImpl<osg::Vec2i> getClientRect_() const;
    virtual void setFocusedWidget_(WidgetHandler* child);

    // --- Drawing steps ---
    /// Position within the target that is being drawn, or within the surface.
    virtual osg::Vec2i getTargetPosition_() const;
    virtual void beginClip_();
    virtual void endClip_();
    virtual osg::RectImpl<osg::Vec2i> getClipRect_() const;
    virtual void drawModelView_();
    virtual void drawClipped_();
    virtual void draw_();
    virtual void drawFocusRect_();
    virtual void doRedraw_();
    virtual void redraw_();
    virtual void parse_();
    virtual void make_(GraphicCommands* commands);
    virtual void makeModelView_(GraphicCommands* commands);
    virtual void makeClipped_(GraphicCommands* commands);
    virtual void makeBeginClip_(GraphicCommands* commands);
    virtual void makeEndClip_(GraphicCommands* commands);
    virtual void makeFocusRect_(GraphicCommands* commands);
    virtual void makeParse_(GraphicCommands* commands);

    virtual void updateSize_();
    virtual skin::InteractiveState getInteractiveState_(bool hovered, bool pressed) const;
    /// The user changed the value: calls the "widget change" callbacks.
    virtual void onChange_();
    virtual void callMouseCallbacks_(MouseCallbackType type, int x, int y, int button);
    virtual bool callKeyboardCallbacks_(KeyboardCallbackType type, KeyboardButton key, int modifiers);
    virtual void callWidgetCallbacks_(int type);

    // --- Helpers ---
    /// `validateSize_` without raising negative components.
    osg::Vec2i clampSize_(osg::Vec2i const& wanted) const;
    /// The first line of every destructor that calls out: from here on `destroy` of this widget does nothing.
    void beginDestruction_() { destroying = true; }
    bool isBeingDestroyed_() const { return destroying; }
    /// Grows whenever a child comes, goes, moves or is resized, for whoever keeps an index of their places.
    unsigned getChildPlaceChanges_() const { return childPlaceChanges; }
    Widget* getParentWidget_() const;
    /// Null for null, and for what is no Container, or no longer or not yet.
    /// Defined in Container.h.
    static Container* asContainer_(Widget* widget);
    Container* getParentContainer_() const;
    /// The place or size is another one: what containers above, and this, have measured with it holds no longer.
    void forgetMeasures_();
    /// Minimum, maximum or preferred size may be others: what containers above, and this, have measured holds no
    /// longer.
    void forgetSizes_();

    WidgetHandler* handler = nullptr;
    WidgetHandler* parent = nullptr;
    qor::basic_string<wchar_t> text;
    osg::Vec2i position;
    osg::Vec2i size;
    int tabOrder = 0;
    bool dirty = true;
    bool dirtySize = true;
    bool visible = true;
    bool focused = false;
    bool enabled = true;
    float zoom = 1.0f;
    float opacity = 1.0f;
    bool drawToTarget = false;
    bool needDoRedraw = true;
    /// Owned, as are the next two; `debugSkin` exists only while GUI draws debug skins.
    skin::Skin* skin = nullptr;
    skin::Skin* tooltipSkin = nullptr;
    skin::Skin* debugSkin = nullptr;
    qor::basic_string<wchar_t> tooltipText;
    qor::basic_string<wchar_t> name;
    qor::basic_string<char> resourceString;
    /// Null until the first callback is added.
    std::unique_ptr<CallbackTables> callbacks;
    /// Shared so that a callback may replace itself or end the widget while it runs.
    std::shared_ptr<std::function<void()>> redrawCallback;
    std::shared_ptr<std::function<void()>> doRedrawCallback;

private:
    void redrawDebugSkin_();
    /// What the class of this object leaves as Widget has it.
    enum OwnWays : unsigned { DrawsInOneGo = 1, EntersDrawing = 2, ParsesNothing = 4 };
    unsigned getOwnWays_() const { return ownWays.getFlags(*this, learnOwnWays_); }
    static unsigned learnOwnWays_(VirtualTable table);
    /// What the steps from `drawModelView_` on do together in a class that overrides none of them.
    void drawInOneGo_();
    void drawSkins_();
    /// The same for `makeModelView_`.
    void makeInOneGo_(GraphicCommands* commands);
    void makeSkins_(GraphicCommands* commands);
    /// `own` from the corner of `target`, or of the surface.
    osg::Vec2i addOrigin_(osg::Vec2i const& own, Widget const* target) const;
    osg::Vec2i climbToTarget_(osg::Vec2i const& own, Widget const* target) const;
    /// The own place in the parent is another.
    void onPlaceChanged_();
    /// It has no callbacks, and its class adds nothing to calling them.
    bool isUnheard_() const;
    /// Whether minimum, maximum and preferred size come from the toolkit's own functions, and depend neither on place,
    /// size and state nor on pictures: they stay until `forgetSizes_`.
    bool sizesLast_() const;
    bool limitsLast_() const;
    /// Whether a size and a place are set and compared as Widget does it.
    bool isPlacedPlainly_() const;
    /// Whether here and above the mark of a child changes nothing, so that nobody needs to hear of it, and parents and
    /// positions are those of Widget. Found out once in a `MeasurePass`, in which many children are marked and moved.
    bool isSettled_() const;
    /// Within a pass in which all above are settled: the topmost widget, as `getRoot` finds it.
    Widget* getSettledRoot_() const;
    /// The same for `screenToWidget`.
    osg::Vec2i screenToSettledWidget_(osg::Vec2i const& point) const;

    mutable VirtualMemo ownWays;
    /// Places in the two dirty lists and in the list for `doRedraw`; -1 outside.
    int dirtyIndex[2] = {-1, -1};
    int doRedrawIndex = -1;
    /// How many containers hold this widget, and where the last one saw it (checked before it is trusted).
    int containerLinks = 0;
    int childIndexHint = -1;
    /// A container may hold this widget that is not its parent.
    bool heldByStranger = false;
    unsigned childPlaceChanges = 0;
    bool destroying = false;
    bool inRedraw = false;
    bool childDirtiedInRedraw = false;
    /// A container whose layout was asked for sizes.
    mutable bool keepsMeasures = false;
    /// The stamp of `MeasurePass` under which this was found to be settled.
    mutable std::uint64_t settledStamp = 0;
    /// While this is a Container, as `dynamic_cast` sees it.
    bool isContainer = false;
};

}  // namespace gui
