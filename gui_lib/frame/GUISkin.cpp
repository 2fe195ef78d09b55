// Live reload of the skin file.

#include "gui_lib/Skin/Image.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/Skin/SkinReload.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/widget/Widget.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "platform/qor/Lua.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTextureManager.h"

#include <lua.hpp>

namespace gui {

namespace {

/// Lays out everything again. By index against the live count, since size callbacks may make and end widgets.
void markAllWidgets() {
    for (int i = 0; i < WidgetHandler::getCount(); ++i) {
        Widget* const widget = WidgetHandler::get(WidgetHandler::getAt(i));
        if (!widget)
            continue;
        AliveGuard const alive(widget);
        if (skin::Skin* const skin = widget->getWidgetSkin())
            skin->setAllChanged();
        widget->setDirty(Widget::DirtySelf);
        widget->setDirtySize(true);
        // The limits may be others now.
        widget->setSize(widget->getSize());
        if (alive.alive())
            widget->setDirtySize(true);
    }
}

}  // namespace

bool GUI::getSkinReloadable() const { return luaState && passes_ == 0 && !qor::isLuaRunning(luaState); }

bool GUI::reloadSkin(qor::basic_string<char> const& skinFile, qor::basic_string<char>* error) {
    qor::basic_string<char> ignored;
    qor::basic_string<char>& text = error ? *error : ignored;
    text.clear();
    if (!getSkinReloadable()) {
        text = "The skin cannot be reloaded inside a pass or a Lua function. Do it between frames.";
        return false;
    }
    // A skin that fails may name pictures and fonts that wait for it.
    if (!skin::SkinReload(luaState, skinHeld_).run(skinFile, text))
        return false;
    skinFile_ = skinFile;
    vtxRenderer& renderer = *vtxRenderer::get();
    renderer.getTextureManager()->reloadChanged(text);
    renderer.getFontManager()->reloadChanged(text);
    if (text.ends_with("\n"))
        text.pop_back();
    if (!bkgFile_.empty())
        setBkgPicture(qor::basic_string<char>(bkgFile_), bkgPicture->getResizeToFill());
    markAllWidgets();
    // The tables of the run before go.
    lua_gc(luaState, LUA_GCCOLLECT, 0);
    return true;
}

}  // namespace gui
