#include "platform/vtx/vtxGeometryRecord.h"

#include "platform/vtx/vtxRendererCore.h"

#include <algorithm>
#include <cmath>

vtxGeometry::~vtxGeometry() = default;

vtxGeometryRecord::vtxGeometryRecord(unsigned generation, qor::vector<vtxVertex> const& vertices,
                                     qor::vector<int> const& indices)
    : generation_(generation), vertices_(vertices), indices_(indices) {
    check_();
}

vtxGeometryRecord::~vtxGeometryRecord() {
    vtxRendererCore* core = vtxRendererCore::getCore();
    if (core && core->getGeneration() == generation_)
        core->removeGeometry(*this, handle);
}

void vtxGeometryRecord::update(qor::vector<vtxVertex> const& vertices, qor::vector<int> const* indices) {
    vertices_ = vertices;
    verticesChanged = true;
    if (indices) {
        indicesChanged = indicesChanged || indices_ != *indices;
        indices_ = *indices;
    }
    check_();
}

void vtxGeometryRecord::check_() {
    finite_ = std::all_of(vertices_.begin(), vertices_.end(), [](vtxVertex const& vertex) {
        return std::isfinite(vertex.x + vertex.y + vertex.z + vertex.u + vertex.v);
    });
    int const count = static_cast<int>(vertices_.size());
    indicesValid_ =
        std::all_of(indices_.begin(), indices_.end(), [count](int index) { return index >= 0 && index < count; });
}
