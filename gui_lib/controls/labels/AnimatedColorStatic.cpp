#include "gui_lib/controls/labels/AnimatedColorStatic.h"

#include "gui_lib/controls/labels/AnimatedColorStaticSkin.h"

namespace gui {

AnimatedColorStatic::AnimatedColorStatic() : Static(true) {
    skin = new skin::AnimatedColorStaticSkin(this);
    skin->load("animatedColorStaticSkin");
}

void AnimatedColorStatic::setTextColor(osg::Vec4f const& color) {
    static_cast<skin::AnimatedColorStaticSkin*>(skin)->setTextColor(color);
}

void AnimatedColorStatic::setImageColor(osg::Vec4f const& color) {
    static_cast<skin::AnimatedColorStaticSkin*>(skin)->setImageColor(color);
}

Widget* AnimatedColorStatic::clone() const {
    auto* const copy = new AnimatedColorStatic;
    skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* AnimatedColorStatic::getWidgetType() const { return "AnimatedColorStatic"; }

}  // namespace gui
