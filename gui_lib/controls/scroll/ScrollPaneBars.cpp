#include "gui_lib/controls/scroll/ScrollPaneBars.h"

#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/widget/WidgetHandler.h"

namespace gui {

ScrollPaneVertScrollBar::ScrollPaneVertScrollBar(ScrollPane& newPane)
    : VertScrollBar(false), pane(newPane.getHandler()) {}

void ScrollPaneVertScrollBar::onChange_() {
    WidgetHandler* const owner = pane;
    VertScrollBar::onChange_();
    if (auto* const live = static_cast<ScrollPane*>(WidgetHandler::get(owner)))
        live->onVertScrollBarChange_();
}

ScrollPaneHorzScrollBar::ScrollPaneHorzScrollBar(ScrollPane& newPane)
    : HorzScrollBar(false), pane(newPane.getHandler()) {}

void ScrollPaneHorzScrollBar::onChange_() {
    WidgetHandler* const owner = pane;
    HorzScrollBar::onChange_();
    if (auto* const live = static_cast<ScrollPane*>(WidgetHandler::get(owner)))
        live->onHorzScrollBarChange_();
}

}  // namespace gui
