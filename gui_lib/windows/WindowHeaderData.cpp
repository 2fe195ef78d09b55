#include "gui_lib/windows/WindowHeaderData.h"

#include "gui_lib/Skin/luautil.h"

namespace gui::skin {

WindowHeaderData::WindowHeaderData(Skin* newOwner) : Data(newOwner) {}

void WindowHeaderData::setHasCloseButton(bool has) {
    hasCloseButton = has;
    ownerSkinUpdateWidget(true);
}

bool WindowHeaderData::getHasCloseButton() const { return hasCloseButton; }

void WindowHeaderData::setCloseButtonHorzAlign(Align const& align) {
    closeButtonHorzAlign = align;
    ownerSkinUpdateWidget(true);
}

Align const& WindowHeaderData::getCloseButtonHorzAlign() const { return closeButtonHorzAlign; }

void WindowHeaderData::setCloseButtonVertAlign(Align const& align) {
    closeButtonVertAlign = align;
    ownerSkinUpdateWidget(true);
}

Align const& WindowHeaderData::getCloseButtonVertAlign() const { return closeButtonVertAlign; }

void WindowHeaderData::setCloseButtonText(qor::basic_string<char> const& text) {
    closeButtonText = text;
    ownerSkinUpdateWidget(true);
}

qor::basic_string<char> const& WindowHeaderData::getCloseButtonText() const { return closeButtonText; }

void WindowHeaderData::loadParams_(lua_State* L) {
    Data::loadParams_(L);
    luautil::getValue(L, "hasCloseButton", hasCloseButton);
    luautil::getAlign(L, "closeButtonHorzAlign", closeButtonHorzAlign);
    luautil::getAlign(L, "closeButtonVertAlign", closeButtonVertAlign);
    luautil::getValue(L, "closeButtonText", closeButtonText);
}

void WindowHeaderData::unloadParams_(lua_State* L) const {
    Data::unloadParams_(L);
    luautil::setValue(L, "hasCloseButton", hasCloseButton);
    luautil::setValue(L, "closeButtonHorzAlign", closeButtonHorzAlign);
    luautil::setValue(L, "closeButtonVertAlign", closeButtonVertAlign);
    luautil::setValue(L, "closeButtonText", closeButtonText);
}

void WindowHeaderData::copyParams_(Data* other) const {
    Data::copyParams_(other);
    auto* const target = dynamic_cast<WindowHeaderData*>(other);
    if (!target)
        return;
    target->hasCloseButton = hasCloseButton;
    target->closeButtonHorzAlign = closeButtonHorzAlign;
    target->closeButtonVertAlign = closeButtonVertAlign;
    target->closeButtonText = closeButtonText;
}

std::unique_ptr<Data> WindowHeaderData::makeNew_() const { return std::make_unique<WindowHeaderData>(nullptr); }

}  // namespace gui::skin
