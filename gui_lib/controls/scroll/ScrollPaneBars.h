#pragma once

#include "gui_lib/controls/scroll/HorzScrollBar.h"
#include "gui_lib/controls/scroll/VertScrollBar.h"

namespace gui {

class ScrollPane;

/// The bars of a scroll pane, which tell it what the user does with them.
class VORLEX_API ScrollPaneVertScrollBar : public VertScrollBar {
public:
    explicit ScrollPaneVertScrollBar(ScrollPane& pane);

protected:
    // Widget:
    void onChange_() override;

    WidgetHandler* pane;
};

class VORLEX_API ScrollPaneHorzScrollBar : public HorzScrollBar {
public:
    explicit ScrollPaneHorzScrollBar(ScrollPane& pane);

protected:
    // Widget:
    void onChange_() override;

    WidgetHandler* pane;
};

}  // namespace gui
