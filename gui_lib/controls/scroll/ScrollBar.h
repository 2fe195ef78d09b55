#pragma once

#include "gui_lib/controls/scroll/ScrollBarBase.h"
#include "gui_lib/widget/Container.h"

namespace gui {

class ScrollBarButton;
class ScrollBarThumb;
struct Align;

namespace skin {
class ScrollBarData;
class ScrollBarSkin;
}  // namespace skin

/// A track with a thumb and, if its skin says so, a step button at each end. A press of the main button beside the
/// thumb moves the value by a page, the thumb is dragged, the buttons step when they are let go. What the user changes
/// calls the "widget change" callbacks; `setValue` calls none, but `setThumbValue` does where it moves the value. The
/// wheel is left to whatever is scrolled. Lifetime: thumb and buttons are children like any; whoever ends or takes one
/// leaves the bar without it.
class VORLEX_API ScrollBar : public Container, public ScrollBarBase {
public:
    static constexpr char const* thumbPressedCallbackName = "thumb pressed";
    static constexpr char const* thumbReleasedCallbackName = "thumb released";

    ~ScrollBar() override;

    /// Null if it was ended or taken out.
    ScrollBarThumb* getThumb() const { return thumb; }
    /// Null without step buttons, as the next.
    ScrollBarButton* getDecreaseButton() const { return decreaseButton; }
    ScrollBarButton* getIncreaseButton() const { return increaseButton; }
    skin::ScrollBarSkin* getSkin() const;
    /// Gives the target value, thumb value, steps and range too, in this order: value and thumb value pass through the
    /// range that the target has had.
    void copyParams(ScrollBar* target) const;

    // ScrollBarBase:
    void setThumbValue(double newThumbValue) override;
    void onValueChanged_(double newValue) override;
    void onRangeChanged_(double newMinimum, double newMaximum) override;
    void onThumbValueChanged_(double newThumbValue) override;
    void changeValue_(double newValue) override;

    // Container:
    void onWidgetDestroy(WidgetHandler* child) override;

    // Widget: the parts are hidden from whoever searches the tree
    Widget* getFocusedWidget() override;
    Widget* findWidgetAtScreenPoint(osg::Vec2i const& point) override;
    bool getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const override;
    void onMouseDown(osg::Vec2i const& point, MouseButton button) override;
    /// A second press.
    void onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) override;

protected:
    friend class ScrollBarThumb;

    enum Axis { Horz = 0, Vert = 1 };

    /// Along which axis it scrolls. Without a skin and parts.
    explicit ScrollBar(Axis axis);

    virtual void createWidgets_();
    virtual void createThumb_();
    virtual void createButtons_();
    virtual void deleteButtons_();
    /// Sizes and places all parts.
    virtual void alignWidgets_();
    virtual void updateThumbSize_();
    /// Puts the thumb where the value is.
    virtual void updateThumbPosition_();
    /// `delta` is how far the mouse has moved. The thumb follows it without steps, within the track.
    virtual void dragThumb_(osg::Vec2i const& delta);
    /// Lengths along the bar, 0 without buttons.
    virtual int getDecreaseButtonSize_() const;
    virtual int getIncreaseButtonSize_() const;
    /// Whether the point of the surface hits the thumb or a button.
    virtual bool getPointInsideWidgets_(osg::Vec2i const& point) const;
    virtual void onThumbPressed_();
    virtual void onThumbReleased_();

    // Container:
    void removeWidget_(Widget* widget) override;

    // Widget:
    void onSizeChanged_(osg::Vec2i const& newSize) override;

    bool getHasButtons_() const { return hasButtons; }
    /// Makes or ends the buttons; does not place them.
    void setHasButtons_(bool newHasButtons);
    /// Makes the skin, loads it by name unless that is null, and makes the parts.
    void dress_(char const* skinName);
    /// What `clone` does with a new bar of the class.
    Widget* dressCopy_(ScrollBar* copy) const;

    ScrollBarThumb* thumb = nullptr;
    ScrollBarButton* decreaseButton = nullptr;
    ScrollBarButton* increaseButton = nullptr;
    bool hasButtons = true;

private:
    /// Where the thumb may go: from `start` on, by `travel` units for `span` of the value.
    struct Track {
        int start;
        int length;
        int travel;
        double span;
    };

    Track getTrack_() const;
    /// How far from the start of the track the thumb is for a value.
    int getOffset_(Track const& track, double ofValue) const;
    int getButtonSize_(ScrollBarButton const* button) const;
    /// Centre, or what the skin says.
    Align getAlign_(Align const& (skin::ScrollBarData::*getter)() const) const;
    /// Places a part along the bar, or across it, in the bar's coordinates.
    void placeAlong_(Widget* part, int along);
    void placeAcross_(Widget* part, Align const& align);
    void forgetChild_(WidgetHandler const* child);

    Axis axis_;
    Axis across_;
};

}  // namespace gui
