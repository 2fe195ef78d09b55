// Any bytes as a skin file: GUI comes up with it or throws its own exception, the toolkit's widgets load what they can
// of it and are drawn.
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "tests/fuzz/shared/FuzzHost.h"

#include <lua.hpp>

namespace {

constexpr qor::LuaLimits limits{size_t(8) << 20, 300'000, 5.0};

bool createGui(support::ZooHost& host, std::string_view text) {
    try {
        host.createGui(text);
    } catch (gui::GUI::Exception const& error) {
        fuzz::check(error.what()[0] != '\0', "the exception tells the cause");
        fuzz::check(!gui::GUI::get(), "a failed start leaves nothing");
        return false;
    }
    return true;
}

/// A widget of every kind that has a skin in the file; the bytes that are left choose nothing, so texts stay texts.
void useSkins(support::ZooHost& host) {
    lua_State* const L = gui::GUI::get()->getLuaState();
    int const top = lua_gettop(L);
    for (char const* const name : {"Window", "StaticTurned", "CheckBoxOn", "ToggleButtonOff", "Panel", "Tooltip"}) {
        support::ZooAnimal const& animal = *support::findAnimal(name);
        gui::Widget* const widget = host.show(animal);
        fuzz::check(lua_gettop(L) == top, "loading a skin leaves the Lua stack as it was");
        widget->setEnabled(false);
        host.frame();
        gui::Widget::destroy(widget->getRoot() ? widget->getRoot() : widget);
    }
    lua_newtable(L);
    auto* const button = new gui::Button;
    button->getWidgetSkin()->load("skin");
    button->getWidgetSkin()->putIntoScript(L);
    gui::Widget::destroy(button);
    lua_settop(L, top);
    // What the host itself reads and writes is not refused at the cap.
    fuzz::check(qor::getLuaMemory(L) <= 2 * limits.memoryBytes, "the cap on memory is kept");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    static bool const limited = (qor::setDefaultLuaLimits(limits), true);
    support::ZooHost& host = fuzz::getHost();
    host.destroyGui();
    if (limited && createGui(host, std::string_view(reinterpret_cast<char const*>(data), size)))
        useSkins(host);
    fuzz::checkMisuse(host.trace());
    return 0;
}
