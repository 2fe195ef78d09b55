#include "gui_lib/Skin/Data.h"

#include <algorithm>
#include <tuple>
#include <typeinfo>

#include "gui_lib/Skin/LookEpoch.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/Skin/SkinTableCache.h"
#include "gui_lib/Skin/StateInfo.h"
#include "gui_lib/Skin/luautil.h"
#include "gui_lib/base/VirtualTable.h"
#include "gui_lib/layouts/MeasurePass.h"
#include "platform/qor/Log.h"
#include "platform/qor/Lua.h"
#include "platform/qor/Truncate.h"

#include <lua.hpp>

namespace gui::skin {

namespace {

// Shared by all data that have no look yet; whoever writes takes a table of its own.
std::shared_ptr<Data::StateTable> const& getEmptyStates() {
    static auto const states = std::allocate_shared<Data::StateTable>(qor::allocator<Data::StateTable>());
    return states;
}

void readSize(lua_State* L, char const* key, osg::Vec2i& size) {
    luautil::getValue(L, key, size);
    size.x() = std::max(size.x(), 0);
    size.y() = std::max(size.y(), 0);
}

/// Of Data itself; the same whenever a construction begins.
VirtualTable dataTable;

template <class Function>
void writeProtected(lua_State* L, Function&& function) {
    qor::string error;
    if (!qor::luaProtected(L, -1, function, &error))
        qor_logf("VORLEX", 64, "Skin data cannot be written to Lua: %s", error.c_str());
}

}  // namespace

Data::Data(Skin* newOwner) : owner(newOwner), states(getEmptyStates()) { dataTable = VirtualTable::of(*this); }

Data::~Data() {
    MeasurePass::forgetAll();
    for (Skin* const user : users_) {
        user->data = nullptr;
        user->dataUserIndex_ = -1;
    }
}

void Data::addUser_(Skin* skin) {
    skin->dataUserIndex_ = static_cast<int>(users_.size());
    users_.push_back(skin);
}

void Data::removeUser_(Skin* skin) {
    int const index = skin->dataUserIndex_;
    users_[index] = users_.back();
    users_[index]->dataUserIndex_ = index;
    users_.pop_back();
    skin->dataUserIndex_ = -1;
    if (owner == skin)
        owner = nullptr;
}

// --- Owner ---

void Data::setOwner(Skin* newOwner) { owner = newOwner; }

Skin* Data::getOwner() const { return owner; }

void Data::ownerSkinUpdateWidget(bool sizeDirty) {
    MeasurePass::forgetAll();
    if (owner)
        owner->updateWidget(sizeDirty);
}

// --- Parameters ---

void Data::setMinSize(osg::Vec2i const& size) {
    minSize = size;
    ownerSkinUpdateWidget(true);
}

osg::Vec2i Data::getMinSize() const { return minSize; }

void Data::setMaxSize(osg::Vec2i const& size) {
    maxSize = size;
    ownerSkinUpdateWidget(true);
}

osg::Vec2i Data::getMaxSize() const { return maxSize; }

void Data::setInsets(Insets const& newInsets) {
    insets = newInsets;
    ownerSkinUpdateWidget(true);
}

Insets const& Data::getInsets() const { return insets; }

void Data::setTextWrapping(bool wrap) {
    textWrapping = wrap;
    ownerSkinUpdateWidget(false);
}

bool Data::getTextWrapping() const { return textWrapping; }

void Data::setUseEllipsis(bool use) {
    useEllipsis = use;
    ownerSkinUpdateWidget(false);
}

bool Data::getUseEllipsis() const { return useEllipsis; }

void Data::setTextLineHeight(int height) {
    textLineHeight = height;
    ownerSkinUpdateWidget(false);
}

int Data::getTextLineHeight() const { return textLineHeight; }

void Data::setFocusRectInsets(Insets const& newInsets) {
    focusRectInsets = newInsets;
    ownerSkinUpdateWidget(false);
}

Insets const& Data::getFocusRectInsets() const { return focusRectInsets; }

void Data::setFocusRectColor(osg::Vec4f const& color) {
    focusRectColor = color;
    ownerSkinUpdateWidget(false);
}

osg::Vec4f Data::getFocusRectColor() const { return focusRectColor; }

void Data::setClipInsets(Insets const& newInsets) {
    clipInsets = newInsets;
    ownerSkinUpdateWidget(false);
}

Insets const& Data::getClipInsets() const { return clipInsets; }

bool Data::getClipInsetsEmpty() const {
    return (clipInsets.left | clipInsets.top | clipInsets.right | clipInsets.bottom) == 0;
}

void Data::setLoaded() { loaded = true; }

bool Data::getLoaded() const { return loaded; }

bool Data::paramsLast_() const {
    return VirtualTable::of(*this).sharesAll(dataTable, &Data::getMinSize, &Data::setMinSize, &Data::getMaxSize,
                                             &Data::setMaxSize, &Data::getInsets, &Data::setInsets,
                                             &Data::getTextWrapping, &Data::setTextWrapping, &Data::getUseEllipsis,
                                             &Data::setUseEllipsis, &Data::ownerSkinUpdateWidget);
}

bool Data::looksLast_() const { return VirtualTable::of(*this).sharesAll(dataTable, &Data::findStateInfo_); }

// --- Looks ---

Data::InnerTable const* Data::findInnerStateInfos_(InteractiveState state) const {
    auto const found = states->find(state);
    return found == states->end() ? nullptr : &found->second;
}

struct Data::KnownLook {
    StateTable const* table = nullptr;
    unsigned epoch = 0;
    InteractiveState state = InteractiveStateReleased;
    int inner = 0;
    StateInfo* found = nullptr;
};

StateInfo* Data::findStateInfo_(InteractiveState state, int inner) const {
    // A redraw asks for one look after the other of a table that most widgets of a class share, and a change of state
    // goes back and forth between two.
    static KnownLook looks[interactiveStateCount];
    KnownLook& known = looks[static_cast<unsigned>(state) % interactiveStateCount];
    // An empty table tells nobody that it has come, maybe to the place of one that has gone.
    bool const same = !states->empty() && known.table == states.get() && known.epoch == LookEpoch::ofLooks() &&
                      known.state == state && known.inner == inner;
    return same ? known.found : searchStateInfo_(known, state, inner);
}

StateInfo* Data::searchStateInfo_(KnownLook& known, InteractiveState state, int inner) const {
    InnerTable const* inners = findInnerStateInfos_(state);
    if (!inners && state != InteractiveStateReleased)
        inners = findInnerStateInfos_(InteractiveStateReleased);
    StateInfo* result = nullptr;
    if (inners) {
        auto found = inners->find(inner);
        if (found == inners->end() && inner != 1)
            found = inners->find(1);
        if (found != inners->end())
            result = found->second.get();
    }
    known = {states.get(), LookEpoch::ofLooks(), state, inner, result};
    return result;
}

template <class Info>
Info const* Data::findLook_(bool StateInfo::*has, Info StateInfo::*info, InteractiveState state, int inner) const {
    StateInfo const* entry = findStateInfo_(state, inner);
    if (entry && entry->*has)
        return &(entry->*info);
    if (state == InteractiveStateReleased)
        return nullptr;
    entry = findStateInfo_(InteractiveStateReleased, inner);
    return entry && entry->*has ? &(entry->*info) : nullptr;
}

Bkg::Info const* Data::getBkg(InteractiveState state, int inner) const {
    return findLook_(&StateInfo::hasBkg, &StateInfo::bkg, state, inner);
}

Image::Info const* Data::getImage(InteractiveState state, int inner) const {
    return findLook_(&StateInfo::hasImage, &StateInfo::image, state, inner);
}

Text::Info const* Data::getText(InteractiveState state, int inner) const {
    return findLook_(&StateInfo::hasText, &StateInfo::text, state, inner);
}

Data::Looks const& Data::findLooks_(InteractiveState state, int inner) const {
    // Widgets that are redrawn together are mostly of a few classes, each of which shares a table.
    struct Answer {
        StateTable const* table = nullptr;
        unsigned epoch = 0;
        InteractiveState state = InteractiveStateReleased;
        int inner = 0;
        Looks looks;
    };
    static Answer answers[8];
    auto const place = reinterpret_cast<std::uintptr_t>(states.get()) / alignof(std::max_align_t);
    Answer& known = answers[(place + static_cast<unsigned>(state)) % std::size(answers)];
    unsigned const epoch = LookEpoch::now();
    if (states->empty() || known.table != states.get() || known.epoch != epoch || known.state != state ||
        known.inner != inner)
        known = {
            states.get(), epoch, state, inner, {getBkg(state, inner), getImage(state, inner), getText(state, inner)}};
    return known.looks;
}

Data::StateTable& Data::editStates_() {
    LookEpoch::advance();
    MeasurePass::forgetAll();
    if (states.use_count() > 1)
        states = std::allocate_shared<StateTable>(qor::allocator<StateTable>(), *states);
    return *states;
}

StateInfo& Data::editStateInfo_(InteractiveState state, int inner) {
    std::shared_ptr<StateInfo>& entry = editStates_()[state][inner];
    if (!entry || entry.use_count() > 1)
        entry = makeStateInfo_(entry.get());
    return *entry;
}

StateInfo* Data::editExistingStateInfo_(InteractiveState state, int inner) {
    InnerTable const* const inners = findInnerStateInfos_(state);
    return inners && inners->count(inner) ? &editStateInfo_(state, inner) : nullptr;
}

std::shared_ptr<StateInfo> Data::makeStateInfo_(StateInfo const* source) const {
    return makeStateInfoOf_<StateInfo>(source);
}

template <class Info>
void Data::setLook_(bool StateInfo::*has, Info StateInfo::*field, Info const* info, InteractiveState state, int inner) {
    if (!info) {
        if (StateInfo* const entry = editExistingStateInfo_(state, inner))
            entry->*has = false;
        return;
    }
    // `info` may be one of our own: an entry that a copy replaces here stays alive in the table it is shared with.
    StateInfo& entry = editStateInfo_(state, inner);
    entry.*has = true;
    entry.*field = *info;
}

void Data::setBkg(Bkg::Info const* info, InteractiveState state, int inner) {
    setLook_(&StateInfo::hasBkg, &StateInfo::bkg, info, state, inner);
}

void Data::setImage(Image::Info const* info, InteractiveState state, int inner) {
    setLook_(&StateInfo::hasImage, &StateInfo::image, info, state, inner);
}

void Data::setText(Text::Info const* info, InteractiveState state, int inner) {
    setLook_(&StateInfo::hasText, &StateInfo::text, info, state, inner);
}

char const* Data::getInteractiveStateName_(InteractiveState state) {
    switch (state) {
        case InteractiveStateReleased:
            return "released";
        case InteractiveStateHover:
            return "hover";
        case InteractiveStatePressed:
            return "pressed";
        case InteractiveStateDisabled:
            return "disabled";
    }
    return nullptr;
}

// --- From Lua ---

void Data::loadParams(lua_State* L) {
    MeasurePass::forgetAll();
    luautil::KeyScope const params(L, "params");
    if (params.isTable())
        loadParams_(L);
}

void Data::loadParamsFromTable(lua_State* L) {
    MeasurePass::forgetAll();
    loadParams_(L);
}

void Data::load_(lua_State* L) {
    // A derived class reads more than is kept here.
    bool const keep =
        typeid(*this) == typeid(Data) && states->empty() && hasDefaultParams_() && SkinTableCache::getUsable(L);
    if (!keep) {
        loadFields_(L);
        return;
    }
    if (auto const known = SkinTableCache::find<Content>(L, typeid(Content))) {
        MeasurePass::forgetAll();
        setParamValues_(known->params);
        states = known->states;
        return;
    }
    loadFields_(L);
    qor::allocator<Content> const allocator;
    SkinTableCache::keep(L, typeid(Content),
                         std::allocate_shared<Content>(allocator, Content{getParamValues_(), states}));
}

void Data::loadFields_(lua_State* L) {
    loadParams(L);
    loadStates(L);
}

bool Data::hasDefaultParams_() const {
    static ParamValues const defaults = Data(nullptr).getParamValues_();
    return getParamValues_() == defaults;
}

void Data::loadParams_(lua_State* L) {
    // Without a table nothing is read, so that an absent colour is not set to zeros either.
    if (!luautil::isTable(L, -1))
        return;
    // Only what a new object reads from a table is the same for all of them.
    bool const keep = hasDefaultParams_() && SkinTableCache::getUsable(L);
    if (keep) {
        if (auto const known = SkinTableCache::find<ParamValues>(L, typeid(ParamValues))) {
            setParamValues_(*known);
            return;
        }
    }
    readParams_(L);
    if (keep) {
        qor::allocator<ParamValues> const allocator;
        SkinTableCache::keep(L, typeid(ParamValues), std::allocate_shared<ParamValues>(allocator, getParamValues_()));
    }
}

Data::ParamValues Data::getParamValues_() const {
    return {minSize,        maxSize,         insets,         textWrapping, useEllipsis,
            textLineHeight, focusRectInsets, focusRectColor, clipInsets};
}

void Data::setParamValues_(ParamValues const& values) {
    std::tie(minSize, maxSize, insets, textWrapping, useEllipsis, textLineHeight, focusRectInsets, focusRectColor,
             clipInsets) = values;
}

void Data::readParams_(lua_State* L) {
    readSize(L, "minSize", minSize);
    readSize(L, "maxSize", maxSize);
    luautil::getValue(L, "insets", insets);
    luautil::getValue(L, "textWrapping", textWrapping);
    luautil::getValue(L, "useEllipsis", useEllipsis);
    luautil::getValue(L, "textLineHeight", textLineHeight);
    luautil::getValue(L, "focusRectInsets", focusRectInsets);
    luautil::getColor(L, "focusRectColor", focusRectColor);
    luautil::getValue(L, "clipInsets", clipInsets);
}

void Data::loadStates(lua_State* L) {
    luautil::KeyScope const table(L, "states");
    if (!table.isTable())
        return;
    MeasurePass::forgetAll();
    bool const keep = states->empty() && SkinTableCache::getUsable(L);
    if (keep) {
        if (std::shared_ptr<StateTable> known = SkinTableCache::find<StateTable>(L, typeid(*this))) {
            states = std::move(known);
            return;
        }
    }
    for (int state = 0; state < interactiveStateCount; ++state)
        loadState_(L, static_cast<InteractiveState>(state));
    if (keep)
        SkinTableCache::keep(L, typeid(*this), states);
}

void Data::loadState_(lua_State* L, InteractiveState state) {
    char const* const name = getInteractiveStateName_(state);
    if (!name)
        return;
    luautil::KeyScope const table(L, name);
    if (!table.isTable())
        return;
    editStates_()[state];
    int const index = lua_gettop(L);
    lua_pushnil(L);
    while (qor::luaNext(L, index)) {
        if (lua_type(L, -2) == LUA_TNUMBER)
            editStateInfo_(state, qor::truncateToInt(lua_tonumber(L, -2))).load(L);
        lua_settop(L, index + 1);
    }
}

// --- To Lua ---

void Data::unloadParams(lua_State* L) const {
    writeProtected(L, [this](lua_State* state) {
        luautil::pushTable(state);
        unloadParams_(state);
        luautil::setField(state, "params");
    });
}

void Data::unloadParamsToTable(lua_State* L) const {
    writeProtected(L, [this](lua_State* state) { unloadParams_(state); });
}

void Data::unloadParams_(lua_State* L) const {
    luautil::setValue(L, "minSize", minSize);
    luautil::setValue(L, "maxSize", maxSize);
    luautil::setValue(L, "insets", insets);
    luautil::setValue(L, "textWrapping", textWrapping);
    luautil::setValue(L, "useEllipsis", useEllipsis);
    luautil::setValue(L, "textLineHeight", textLineHeight);
    luautil::setValue(L, "focusRectInsets", focusRectInsets);
    luautil::setColor(L, "focusRectColor", focusRectColor);
    luautil::setValue(L, "clipInsets", clipInsets);
}

void Data::unloadStates(lua_State* L) const {
    writeProtected(L, [this](lua_State* state) {
        luautil::pushTable(state);
        for (auto const& [number, inners] : *states)
            unloadState_(state, static_cast<InteractiveState>(number), inners);
        luautil::setField(state, "states");
    });
}

void Data::unloadState_(lua_State* L, InteractiveState state, InnerTable const& inners) const {
    char const* const name = getInteractiveStateName_(state);
    if (!name)
        return;
    luautil::pushTable(L);
    for (auto const& [inner, entry] : inners) {
        lua_pushnumber(L, inner);
        luautil::setValue(L, *entry);
        lua_rawset(L, -3);
    }
    luautil::setField(L, name);
}

// --- Copies ---

void Data::copyTo(Data* other) const {
    if (!other || other == this)
        return;
    MeasurePass::forgetAll();
    copyParams_(other);
    for (auto const& [state, inners] : *states)
        for (auto const& [inner, entry] : inners)
            copyState_(other, static_cast<InteractiveState>(state), inner);
    other->setLoaded();
}

void Data::copyParams_(Data* other) const { other->setParamValues_(getParamValues_()); }

void Data::copyState_(Data* other, InteractiveState state, int inner) const {
    other->setBkg(getBkg(state, inner), state, inner);
    other->setImage(getImage(state, inner), state, inner);
    other->setText(getText(state, inner), state, inner);
}

}  // namespace gui::skin
