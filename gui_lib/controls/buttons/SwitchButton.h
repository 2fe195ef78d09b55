#pragma once

#include "gui_lib/controls/buttons/ToggleButton.h"

#include <cstddef>

namespace gui {

/// A toggle button of which one in a group is on: all switch buttons with the same parent are a group, those without a
/// parent too. A click on the one that is on does nothing. Skin "switchButtonSkin".
class VORLEX_API SwitchButton : public ToggleButton {
public:
    /// With `noSkin` a subclass supplies the skin.
    explicit SwitchButton(bool noSkin = false);
    ~SwitchButton() override;

    // Widget:
    Widget* clone() const override;
    char const* getWidgetType() const override;
    void resetParent() override;

protected:
    // Widget:
    void onParentChanged_(WidgetHandler* newParent) override;

    // ToggleButton:
    void changeState_() override;
    void onStateChanged_(int newState) override;

private:
    template <class Member>
    friend class ParentGroups;

    void applyGroupRule_();
    void joinGroup_();

    /// Place in the group; only a member has one.
    std::size_t groupIndex_ = 0;
    bool inGroup_ = false;
};

}  // namespace gui
