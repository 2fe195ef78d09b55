#pragma once

#include "gui_lib/widget/Container.h"

namespace gui {

class Layout;
class ScrollBar;
class ScrollPaneHorzScrollBar;
class ScrollPaneVertScrollBar;
class ScrollPaneView;
class ScrollPaneViewContainer;

namespace skin {
class ScrollPaneData;
class ScrollPaneSkin;
}  // namespace skin

/// Shows widgets that may need more room than it has, through a view with scroll bars. They lie in a container of their
/// own, which moves behind the view. The bars cover the box around the visible widgets, brought up to date at the next
/// redraw after one was inserted or taken out, after a layout was set, and after the pane was resized; when a widget
/// moves, grows, shows or hides by itself, call `updateWidgetsBounds`. Skin "scrollPaneSkin". Lifetime: owns the
/// widgets.
class VORLEX_API ScrollPane : public Container {
public:
    /// The user scrolled.
    static constexpr char const* changeScrollPaneCallbackName = "scroll pane change";

    ScrollPane();
    ~ScrollPane() override;

    // --- Widgets ---
    /// A bad index appends. The widget leaves the parent it had.
    void insertWidget(Widget* widget, int index);
    void removeWidget(Widget* widget);
    /// Lets go of all without ending them.
    void removeAllWidgets();
    /// Ends all.
    void clear();
    int getWidgetIndex(Widget* widget) const;
    /// Asks for new bounds at the next redraw.
    void updateWidgetsBounds();

    // --- Parts: null if they were ended or taken out ---
    ScrollPaneView* getView() const { return view; }
    ScrollPaneVertScrollBar* getVertScrollBar() const { return vertScrollBar; }
    ScrollPaneHorzScrollBar* getHorzScrollBar() const { return horzScrollBar; }
    skin::ScrollPaneSkin* getSkin() const;

    // --- Scrolling: GUI units; 0 while the bar is hidden. Setting calls no callbacks ---
    double getVertScrollValue() const;
    void setVertScrollValue(double newValue);
    double getHorzScrollValue() const;
    void setHorzScrollValue(double newValue);
    void getVertScrollRange(double& minimum, double& maximum) const;
    void getHorzScrollRange(double& minimum, double& maximum) const;
    double getVertScrollBarStep() const { return vertStep; }
    void setVertScrollBarStep(double newStep);
    double getHorzScrollBarStep() const { return horzStep; }
    void setHorzScrollBarStep(double newStep);
    /// 0 and less mean the size of the view.
    double getVertScrollBarPageStep() const { return vertPageStep; }
    void setVertScrollBarPageStep(double newPageStep);
    double getHorzScrollBarPageStep() const { return horzPageStep; }
    void setHorzScrollBarPageStep(double newPageStep);
    /// Whether the wheel scrolls up and down; true at first.
    bool getVertMouseWheel() const { return vertMouseWheel; }
    void setVertMouseWheel(bool use) { vertMouseWheel = use; }
    /// Whether the wheel scrolls sideways where it does not scroll up and down any more; false at first.
    bool getHorzMouseWheel() const { return horzMouseWheel; }
    void setHorzMouseWheel(bool use) { horzMouseWheel = use; }

    /// Gives the target also the wheel flags, the steps, clones of the widgets, the values, within the range that the
    /// target has, and a clone of the layout.
    void copyParams(ScrollPane* target) const;

    // Container: the widgets and their layout
    void setLayout(LayoutHandler* newLayout) override;
    LayoutHandler* getLayout() const override;
    int getWidgetCount() const override;
    Widget* getWidget(int index) const override;
    void onWidgetDestroy(WidgetHandler* child) override;
    bool getGenerateMouseMoveCallbacks(osg::Vec2i const& point) override;

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
    Widget* findWidgetAtScreenPoint(osg::Vec2i const& point) override;
    bool getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const override;
    bool onMouseWheel(osg::Vec2i const& point, int delta) override;

protected:
    friend class ScrollPaneHorzScrollBar;
    friend class ScrollPaneVertScrollBar;

    // --- The user moved a bar ---
    virtual void onHorzScrollBarChange_();
    virtual void onVertScrollBarChange_();
    /// Moves the widgets to where the visible bars are.
    virtual void setViewOffset_();
    /// Measures the widgets and sets bars, view and offset by them.
    virtual void updateWidgetBounds_();
    /// Shows or hides the bars, and sizes and places bars and view.
    virtual void updateWidgetsSizes_(bool horizontal, bool vertical);

    // Container:
    void removeWidget_(Widget* widget) override;

    // Widget:
    void onSizeChanged_(osg::Vec2i const& newSize) override;
    void redraw_() override;

    ScrollPaneView* view = nullptr;
    ScrollPaneVertScrollBar* vertScrollBar = nullptr;
    ScrollPaneHorzScrollBar* horzScrollBar = nullptr;
    bool vertMouseWheel = true;
    bool horzMouseWheel = false;
    bool boundsNeedUpdate = false;
    double vertStep = 1.0;
    double vertPageStep = 0.0;
    double horzStep = 1.0;
    double horzPageStep = 0.0;

private:
    ScrollPaneViewContainer* getContainer_() const;
    skin::ScrollPaneData const* getPaneData_() const;
    /// The box around the visible widgets, the corner of the container and the client area.
    osg::RectImpl<osg::Vec2i> measureWidgets_() const;
    void moveWidgets_(osg::Vec2i const& distance);
    bool turnBar_(ScrollBar* bar, int delta);
    void onScrolled_();
    void forgetChild_(WidgetHandler const* child);
};

}  // namespace gui
