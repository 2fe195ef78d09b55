#pragma once

#include "platform/qor/Containers.h"
#include "platform/vtx/vtxDevice.h"

#include <osg/Vec2f>
#include <osg/Vec4f>

class vtxGeometryRecord;
class vtxRendererCore;

/// Internal: shapes that the front half makes itself. Points and lines become quads one unit wide and join the run of
/// the quads around them; discs and bars are geometry.
class vtxPrimitives {
public:
    explicit vtxPrimitives(vtxRendererCore& core);

    /// `count` primitives from index `first` on; the caller has checked the range.
    void drawLines(vtxGeometryRecord const& geometry, vtxGeometry::PrimitiveType type, int count, int first);
    void drawCircle(osg::Vec4f const& color, float radius, unsigned segments);
    void drawLifeBar(osg::Vec4f const& color, osg::Vec2f const& size, float value);
    /// Deletes what the device has of it.
    void releaseDevice(vtxDevice& device);

private:
    void addVertex_(double x, double y, osg::Vec4f const& color);
    void addBox_(double left, double right, double height, osg::Vec4f const& color);
    void drawTriangles_();

    vtxRendererCore& core_;
    qor::vector<vtxVertex> vertices_;
    qor::vector<int> indices_;
    vtxDeviceHandle geometry_ = 0;
};
