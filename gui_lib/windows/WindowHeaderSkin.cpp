#include "gui_lib/windows/WindowHeaderSkin.h"

#include "gui_lib/controls/buttons/ButtonSkin.h"
#include "gui_lib/windows/WindowHeaderData.h"

namespace gui::skin {

WindowHeaderSkin::WindowHeaderSkin(Widget* newWidget)
    : Skin(newWidget, false), closeButtonSkin(std::make_unique<ButtonSkin>(nullptr)) {
    setSkinData(new WindowHeaderData(this), true);
}

WindowHeaderSkin::~WindowHeaderSkin() = default;

WindowHeaderData* WindowHeaderSkin::getHeaderData() const { return dynamic_cast<WindowHeaderData*>(data); }

void WindowHeaderSkin::copyTo(Skin* other) const {
    Skin::copyTo(other);
    if (auto* const target = dynamic_cast<WindowHeaderSkin*>(other))
        closeButtonSkin->copyTo(target->closeButtonSkin.get());
}

void WindowHeaderSkin::loadSubSkins_(lua_State* L) { loadSubSkin_(L, "closeButton", closeButtonSkin.get()); }

void WindowHeaderSkin::unloadSubSkins_(lua_State* L) const { unloadSubSkin_(L, "closeButton", closeButtonSkin.get()); }

}  // namespace gui::skin
