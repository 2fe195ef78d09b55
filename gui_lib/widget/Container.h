#pragma once

#include "gui_lib/widget/Widget.h"

namespace gui {

class Layout;
class LayoutHandler;

/// A widget with children, which it owns, and an optional layout, which it owns too. Later children paint over earlier
/// ones and are hit first. The container passes mouse events to the child under the cursor and keys to the child with
/// the focus. Each subclass decides which of the protected child operations it shows. Order: the child hears an event
/// before the container's own callbacks do.
class VORLEX_API Container : public Widget {
public:
    Container();
    ~Container() override;

    /// As `Widget::copyParams`, and a clone of the layout. Children are not copied.
    void copyParams(Container* target) const;

    // --- Layout ---
    /// Takes over the layout and runs it; the old one is destroyed. A layout of another container is taken from it.
    virtual void setLayout(LayoutHandler* newLayout);
    virtual LayoutHandler* getLayout() const;

    // --- Children ---
    virtual int getWidgetCount() const;
    /// Null for a bad index and for a child that has died.
    virtual Widget* getWidget(int index) const;
    /// A child is about to be destroyed.
    virtual void onWidgetDestroy(WidgetHandler* child);

    // --- False stops the container's own callbacks for the event ---
    virtual bool getGenerateMouseMoveCallbacks(osg::Vec2i const& point);
    virtual bool getGenerateMouseDownCallbacks(osg::Vec2i const& point, MouseButton button);
    virtual bool getGenerateMouseDoubleClickCallbacks(osg::Vec2i const& point, MouseButton button);
    virtual bool getGenerateMouseUpCallbacks(osg::Vec2i const& point, MouseButton button);

    /// Runs the layout at once with `now`, otherwise at the next redraw. Also tells that sizes which the container
    /// and those above it have measured are others now.
    virtual void updateLayout(bool now);

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
    Widget* getFocusedWidget() override;
    void updateSize() override;
    osg::Vec2i getMinSize() const override;
    osg::Vec2i getMaxSize() const override;
    osg::Vec2i calcMaxSize() const override;
    osg::Vec2i getPrefSize() const override;
    void getTabOrderedWidgets(qor::vector<WidgetHandler*>& out) override;
    bool getFocusable() const override;
    Widget* findWidgetByName(std::basic_string_view<wchar_t> wantedName) override;
    Widget* getTooltipWidget(osg::Vec2i const& point) override;
    Widget* findWidgetAtScreenPoint(osg::Vec2i const& point) override;
    Widget* getWidgetAtScreenPoint(osg::Vec2i const& point) override;
    bool getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const override;
    void onMouseMove(osg::Vec2i const& point) override;
    void onMouseEnter(osg::Vec2i const& point) override;
    void onMouseLeave(osg::Vec2i const& point) override;
    void onMouseDown(osg::Vec2i const& point, MouseButton button) override;
    void onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) override;
    void onMouseUp(osg::Vec2i const& point, MouseButton button) override;
    bool onMouseWheel(osg::Vec2i const& point, int delta) override;
    void onMouseCursorMove(osg::Vec2i const& point) override;
    bool onKeyDown(KeyboardButton key, int modifiers) override;
    bool onChar(KeyboardButton key, int modifiers) override;
    bool onKeyUp(KeyboardButton key, int modifiers) override;
    void setDirty(DirtyFlag flag) override;
    void doRedrawChildren() override;
    void redrawChildren() override;
    void drawChildren() override;
    void makeChildren(GraphicCommands* commands) override;
    void localize(LocalizationMap const& map) override;

protected:
    friend class Widget;
    friend class Layout;
    friend class LayoutRun;

    virtual void parseChildren_();
    /// Inserts at `index` if that is a place in front of a child, else at the end; takes the widget out of its old
    /// parent first. Null and a child are ignored; this and an ancestor are refused with a log line.
    virtual void insertWidget_(Widget* widget, int index);
    /// Takes a child out without destroying it. It gets no leave or focus event. Called by the destructor of a child
    /// too: an override must not cast the widget and tells its children apart by their handlers.
    virtual void removeWidget_(Widget* widget);
    virtual Widget* getWidget_(int index) const;
    /// -1 for null and a stranger.
    virtual int getWidgetIndex_(Widget const* widget) const;
    /// Lets go of all children.
    virtual void removeAllWidgets_();
    /// Destroys all children.
    virtual void clear_();
    /// As `clear_` without a layout. A class that keeps pointers to children calls it in its own destructor.
    virtual void deleteWidgets_();
    virtual int getWidgetCount_() const;
    virtual void onHoveredWidgetChanged_(WidgetHandler* newHovered, osg::Vec2i const& point);
    virtual WidgetHandler* getFocusedWidget_() const;
    virtual void resetWidgets_();

    // Widget:
    void onPositionChanged_(osg::Vec2i const& newPosition) override;
    void onSizeChanged_(osg::Vec2i const& newSize) override;
    void onFocusChanged_(bool newFocused) override;
    void onEnableChanged_(bool newEnabled) override;
    void setFocusedWidget_(WidgetHandler* child) override;
    void redraw_() override;
    void parse_() override;
    void makeParse_(GraphicCommands* commands) override;

    /// Finds the child under the point and sends leave and enter if it changed.
    void updateHoveredWidget_(osg::Vec2i const& point);
    /// The hovered child if it is alive and enabled.
    Widget* getLiveHovered_() const;
    /// True, with one log line, if `widget` is this or an ancestor, which cannot become a child.
    bool refuseAsChild_(Widget const* widget) const;

    qor::vector<WidgetHandler*> widgets;
    WidgetHandler* hoveredWidget = nullptr;
    WidgetHandler* focusedWidget = nullptr;
    LayoutHandler* layout = nullptr;
    bool layoutDirty = false;

private:
    /// The place of a child in `widgets`, or -1.
    int findChild_(Widget const* widget) const;
    void runLayout_();
    /// For size questions, which it may answer from memory; null without one.
    Layout* getAskedLayout_() const;
    void forgetLayoutAnswers_();
    /// False if its layout knew none.
    bool forgetLastingAnswers_();
    /// As those of Widget.
    bool sizesLast_() const;
    /// Whether the children are those in `widgets`, and no override hides or adds some.
    bool showsAllChildren_() const;
    void hoverUnderRestingCursor_();
    /// Whether the hover follows the cursor as Container and Widget have it.
    bool hoversPlainly_() const;
    template <class Forward>
    bool forwardKey_(Forward forward);
};

inline Container* Widget::asContainer_(Widget* widget) {
    return widget && widget->isContainer ? static_cast<Container*>(widget) : nullptr;
}

}  // namespace gui
