// The blocks of vtxQuadBatcher: those of the frame before that come again, and those that are made.

#include "platform/vtx/vtxQuadBatcher.h"

#include <algorithm>
#include <bit>

namespace {

bool isSame(vtxQuadBatcher::Shape const& a, vtxQuadBatcher::Shape const& b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

void markLayer(std::uint64_t (&layers)[vtxTextureStore::maxLayers / 64], int layer) {
    auto const bit = static_cast<unsigned>(layer);
    layers[bit / 64] |= std::uint64_t(1) << (bit % 64);
}

}  // namespace

// --- Blocks that come again ---

inline bool vtxQuadBatcher::hasSameColors_(Block const& block, Kept const& kept) {
    if (block.shape.colorEach)
        return hasSameColorEach_(block, kept);
    vtxFloats const color = vtxPairs::load(block.colors[0].ptr()) * vtxFloats{1.0f, 1.0f, 1.0f, block.opacity};
    return vtxPairs::isSame(vtxPairs::load(&instances_.getNext()->r), color);
}

[[gnu::always_inline]] inline bool vtxQuadBatcher::updateBlock_(Block const& block, Kept& kept) {
    if (!isKnown_(block, kept))
        return false;
    bool const inPlace =
        kept.x == transform_.x && kept.y == transform_.y && vtxPairs::isSameBits(kept.visible, view_.visible);
    if (kept.content != block.key.content && !patchBlock_(block, kept)) [[unlikely]]
        return false;
    return (inPlace || moveBlock_(block, kept)) && (hasSameColors_(block, kept) || colorBlock_(block, kept));
}

inline bool vtxQuadBatcher::isKnown_(Block const& block, Kept const& kept) {
    bool const related = kept.content == block.key.content || (block.change && block.change->from == kept.content);
    if (!block.key.content || !kept.content || !related || !isSame(kept.shape, block.shape) ||
        (kept.view != viewNumber_ && kept.view != getViewNumber_()) || kept.pageChanges != store_.getPageChanges() ||
        run_.state.scissorEnabled)
        return false;
    bool const glyphs = kept.page == vtxImagePlace::GlyphPage;
    return kept.page == vtxImagePlace::Alone ||
           !store_.hasUploads(glyphs ? vtxTextureStore::Pages::Glyph : vtxTextureStore::Pages::Picture);
}

inline void vtxQuadBatcher::keepBlock_(Kept const& kept) {
    if (lastUsedLayers_[static_cast<std::size_t>(kept.page)] != kept.layer)
        useLayer_(kept.page, kept.layer);
    instances_.keep(kept.instances);
    blocks_.keep(1);
}

void vtxQuadBatcher::addBlock(Block const& block) {
    Kept* kept = getNext_(block.key.owner);
    if (!kept) [[unlikely]] {
        skipToOwner_(block.key.owner);
        kept = getNext_(block.key.owner);
    }
    if (kept) {
        searched_ = false;
        if (updateBlock_(block, *kept)) {
            keepBlock_(*kept);
            return;
        }
        dropBlocks_(1);
    }
    if (setTexture_(block.texture, block.shape.sampler) && !view_.visible.isEmpty())
        makeBlock_(block);
}

void vtxQuadBatcher::skipToOwner_(std::uint32_t owner) {
    // Those before it were not drawn this time. New ones cannot be found; others that are not found come from afar,
    // and with them those that follow.
    constexpr std::size_t farthest = 256;
    std::size_t const left = blocks_.getLeft();
    if (!left)
        searched_ = false;
    if (!left || searched_ || !owner || owner > lastFrameOwner_)
        return;
    Kept const* const next = blocks_.getNext();
    std::size_t const most = std::min(left, farthest);
    for (std::size_t i = 1; i < most; ++i) {
        if (next[i].owner == owner) {
            dropBlocks_(i);
            return;
        }
    }
    searched_ = true;
}

void vtxQuadBatcher::dropBlocks_(std::size_t count) {
    std::size_t instances = 0;
    for (std::size_t i = 0; i < count; ++i)
        instances += blocks_.getNext()[i].instances;
    instances_.drop(instances);
    blocks_.drop(count);
}

void vtxQuadBatcher::useLayer_(vtxImagePlace page, std::int16_t layer) {
    if (!isRunOpen_())
        openRun_(false);
    lastUsedLayers_[static_cast<std::size_t>(page)] = layer;
    if (page != vtxImagePlace::Alone)
        markLayer(page == vtxImagePlace::GlyphPage ? usedGlyphLayers_ : usedPictureLayers_, layer);
}

inline bool vtxQuadBatcher::moveQuad_(vtxQuad const& quad, vtxQuadInstance& instance) const {
    vtxFloats const place = vtxPairs::load(&quad.x);
    vtxUprightQuad moved;
    if (!moved.move(space_, vtxPairs::first(place), vtxPairs::last(place), getLength_(instance)))
        return false;
    setCorner_(instance, moved);
    return true;
}

bool vtxQuadBatcher::moveBlock_(Block const& block, Kept& kept) {
    if (!kept.movable)
        return false;
    makeSpace_();
    space_.exact = kept.page == vtxImagePlace::GlyphPage;
    vtxQuadInstance* const instances = instances_.getNext();
    for (int i = 0; i < block.shape.count; ++i) {
        if (!moveQuad_(block.quads[i], instances[i]))
            return false;
    }
    kept.x = transform_.x;
    kept.y = transform_.y;
    kept.visible = view_.visible;
    return true;
}

void vtxQuadBatcher::setCorner_(vtxQuadInstance& instance, vtxUprightQuad const& quad) const {
    vtxPair const corner = (quad.from - space_.viewOffset) / space_.viewScale;
    instance.x = static_cast<float>(corner[0]);
    instance.y = static_cast<float>(corner[1]);
}

bool vtxQuadBatcher::hasSameColorEach_(Block const& block, Kept const& kept) {
    vtxFloats const opacity{1.0f, 1.0f, 1.0f, block.opacity};
    vtxQuadInstance const* instance = instances_.getNext();
    vtxQuadInstance const* const end = instance + kept.instances;
    for (int i = 0; i < block.shape.count; ++i) {
        vtxFloats const color = vtxPairs::load(block.colors[i].ptr()) * opacity;
        if (!(color[3] > 0.0f))
            continue;
        bool const seen = (kept.seen >> i) & 1;
        if (!seen || instance == end || !vtxPairs::isSame(vtxPairs::load(&instance->r), color))
            return false;
        ++instance;
    }
    return instance == end;
}

bool vtxQuadBatcher::colorBlock_(Block const& block, Kept const& kept) {
    if (block.shape.colorEach && kept.instances != static_cast<std::uint32_t>(block.shape.count))
        return false;
    vtxQuadInstance* instance = instances_.getNext();
    for (std::uint32_t i = 0; i < kept.instances; ++i, ++instance) {
        osg::Vec4f const& color = block.getColor(static_cast<int>(i));
        float const opacity = color.a() * block.opacity;
        if (!(opacity > 0.0f))
            return false;
        vtxPairs::store(&instance->r, vtxFloats{color.r(), color.g(), color.b(), opacity});
    }
    return true;
}

void vtxQuadBatcher::noteBlock_(Block const& block, std::size_t first, std::uint16_t seen, bool movable) {
    std::size_t const instances = instances_.size() - first;
    // Lone textures have their slots by run, and the colours of instances are compared one by one.
    bool const paged = binding_.plain || binding_.place != vtxImagePlace::Alone;
    bool const comparable = !block.shape.colorEach || instances == static_cast<std::size_t>(std::popcount(seen));
    std::uint32_t const view = paged && comparable && !odd_ ? getViewNumber_() : 0;
    newestOwner_ = std::max(newestOwner_, block.key.owner);
    Kept& kept = blocks_.append();
    kept.content = view ? block.key.content : 0;
    kept.shape = block.shape;
    kept.owner = block.key.owner;
    kept.view = view;
    kept.x = transform_.x;
    kept.y = transform_.y;
    kept.visible = view_.visible;
    kept.pageChanges = store_.getPageChanges();
    kept.instances = static_cast<std::uint32_t>(instances);
    kept.layer = static_cast<std::int16_t>(binding_.layer);
    kept.page = binding_.place;
    kept.seen = seen;
    kept.movable = instances == static_cast<std::size_t>(block.shape.count) && movable;
}

void vtxQuadBatcher::noteLine_(std::size_t first) {
    if (instances_.size() == first)
        return;
    Kept& kept = blocks_.append();
    kept = Kept();
    kept.instances = static_cast<std::uint32_t>(instances_.size() - first);
}

// --- Making them ---

[[gnu::always_inline]] inline bool vtxQuadBatcher::repeatQuad_(vtxQuadRepeats::Space const& space,
                                                               vtxQuad const& quad) {
    Repeat repeat;
    if (!findRepeat_(space, quad, repeat))
        return false;
    if (!isRunOpen_())
        openRun_(false);
    setRepeat_(instances_.append(), repeat);
    return true;
}

[[gnu::always_inline]] inline bool vtxQuadBatcher::findRepeat_(vtxQuadRepeats::Space const& space, vtxQuad const& quad,
                                                               Repeat& repeat) const {
    repeat.made = space.view ? repeats_.find(space, quad) : nullptr;
    vtxFloats const place = vtxPairs::load(&quad.x);
    return repeat.made && repeat.quad.move(space_, vtxPairs::first(place), vtxPairs::last(place), repeat.made->length);
}

[[gnu::always_inline]] inline void vtxQuadBatcher::setRepeat_(vtxQuadInstance& instance, Repeat const& repeat) {
    ++made_;
    instance = repeat.made->instance;
    setCorner_(instance, repeat.quad);
    vtxPairs::store(&instance.r, vtxPairs::load(color_.ptr()));
    instance.source = binding_.source;
    instance.layer = static_cast<std::uint32_t>(binding_.layer);
    *binding_.usedLayers |= binding_.layerBit;
}

void vtxQuadBatcher::makeBlock_(Block const& block) {
    makeSpace_();
    vtxQuadRepeats::Space const space = getRepeatSpace_();
    std::size_t const first = instances_.size();
    std::uint16_t seen = 0;
    bool movable = true;
    odd_ = false;
    if (!block.shape.colorEach && !setBlockColor_(block, 0))
        return;
    for (int i = 0; i < block.shape.count; ++i) {
        if (block.shape.colorEach) {
            if (!setBlockColor_(block, i))
                continue;
            seen = static_cast<std::uint16_t>(seen | 1u << i);
        }
        vtxQuad const& quad = block.quads[i];
        if (repeatQuad_(space, quad))
            continue;
        std::size_t const before = instances_.size();
        movable_ = false;
        addQuad_(quad);
        movable = movable && movable_;
        if (space.view && movable_ && instances_.size() != before)
            repeats_.remember(space, quad, instances_.data()[before], getLength_(instances_.data()[before]));
    }
    if (instances_.size() != first)
        noteBlock_(block, first, seen, movable);
}

bool vtxQuadBatcher::patchBlock_(Block const& block, Kept& kept) {
    std::uint64_t const made = block.change->quads & ~block.change->moved;
    if (!kept.movable || (made && !setTexture_(block.texture, block.shape.sampler)))
        return false;
    makeSpace_();
    space_.exact = kept.page == vtxImagePlace::GlyphPage;
    vtxQuadInstance* const instances = instances_.getNext();
    for (std::uint64_t left = block.change->moved; left; left &= left - 1) {
        int const i = std::countr_zero(left);
        if (!moveQuad_(block.quads[i], instances[i]))
            return false;
    }
    vtxQuadRepeats::Space const space = getRepeatSpace_();
    for (std::uint64_t left = made; left; left &= left - 1) {
        int const i = std::countr_zero(left);
        // Colours are compared later, by the first of them if there is but one.
        color_.set(instances[i].r, instances[i].g, instances[i].b, instances[i].a);
        Repeat repeat;
        if (findRepeat_(space, block.quads[i], repeat))
            setRepeat_(instances[i], repeat);
        else if (!makeAgain_(space, block.quads[i], instances[i]))
            return false;
    }
    kept.content = block.key.content;
    return true;
}

bool vtxQuadBatcher::makeAgain_(vtxQuadRepeats::Space const& space, vtxQuad const& quad, vtxQuadInstance& instance) {
    if (binding_.page && isOutside_(quad))
        return false;
    vtxFloats const place = vtxPairs::load(&quad.x);
    vtxFloats const picture = vtxPairs::load(&quad.uMin);
    vtxUprightQuad made;
    auto const result = made.make(space_, vtxPairs::first(place), vtxPairs::last(place), vtxPairs::first(picture),
                                  vtxPairs::last(picture));
    if (result != vtxUprightQuad::Seen || !made.movable)
        return false;
    ++made_;
    setUpright_(instance, made);
    if (space.view)
        repeats_.remember(space, quad, instance, getLength_(instance));
    return true;
}

bool vtxQuadBatcher::setBlockColor_(Block const& block, int quad) {
    osg::Vec4f const& color = block.colors[quad];
    color_.set(color.r(), color.g(), color.b(), color.a() * block.opacity);
    return color_.a() > 0.0f;
}

vtxQuadRepeats::Space vtxQuadBatcher::getRepeatSpace_() {
    // Lone textures have their slots by run.
    bool const repeats = space_.snapped && !binding_.alone && !run_.state.scissorEnabled;
    return {image_, repeats ? getViewNumber_() : 0, store_.getPageChanges()};
}

// --- Frames ---

void vtxQuadBatcher::beginFrame() {
    mostPasses_ = std::max(mostPasses_, framePasses_);
    framePasses_ = 0;
    startOver_();
}

void vtxQuadBatcher::beginPass() {
    // Where nobody begins frames, passes that are more than frames had until now, or that together hold far more, are
    // taken for others.
    constexpr std::size_t least = 1 << 16;
    ++framePasses_;
    if (passes_ == mostPasses_ || instances_.size() > std::max(2 * lastFrameSize_, least))
        startOver_();
    ++passes_;
}

void vtxQuadBatcher::startOver_() {
    passes_ = 0;
    lastFrameSize_ = instances_.size();
    instances_.restart();
    blocks_.restart();
    runStart_ = 0;
    searched_ = false;
    lastFrameOwner_ = newestOwner_;
}
