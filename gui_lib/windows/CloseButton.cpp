#include "gui_lib/windows/CloseButton.h"

#include "gui_lib/controls/buttons/ButtonSkin.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/windows/WindowBase.h"

namespace gui {

CloseButton::CloseButton(WindowBase& newWindow, skin::ButtonSkin* borrowedSkin)
    : Button(true), window(newWindow.getHandler()) {
    skin = borrowedSkin;
    if (borrowedSkin)
        borrowedSkin->setWidget(this);
}

CloseButton::~CloseButton() {
    beginDestruction_();
    returnSkin();
}

void CloseButton::returnSkin() {
    if (skin)
        skin->setWidget(nullptr);
    skin = nullptr;
}

char const* CloseButton::getWidgetType() const { return "CloseButton"; }

bool CloseButton::getFocusable() const { return false; }

void CloseButton::onChange_() {
    AliveGuard const self(this);
    Button::onChange_();
    if (self.dead())
        return;
    if (auto* const owner = static_cast<WindowBase*>(WidgetHandler::get(window)))
        owner->close();
}

}  // namespace gui
