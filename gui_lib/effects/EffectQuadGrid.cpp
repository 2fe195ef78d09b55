#include "gui_lib/effects/EffectQuadGrid.h"

#include <cstdint>

#include <osg/Vec2f>

#include "gui_lib/effects/ShaderEffect.h"
#include "platform/qor/Log.h"
#include "platform/qor/RandomObject.h"
#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxEffectShader.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTexture.h"

namespace gui::skin {

namespace {

/// More would take hundreds of megabytes and show nothing that a coarser grid does not.
constexpr std::int64_t maxQuads = 1'000'000;

}  // namespace

void EffectQuadGrid::findParameters(vtxEffectShader* shader) {
    if (!shader)
        return;
    quadSizeHandle_ = shader->getParameter("quadSize");
    quadSizeXHandle_ = shader->getParameter("quadSizeX");
    quadSizeYHandle_ = shader->getParameter("quadSizeY");
    columnsHandle_ = shader->getParameter("columns");
    rowsHandle_ = shader->getParameter("rows");
    texSizeXHandle_ = shader->getParameter("texSizeX");
    texSizeYHandle_ = shader->getParameter("texSizeY");
    quadsAlphaHandle_ = shader->getParameter("quadsAlpha");
}

// 20 of 255 levels wide, with its middle at 0.
void EffectQuadGrid::calcAlphas(float alpha, RandomObject& random) {
    for (float& quadAlpha : quadsAlpha_)
        quadAlpha = random.get() * 0.078431375f - 0.039215688f + alpha;
}

// The part left over follows from whole units, its place and side from the exact ones.
EffectQuadGrid::Line EffectQuadGrid::cut_(int size) const {
    Line line;
    line.count = qor::truncateToInt(float(size) / quadSize_);
    line.whole = line.last = qor::truncateToInt(quadSize_);
    if (size % line.whole > 0) {
        ++line.count;
        line.last = qor::truncateToInt(float(size) - float(line.count - 1) * quadSize_);
    }
    return line;
}

void EffectQuadGrid::redraw(osg::Vec2i const& size, std::unique_ptr<vtxGeometry>& geometry) {
    Line columns, rows;
    if (quadSize_ >= 1.0f) {
        columns = cut_(size.x());
        rows = cut_(size.y());
    }
    if (std::int64_t(columns.count) * rows.count > maxQuads) {
        qor_logf("VORLEX", 64, "An effect is not drawn: %d x %d quads are too many; make \"quadSize\" larger",
                 columns.count, rows.count);
        columns.count = 0;
    }
    columns_ = columns.count;
    rows_ = rows.count;
    if (getQuadCount() <= 0) {
        geometry.reset();
        return;
    }
    vertices_.clear();
    indices_.clear();
    for (int row = 0; row < rows_; ++row)
        for (int column = 0; column < columns_; ++column)
            addQuad_(columns.side(column), rows.side(row));
    if (geometry)
        geometry->update(vertices_, &indices_);
    else
        geometry.reset(vtxRenderer::get()->createGeometry(vertices_, indices_));
}

void EffectQuadGrid::addQuad_(int width, int height) {
    int const first = int(vertices_.size());
    double const number = first / 4, right = width, bottom = height;
    vertices_.push_back({0.0, 0.0, number, 1.0f, 1.0f, 1.0f, 1.0f, 0.0, 0.0});
    vertices_.push_back({right, 0.0, number, 1.0f, 1.0f, 1.0f, 1.0f, 0.0, 0.0});
    vertices_.push_back({right, bottom, number, 1.0f, 1.0f, 1.0f, 1.0f, 0.0, 0.0});
    vertices_.push_back({0.0, bottom, number, 1.0f, 1.0f, 1.0f, 1.0f, 0.0, 0.0});
    for (int const corner : {0, 1, 2, 0, 2, 3})
        indices_.push_back(first + corner);
}

void EffectQuadGrid::setDrawParams(vtxEffectShader& shader, vtxTexture const* texture) const {
    vtxTexture::Rect const rect = texture ? texture->rect : vtxTexture::Rect();
    osg::Vec2f const share = ShaderEffect::getShareOfScreen(osg::Vec2f(quadSize_, quadSize_));
    shader.setFloat(quadSizeHandle_, quadSize_);
    shader.setFloat(columnsHandle_, float(columns_));
    shader.setFloat(rowsHandle_, float(rows_));
    shader.setFloat(texSizeXHandle_, float(qor::truncateToInt(rect.x2) - qor::truncateToInt(rect.x1)));
    shader.setFloat(texSizeYHandle_, float(qor::truncateToInt(rect.y2) - qor::truncateToInt(rect.y1)));
    shader.setFloat(quadSizeXHandle_, 2.0f * share.x());
    shader.setFloat(quadSizeYHandle_, 2.0f * share.y());
    shader.setFloatArray(quadsAlphaHandle_, quadsAlpha_.data(), quadsAlpha_.size());
}

}  // namespace gui::skin
