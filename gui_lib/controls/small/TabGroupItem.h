#pragma once

#include <cstddef>

#include "gui_lib/widget/Widget.h"

namespace gui {

/// A tab header: of all items with the same parent one is selected. Handed to the skin as inner state: 2 selected, 1
/// not. Skin "tabGroupItemSkin".
class VORLEX_API TabGroupItem : public Widget {
public:
    static constexpr char const* showCallbackName = "tab group item show";
    static constexpr char const* hideCallbackName = "tab group item hide";

    explicit TabGroupItem(bool state = false);
    ~TabGroupItem() override;

    /// Gives the target the state too.
    void copyParams(TabGroupItem* target) const;

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
    skin::InteractiveState getInteractiveState() const override;
    int getInnerState() const override;
    bool getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const override;
    void onMouseEnter(osg::Vec2i const& point) override;
    void onMouseLeave(osg::Vec2i const& point) override;
    void onMouseDown(osg::Vec2i const& point, MouseButton button) override;
    void resetParent() override;

    /// True takes the selection from the others. Calls no callbacks: the program did it.
    virtual void setState(bool newState);
    virtual bool getState() const;

protected:
    virtual void onStateChanged_(bool newState);
    /// The user selected this item.
    virtual void onShow_();
    /// The user selected another item.
    virtual void onHide_();

    // Widget:
    void onParentChanged_(WidgetHandler* newParent) override;

    bool state;
    bool hovered = false;

private:
    template <class Member>
    friend class ParentGroups;

    void deselectOthers_();

    /// Place in the group; only a member has one.
    std::size_t groupIndex_ = 0;
    bool inGroup_ = false;
};

}  // namespace gui
