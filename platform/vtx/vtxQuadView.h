#pragma once

#include "platform/osg/RectImpl.h"
#include "platform/vtx/vtxDevice.h"

#include <osg/Vec2i>

struct vtxDrawSettings;

/// Internal: where quads go.
struct vtxQuadView {
    void setProjection(osg::Matrixf const& projection, osg::RectImpl<osg::Vec2i> const& viewport);
    /// Null: no clip. Call it after setProjection.
    void setClip(osg::RectImpl<osg::Vec2i> const* clip) {
        visible = clip ? state.viewport.intersected(*clip) : state.viewport;
    }
    /// The clip cuts something off the viewport.
    bool isClipped() const { return !(visible == state.viewport); }

    /// What the device gets, without a scissor.
    vtxDrawState state;
    /// The projection only scales and shifts: target pixel = position * scale + offset, both scales above 0.
    bool aligned = false;
    double scaleX = 1.0, scaleY = 1.0, offsetX = 0.0, offsetY = 0.0;
    /// Clip within the viewport, in pixels of the target.
    osg::RectImpl<osg::Vec2i> visible;
};

/// Internal: from GUI units to the space that the projection maps.
struct vtxQuadTransform {
    static vtxQuadTransform make(vtxDrawSettings const& settings, float scale);
    /// Whether the other one differs from this in its place at most.
    bool differsByTranslation(vtxQuadTransform const& other) const {
        return scale == other.scale && shiftX == other.shiftX && shiftY == other.shiftY && xx == other.xx &&
               xy == other.xy && yx == other.yx && yy == other.yy;
    }

    double scale = 1.0;
    double shiftX = 0.0, shiftY = 0.0;
    double xx = 1.0, xy = 0.0, yx = 0.0, yy = 1.0;  ///< model-view: where the x and the y axis go
    double x = 0.0, y = 0.0;
    bool upright = true;      ///< axes stay parallel to themselves
    bool translation = true;  ///< nothing but a translation: edges land on whole pixels
};
