#include "gui_lib/controls/scroll/ScrollBarButton.h"

#include "gui_lib/controls/buttons/ButtonSkin.h"
#include "gui_lib/controls/scroll/ScrollBar.h"
#include "gui_lib/widget/AliveGuard.h"

namespace gui {

ScrollBarButton::ScrollBarButton(ScrollBar& newBar, skin::ButtonSkin* borrowedSkin)
    : Button(true), bar(newBar.getHandler()) {
    skin = borrowedSkin;
    if (borrowedSkin)
        borrowedSkin->setWidget(this);
}

ScrollBarButton::~ScrollBarButton() {
    beginDestruction_();
    returnSkin();
}

void ScrollBarButton::returnSkin() {
    if (skin)
        skin->setWidget(nullptr);
    skin = nullptr;
}

ScrollBar* ScrollBarButton::getScrollBar() const { return static_cast<ScrollBar*>(WidgetHandler::get(bar)); }

char const* ScrollBarButton::getWidgetType() const { return "ScrollBarButton"; }

void ScrollBarDecreaseButton::onChange_() {
    AliveGuard const self(this);
    ScrollBarButton::onChange_();
    if (ScrollBar* const owner = self.alive() ? getScrollBar() : nullptr)
        owner->decreaseValue_();
}

void ScrollBarIncreaseButton::onChange_() {
    AliveGuard const self(this);
    ScrollBarButton::onChange_();
    if (ScrollBar* const owner = self.alive() ? getScrollBar() : nullptr)
        owner->increaseValue_();
}

}  // namespace gui
