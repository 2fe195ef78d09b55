#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/vtx/vtxQuad.h"

class vtxShader;
class vtxTexture;

/// Batches of quads, each batch with one texture. A copyable value.
/// Coordinates: positions and sizes in GUI units, texture coordinates 0 to 1 of the picture file.
class VORLEX_API vtxShaderQuads {
public:
    using Quad = vtxQuad;
    struct Batch {
        vtxTexture const* texture = nullptr;
        int first = 0;
        int count = 0;
        /// Known once the batch was ended.
        vtxQuadKey key;
        vtxQuadChange change;
    };

    /// Starts a batch and returns its number. `hint` is the expected count of quads, 0 if not known.
    int beginBatch(vtxTexture const* texture, int hint);
    /// `z` is kept for callers; the toolkit passes -1.0.
    void addBatchQuad(float x, float y, float w, float h, float z);
    /// Texture coordinates of the quad added last.
    void addBatchTexCoords(float uMin, float vMin, float uMax, float vMax);
    void endBatch();
    /// Every batch shows this texture from now on.
    void setTexture(vtxTexture const* texture);
    /// Empties all batches and keeps the storage.
    void reset();

    void draw(vtxShader* shader) const;
    void drawBatch(vtxShader* shader, int batch) const;

    qor::vector<Quad> const& getQuads() const { return quads_; }
    qor::vector<Batch> const& getBatches() const { return batches_; }
    /// Certain that they are the same; false where that is not known.
    bool isCopyOf(vtxShaderQuads const& other) const {
        std::size_t const count = batches_.size();
        bool same = count > 0 && count == other.batches_.size();
        for (std::size_t i = 0; same && i < count; ++i) {
            Batch const& mine = batches_[i];
            Batch const& its = other.batches_[i];
            same = mine.key.content && mine.key.content == its.key.content && mine.count == its.count;
        }
        return same;
    }

private:
    friend class vtxQuadsRewriter;
    qor::vector<Quad> quads_;
    std::uint32_t owner_ = 0;
    qor::vector<Batch> batches_;
};

/// Writes quads anew, batch by batch. A batch that comes out as it stood before keeps its key, and one that differs in
/// some quads tells in which.
class vtxQuadsRewriter {
public:
    explicit vtxQuadsRewriter(vtxShaderQuads& target) : target_(target) {}
    /// Drops what was not written again.
    ~vtxQuadsRewriter() { drop_(); }
    vtxQuadsRewriter(vtxQuadsRewriter const&) = delete;
    vtxQuadsRewriter& operator=(vtxQuadsRewriter const&) = delete;

    void addBatch(vtxTexture const* texture, vtxQuad const* quads, int count);
    /// Batches that were written.
    int getCount() const { return static_cast<int>(batches_); }

private:
    void rewrite_(vtxShaderQuads::Batch& batch, vtxQuad const* quads);
    void drop_();

    vtxShaderQuads& target_;
    std::size_t batches_ = 0;
    std::size_t quads_ = 0;
};
