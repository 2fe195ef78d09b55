#include "gui_lib/controls/labels/AnimatedColorStaticSkin.h"

#include <utility>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/base/easing/Quart.h"
#include "gui_lib/base/easing/Sine.h"
#include "gui_lib/controls/labels/AnimatedColorStatic.h"
#include "gui_lib/controls/labels/AnimatedColorStaticData.h"
#include "gui_lib/controls/labels/ColorUpdater.h"

namespace gui::skin {

namespace {

float now() { return static_cast<float>(UpdateManager::get().getModelTime()); }

void retire(std::unique_ptr<UpdateTarget> updater) {
    if (updater && UpdateManager::exists())
        UpdateManager::get().retireTarget(std::move(updater));
}

}  // namespace

AnimatedColorStaticSkin::AnimatedColorStaticSkin(AnimatedColorStatic* newWidget) : StaticSkin(newWidget, false) {
    setSkinData(new AnimatedColorStaticData(this), true);
}

AnimatedColorStaticSkin::~AnimatedColorStaticSkin() {
    retire(std::move(textUpdater));
    retire(std::move(imageUpdater));
}

AnimatedColorStaticData* AnimatedColorStaticSkin::getAnimatedData() const {
    return dynamic_cast<AnimatedColorStaticData*>(data);
}

void AnimatedColorStaticSkin::restart_(std::unique_ptr<UpdateTarget>& updater,
                                       void (AnimatedColorStaticSkin::*update)()) {
    // A fresh one each time: a target that is removed and added again within one tick would end up removed.
    retire(std::move(updater));
    updater = std::make_unique<ColorUpdater>([this, update] { (this->*update)(); });
    UpdateManager::get().addTarget(updater.get());
}

// --- Text ---

void AnimatedColorStaticSkin::setTextColor(osg::Vec4f const& color) {
    AnimatedColorStaticData const* times = getAnimatedData();
    if (!widget || !times || !UpdateManager::exists())
        return;
    Text::Info const* info = times->getText(widget->getInteractiveState(), widget->getInnerState());
    if (!info)
        return;
    textBaseColor = info->color;
    textStartColor = textStartTime != 0.0f ? textCurrentColor : textBaseColor;
    textTargetColor = color;
    textStartTime = now();
    textEndTime = textStartTime + times->getTextColorAppearDuration() + times->getTextColorShowDuration() +
                  times->getTextColorDisappearDuration();
    textCurrentColor = textStartColor;
    restart_(textUpdater, &AnimatedColorStaticSkin::updateTextColor_);
}

void AnimatedColorStaticSkin::updateTextColor_() {
    AnimatedColorStaticData const* times = getAnimatedData();
    float const time = now();
    if (!times || time > textEndTime) {
        UpdateManager::get().removeTarget(textUpdater.get());
        textStartTime = 0.0f;
        return;
    }
    float const appear = times->getTextColorAppearDuration();
    float const show = times->getTextColorShowDuration();
    float const elapsed = time - textStartTime;
    for (int i = 0; i < 4; ++i) {
        float const from = textStartColor[i];
        float const to = textTargetColor[i];
        if (time < textStartTime + appear)
            textCurrentColor[i] = Quart::easeOut(elapsed, from, to - from, appear);
        else if (time <= textStartTime + appear + show)
            textCurrentColor[i] = to;
        else
            textCurrentColor[i] = Sine::easeOut(elapsed - appear - show, to, textBaseColor[i] - to,
                                                times->getTextColorDisappearDuration());
    }
}

void AnimatedColorStaticSkin::drawText_() {
    if (!text)
        return;
    if (textStartTime > 0.0f)
        text->draw(textCurrentColor);
    else
        text->draw();
}

void AnimatedColorStaticSkin::makeText_(GraphicCommands* commands) {
    if (!text)
        return;
    if (textStartTime > 0.0f)
        text->make(commands, textCurrentColor);
    else
        text->make(commands);
}

// --- Picture ---

void AnimatedColorStaticSkin::setImageColor(osg::Vec4f const& color) {
    AnimatedColorStaticData const* times = getAnimatedData();
    if (!widget || !times || !UpdateManager::exists())
        return;
    Image::Info const* info = times->getImage(widget->getInteractiveState(), widget->getInnerState());
    if (!info)
        return;
    imageBaseColor = info->color;
    imageTargetColor = color;
    imageStartTime = now();
    imageEndTime = imageStartTime + times->getImageColorAppearDuration() + times->getImageColorShowDuration() +
                   times->getImageColorDisappearDuration();
    restart_(imageUpdater, &AnimatedColorStaticSkin::updateImageColor_);
}

void AnimatedColorStaticSkin::updateImageColor_() {
    // Only the clock is read: a picture does not fade.
    now();
}

}  // namespace gui::skin
