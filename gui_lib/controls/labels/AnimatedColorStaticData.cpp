#include "gui_lib/controls/labels/AnimatedColorStaticData.h"

#include "gui_lib/Skin/luautil.h"

namespace gui::skin {

AnimatedColorStaticData::Key const AnimatedColorStaticData::keys_[6] = {
    {"textColorAppearDuration", &AnimatedColorStaticData::textColorAppearDuration},
    {"textColorShowDuration", &AnimatedColorStaticData::textColorShowDuration},
    {"textColorDisappearDuration", &AnimatedColorStaticData::textColorDisappearDuration},
    {"imageColorAppearDuration", &AnimatedColorStaticData::imageColorAppearDuration},
    {"imageColorShowDuration", &AnimatedColorStaticData::imageColorShowDuration},
    {"imageColorDisappearDuration", &AnimatedColorStaticData::imageColorDisappearDuration},
};

AnimatedColorStaticData::AnimatedColorStaticData(Skin* newOwner) : Data(newOwner) {}

void AnimatedColorStaticData::set_(float& field, float seconds) {
    field = seconds;
    ownerSkinUpdateWidget(false);
}

void AnimatedColorStaticData::setTextColorAppearDuration(float seconds) { set_(textColorAppearDuration, seconds); }

float AnimatedColorStaticData::getTextColorAppearDuration() const { return textColorAppearDuration; }

void AnimatedColorStaticData::setTextColorShowDuration(float seconds) { set_(textColorShowDuration, seconds); }

float AnimatedColorStaticData::getTextColorShowDuration() const { return textColorShowDuration; }

void AnimatedColorStaticData::setTextColorDisappearDuration(float seconds) {
    set_(textColorDisappearDuration, seconds);
}

float AnimatedColorStaticData::getTextColorDisappearDuration() const { return textColorDisappearDuration; }

void AnimatedColorStaticData::setImageColorAppearDuration(float seconds) { set_(imageColorAppearDuration, seconds); }

float AnimatedColorStaticData::getImageColorAppearDuration() const { return imageColorAppearDuration; }

void AnimatedColorStaticData::setImageColorShowDuration(float seconds) { set_(imageColorShowDuration, seconds); }

float AnimatedColorStaticData::getImageColorShowDuration() const { return imageColorShowDuration; }

void AnimatedColorStaticData::setImageColorDisappearDuration(float seconds) {
    set_(imageColorDisappearDuration, seconds);
}

float AnimatedColorStaticData::getImageColorDisappearDuration() const { return imageColorDisappearDuration; }

void AnimatedColorStaticData::loadParams_(lua_State* L) {
    Data::loadParams_(L);
    for (Key const& key : keys_) {
        float& seconds = this->*key.field;
        luautil::getValue(L, key.name, seconds);
        if (!(seconds > 0.0f))
            seconds = 0.0f;
    }
}

void AnimatedColorStaticData::unloadParams_(lua_State* L) const {
    Data::unloadParams_(L);
    for (Key const& key : keys_)
        luautil::setValue(L, key.name, this->*key.field);
}

void AnimatedColorStaticData::copyParams_(Data* other) const {
    Data::copyParams_(other);
    if (auto* const target = dynamic_cast<AnimatedColorStaticData*>(other))
        for (Key const& key : keys_)
            target->*key.field = this->*key.field;
}

std::unique_ptr<Data> AnimatedColorStaticData::makeNew_() const {
    return std::make_unique<AnimatedColorStaticData>(nullptr);
}

}  // namespace gui::skin
