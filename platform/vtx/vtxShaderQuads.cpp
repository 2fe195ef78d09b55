#include "platform/vtx/vtxShaderQuads.h"

#include "platform/vtx/vtxPair.h"
#include "platform/vtx/vtxShader.h"

#include <algorithm>

int vtxShaderQuads::beginBatch(vtxTexture const* texture, int hint) {
    // A wild guess must not end the program for want of memory.
    constexpr int mostReserved = 1 << 16;
    if (hint > 0)
        quads_.reserve(quads_.size() + static_cast<std::size_t>(std::min(hint, mostReserved)));
    batches_.push_back(Batch{texture, static_cast<int>(quads_.size()), 0, vtxQuadKey{0, owner_}, {}});
    return static_cast<int>(batches_.size()) - 1;
}

void vtxShaderQuads::addBatchQuad(float x, float y, float w, float h, float) {
    if (batches_.empty())
        beginBatch(nullptr, 0);
    quads_.push_back(Quad{x, y, w, h, 0.0f, 0.0f, 0.0f, 0.0f});
    ++batches_.back().count;
    batches_.back().key.content = 0;
}

void vtxShaderQuads::addBatchTexCoords(float uMin, float vMin, float uMax, float vMax) {
    if (quads_.empty())
        return;
    batches_.back().key.content = 0;
    Quad& quad = quads_.back();
    quad.uMin = uMin;
    quad.vMin = vMin;
    quad.uMax = uMax;
    quad.vMax = vMax;
}

void vtxShaderQuads::endBatch() {
    if (batches_.empty())
        return;
    // What was written since is not told by the change before.
    batches_.back().change = {};
    batches_.back().key.renew();
    owner_ = batches_.back().key.owner;
}

void vtxShaderQuads::setTexture(vtxTexture const* texture) {
    for (Batch& batch : batches_) {
        batch.texture = texture;
        batch.change = {};
        if (batch.key.content)
            batch.key.renew();
    }
}

void vtxShaderQuads::reset() {
    quads_.clear();
    batches_.clear();
}

void vtxShaderQuads::draw(vtxShader* shader) const {
    if (shader)
        shader->drawQuads(*this, -1);
}

void vtxShaderQuads::drawBatch(vtxShader* shader, int batch) const {
    if (shader && batch >= 0)
        shader->drawQuads(*this, batch);
}

// --- Writing anew ---

void vtxQuadsRewriter::addBatch(vtxTexture const* texture, vtxQuad const* quads, int count) {
    qor::vector<vtxShaderQuads::Batch>& batches = target_.batches_;
    bool const known = batches_ < batches.size() && batches[batches_].texture == texture &&
                       batches[batches_].count == count && batches[batches_].key.content;
    if (known) {
        rewrite_(batches[batches_], quads);
    } else {
        drop_();
        target_.beginBatch(texture, 0);
        target_.quads_.insert(target_.quads_.end(), quads, quads + count);
        batches.back().count = count;
        target_.endBatch();
    }
    ++batches_;
    quads_ += static_cast<std::size_t>(count);
}

void vtxQuadsRewriter::rewrite_(vtxShaderQuads::Batch& batch, vtxQuad const* quads) {
    vtxQuad* const old = target_.quads_.data() + quads_;
    vtxQuadChange change{batch.count <= vtxQuadChange::mostQuads ? batch.key.content : 0, 0, 0};
    for (int i = 0; i < batch.count; ++i) {
        vtxQuad const& quad = quads[i];
        bool const samePicture = vtxPairs::isSame(vtxPairs::load(&old[i].uMin), vtxPairs::load(&quad.uMin));
        if (samePicture && vtxPairs::isSame(vtxPairs::load(&old[i].x), vtxPairs::load(&quad.x)))
            continue;
        std::uint64_t const bit = std::uint64_t(1) << i % vtxQuadChange::mostQuads;
        change.quads |= bit;
        if (samePicture && old[i].w == quad.w && old[i].h == quad.h)
            change.moved |= bit;
        old[i] = quad;
    }
    if (!change.quads)
        return;
    batch.change = change;
    batch.key.renew();
}

void vtxQuadsRewriter::drop_() {
    target_.batches_.resize(batches_);
    target_.quads_.resize(quads_);
}
