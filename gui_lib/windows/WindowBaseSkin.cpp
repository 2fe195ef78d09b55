#include "gui_lib/windows/WindowBaseSkin.h"

#include "gui_lib/windows/WindowBase.h"
#include "gui_lib/windows/WindowData.h"
#include "gui_lib/windows/WindowHeader.h"
#include "gui_lib/windows/WindowView.h"

namespace gui::skin {

WindowBaseSkin::WindowBaseSkin(Widget* newWidget) : Skin(newWidget, false) { setSkinData(new WindowData(this), true); }

WindowData* WindowBaseSkin::getWindowData() const { return dynamic_cast<WindowData*>(data); }

Skin* WindowBaseSkin::getHeaderSkin_() const {
    auto const* const window = dynamic_cast<WindowBase const*>(widget);
    return window && window->getHeader() ? window->getHeader()->getWidgetSkin() : nullptr;
}

Skin* WindowBaseSkin::getViewSkin_() const {
    auto const* const window = dynamic_cast<WindowBase const*>(widget);
    return window && window->getView() ? window->getView()->getWidgetSkin() : nullptr;
}

void WindowBaseSkin::copyTo(Skin* other) const {
    Skin::copyTo(other);
    auto const* const target = dynamic_cast<WindowBaseSkin*>(other);
    if (!target)
        return;
    if (Skin const* const headerSkin = getHeaderSkin_())
        headerSkin->copyTo(target->getHeaderSkin_());
    if (Skin const* const viewSkin = getViewSkin_())
        viewSkin->copyTo(target->getViewSkin_());
}

void WindowBaseSkin::loadSubSkins_(lua_State* L) {
    if (Skin* const headerSkin = getHeaderSkin_())
        loadSubSkin_(L, "header", headerSkin);
    if (Skin* const viewSkin = getViewSkin_())
        loadSubSkin_(L, "view", viewSkin);
}

void WindowBaseSkin::unloadSubSkins_(lua_State* L) const {
    if (Skin const* const headerSkin = getHeaderSkin_())
        unloadSubSkin_(L, "header", headerSkin);
    if (Skin const* const viewSkin = getViewSkin_())
        unloadSubSkin_(L, "view", viewSkin);
}

}  // namespace gui::skin
