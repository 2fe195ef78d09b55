#pragma once

#include "gui_lib/windows/PopupWindow.h"

namespace gui {

/// A popup that hands the keys it has no use for to another widget, so that an edit field goes on working below an open
/// list.
class VORLEX_API BuddyWindow : public PopupWindow {
public:
    BuddyWindow();

    /// Not owned; null clears.
    void setBuddyWidget(Widget* widget);
    Widget* getBuddyWidget() const;

    // The window has no view: its widgets are direct children.
    void clear();
    void removeAllWidgets();
    int getWidgetCount() const override;
    Widget* getWidget(int index) const override;
    void insertWidget(Widget* widget, int index) override;
    void removeWidget(Widget* widget) override;

    // Widget:
    char const* getWidgetType() const override;
    bool onKeyDown(KeyboardButton key, int modifiers) override;
    bool onChar(KeyboardButton key, int modifiers) override;
    bool onKeyUp(KeyboardButton key, int modifiers) override;

protected:
    WidgetHandler* buddyWidget = nullptr;
};

}  // namespace gui
