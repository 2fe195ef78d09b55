#include "gui_lib/controls/labels/Static.h"

#include <numbers>

#include "gui_lib/controls/labels/StaticSkin.h"
#include "gui_lib/controls/labels/TurnedModelView.h"
#include "gui_lib/graphics/GraphicCommandGuards.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui {

Static::Static(bool noSkin) {
    if (noSkin)
        return;
    skin = new skin::StaticSkin(this, true);
    skin->load("staticSkin");
}

void Static::copyParams(Static* target) const {
    Widget::copyParams(target);
    target->setAngle(angle);
    target->setPivotPoint(pivotPoint);
}

Widget* Static::clone() const {
    auto* const copy = new Static(false);
    if (skin)
        skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

char const* Static::getWidgetType() const { return "Static"; }

void Static::setAngle(double degrees) {
    if (degrees != angle)
        onAngleChanged_(degrees);
}

double Static::getAngle() const { return angle; }

void Static::setPivotPoint(osg::Vec2i const& point) {
    if (point != pivotPoint)
        onPivotPointChanged_(point);
}

osg::Vec2i Static::getPivotPoint() const { return pivotPoint; }

void Static::onAngleChanged_(double degrees) {
    angle = degrees;
    angleRadians = degrees / 180.0 * std::numbers::pi;
}

void Static::onPivotPointChanged_(osg::Vec2i const& point) { pivotPoint = point; }

void Static::drawModelView_() {
    if (angleRadians == 0.0) {
        Widget::drawModelView_();
        return;
    }
    vtxRenderer::ModelViewMatrixGuard guard;
    turnModelView(guard, angleRadians, pivotPoint, getTargetPosition_());
    draw_();
    drawFocusRect_();
}

void Static::makeModelView_(GraphicCommands* commands) {
    if (angleRadians == 0.0) {
        Widget::makeModelView_(commands);
        return;
    }
    GraphicCommandModelViewMatrixGuard guard(commands);
    turnModelView(guard, angleRadians, pivotPoint, getTargetPosition_());
    make_(commands);
    makeFocusRect_(commands);
}

}  // namespace gui
