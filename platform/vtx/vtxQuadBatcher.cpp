#include "platform/vtx/vtxQuadBatcher.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// How far coordinates may leave 0 to 1 by rounding.
constexpr double coordinateTolerance = 1e-5;

/// Also false where a sum of finite numbers is not.
bool isFinite(double sum) { return sum - sum == 0.0; }

bool isSameState(vtxDrawState const& a, vtxDrawState const& b) {
    return a.projection == b.projection && a.viewport == b.viewport && a.technique == b.technique &&
           a.gamma == b.gamma && a.intensity == b.intensity;
}

}  // namespace

vtxQuadBatcher::vtxQuadBatcher(vtxDevice& device, vtxTextureStore& store, vtxMisuseLog& misuse)
    : device_(device), store_(store), misuse_(misuse) {}

void vtxQuadBatcher::setView(vtxQuadView const& view) {
    if (isRunOpen_() && !isSameState(run_.state, view.state))
        flush();
    view_ = view;
    viewNumber_ = unknownView;
}

void vtxQuadBatcher::setTransform(vtxQuadTransform const& transform) {
    transform_ = transform;
    viewNumber_ = unknownView;
}

std::uint32_t vtxQuadBatcher::findViewNumber_() {
    constexpr std::size_t mostViews = 16;
    viewNumber_ = 0;
    vtxQuadTransform const& t = transform_;
    bool const moves = t.xx == 1.0 && t.yy == 1.0 && t.xy == 0.0 && t.yx == 0.0 && t.shiftX == 0.0 && t.shiftY == 0.0;
    if (!moves || !view_.aligned)
        return 0;
    for (NumberedView const& known : views_) {
        if (known.scale == t.scale && isSameState(known.state, view_.state))
            return viewNumber_ = known.number;
    }
    if (views_.size() == mostViews)
        views_.clear();
    views_.push_back(NumberedView{view_.state, t.scale, ++lastViewNumber_});
    return viewNumber_ = lastViewNumber_;
}

// --- Textures ---

bool vtxQuadBatcher::setTexture_(vtxTexture const* texture, int sampler) {
    image_ = nullptr;
    if (!texture) {
        binding_ = Binding{&noLayers_};
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
    binding_ = Binding{&noLayers_};
    binding_.plain = false;
    binding_.alone = store_.getAlone(image);
    binding_.sampler = sampler;
    binding_.scale = vtxPair{image.usedU, image.usedV};
    binding_.texels = vtxPair{double(std::max(image.size.x(), 1)), double(std::max(image.size.y(), 1))};
    binding_.halfTexel = 0.5 / binding_.texels;
    binding_.exact = image.target;
    binding_.endless = sampler == 3;
    return binding_.alone != 0;
}

bool vtxQuadBatcher::bindPage_(vtxTextureImage const& image, int sampler) {
    bool const glyphs = image.place == vtxImagePlace::GlyphPage;
    auto const pages = glyphs ? vtxTextureStore::Pages::Glyph : vtxTextureStore::Pages::Picture;
    if (store_.hasUploads(pages)) {
        if (isRunOpen_() && store_.isUploadInto(pages, glyphs ? usedGlyphLayers_ : usedPictureLayers_))
            flush();
        uploads_ += static_cast<unsigned>(store_.flushUploads(pages));
    }
    double const side = glyphs ? vtxTextureStore::glyphPageSide : vtxTextureStore::picturePageSide;
    binding_ = Binding{&noLayers_};
    binding_.plain = false;
    binding_.place = image.place;
    binding_.sampler = sampler;
    binding_.layer = image.layer;
    binding_.scale = vtxPair{image.size.x() / side, image.size.y() / side};
    binding_.offset = vtxPair{image.origin.x() / side, image.origin.y() / side};
    binding_.texels = vtxPairs::both(side);
    binding_.halfTexel = 0.5 / binding_.texels;
    binding_.exact = glyphs;
    binding_.page = !glyphs;
    if (glyphs)
        binding_.source = vtxQuadSource::Glyph;
    else
        binding_.source = sampler == 1 ? vtxQuadSource::PictureNearest : vtxQuadSource::PictureLinear;
    binding_.usedLayers = &(glyphs ? usedGlyphLayers_ : usedPictureLayers_)[image.layer / 64];
    binding_.layerBit = std::uint64_t(1) << (image.layer % 64);
    return store_.getArray(pages) != 0;
}

// --- Quads ---

bool vtxQuadBatcher::isOutside_(vtxQuad const& quad) {
    return std::min({quad.uMin, quad.vMin, quad.uMax, quad.vMax}) < -coordinateTolerance ||
           std::max({quad.uMin, quad.vMin, quad.uMax, quad.vMax}) > 1.0 + coordinateTolerance;
}

void vtxQuadBatcher::addQuad_(vtxQuad const& quad) {
    vtxFloats const place = vtxPairs::load(&quad.x);
    vtxFloats const picture = vtxPairs::load(&quad.uMin);
    vtxFloats const nothing = (place - place) + (picture - picture);
    vtxPair const zero = vtxPairs::first(nothing) + vtxPairs::last(nothing);
    if (!vtxPairs::all(zero == vtxPairs::both(0.0))) {
        reportBadNumber_();
        return;
    }
    if (!binding_.page || !isOutside_(quad)) {
        addAny_(quad);
        return;
    }
    odd_ = true;
    Binding const page = binding_;
    if (bindAlone_(*image_, page.sampler)) {
        makeSpace_();
        addAny_(quad);
    }
    binding_ = page;
    movable_ = false;
    makeSpace_();
}

void vtxQuadBatcher::reportBadNumber_() {
    odd_ = true;
    misuse_.report(vtxMisuse::BadNumber, "quads");
}

void vtxQuadBatcher::addAny_(vtxQuad const& quad) {
    vtxFloats const place = vtxPairs::load(&quad.x);
    vtxFloats const picture = vtxPairs::load(&quad.uMin);
    vtxPair const position = vtxPairs::first(place);
    vtxPair const size = vtxPairs::last(place);
    Coordinates const coordinates{vtxPairs::first(picture), vtxPairs::last(picture)};
    if (view_.aligned && transform_.upright)
        addUpright_(position, size, coordinates);
    else
        addStretched_(position, size, coordinates);
}

void vtxQuadBatcher::addStretched_(vtxPair position, vtxPair size, Coordinates const& coordinates) {
    vtxQuadTransform const& t = transform_;
    double const x = position[0] * t.scale + t.shiftX;
    double const y = position[1] * t.scale + t.shiftY;
    double const w = size[0] * t.scale;
    double const h = size[1] * t.scale;
    double const corner[2] = {x * t.xx + y * t.yx + t.x, x * t.xy + y * t.yy + t.y};
    double const edgeU[2] = {w * t.xx, w * t.xy};
    double const edgeV[2] = {h * t.yx, h * t.yy};
    addTurned_(corner, edgeU, edgeV,
               Coordinates{coordinates.from * binding_.scale + binding_.offset,
                           coordinates.to * binding_.scale + binding_.offset});
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
    if (blocks_.getLeft() && blocks_.getNext()->owner == 0)
        dropBlocks_(1);
    if (!(color_.a() > 0.0f) || view_.visible.isEmpty())
        return;
    if (!isFinite(x + y + whole + line.width)) {
        reportBadNumber_();
        return;
    }
    binding_ = Binding{&noLayers_};
    std::size_t const first = instances_.size();
    Coordinates const none{{0.0, 0.0}, {0.0, 0.0}};
    if (nx == 0.0 || ny == 0.0) {
        double const x2 = x + nx * whole - ny * line.width;
        double const y2 = y + ny * whole + nx * line.width;
        vtxPair const position{std::min(x, x2), std::min(y, y2)};
        vtxPair const size{std::abs(x2 - x), std::abs(y2 - y)};
        makeSpace_();
        if (view_.aligned && transform_.upright)
            addUpright_(position, size, none);
        else
            addStretched_(position, size, none);
        noteLine_(first);
        return;
    }
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
    addTurned_(corner, edgeU, edgeV, none);
    noteLine_(first);
}

void vtxQuadBatcher::makeSpace_() {
    vtxQuadTransform const& t = transform_;
    space_.scale = vtxPairs::both(t.scale);
    space_.shift = vtxPair{t.shiftX, t.shiftY};
    space_.stretch = vtxPair{t.xx, t.yy};
    space_.place = vtxPair{t.x, t.y};
    space_.viewScale = vtxPair{view_.scaleX, view_.scaleY};
    space_.viewOffset = vtxPair{view_.offsetX, view_.offsetY};
    space_.visibleFrom = vtxPair{double(view_.visible.x1), double(view_.visible.y1)};
    space_.visibleTo = vtxPair{double(view_.visible.x2), double(view_.visible.y2)};
    space_.coordinateScale = binding_.scale;
    space_.coordinateOffset = binding_.offset;
    space_.texels = binding_.texels;
    space_.snapped = t.translation;
    space_.exact = binding_.exact;
    space_.glyphs = binding_.place == vtxImagePlace::GlyphPage;
}

void vtxQuadBatcher::addUpright_(vtxPair position, vtxPair size, Coordinates const& coordinates) {
    vtxUprightQuad quad;
    auto const result = quad.make(space_, position, size, coordinates.from, coordinates.to);
    if (result != vtxUprightQuad::Seen) {
        if (result == vtxUprightQuad::NotFinite)
            reportBadNumber_();
        return;
    }
    movable_ = quad.movable;
    vtxQuadInstance& instance = append_(Box{quad.from[0], quad.from[1], quad.to[0], quad.to[1]}, false);
    setUpright_(instance, quad);
}

void vtxQuadBatcher::setUpright_(vtxQuadInstance& instance, vtxUprightQuad const& quad) {
    vtxPair const corner = (quad.from - space_.viewOffset) / space_.viewScale;
    vtxPair const edges = (quad.to - quad.from) / space_.viewScale;
    vtxPairs::store(&instance.x, vtxPairs::join(corner, vtxPair{edges[0], 0.0}));
    instance.vx = 0.0f;
    instance.vy = static_cast<float>(edges[1]);
    fillInstance_(instance, Coordinates{quad.coordinateFrom, quad.coordinateTo},
                  Coordinates{quad.wholeCoordinateFrom, quad.wholeCoordinateTo});
}

double vtxQuadBatcher::snapTurned_(double place) const {
    // Steps that rasterizers know as well, and numbers that floats hold without rounding: what lies elsewhere by whole
    // pixels covers the same pixels. A target of its own moves what is drawn in it.
    constexpr double step = 1.0 / 256.0;
    constexpr double farthest = 1 << 15;
    // A projection of a program's own may have units of many pixels.
    auto const isPixel = [](double scale) { return std::abs(scale - 1.0) < 1e-3; };
    bool const inPixels = view_.aligned && isPixel(view_.scaleX) && isPixel(view_.scaleY);
    return inPixels && std::abs(place) < farthest ? std::floor(place / step + 0.5) * step : place;
}

void vtxQuadBatcher::addTurned_(double const (&corner)[2], double const (&edgeU)[2], double const (&edgeV)[2],
                                Coordinates const& coordinates) {
    if (!std::isfinite(corner[0] + corner[1] + edgeU[0] + edgeU[1] + edgeV[0] + edgeV[1])) {
        reportBadNumber_();
        return;
    }
    constexpr double everywhere = std::numeric_limits<double>::infinity();
    Box box{-everywhere, -everywhere, everywhere, everywhere};
    bool needsScissor = view_.isClipped();
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
        needsScissor = view_.isClipped() && !(box.left >= visible.x1 && box.top >= visible.y1 &&
                                              box.right <= visible.x2 && box.bottom <= visible.y2);
    }
    vtxQuadInstance& instance = append_(box, needsScissor);
    auto const setAxis = [this](double from, double u, double v, float& start, float& alongU, float& alongV) {
        double const first = snapTurned_(from);
        start = static_cast<float>(first);
        alongU = static_cast<float>(snapTurned_(from + u) - first);
        alongV = static_cast<float>(snapTurned_(from + v) - first);
    };
    setAxis(corner[0], edgeU[0], edgeV[0], instance.x, instance.ux, instance.vx);
    setAxis(corner[1], edgeU[1], edgeV[1], instance.y, instance.uy, instance.vy);
    fillInstance_(instance, coordinates, coordinates);
}

void vtxQuadBatcher::fillInstance_(vtxQuadInstance& instance, Coordinates const& shown, Coordinates const& whole) {
    vtxPairs::store(&instance.r, vtxPairs::load(color_.ptr()));
    instance.source = binding_.source;
    instance.layer = static_cast<std::uint32_t>(binding_.layer);
    *binding_.usedLayers |= binding_.layerBit;
    if (binding_.plain) {
        vtxPairs::store(&instance.uMin, vtxFloats{});
        vtxPairs::store(&instance.clampUMin, vtxFloats{});
        return;
    }
    vtxPairs::store(&instance.uMin, vtxPairs::join(shown.from, shown.to));
    if (binding_.endless) {
        constexpr float far = 1e6f;
        vtxPairs::store(&instance.clampUMin, vtxFloats{-far, -far, far, far});
        return;
    }
    vtxPair const least = vtxPairs::min(whole.from, whole.to) + binding_.halfTexel;
    vtxPair const most = vtxPairs::max(whole.from, whole.to) - binding_.halfTexel;
    // A texel wide or less: its middle.
    vtxPair const middle = 0.5 * (whole.from + whole.to);
    vtxPairs::store(&instance.clampUMin, vtxPairs::join(most < least ? middle : least, most < least ? middle : most));
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

void vtxQuadBatcher::openRun_(bool scissor) {
    run_.state = view_.state;
    run_.state.scissorEnabled = scissor;
    if (scissor)
        run_.state.scissor = view_.visible;
}

vtxQuadInstance& vtxQuadBatcher::append_(Box const& box, bool needsScissor) {
    if (binding_.alone || needsScissor || run_.state.scissorEnabled) {
        if (isRunOpen_() &&
            (!fitsRun_(box, needsScissor) || (binding_.alone && findSlot_() == vtxQuadSource::LoneCount)))
            flush();
        if (!isRunOpen_())
            openRun_(needsScissor);
        if (binding_.alone)
            bindSlot_();
    } else if (!isRunOpen_()) {
        openRun_(false);
    }
    ++made_;
    return instances_.append();
}

void vtxQuadBatcher::bindSlot_() {
    int const slot = findSlot_();
    if (slot == run_.loneCount)
        run_.lone[run_.loneCount++] = vtxQuadRun::LoneTexture{binding_.alone, binding_.sampler};
    binding_.source = vtxQuadSource::Lone + static_cast<std::uint32_t>(slot);
}

void vtxQuadBatcher::flush() {
    if (!isRunOpen_())
        return;
    auto const isUsed = [](std::uint64_t layers) { return layers != 0; };
    bool const pictures = std::any_of(std::begin(usedPictureLayers_), std::end(usedPictureLayers_), isUsed);
    bool const glyphs = std::any_of(std::begin(usedGlyphLayers_), std::end(usedGlyphLayers_), isUsed);
    run_.instances = instances_.data() + runStart_;
    run_.count = instances_.size() - runStart_;
    run_.picturePages = pictures ? store_.getArray(vtxTextureStore::Pages::Picture) : 0;
    run_.glyphPages = glyphs ? store_.getArray(vtxTextureStore::Pages::Glyph) : 0;
    device_.drawQuads(run_);
    ++runs_;
    quads_ += static_cast<unsigned>(run_.count);
    runStart_ = instances_.size();
    run_.state.scissorEnabled = false;
    run_.loneCount = 0;
    std::fill(std::begin(usedPictureLayers_), std::end(usedPictureLayers_), 0);
    std::fill(std::begin(usedGlyphLayers_), std::end(usedGlyphLayers_), 0);
    std::fill(std::begin(lastUsedLayers_), std::end(lastUsedLayers_), -1);
}
