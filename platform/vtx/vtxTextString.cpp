#include "platform/vtx/vtxTextString.h"

#include "platform/vtx/vtxRendererCore.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxSizedFont.h"

#include <cmath>
#include <cwchar>
#include <typeinfo>

namespace {

/// 0 while there is no renderer.
float getScale(float scale) {
    if (scale > 0.0f)
        return scale;
    vtxRenderer* const renderer = vtxRenderer::get();
    return renderer ? renderer->getScale() : 0.0f;
}

unsigned getGeneration() {
    vtxRenderer* const renderer = vtxRenderer::get();
    return renderer ? renderer->getGeneration() : 0;
}

bool isSeen(osg::Vec4f const& color) { return color.a() > 0.0f; }

}  // namespace

vtxTextString::vtxTextString() = default;
vtxTextString::~vtxTextString() = default;
vtxTextString::vtxTextString(vtxTextString const&) = default;

vtxTextString& vtxTextString::operator=(vtxTextString const& other) {
    // A tree that is recorded again copies its texts over what it copied there before.
    if (!hasContentOf_(other)) [[unlikely]]
        copyContent_(other);
    color = other.color;
    bkgColor = other.bkgColor;
    shadowColor = other.shadowColor;
    shadowOffset = other.shadowOffset;
    blurColor = other.blurColor;
    lineThroughColor = other.lineThroughColor;
    lineThroughHeight = other.lineThroughHeight;
    lineThroughOffset = other.lineThroughOffset;
    position = other.position;
    textLength = other.textLength;
    layerEnds_ = other.layerEnds_;
    builtScale_ = other.builtScale_;
    stale_ = other.stale_;
    builtGeneration_ = other.builtGeneration_;
    return *this;
}

inline bool vtxTextString::hasContentOf_(vtxTextString const& other) const {
    return quads.isCopyOf(other.quads) && font == other.font && glyphs_[0] == other.glyphs_[0] &&
           glyphs_[1] == other.glyphs_[1] && text.size() == other.text.size() &&
           std::wmemcmp(text.data(), other.text.data(), text.size()) == 0;
}

void vtxTextString::copyContent_(vtxTextString const& other) {
    font = other.font;
    text = other.text;
    quads = other.quads;
    glyphs_[0] = other.glyphs_[0];
    glyphs_[1] = other.glyphs_[1];
}

// --- Building ---

void vtxTextString::redraw(float scale) {
    float const used = getScale(scale);
    if (used > 0.0f)
        build_(used);
}

void vtxTextString::update(float scale) {
    float const used = getScale(scale);
    if (used > 0.0f && (stale_ || builtScale_ != used || builtGeneration_ != getGeneration()))
        build_(used);
}

bool vtxTextString::setLine(std::shared_ptr<vtxFont> const& newFont, std::wstring_view newText,
                            osg::Vec2i const& newPosition) {
    if (position == newPosition && font == newFont && text == newText)
        return false;
    if (font != newFont)
        font = newFont;
    text = newText;
    textLength = static_cast<int>(text.size());
    position = newPosition;
    stale_ = true;
    return true;
}

void vtxTextString::addBar_(vtxQuadsRewriter& written, float y, float width, float height) const {
    vtxQuad const quad{
        static_cast<float>(position.x()), static_cast<float>(position.y()) + y, width, height, 0.0f, 0.0f, 0.0f, 0.0f};
    written.addBatch(nullptr, &quad, 1);
}

void vtxTextString::build_(float scale) const {
    stale_ = false;
    builtScale_ = scale;
    builtGeneration_ = getGeneration();
    vtxQuadsRewriter written(quads);
    auto const endLayer = [&](Layer layer) { layerEnds_[layer] = written.getCount(); };
    vtxFont* const base = font.get();
    auto* const sized = base && typeid(*base) == typeid(vtxSizedFont) ? static_cast<vtxSizedFont*>(base) : nullptr;
    osg::Vec2d const pen(position.x(), position.y());
    bool const hasBars = isSeen(bkgColor) || (lineThroughHeight > 0 && isSeen(lineThroughColor));
    auto const width = hasBars && font && !text.empty() ? static_cast<float>(font->getTextWidth(text, -1.0f)) : 0.0f;

    if (width > 0.0f && isSeen(bkgColor))
        addBar_(written, static_cast<float>(-font->getAscender()), width,
                static_cast<float>(font->getAscender() - font->getDescender()));
    endLayer(LayerBkg);
    if (sized && isSeen(shadowColor))
        sized->addGlyphs({text, pen + osg::Vec2d(shadowOffset.x(), shadowOffset.y()), scale, false}, written,
                         glyphs_[0]);
    endLayer(LayerShadow);
    if (sized && sized->getBlur() != vtxFont::BlurNone && isSeen(blurColor))
        sized->addGlyphs({text, pen, scale, true}, written, glyphs_[1]);
    endLayer(LayerBlur);
    if (sized)
        sized->addGlyphs({text, pen, scale, false}, written, glyphs_[0]);
    endLayer(LayerGlyphs);
    if (width > 0.0f && lineThroughHeight > 0 && isSeen(lineThroughColor)) {
        double const middle = sized ? sized->getXHeight() * 0.5 : font->getAscender() * 0.25;
        addBar_(written, static_cast<float>(-std::floor(middle + 0.5) - lineThroughOffset), width,
                static_cast<float>(lineThroughHeight));
    }
    endLayer(LayerLineThrough);
}

// --- Drawing ---

void vtxTextString::draw(vtxShader* shader, float scale) const { draw(shader, color, scale); }

void vtxTextString::draw(vtxShader* shader, osg::Vec4f const& glyphColor, float scale) const {
    vtxRendererCore* const core = vtxRendererCore::getCore();
    if (!shader || !core || builtScale_ == 0.0f)
        return;
    float const used = scale > 0.0f ? scale : core->getScale();
    if (builtScale_ != used || builtGeneration_ != core->getGeneration())
        build_(used);
    if (quads.getBatches().empty())
        return;
    shader->turnOnDrawQuads();
    // Most strings are nothing but glyphs.
    if (layerEnds_[LayerBlur] == 0 && layerEnds_[LayerGlyphs] == layerEnds_[LayerLineThrough]) {
        drawBatches_(*core, glyphColor, 0, layerEnds_[LayerGlyphs]);
        return;
    }
    osg::Vec4f const* const colors[LayerCount] = {&bkgColor, &shadowColor, &blurColor, &glyphColor, &lineThroughColor};
    for (int layer = 0, begin = 0; layer < LayerCount; begin = layerEnds_[layer++])
        drawBatches_(*core, *colors[layer], begin, layerEnds_[layer]);
}

inline void vtxTextString::drawBatches_(vtxRendererCore& core, osg::Vec4f const& layerColor, int begin, int end) const {
    if (begin == end || !isSeen(layerColor))
        return;
    core.changeSettings().color = layerColor;
    core.drawQuads(quads, begin, end);
}
