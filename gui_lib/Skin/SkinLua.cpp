#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/Skin/SkinReload.h"
#include "gui_lib/Skin/SkinTableCache.h"
#include "gui_lib/Skin/luautil.h"
#include "gui_lib/frame/GUI.h"
#include "platform/qor/Log.h"
#include "platform/qor/Lua.h"

namespace gui::skin {

void Skin::load(qor::basic_string<char> const& name) {
    if (!GUI::get())
        return;
    SkinTableCache::SkinFileScope const scope;
    GUI::get()->loadSkin(name, *this);
}

void Skin::loadFromScript(lua_State* L) {
    loadSkin_(L);
    updateWidget(true);
}

void Skin::putIntoScript(lua_State* L) const {
    qor::string error;
    if (!qor::luaProtected(
            L, -1, [this](lua_State* state) { unloadSkin_(state); }, &error))
        qor_logf("VORLEX", 64, "Skin cannot be written to Lua: %s", error.c_str());
}

// --- Reading ---

void Skin::loadSkin_(lua_State* L) {
    luautil::KeyScope const skinData(L, "skinData");
    if (!skinData.isTable())
        return;
    loadSkinData_(L);
    luautil::KeyScope const skins(L, "skins");
    if (skins.isTable())
        loadSubSkins_(L);
}

void Skin::loadSkinData_(lua_State* L) {
    if (!data)
        return;
    readData_(L, *data);
    data->setLoaded();
}

void Skin::readData_(lua_State* L, Data& target) {
    if (SkinReload* const reload = SkinReload::getRunning()) {
        reload->read(L, target);
        return;
    }
    target.load_(L);
}

void Skin::loadSubSkins_(lua_State*) {}

void Skin::loadSubSkin_(lua_State* L, char const* name, Data& target) {
    luautil::KeyScope const table(L, name);
    if (!table.isTable())
        return;
    luautil::KeyScope const skinData(L, "skinData");
    if (!skinData.isTable())
        return;
    readData_(L, target);
}

void Skin::loadSubSkin_(lua_State* L, char const* name, Skin* target) {
    if (!target)
        return;
    luautil::KeyScope const table(L, name);
    if (table.isTable())
        target->loadFromScript(L);
}

// --- Writing: runs inside a protected call ---

void Skin::unloadSkin_(lua_State* L) const {
    luautil::pushTable(L);
    unloadSkinData_(L);
    luautil::pushTable(L);
    unloadSubSkins_(L);
    luautil::setField(L, "skins");
    luautil::setField(L, "skinData");
}

void Skin::unloadSkinData_(lua_State* L) const {
    if (!data)
        return;
    data->unloadParams(L);
    data->unloadStates(L);
}

void Skin::unloadSubSkins_(lua_State*) const {}

void Skin::unloadSubSkin_(lua_State* L, char const* name, Data const& source) const {
    luautil::pushTable(L);
    luautil::pushTable(L);
    source.unloadParams(L);
    source.unloadStates(L);
    luautil::setField(L, "skinData");
    luautil::setField(L, name);
}

void Skin::unloadSubSkin_(lua_State* L, char const* name, Skin const* source) const {
    if (!source)
        return;
    luautil::pushTable(L);
    source->putIntoScript(L);
    luautil::setField(L, name);
}

}  // namespace gui::skin
