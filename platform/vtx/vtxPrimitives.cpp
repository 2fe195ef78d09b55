#include "platform/vtx/vtxPrimitives.h"

#include "platform/vtx/vtxGeometryRecord.h"
#include "platform/vtx/vtxRendererCore.h"

#include <algorithm>
#include <cmath>

namespace {

bool isSamePoint(vtxVertex const& a, vtxVertex const& b) { return a.x == b.x && a.y == b.y; }

}  // namespace

vtxPrimitives::vtxPrimitives(vtxRendererCore& core) : core_(core) {}

void vtxPrimitives::drawLines(vtxGeometryRecord const& geometry, vtxGeometry::PrimitiveType type, int count,
                              int first) {
    auto const vertex = [&](int index) -> vtxVertex const& {
        return geometry.getVertices()[static_cast<std::size_t>(geometry.getIndices()[static_cast<std::size_t>(index)])];
    };
    int const step = type == vtxGeometry::PrimitiveLines ? 2 : 1;
    int const length = type == vtxGeometry::PrimitivePoints ? 0 : 1;
    for (int i = 0; i < count; ++i) {
        vtxVertex const& from = vertex(first + i * step);
        vtxVertex const& to = vertex(first + i * step + length);
        // The next line covers a corner that two lines share, so that a translucent outline stays even.
        int const next = i + 1 < count ? i + 1 : 0;
        bool const joined = length && isSamePoint(to, vertex(first + next * step)) && !(next == 0 && count == 1);
        vtxQuadBatcher& batcher = core_.prepareLines(osg::Vec4f(from.r, from.g, from.b, from.a));
        if (joined && !isSamePoint(from, to)) {
            // Stop half a unit short: the next line's cap begins there.
            double const dx = to.x - from.x;
            double const dy = to.y - from.y;
            double const part = 1.0 - std::min(0.5 / std::hypot(dx, dy), 1.0);
            batcher.addLine({from.x, from.y, from.x + dx * part, from.y + dy * part, 1.0, true, false});
        } else {
            batcher.addLine({from.x, from.y, to.x, to.y, 1.0, true, true});
        }
    }
}

void vtxPrimitives::addVertex_(double x, double y, osg::Vec4f const& color) {
    vertices_.push_back({x, y, 0.0, color.r(), color.g(), color.b(), color.a(), 0.0, 0.0});
}

void vtxPrimitives::drawCircle(osg::Vec4f const& color, float radius, unsigned segments) {
    if (!std::isfinite(radius)) {
        core_.report(vtxMisuse::BadNumber, "drawCircle");
        return;
    }
    unsigned const count = std::clamp(segments, 3u, 4096u);
    vertices_.clear();
    indices_.clear();
    addVertex_(0.0, 0.0, color);
    for (unsigned i = 0; i < count; ++i) {
        double const angle = 2.0 * osg::PI * i / count;
        addVertex_(radius * std::cos(angle), radius * std::sin(angle), color);
        int const rim = static_cast<int>(i);
        int const next = static_cast<int>((i + 1) % count);
        indices_.insert(indices_.end(), {0, rim + 1, next + 1});
    }
    drawTriangles_();
}

void vtxPrimitives::addBox_(double left, double right, double height, osg::Vec4f const& color) {
    if (!(left < right))
        return;
    int const base = static_cast<int>(vertices_.size());
    addVertex_(left, 0.0, color);
    addVertex_(right, 0.0, color);
    addVertex_(right, height, color);
    addVertex_(left, height, color);
    indices_.insert(indices_.end(), {base, base + 1, base + 2, base, base + 2, base + 3});
}

void vtxPrimitives::drawLifeBar(osg::Vec4f const& color, osg::Vec2f const& size, float value) {
    if (!std::isfinite(size.x() + size.y() + value)) {
        core_.report(vtxMisuse::BadNumber, "drawLifeBar");
        return;
    }
    double const filled = size.x() * std::clamp(value, 0.0f, 1.0f);
    vertices_.clear();
    indices_.clear();
    addBox_(0.0, filled, size.y(), color);
    addBox_(filled, size.x(), size.y(), osg::Vec4f(color.r(), color.g(), color.b(), 0.25f * color.a()));
    if (!indices_.empty())
        drawTriangles_();
}

void vtxPrimitives::drawTriangles_() {
    vtxGeometryDraw draw;
    if (!core_.beginDirectDraw(draw.state))
        return;
    vtxDevice& device = core_.getDevice();
    if (!geometry_)
        geometry_ = device.createGeometry();
    device.updateGeometry(geometry_, vertices_, &indices_);
    core_.countGeometryUpload();
    draw.geometry = geometry_;
    draw.count = static_cast<int>(indices_.size() / 3);
    core_.drawGeometry(draw);
}

void vtxPrimitives::releaseDevice(vtxDevice& device) {
    if (geometry_)
        device.destroyGeometry(geometry_);
    geometry_ = 0;
}
