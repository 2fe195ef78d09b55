#include "gui_lib/controls/small/TextureView.h"

#include <numbers>

#include "gui_lib/controls/labels/TurnedModelView.h"
#include "gui_lib/graphics/GraphicCommandGuards.h"
#include "gui_lib/widget/AliveGuard.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui {

TextureView::TextureView() { image.set(imageInfo); }

void TextureView::copyParams(TextureView* target) const {
    Widget::copyParams(target);
    target->setAngle(angle);
    target->setPivotPoint(pivotPoint);
    target->setImageInfo(imageInfo);
    target->setTexture(texture);
}

Widget* TextureView::clone() const {
    auto* const copy = new TextureView;
    copyParams(copy);
    return copy;
}

char const* TextureView::getWidgetType() const { return "TextureView"; }

void TextureView::setAngle(double degrees) {
    angle = degrees;
    angleRadians = degrees / 180.0 * std::numbers::pi;
}

void TextureView::setImageInfo(Image::Info const& info) {
    imageInfo = info;
    image.set(imageInfo);
    setDirty(DirtySelf);
}

void TextureView::setTexture(vtxTexture* newTexture) {
    texture = newTexture;
    image.setTexture(newTexture, false);
    setDirty(DirtySelf);
}

void TextureView::redraw_() {
    AliveGuard const guard(this);
    Widget::redraw_();
    if (guard.dead())
        return;
    // The size may have changed, of which the picture is not told.
    image.setDirty(true);
    image.redraw(getSize());
}

void TextureView::doRedraw() {
    AliveGuard const guard(this);
    Widget::doRedraw();
    if (guard.alive())
        image.doRedraw();
}

void TextureView::drawModelView_() {
    vtxRenderer::ModelViewMatrixGuard guard;
    turnModelView(guard, angleRadians, pivotPoint, getTargetPosition_());
    image.draw();
}

void TextureView::makeModelView_(GraphicCommands* commands) {
    GraphicCommandModelViewMatrixGuard guard(commands);
    turnModelView(guard, angleRadians, pivotPoint, getTargetPosition_());
    image.make(commands);
}

}  // namespace gui
