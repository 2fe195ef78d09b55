#include "gui_lib/controls/scroll/ScrollBarSkin.h"

#include "gui_lib/controls/buttons/ButtonSkin.h"
#include "gui_lib/controls/scroll/ScrollBarData.h"

namespace gui::skin {

ScrollBarThumbSkin::ScrollBarThumbSkin(Widget* newWidget) : Skin(newWidget, true) {}

ScrollBarSkin::ScrollBarSkin(Widget* newWidget)
    : Skin(newWidget, false),
      thumbSkin(std::make_unique<ScrollBarThumbSkin>(nullptr)),
      increaseButtonSkin(std::make_unique<ButtonSkin>(nullptr)),
      decreaseButtonSkin(std::make_unique<ButtonSkin>(nullptr)) {
    setSkinData(new ScrollBarData(this), true);
}

ScrollBarSkin::~ScrollBarSkin() = default;

ScrollBarData* ScrollBarSkin::getSkinData() const { return dynamic_cast<ScrollBarData*>(data); }

void ScrollBarSkin::copyTo(Skin* other) const {
    Skin::copyTo(other);
    auto* const target = dynamic_cast<ScrollBarSkin*>(other);
    if (!target)
        return;
    thumbSkin->copyTo(target->thumbSkin.get());
    increaseButtonSkin->copyTo(target->increaseButtonSkin.get());
    decreaseButtonSkin->copyTo(target->decreaseButtonSkin.get());
}

void ScrollBarSkin::loadSubSkins_(lua_State* L) {
    loadSubSkin_(L, "thumb", thumbSkin.get());
    loadSubSkin_(L, "decreaseButton", decreaseButtonSkin.get());
    loadSubSkin_(L, "increaseButton", increaseButtonSkin.get());
}

void ScrollBarSkin::unloadSubSkins_(lua_State* L) const {
    unloadSubSkin_(L, "thumb", thumbSkin.get());
    unloadSubSkin_(L, "decreaseButton", decreaseButtonSkin.get());
    unloadSubSkin_(L, "increaseButton", increaseButtonSkin.get());
}

}  // namespace gui::skin
