#include "platform/vtx/vtxQuadView.h"

#include "platform/vtx/vtxDrawSettings.h"

#include <cmath>

namespace {

bool isNear(double value, double wanted) { return std::abs(value - wanted) < 1e-6; }

}  // namespace

void vtxQuadView::setProjection(osg::Matrixf const& projection, osg::RectImpl<osg::Vec2i> const& viewport) {
    state.projection = projection;
    state.viewport = viewport;
    double const halfWidth = 0.5 * viewport.width();
    double const halfHeight = 0.5 * viewport.height();
    scaleX = projection(0, 0) * halfWidth;
    scaleY = -projection(1, 1) * halfHeight;
    offsetX = viewport.x1 + (projection(3, 0) + 1.0) * halfWidth;
    offsetY = viewport.y1 + (1.0 - projection(3, 1)) * halfHeight;
    aligned = scaleX > 0.0 && scaleY > 0.0 && isNear(projection(0, 1), 0.0) && isNear(projection(1, 0), 0.0) &&
              isNear(projection(0, 3), 0.0) && isNear(projection(1, 3), 0.0) && isNear(projection(3, 3), 1.0);
}

vtxQuadTransform vtxQuadTransform::make(vtxDrawSettings const& settings, float scale) {
    osg::Matrixf const& matrix = settings.modelView;
    vtxQuadTransform transform;
    transform.scale = scale;
    transform.shiftX = settings.shiftX;
    transform.shiftY = settings.shiftY;
    transform.xx = matrix(0, 0);
    transform.xy = matrix(0, 1);
    transform.yx = matrix(1, 0);
    transform.yy = matrix(1, 1);
    transform.x = matrix(3, 0);
    transform.y = matrix(3, 1);
    transform.upright = isNear(transform.xy, 0.0) && isNear(transform.yx, 0.0);
    transform.translation = transform.upright && isNear(transform.xx, 1.0) && isNear(transform.yy, 1.0);
    return transform;
}
