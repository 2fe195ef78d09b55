#include "gui_lib/controls/buttons/CheckSkins.h"

#include <algorithm>

#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/controls/buttons/CheckBoxData.h"
#include "gui_lib/widget/Widget.h"

namespace gui::skin {

CheckBaseSkin::CheckBaseSkin(Widget* newWidget) : Skin(newWidget, false) { setSkinData(new CheckBoxData(this), true); }

CheckBaseSkin::~CheckBaseSkin() { delete checkImage; }

CheckBoxData* CheckBaseSkin::getCheckData() const { return dynamic_cast<CheckBoxData*>(data); }

void CheckBaseSkin::redraw_() {
    Skin::redraw_();
    if (widget)
        redrawCheck_(widget->getInteractiveState(), widget->getInnerState());
}

void CheckBaseSkin::redrawCheck_(InteractiveState state, int inner) {
    CheckBoxData const* checkData = getCheckData();
    redrawImage_(checkImage, checkData ? checkData->getCheck(state, inner) : nullptr);
}

void CheckBaseSkin::doRedraw() {
    if (checkImage)
        checkImage->doRedraw();
    Skin::doRedraw();
}

void CheckBaseSkin::draw_() {
    drawBkg_();
    beginClipByInsets();
    drawImage_();
    drawText_();
    drawCheck_();
    endClipByInsets();
}

void CheckBaseSkin::make_(GraphicCommands* commands) {
    makeBkg_(commands);
    makeBeginClipByInsets(commands);
    makeImage_(commands);
    makeText_(commands);
    makeCheck_(commands);
    makeEndClipByInsets(commands);
}

void CheckBaseSkin::drawCheck_() {
    if (checkImage)
        checkImage->draw();
}

void CheckBaseSkin::makeCheck_(GraphicCommands* commands) {
    if (checkImage)
        checkImage->make(commands);
}

osg::Vec2i CheckBaseSkin::calcPictureSize_(InteractiveState state, int inner) {
    osg::Vec2i size = Skin::calcPictureSize_(state, inner);
    osg::Vec2i check;
    if (checkImage)
        check = checkImage->getSize();
    else if (CheckBoxData const* checkData = getCheckData())
        // Before the first redraw there is no image: the natural size must not change with it.
        if (Image::Info const* info = checkData->getCheck(state, inner))
            check = calcImageSize_(*info);
    return {std::max(size.x(), check.x()), std::max(size.y(), check.y())};
}

osg::RectImpl<osg::Vec2i> CheckBaseSkin::getFocusRectBounds_() const {
    if (!checkImage || !widget)
        return Skin::getFocusRectBounds_();
    osg::Vec2i const size = getWidgetNonZoomedSize_();
    return {saturatingAdd(checkImage->getPosition().x(), checkImage->getSize().x()), 0, size.x(), size.y()};
}

CheckBoxSkin::CheckBoxSkin(Widget* newWidget) : CheckBaseSkin(newWidget) {}

RadioButtonSkin::RadioButtonSkin(Widget* newWidget) : CheckBaseSkin(newWidget) {}

}  // namespace gui::skin
