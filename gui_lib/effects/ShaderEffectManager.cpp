#include "gui_lib/effects/ShaderEffectManager.h"

#include <algorithm>
#include <utility>

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/effects/ShaderEffectAlpha.h"
#include "gui_lib/effects/ShaderEffectAppearQuads.h"
#include "gui_lib/effects/ShaderEffectFlickerQuads.h"
#include "gui_lib/effects/ShaderEffectShowMsg.h"
#include "gui_lib/widget/Widget.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "platform/qor/Log.h"

namespace gui::skin {

ShaderEffectManager* ShaderEffectManager::instance_ = nullptr;

// --- Life ---

ShaderEffectManager::ShaderEffectManager() : target([this](double time) { updateEffects_(time); }) {
    addKind("alpha", [] { return new ShaderEffectAlpha; });
    addKind("showMsg", [] { return new ShaderEffectShowMsg; });
    addKind("flickerQuads", [] { return new ShaderEffectFlickerQuads; });
    addKind("appearQuads", [] { return new ShaderEffectAppearQuads; });
    UpdateManager::get().addTarget(&target);
}

ShaderEffectManager::~ShaderEffectManager() {
    if (UpdateManager::exists())
        UpdateManager::get().removeTarget(&target);
    releaseSkins_();
    for (std::unique_ptr<Kind> const& kind : kinds)
        for (EffectSlot const& slot : kind->slots)
            delete slot.effect;
}

ShaderEffectManager& ShaderEffectManager::get() { return *instance_; }

bool ShaderEffectManager::exists() { return instance_ != nullptr; }

void ShaderEffectManager::create_() {
    if (!instance_)
        instance_ = new ShaderEffectManager;
}

void ShaderEffectManager::destroy_() { delete std::exchange(instance_, nullptr); }

// The skins outlive the effects that they point at.
void ShaderEffectManager::releaseSkins_() {
    for (std::unique_ptr<Kind> const& kind : kinds)
        for (EffectSlot const& slot : kind->slots)
            releaseSkin_(*slot.effect);
}

void ShaderEffectManager::releaseSkin_(ShaderEffect& effect) {
    if (Skin* const skin = std::exchange(effect.skin_, nullptr))
        skin->effect = nullptr;
}

// --- Kinds ---

int ShaderEffectManager::addKind(std::string_view name, Factory factory) {
    int const known = findKind_(name);
    if (known >= 0)
        return known;
    kinds.push_back(std::make_unique<Kind>(Kind{qor::string(name), std::move(factory), {}, 0}));
    return static_cast<int>(kinds.size()) - 1;
}

int ShaderEffectManager::findKind_(std::string_view name) const {
    auto const found =
        std::find_if(kinds.begin(), kinds.end(), [name](auto const& kind) { return kind->name == name; });
    return found == kinds.end() ? -1 : static_cast<int>(found - kinds.begin());
}

// --- Effects ---

ShaderEffect* ShaderEffectManager::getEffect(char const* name) {
    int const kind = name ? findKind_(name) : -1;
    if (kind < 0) {
        qor_logf("VORLEX", 64, "Invalid GUI effect name[%s]!", name ? name : "");
        return nullptr;
    }
    return getEffect(kind);
}

ShaderEffect* ShaderEffectManager::getEffect(int kind) {
    if (kind < 0 || kind >= static_cast<int>(kinds.size()))
        return nullptr;
    qor::vector<EffectSlot>& slots = kinds[kind]->slots;
    auto const isIdle = [](EffectSlot const& slot) { return !slot.inUse; };
    auto found = std::find_if(slots.begin() + std::ptrdiff_t(kinds[kind]->firstIdle), slots.end(), isIdle);
    if (found == slots.end()) {
        ShaderEffect* const made = kinds[kind]->factory();
        if (!made)
            return nullptr;
        made->kind_ = kind;
        made->slot_ = static_cast<int>(slots.size());
        found = slots.insert(slots.end(), EffectSlot{made, false});
    }
    kinds[kind]->firstIdle = std::size_t(found - slots.begin()) + 1;
    found->inUse = true;
    ShaderEffect* const effect = found->effect;
    ++effect->useCount_;
    float const now = static_cast<float>(UpdateManager::get().getTime());
    effect->setStartTime(now);
    effect->setCurrTime(now);
    return effect;
}

ShaderEffectManager::EffectSlot* ShaderEffectManager::findSlot_(ShaderEffect const* effect) const {
    if (!effect || effect->kind_ < 0 || effect->kind_ >= static_cast<int>(kinds.size()))
        return nullptr;
    qor::vector<EffectSlot>& slots = kinds[effect->kind_]->slots;
    return effect->slot_ < static_cast<int>(slots.size()) && slots[effect->slot_].effect == effect
               ? &slots[effect->slot_]
               : nullptr;
}

void ShaderEffectManager::destroyEffect(ShaderEffect* effect) {
    EffectSlot* const slot = findSlot_(effect);
    if (!slot || !slot->inUse)
        return;
    releaseSkin_(*effect);
    effect->setOwner(nullptr);
    slot->inUse = false;
    std::size_t& firstIdle = kinds[effect->kind_]->firstIdle;
    firstIdle = std::min(firstIdle, std::size_t(effect->slot_));
}

// --- The toolkit's own kinds ---

ShaderEffectAlpha* ShaderEffectManager::getAlphaEffect() {
    return static_cast<ShaderEffectAlpha*>(getEffect(KindAlpha));
}

ShaderEffectShowMsg* ShaderEffectManager::getShowMsgEffect() {
    return static_cast<ShaderEffectShowMsg*>(getEffect(KindShowMsg));
}

ShaderEffectFlickerQuads* ShaderEffectManager::getFlickerQuadsEffect() {
    return static_cast<ShaderEffectFlickerQuads*>(getEffect(KindFlickerQuads));
}

ShaderEffectAppearQuads* ShaderEffectManager::getAppearQuadsEffect() {
    return static_cast<ShaderEffectAppearQuads*>(getEffect(KindAppearQuads));
}

void ShaderEffectManager::destroyAlphaEffect(ShaderEffectAlpha* effect) { destroyEffect(effect); }

void ShaderEffectManager::destroyShowMsgEffect(ShaderEffectShowMsg* effect) { destroyEffect(effect); }

void ShaderEffectManager::destroyFlickerQuadsEffect(ShaderEffectFlickerQuads* effect) { destroyEffect(effect); }

void ShaderEffectManager::destroyAppearQuadsEffect(ShaderEffectAppearQuads* effect) { destroyEffect(effect); }

// --- Use ---

bool ShaderEffectManager::getInUse(ShaderEffect const* effect) const {
    EffectSlot const* const slot = findSlot_(effect);
    return slot && slot->inUse;
}

char const* ShaderEffectManager::getName(ShaderEffect const* effect) const {
    return getInUse(effect) ? kinds[effect->kind_]->name.c_str() : nullptr;
}

// By index: an update may make effects and end them, but never removes a slot.
void ShaderEffectManager::updateEffects_(double time) {
    for (std::size_t kind = 0; kind < kinds.size(); ++kind)
        for (std::size_t slot = 0; slot < kinds[kind]->slots.size(); ++slot)
            if (kinds[kind]->slots[slot].inUse)
                kinds[kind]->slots[slot].effect->update(static_cast<float>(time));
}

}  // namespace gui::skin
