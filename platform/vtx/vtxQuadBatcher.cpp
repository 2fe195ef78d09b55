#include "platform/vtx/vtxQuadBatcher.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// Halves go up, and so do what arithmetic makes of halves, so that edges computed in two ways meet.
double roundToPixel(double value) { return std::floor(value + 0.5 + 1.0 / 128.0); }

/// A texel counts as a pixel if a quad's length in texels differs from that in pixels by no more.
constexpr double exactTolerance = 0.05;

/// How far coordinates may leave 0 to 1 by rounding.
constexpr double coordinateTolerance = 1e-5;

bool isSameState(vtxDrawState const& a, vtxDrawState const& b) {
    return a.projection == b.projection && a.viewport == b.viewport && a.technique == b.technique &&
           a.gamma == b.gamma && a.intensity == b.intensity;
}

void snapEdges(double& from, double& to) {
    from = roundToPixel(from);
    to = std::max(roundToPixel(to), from + 1.0);
}

/// Keeps one texel a pixel: the origin lands on a whole pixel, and the texture shows as many texels as there are
/// pixels. False if the quad stretches its texture.
bool snapExact(double& from, double& to, double& coordinateFrom, double& coordinateTo, double texels) {
    double const span = std::abs(coordinateTo - coordinateFrom) * texels;
    if (std::abs(span - (to - from)) > exactTolerance)
        return false;
    double const whole = std::round(span);
    double const start = roundToPixel(from);
    double const length = std::max(std::abs(span - whole) <= exactTolerance ? whole : roundToPixel(to) - start, 1.0);
    from = start;
    to = start + length;
    coordinateTo = coordinateFrom + std::copysign(length / texels, coordinateTo - coordinateFrom);
    return true;
}

bool clipAxis(double& from, double& to, double& coordinateFrom, double& coordinateTo, int least, int most) {
    if (from >= most || to <= least)
        return false;
    double const step = (coordinateTo - coordinateFrom) / (to - from);
    if (to > most) {
        coordinateTo = coordinateFrom + (most - from) * step;
        to = most;
    }
    if (from < least) {
        coordinateFrom += (least - from) * step;
        from = least;
    }
    return true;
}

void clampAxis(float& least, float& most, double a, double b, double texels) {
    double const half = 0.5 / texels;
    double from = std::min(a, b) + half;
    double to = std::max(a, b) - half;
    if (to < from)
        from = to = 0.5 * (a + b);
    least = static_cast<float>(from);
    most = static_cast<float>(to);
}

void markLayer(std::uint64_t (&layers)[vtxTextureStore::maxLayers / 64], int layer) {
    layers[layer / 64] |= std::uint64_t(1) << (layer % 64);
}

}  // namespace

vtxQuadBatcher::vtxQuadBatcher(vtxDevice& device, vtxTextureStore& store, vtxMisuseLog& misuse)
    : device_(device), store_(store), misuse_(misuse) {
    instances_.reserve(1024);
}

void vtxQuadBatcher::setView(vtxQuadView const& view) {
    if (!instances_.empty() && !isSameState(run_.state, view.state))
        flush();
    view_ = view;
}

// --- Textures ---

bool vtxQuadBatcher::setTexture(vtxTexture const* texture, int sampler) {
    image_ = nullptr;
    if (!texture) {
        binding_ = Binding();
        return true;
    }
    if (!store_.isAlive(texture)) {
        misuse_.report(vtxMisuse::DeadTexture, "quads");
        return false;
    }
    image_ = static_cast<vtxTextureRecord const*>(texture)->image;
    bool const pageable =
        image_->place == vtxImagePlace::GlyphPage || (image_->place == vtxImagePlace::PicturePage && sampler <= 1);
    return pageable ? bindPage_(*image_, sampler) : bindAlone_(*image_, sampler);
}

bool vtxQuadBatcher::bindAlone_(vtxTextureImage& image, int sampler) {
    if (image.bound) {
        misuse_.report(vtxMisuse::TargetIntoItself, "quads");
        return false;
    }
    binding_ = Binding();
    binding_.plain = false;
    binding_.alone = store_.getAlone(image);
    binding_.sampler = sampler;
    binding_.scaleU = image.usedU;
    binding_.scaleV = image.usedV;
    binding_.texelsU = std::max(image.size.x(), 1);
    binding_.texelsV = std::max(image.size.y(), 1);
    binding_.exact = image.target;
    return binding_.alone != 0;
}

bool vtxQuadBatcher::bindPage_(vtxTextureImage const& image, int sampler) {
    bool const glyphs = image.place == vtxImagePlace::GlyphPage;
    auto const pages = glyphs ? vtxTextureStore::Pages::Glyph : vtxTextureStore::Pages::Picture;
    if (store_.hasUploads(pages)) {
        if (!instances_.empty() && store_.isUploadInto(pages, glyphs ? usedGlyphLayers_ : usedPictureLayers_))
            flush();
        uploads_ += static_cast<unsigned>(store_.flushUploads(pages));
    }
    double const side = glyphs ? vtxTextureStore::glyphPageSide : vtxTextureStore::picturePageSide;
    binding_ = Binding();
    binding_.plain = false;
    binding_.place = image.place;
    binding_.sampler = sampler;
    binding_.layer = image.layer;
    binding_.scaleU = image.size.x() / side;
    binding_.scaleV = image.size.y() / side;
    binding_.offsetU = image.origin.x() / side;
    binding_.offsetV = image.origin.y() / side;
    binding_.texelsU = binding_.texelsV = side;
    binding_.exact = glyphs;
    return store_.getArray(pages) != 0;
}

// --- Quads ---

void vtxQuadBatcher::addQuad(Quad const& quad) {
    if (!(color_.a() > 0.0f) || view_.visible.isEmpty())
        return;
    if (!std::isfinite(quad.x + quad.y + quad.w + quad.h + quad.uMin + quad.vMin + quad.uMax + quad.vMax)) {
        misuse_.report(vtxMisuse::BadNumber, "quads");
        return;
    }
    bool const outside = std::min({quad.uMin, quad.vMin, quad.uMax, quad.vMax}) < -coordinateTolerance ||
                         std::max({quad.uMin, quad.vMin, quad.uMax, quad.vMax}) > 1.0 + coordinateTolerance;
    if (outside && !binding_.plain && binding_.place == vtxImagePlace::PicturePage) {
        Binding const paged = binding_;
        if (bindAlone_(*image_, paged.sampler))
            addQuad(quad);
        binding_ = paged;
        return;
    }
    Coordinates const coordinates = mapToLayer_(quad);
    if (view_.aligned && transform_.upright) {
        addUpright_(quad, coordinates);
        return;
    }
    double const x = quad.x * transform_.scale + transform_.shiftX;
    double const y = quad.y * transform_.scale + transform_.shiftY;
    double const w = quad.w * transform_.scale;
    double const h = quad.h * transform_.scale;
    double const corner[2] = {x * transform_.xx + y * transform_.yx + transform_.x,
                              x * transform_.xy + y * transform_.yy + transform_.y};
    double const edgeU[2] = {w * transform_.xx, w * transform_.xy};
    double const edgeV[2] = {h * transform_.yx, h * transform_.yy};
    addTurned_(corner, edgeU, edgeV, coordinates);
}

void vtxQuadBatcher::addLine(Line const& line) {
    double const dx = line.x2 - line.x1;
    double const dy = line.y2 - line.y1;
    double const length = std::hypot(dx, dy);
    double const half = 0.5 * line.width;
    double const nx = length > 0.0 ? dx / length : 1.0;
    double const ny = length > 0.0 ? dy / length : 0.0;
    double const begin = line.capBegin ? half : 0.0;
    double const whole = length + begin + (line.capEnd ? half : 0.0);
    double const x = line.x1 - nx * begin + ny * half;
    double const y = line.y1 - ny * begin - nx * half;
    binding_ = Binding();
    if (nx == 0.0 || ny == 0.0) {
        double const x2 = x + nx * whole - ny * line.width;
        double const y2 = y + ny * whole + nx * line.width;
        addQuad(Quad{std::min(x, x2), std::min(y, y2), std::abs(x2 - x), std::abs(y2 - y), 0, 0, 0, 0});
        return;
    }
    if (!(color_.a() > 0.0f) || view_.visible.isEmpty())
        return;
    vtxQuadTransform const& t = transform_;
    auto const turn = [&](double vx, double vy, double(&result)[2]) {
        result[0] = (vx * t.xx + vy * t.yx) * t.scale;
        result[1] = (vx * t.xy + vy * t.yy) * t.scale;
    };
    double corner[2], edgeU[2], edgeV[2];
    turn(x + t.shiftX / t.scale, y + t.shiftY / t.scale, corner);
    corner[0] += t.x;
    corner[1] += t.y;
    turn(nx * whole, ny * whole, edgeU);
    turn(-ny * line.width, nx * line.width, edgeV);
    addTurned_(corner, edgeU, edgeV, Coordinates{0, 0, 0, 0});
}

vtxQuadBatcher::Coordinates vtxQuadBatcher::mapToLayer_(Quad const& quad) const {
    return Coordinates{quad.uMin * binding_.scaleU + binding_.offsetU, quad.vMin * binding_.scaleV + binding_.offsetV,
                       quad.uMax * binding_.scaleU + binding_.offsetU, quad.vMax * binding_.scaleV + binding_.offsetV};
}

void vtxQuadBatcher::addUpright_(Quad const& quad, Coordinates coordinates) {
    vtxQuadTransform const& t = transform_;
    Box box;
    box.left = (quad.x * t.scale + t.shiftX) * t.xx + t.x;
    box.top = (quad.y * t.scale + t.shiftY) * t.yy + t.y;
    box.right = box.left + quad.w * t.scale * t.xx;
    box.bottom = box.top + quad.h * t.scale * t.yy;
    if (!std::isfinite(box.left + box.top + box.right + box.bottom)) {
        misuse_.report(vtxMisuse::BadNumber, "quads");
        return;
    }
    box.left = box.left * view_.scaleX + view_.offsetX;
    box.right = box.right * view_.scaleX + view_.offsetX;
    box.top = box.top * view_.scaleY + view_.offsetY;
    box.bottom = box.bottom * view_.scaleY + view_.offsetY;
    if (box.right < box.left) {
        std::swap(box.left, box.right);
        std::swap(coordinates.uMin, coordinates.uMax);
    }
    if (box.bottom < box.top) {
        std::swap(box.top, box.bottom);
        std::swap(coordinates.vMin, coordinates.vMax);
    }
    if (!(box.left < box.right && box.top < box.bottom))
        return;
    if (t.translation)
        snap_(box, coordinates);
    Coordinates const whole = coordinates;
    if (!clip_(box, coordinates))
        return;
    vtxQuadInstance& instance = append_(box, false);
    instance.x = static_cast<float>((box.left - view_.offsetX) / view_.scaleX);
    instance.y = static_cast<float>((box.top - view_.offsetY) / view_.scaleY);
    instance.ux = static_cast<float>((box.right - box.left) / view_.scaleX);
    instance.vy = static_cast<float>((box.bottom - box.top) / view_.scaleY);
    instance.uy = instance.vx = 0.0f;
    fillInstance_(instance, coordinates, whole);
}

void vtxQuadBatcher::addTurned_(double const (&corner)[2], double const (&edgeU)[2], double const (&edgeV)[2],
                                Coordinates const& coordinates) {
    if (!std::isfinite(corner[0] + corner[1] + edgeU[0] + edgeU[1] + edgeV[0] + edgeV[1])) {
        misuse_.report(vtxMisuse::BadNumber, "quads");
        return;
    }
    constexpr double everywhere = std::numeric_limits<double>::infinity();
    Box box{-everywhere, -everywhere, everywhere, everywhere};
    bool needsScissor = view_.clipped;
    if (view_.aligned) {
        double const x = corner[0] + std::min(edgeU[0], 0.0) + std::min(edgeV[0], 0.0);
        double const y = corner[1] + std::min(edgeU[1], 0.0) + std::min(edgeV[1], 0.0);
        box.left = x * view_.scaleX + view_.offsetX;
        box.top = y * view_.scaleY + view_.offsetY;
        box.right = box.left + (std::abs(edgeU[0]) + std::abs(edgeV[0])) * view_.scaleX;
        box.bottom = box.top + (std::abs(edgeU[1]) + std::abs(edgeV[1])) * view_.scaleY;
        osg::RectImpl<osg::Vec2i> const& visible = view_.visible;
        if (box.left >= visible.x2 || box.top >= visible.y2 || box.right <= visible.x1 || box.bottom <= visible.y1)
            return;
        needsScissor = view_.clipped && !(box.left >= visible.x1 && box.top >= visible.y1 && box.right <= visible.x2 &&
                                          box.bottom <= visible.y2);
    }
    vtxQuadInstance& instance = append_(box, needsScissor);
    instance.x = static_cast<float>(corner[0]);
    instance.y = static_cast<float>(corner[1]);
    instance.ux = static_cast<float>(edgeU[0]);
    instance.uy = static_cast<float>(edgeU[1]);
    instance.vx = static_cast<float>(edgeV[0]);
    instance.vy = static_cast<float>(edgeV[1]);
    fillInstance_(instance, coordinates, coordinates);
}

void vtxQuadBatcher::snap_(Box& box, Coordinates& coordinates) const {
    Box exact = box;
    Coordinates shown = coordinates;
    if (binding_.exact && snapExact(exact.left, exact.right, shown.uMin, shown.uMax, binding_.texelsU) &&
        snapExact(exact.top, exact.bottom, shown.vMin, shown.vMax, binding_.texelsV)) {
        box = exact;
        coordinates = shown;
    } else if (binding_.place != vtxImagePlace::GlyphPage) {
        snapEdges(box.left, box.right);
        snapEdges(box.top, box.bottom);
    }
}

bool vtxQuadBatcher::clip_(Box& box, Coordinates& coordinates) const {
    osg::RectImpl<osg::Vec2i> const& visible = view_.visible;
    return clipAxis(box.left, box.right, coordinates.uMin, coordinates.uMax, visible.x1, visible.x2) &&
           clipAxis(box.top, box.bottom, coordinates.vMin, coordinates.vMax, visible.y1, visible.y2);
}

void vtxQuadBatcher::fillInstance_(vtxQuadInstance& instance, Coordinates const& shown, Coordinates const& whole) {
    instance.r = color_.r();
    instance.g = color_.g();
    instance.b = color_.b();
    instance.a = color_.a();
    instance.layer = 0;
    if (binding_.plain) {
        instance.uMin = instance.vMin = instance.uMax = instance.vMax = 0.0f;
        instance.clampUMin = instance.clampVMin = instance.clampUMax = instance.clampVMax = 0.0f;
        instance.source = vtxQuadSource::Plain;
        return;
    }
    instance.uMin = static_cast<float>(shown.uMin);
    instance.vMin = static_cast<float>(shown.vMin);
    instance.uMax = static_cast<float>(shown.uMax);
    instance.vMax = static_cast<float>(shown.vMax);
    if (binding_.place == vtxImagePlace::Alone && binding_.sampler == 3) {
        constexpr float far = 1e6f;
        instance.clampUMin = instance.clampVMin = -far;
        instance.clampUMax = instance.clampVMax = far;
    } else {
        clampAxis(instance.clampUMin, instance.clampUMax, whole.uMin, whole.uMax, binding_.texelsU);
        clampAxis(instance.clampVMin, instance.clampVMax, whole.vMin, whole.vMax, binding_.texelsV);
    }
    switch (binding_.place) {
        case vtxImagePlace::Alone:
            instance.source = vtxQuadSource::Lone + static_cast<std::uint32_t>(slot_);
            return;
        case vtxImagePlace::PicturePage:
            instance.source = binding_.sampler == 1 ? vtxQuadSource::PictureNearest : vtxQuadSource::PictureLinear;
            markLayer(usedPictureLayers_, binding_.layer);
            break;
        case vtxImagePlace::GlyphPage:
            instance.source = vtxQuadSource::Glyph;
            markLayer(usedGlyphLayers_, binding_.layer);
            break;
    }
    instance.layer = static_cast<std::uint32_t>(binding_.layer);
}

// --- Runs ---

int vtxQuadBatcher::findSlot_() const {
    for (int i = 0; i < run_.loneCount; ++i) {
        if (run_.lone[i].texture == binding_.alone && run_.lone[i].sampler == binding_.sampler)
            return i;
    }
    return run_.loneCount;
}

bool vtxQuadBatcher::fitsRun_(Box const& box, bool needsScissor) const {
    vtxDrawState const& state = run_.state;
    if (needsScissor)
        return state.scissorEnabled && state.scissor == view_.visible;
    return !state.scissorEnabled || (box.left >= state.scissor.x1 && box.top >= state.scissor.y1 &&
                                     box.right <= state.scissor.x2 && box.bottom <= state.scissor.y2);
}

vtxQuadInstance& vtxQuadBatcher::append_(Box const& box, bool needsScissor) {
    bool const alone = !binding_.plain && binding_.place == vtxImagePlace::Alone;
    if (!instances_.empty() && (!fitsRun_(box, needsScissor) || (alone && findSlot_() == vtxQuadSource::LoneCount)))
        flush();
    if (instances_.empty()) {
        run_.state = view_.state;
        run_.state.scissorEnabled = needsScissor;
        if (needsScissor)
            run_.state.scissor = view_.visible;
    }
    if (alone) {
        slot_ = findSlot_();
        if (slot_ == run_.loneCount)
            run_.lone[run_.loneCount++] = vtxQuadRun::LoneTexture{binding_.alone, binding_.sampler};
    }
    return instances_.emplace_back();
}

void vtxQuadBatcher::flush() {
    if (instances_.empty())
        return;
    auto const isUsed = [](std::uint64_t layers) { return layers != 0; };
    bool const pictures = std::any_of(std::begin(usedPictureLayers_), std::end(usedPictureLayers_), isUsed);
    bool const glyphs = std::any_of(std::begin(usedGlyphLayers_), std::end(usedGlyphLayers_), isUsed);
    run_.instances = instances_.data();
    run_.count = instances_.size();
    run_.picturePages = pictures ? store_.getArray(vtxTextureStore::Pages::Picture) : 0;
    run_.glyphPages = glyphs ? store_.getArray(vtxTextureStore::Pages::Glyph) : 0;
    device_.drawQuads(run_);
    ++runs_;
    quads_ += static_cast<unsigned>(instances_.size());
    instances_.clear();
    run_.loneCount = 0;
    std::fill(std::begin(usedPictureLayers_), std::end(usedPictureLayers_), 0);
    std::fill(std::begin(usedGlyphLayers_), std::end(usedGlyphLayers_), 0);
}
