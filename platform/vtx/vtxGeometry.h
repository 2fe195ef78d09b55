#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"

/// One vertex: position in GUI units, straight (not premultiplied) colour, texture coordinates 0 to 1 of the picture
/// file.
struct vtxVertex {
    double x = 0.0, y = 0.0, z = 0.0;
    float r = 0.0f, g = 0.0f, b = 0.0f, a = 0.0f;
    double u = 0.0, v = 0.0;
};

/// Indexed vertices kept by the renderer.
class VORLEX_API vtxGeometry {
public:
    enum PrimitiveType {
        PrimitiveNone = -1,
        PrimitivePoints = 0,
        PrimitiveLines = 1,
        PrimitiveLineStrip = 2,
        PrimitiveTriangles = 3
    };

    virtual ~vtxGeometry();
    /// New vertices, and new indices unless null.
    virtual void update(qor::vector<vtxVertex> const& vertices, qor::vector<int> const* indices) = 0;
};
