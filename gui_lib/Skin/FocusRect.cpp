#include "gui_lib/Skin/FocusRect.h"

#include <cstdint>

#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawGeometry.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"

namespace gui {

FocusRect::FocusRect() = default;

FocusRect::~FocusRect() = default;

void FocusRect::setBounds(osg::RectImpl<osg::Vec2i> const& newBounds) {
    bounds = newBounds;
    dirty = true;
}

void FocusRect::setColor(osg::Vec4f const& newColor) {
    color = newColor;
    dirty = true;
}

void FocusRect::setInsets(Insets const& newInsets) {
    insets = newInsets;
    dirty = true;
}

void FocusRect::redraw() {
    if (!dirty)
        return;
    dirty = false;
    vertices.clear();
    indices.clear();
    if (!buildVertices_())
        geometry.reset();
    vertexCount = static_cast<int>(vertices.size() / 2);
}

bool FocusRect::buildVertices_() {
    if (!(color.a() > 0.0f) || bounds.isInverted())
        return false;
    // Wide integers: bounds and insets are whatever the skin says.
    std::int64_t const left = std::int64_t(bounds.x1) + insets.left;
    std::int64_t const top = std::int64_t(bounds.y1) + insets.top;
    std::int64_t const right = std::int64_t(bounds.x2) - insets.right;
    std::int64_t const bottom = std::int64_t(bounds.y2) - insets.bottom;
    if (right <= left || bottom <= top)
        return false;
    // Each line runs from the middle of one corner's unit to that of the next, so that each corner is the start of one.
    double const x1 = left + 0.5, y1 = top + 0.5, x2 = right - 0.5, y2 = bottom - 0.5;
    double const corners[4][2] = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
    for (int line = 0; line < 4; ++line) {
        for (int end = 0; end < 2; ++end) {
            double const* const corner = corners[(line + end) % 4];
            indices.push_back(static_cast<int>(vertices.size()));
            vertices.push_back({corner[0], corner[1], 0.0, color.r(), color.g(), color.b(), color.a(), 0.0, 0.0});
        }
    }
    return true;
}

void FocusRect::doRedraw() {
    if (vertexCount <= 0)
        geometry.reset();
    else if (geometry)
        geometry->update(vertices, &indices);
    else
        geometry.reset(vtxRenderer::get()->createGeometry(vertices, indices));
}

void FocusRect::draw() const {
    if (!geometry)
        return;
    vtxRenderer* const renderer = vtxRenderer::get();
    vtxShader* const shader = renderer->getShader();
    shader->turnOffDrawQuads();
    shader->setTexture(nullptr);
    shader->setTextureArray(nullptr);
    renderer->setGeometry(geometry.get());
    renderer->drawPrimitives(vtxGeometry::PrimitiveLines, vertexCount, 0);
    shader->turnOnDrawQuads();
}

void FocusRect::make(GraphicCommands* commands) const {
    if (vertexCount == 0)
        return;
    GraphicCommandDrawGeometry* const command = GraphicCommandDrawGeometry::fetch();
    commands->add(command->set(vertices, indices, vtxGeometry::PrimitiveLines, vertexCount, nullptr));
}

}  // namespace gui
