#pragma once

#include "platform/vtx/vtxDevice.h"
#include "platform/vtx/vtxGeometry.h"

/// Internal: geometry as the host gave it, and the device object that is made from it at its first draw as triangles.
class vtxGeometryRecord final : public vtxGeometry {
public:
    vtxGeometryRecord(unsigned generation, qor::vector<vtxVertex> const& vertices, qor::vector<int> const& indices);
    ~vtxGeometryRecord() override;

    // vtxGeometry:
    void update(qor::vector<vtxVertex> const& vertices, qor::vector<int> const* indices) override;

    qor::vector<vtxVertex> const& getVertices() const { return vertices_; }
    qor::vector<int> const& getIndices() const { return indices_; }
    /// All coordinates are finite and all indices have a vertex.
    bool isFinite() const { return finite_; }
    bool areIndicesValid() const { return indicesValid_; }

    // --- For the renderer core, on the drawing thread ---
    vtxDeviceHandle handle = 0;
    bool verticesChanged = true;
    bool indicesChanged = true;

private:
    void check_();

    unsigned generation_;
    qor::vector<vtxVertex> vertices_;
    qor::vector<int> indices_;
    bool finite_ = true;
    bool indicesValid_ = true;
};
