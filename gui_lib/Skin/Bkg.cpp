#include "gui_lib/Skin/Bkg.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cstring>

#include "gui_lib/Skin/LookEpoch.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "platform/qor/BlockPool.h"
#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxPair.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTexture.h"
#include "platform/vtx/vtxTextureManager.h"

namespace gui {

namespace {

unsigned packColor(osg::Vec4f const& color) {
    constexpr vtxFloats least = {};
    constexpr vtxFloats most = {255.0f, 255.0f, 255.0f, 255.0f};
    vtxFloats const wanted = vtxPairs::load(color.ptr()) * 255.0f;
    // What is no number counts as 0.
    vtxFloats const positive = wanted > least ? wanted : least;
    vtxInts const bytes = __builtin_convertvector(positive < most ? positive : most, vtxInts);
    return static_cast<unsigned>(bytes[0] | bytes[1] << 8 | bytes[2] << 16) | static_cast<unsigned>(bytes[3]) << 24;
}

bool differInColorsOnly(Bkg::Info const& one, Bkg::Info const& other) {
    return one.rect == other.rect && one.insets == other.insets && one.file == other.file;
}

constexpr auto unpackedBytes = [] {
    std::array<float, 256> values{};
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<float>(i) / 255.0f;
    return values;
}();

osg::Vec4f unpackColor(unsigned word) {
    auto const get = [word](int i) { return unpackedBytes[(word >> (8 * i)) & 0xFF]; };
    return osg::Vec4f(get(0), get(1), get(2), get(3));
}

void releaseTexture(vtxTexture* texture) {
    if (vtxRenderer* renderer = vtxRenderer::get())
        renderer->getTextureManager()->releaseTexture(texture);
}

}  // namespace

Bkg::Bkg() {
    Rect const invalid = {FLT_MAX, FLT_MAX, -FLT_MAX, -FLT_MAX};
    std::fill(std::begin(cellQuads), std::end(cellQuads), invalid);
    std::fill(std::begin(cellTexCoords), std::end(cellTexCoords), invalid);
}

Bkg::~Bkg() { releaseTexture(texture); }

qor::BlockPool& Bkg::bkgPool() {
    // Never destroyed: a background may be deleted as late as during static destruction.
    static auto* const pool = new qor::BlockPool(sizeof(Bkg), 1024, "gui_lib/Skin/Bkg.cpp", 16);
    return *pool;
}

void* Bkg::operator new(std::size_t) { return bkgPool().alloc(); }

void Bkg::operator delete(void* memory) { bkgPool().free(memory); }

// --- Description ---

void Bkg::set(Info const& info) {
    setTexture(info.file, info.rect);
    insets = info.insets;
    setCellColors(info.cellColors);
    geometryDirty = true;
}

void Bkg::setShared(Info const& info) {
    unsigned const epoch = skin::LookEpoch::now();
    Info const* const last = sharedEpoch_ == epoch ? shared_ : nullptr;
    if (last == &info)
        return;
    if (last && differInColorsOnly(*last, info) && info.cellColors.size() == CellCount) {
        bool const others = storeColors_(info.cellColors);
        geometryDirty = geometryDirty || others;
        colorsDirty_ = true;
    } else {
        set(info);
    }
    shared_ = &info;
    sharedEpoch_ = epoch;
}

void Bkg::setCellColors(qor::vector<osg::Vec4f> const& colors) {
    shared_ = nullptr;
    if (colors.size() != CellCount)
        return;
    storeColors_(colors);
    // The colours before these are to be shown: these take their place.
    geometryDirty = geometryDirty || colorsDirty_;
}

bool Bkg::storeColors_(qor::vector<osg::Vec4f> const& colors) {
    // Neighbours are mostly of one colour.
    bool others = false;
    unsigned color = 0;
    osg::Vec4f const* packed = nullptr;
    for (int cell = 0; cell < CellCount; ++cell) {
        osg::Vec4f const& wanted = colors[static_cast<std::size_t>(cell)];
        if (!packed || std::memcmp(packed, &wanted, sizeof(wanted)) != 0)
            color = packColor(wanted);
        packed = &wanted;
        others = others || (color == 0) != (cellColors[cell] == 0);
        cellColors[cell] = color;
    }
    return others;
}

void Bkg::setInsets(Insets const& newInsets) {
    shared_ = nullptr;
    if (insets == newInsets)
        return;
    insets = newInsets;
    geometryDirty = true;
}

void Bkg::setTexture(qor::basic_string<char> const& file, osg::RectImpl<osg::Vec2i> const& rect) {
    setTexture(vtxRenderer::get()->getTextureManager()->getTexture(file, rect, texture));
}

void Bkg::setTexture(vtxTexture* newTexture) {
    shared_ = nullptr;
    if (texture == newTexture)
        return;
    releaseTexture(texture);
    texture = newTexture;
    geometryDirty = true;
    quads.setTexture(texture);
}

// --- Geometry ---

void Bkg::setPosition(osg::Vec2i const& newPosition) {
    if (position == newPosition)
        return;
    position = newPosition;
    geometryDirty = true;
}

void Bkg::setSize(osg::Vec2i const& newSize) {
    if (size == newSize)
        return;
    size = newSize;
    geometryDirty = true;
}

// --- Drawing ---

void Bkg::redraw() {
    if (!geometryDirty)
        return;
    calcCellQuads_();
    if (texture)
        calcCellTexCoords_();
    geometryDirty = false;
    quadsDirty = true;
}

void Bkg::calcCellQuads_() {
    auto const rest = [](int length, int border) { return std::max(0, saturatingSubtract(length, border)); };
    float const l = static_cast<float>(insets.left);
    float const t = static_cast<float>(insets.top);
    float const r = static_cast<float>(insets.right);
    float const b = static_cast<float>(insets.bottom);
    float const right = static_cast<float>(rest(size.x(), insets.right));
    float const bottom = static_cast<float>(rest(size.y(), insets.bottom));
    float const midW = static_cast<float>(rest(saturatingSubtract(size.x(), insets.right), insets.left));
    float const midH = static_cast<float>(rest(saturatingSubtract(size.y(), insets.bottom), insets.top));

    cellQuads[LeftTop] = {0, 0, l, t};
    cellQuads[CenterTop] = {l, 0, midW, t};
    cellQuads[RightTop] = {right, 0, r, t};
    cellQuads[LeftCenter] = {0, t, l, midH};
    cellQuads[CenterCenter] = {l, t, midW, midH};
    cellQuads[RightCenter] = {right, t, r, midH};
    cellQuads[LeftBottom] = {0, bottom, l, b};
    cellQuads[CenterBottom] = {l, bottom, midW, b};
    cellQuads[RightBottom] = {right, bottom, r, b};
}

void Bkg::calcCellTexCoords_() {
    // One axis: the outer edges, the inner ones, and the end of the stretching cell. That cell stops a texel short of
    // the border behind it, so that bilinear filtering does not smear the border into it; the border starts where it
    // starts.
    struct Axis {
        Axis(float first, float last, int length, int before, int after) {
            if (length == 0)
                return;
            float const texels = static_cast<float>(length);
            min = first / texels;
            max = last / texels;
            low = min + static_cast<float>(before) / texels;
            high = std::max(max - static_cast<float>(after) / texels, low);
            mid = after > 0 ? std::max(max - (static_cast<float>(after) + 1.0f) / texels, low) : high;
        }
        float min = 0, low = 0, mid = 0, high = 0, max = 0;
    };
    bool const sized = texture->width != 0 && texture->height != 0;
    vtxTexture::Rect const& rect = texture->rect;
    Axis const u(rect.x1, rect.x2, sized ? texture->width : 0, insets.left, insets.right);
    Axis const v(rect.y1, rect.y2, sized ? texture->height : 0, insets.top, insets.bottom);

    cellTexCoords[LeftTop] = {u.min, v.min, u.low, v.low};
    cellTexCoords[CenterTop] = {u.low, v.min, u.mid, v.low};
    cellTexCoords[RightTop] = {u.high, v.min, u.max, v.low};
    cellTexCoords[LeftCenter] = {u.min, v.low, u.low, v.mid};
    cellTexCoords[CenterCenter] = {u.low, v.low, u.mid, v.mid};
    cellTexCoords[RightCenter] = {u.high, v.low, u.max, v.mid};
    cellTexCoords[LeftBottom] = {u.min, v.high, u.low, v.max};
    cellTexCoords[CenterBottom] = {u.low, v.high, u.mid, v.max};
    cellTexCoords[RightBottom] = {u.high, v.high, u.max, v.max};
}

bool Bkg::isCellDrawn_(int cell) const {
    return cellColors[cell] != 0 && cellQuads[cell].x2 > 0.0f && cellQuads[cell].y2 > 0.0f;
}

void Bkg::doRedraw() {
    if (quadsDirty)
        buildQuads_();
    // While a layout is to come, the colours may be those of other cells.
    if (quadsDirty || (colorsDirty_ && !geometryDirty))
        colorQuads_();
    quadsDirty = colorsDirty_ = false;
}

void Bkg::buildQuads_() {
    quads.count = 0;
    for (int cell = 0; cell < CellCount; ++cell) {
        if (!isCellDrawn_(cell))
            continue;
        Rect const& rect = cellQuads[cell];
        vtxShaderBkgQuads::BkgQuad quad = {};
        quad.x = static_cast<float>(position.x()) + rect.x1;
        quad.y = static_cast<float>(position.y()) + rect.y1;
        quad.w = rect.x2;
        quad.h = rect.y2;
        if (texture) {
            Rect const& coords = cellTexCoords[cell];
            quad.uMin = coords.x1;
            quad.vMin = coords.y1;
            quad.uMax = coords.x2;
            quad.vMax = coords.y2;
        }
        quads.addQuad(quad);
    }
}

void Bkg::colorQuads_() {
    int count = 0;
    unsigned word = 0;
    osg::Vec4f color;
    for (int cell = 0; cell < CellCount; ++cell) {
        if (!isCellDrawn_(cell))
            continue;
        if (cellColors[cell] != word) {
            word = cellColors[cell];
            color = unpackColor(word);
        }
        colorsToDraw[count++] = color;
    }
}

void Bkg::draw() const {
    if (quads.count <= 0)
        return;
    vtxShader* const shader = vtxRenderer::get()->getShader();
    shader->turnOnDrawQuads();
    shader->setColors(colorsToDraw[0].ptr(), quads.count);
    quads.draw(shader);
}

void Bkg::make(GraphicCommands* commands) const {
    if (quads.count >= 1)
        commands->drawBkg(quads, colorsToDraw[0].ptr());
}

}  // namespace gui
