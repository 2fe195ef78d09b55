#include "gui_lib/controls/buttons/CheckBoxData.h"

#include "gui_lib/Skin/LookChanges.h"
#include "gui_lib/Skin/luautil.h"

namespace gui::skin {

// --- CheckBoxStateInfo ---

void CheckBoxStateInfo::load(lua_State* L) {
    StateInfo::load(L);
    luautil::KeyScope const field(L, "check");
    hasCheck = field.isTable();
    if (hasCheck)
        luautil::getValue<Image::Info>(L, -1, check);
}

void CheckBoxStateInfo::unload(lua_State* L) const {
    StateInfo::unload(L);
    if (hasCheck)
        luautil::setValue(L, "check", check);
}

// --- CheckBoxData ---

CheckBoxData::CheckBoxData(Skin* newOwner) : Data(newOwner) {}

void CheckBoxData::set_(int& field, int value) {
    field = value;
    ownerSkinUpdateWidget(true);
}

void CheckBoxData::setCheckSize(int newSize) { set_(checkSize, newSize); }

int CheckBoxData::getCheckSize() const { return checkSize; }

void CheckBoxData::setCheckGap(int gap) { set_(checkGap, gap); }

int CheckBoxData::getCheckGap() const { return checkGap; }

void CheckBoxData::setPictureSize(int newSize) { set_(pictureSize, newSize); }

int CheckBoxData::getPictureSize() const { return pictureSize; }

void CheckBoxData::setPictureGap(int gap) { set_(pictureGap, gap); }

int CheckBoxData::getPictureGap() const { return pictureGap; }

Image::Info const* CheckBoxData::getCheck(InteractiveState state, int inner) const {
    auto const find = [this, inner](InteractiveState wanted) -> Image::Info const* {
        auto const* info = static_cast<CheckBoxStateInfo const*>(findStateInfo_(wanted, inner));
        return info && info->hasCheck ? &info->check : nullptr;
    };
    Image::Info const* const own = find(state);
    return own || state == InteractiveStateReleased ? own : find(InteractiveStateReleased);
}

void CheckBoxData::setCheck(Image::Info const* info, InteractiveState state, int inner) {
    StateInfo* const entry = info ? &editStateInfo_(state, inner) : editExistingStateInfo_(state, inner);
    if (!entry)
        return;
    auto& checkEntry = static_cast<CheckBoxStateInfo&>(*entry);
    checkEntry.hasCheck = info != nullptr;
    if (info)
        checkEntry.check = *info;
}

void CheckBoxData::loadParams_(lua_State* L) {
    Data::loadParams_(L);
    luautil::getValue(L, "checkSize", checkSize);
    luautil::getValue(L, "checkGap", checkGap);
    luautil::getValue(L, "pictureSize", pictureSize);
    luautil::getValue(L, "pictureGap", pictureGap);
}

void CheckBoxData::unloadParams_(lua_State* L) const {
    Data::unloadParams_(L);
    luautil::setValue(L, "checkSize", checkSize);
    luautil::setValue(L, "checkGap", checkGap);
    luautil::setValue(L, "pictureSize", pictureSize);
    luautil::setValue(L, "pictureGap", pictureGap);
}

void CheckBoxData::copyParams_(Data* other) const {
    Data::copyParams_(other);
    if (auto* const target = dynamic_cast<CheckBoxData*>(other)) {
        target->checkSize = checkSize;
        target->checkGap = checkGap;
        target->pictureSize = pictureSize;
        target->pictureGap = pictureGap;
    }
}

void CheckBoxData::copyState_(Data* other, InteractiveState state, int inner) const {
    Data::copyState_(other, state, inner);
    if (auto* const target = dynamic_cast<CheckBoxData*>(other))
        target->setCheck(getCheck(state, inner), state, inner);
}

std::shared_ptr<StateInfo> CheckBoxData::makeStateInfo_(StateInfo const* source) const {
    return makeStateInfoOf_<CheckBoxStateInfo>(source);
}

std::unique_ptr<Data> CheckBoxData::makeNew_() const { return std::make_unique<CheckBoxData>(nullptr); }

void CheckBoxData::keepChanges_(Data const& was, Data const& before, InteractiveState state, int inner) {
    Data::keepChanges_(was, before, state, inner);
    auto const* const wasCheckBox = dynamic_cast<CheckBoxData const*>(&was);
    auto const* const beforeCheckBox = dynamic_cast<CheckBoxData const*>(&before);
    if (wasCheckBox && beforeCheckBox)
        keepLookChanges(wasCheckBox->getCheck(state, inner), beforeCheckBox->getCheck(state, inner),
                        getCheck(state, inner), [&](Image::Info const* info) { setCheck(info, state, inner); });
}

}  // namespace gui::skin

namespace luautil {

template <>
bool getValue<gui::skin::CheckBoxStateInfo*>(lua_State* L, int index, gui::skin::CheckBoxStateInfo*& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    value = new gui::skin::CheckBoxStateInfo;
    value->load(L);
    return true;
}

}  // namespace luautil
