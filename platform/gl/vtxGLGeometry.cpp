#include "platform/gl/vtxGLGeometry.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int floatsPerVertex = 9;  // position, colour, texture coordinates

/// Indices that `count` primitives take and indices that one more takes; the count is 0 for an unknown type.
struct IndexNeed {
    GLenum mode;
    int perPrimitive;
    int extra;
};

IndexNeed getNeed(vtxGeometry::PrimitiveType primitive) {
    switch (primitive) {
        case vtxGeometry::PrimitivePoints:
            return {GL_POINTS, 1, 0};
        case vtxGeometry::PrimitiveLines:
            return {GL_LINES, 2, 0};
        case vtxGeometry::PrimitiveLineStrip:
            return {GL_LINE_STRIP, 1, 1};
        case vtxGeometry::PrimitiveTriangles:
            return {GL_TRIANGLES, 3, 0};
        case vtxGeometry::PrimitiveNone:
            break;
    }
    return {GL_TRIANGLES, 0, 0};
}

}  // namespace

void vtxGLGeometry::create() {
    glGenVertexArrays(1, &vertexArray_);
    glGenBuffers(1, &vertexBuffer_);
    glGenBuffers(1, &indexBuffer_);
    glBindVertexArray(vertexArray_);
    glBindBuffer(GL_ARRAY_BUFFER, vertexBuffer_);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexBuffer_);
    constexpr int sizes[3] = {3, 4, 2};
    size_t offset = 0;
    for (GLuint i = 0; i < 3; ++i) {
        glEnableVertexAttribArray(i);
        glVertexAttribPointer(i, sizes[i], GL_FLOAT, GL_FALSE, floatsPerVertex * sizeof(float),
                              reinterpret_cast<void const*>(offset * sizeof(float)));
        offset += size_t(sizes[i]);
    }
}

void vtxGLGeometry::destroy() {
    glDeleteVertexArrays(1, &vertexArray_);
    glDeleteBuffers(1, &vertexBuffer_);
    glDeleteBuffers(1, &indexBuffer_);
    *this = vtxGLGeometry();
}

void vtxGLGeometry::update(qor::vector<vtxVertex> const& vertices, qor::vector<int> const* indices,
                           qor::vector<float>& scratch) {
    scratch.clear();
    for (vtxVertex const& vertex : vertices) {
        float const values[floatsPerVertex] = {float(vertex.x), float(vertex.y), float(vertex.z),
                                               vertex.r,        vertex.g,        vertex.b,
                                               vertex.a,        float(vertex.u), float(vertex.v)};
        scratch.insert(scratch.end(), values, values + floatsPerVertex);
    }
    glBindVertexArray(vertexArray_);
    glBindBuffer(GL_ARRAY_BUFFER, vertexBuffer_);
    glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(scratch.size() * sizeof(float)), scratch.data(), GL_DYNAMIC_DRAW);
    vertexCount_ = int(vertices.size());
    if (!indices)
        return;
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, GLsizeiptr(indices->size() * sizeof(int)), indices->data(), GL_DYNAMIC_DRAW);
    indexCount_ = int(indices->size());
    greatestIndex_ = -1;
    for (int index : *indices) {
        // A negative index is a great one to GL.
        greatestIndex_ = index < 0 ? std::numeric_limits<int>::max() : std::max(greatestIndex_, index);
        if (index < 0)
            break;
    }
}

void vtxGLGeometry::draw(vtxGeometry::PrimitiveType primitive, int count, int first) {
    IndexNeed const need = getNeed(primitive);
    if (count < 1 || first < 0 || first >= indexCount_ || greatestIndex_ >= vertexCount_ || !need.perPrimitive)
        return;
    int const possible = std::min(count, (indexCount_ - first - need.extra) / need.perPrimitive);
    if (possible < 1)
        return;
    glBindVertexArray(vertexArray_);
    glDrawElements(need.mode, possible * need.perPrimitive + need.extra, GL_UNSIGNED_INT,
                   reinterpret_cast<void const*>(size_t(first) * sizeof(int)));
}
