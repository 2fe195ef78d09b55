#pragma once

#include "platform/osg/RectImpl.h"
#include "platform/qor/Containers.h"
#include "platform/vtx/vtxDevice.h"
#include "platform/vtx/vtxMisuse.h"
#include "platform/vtx/vtxQuadView.h"
#include "platform/vtx/vtxTextureStore.h"

#include <osg/Vec4f>

/// Internal: turns quads into instances, clipped and culled on the processor, and sends them to the device in runs that
/// are as long as can be. A run ends when a quad does not fit its state, its lone textures or its scissor, when a
/// picture goes into a page that it shows, or at `flush`.
class vtxQuadBatcher {
public:
    vtxQuadBatcher(vtxDevice& device, vtxTextureStore& store, vtxMisuseLog& misuse);

    /// For the quads that follow.
    void setView(vtxQuadView const& view);
    void setTransform(vtxQuadTransform const& transform) { transform_ = transform; }
    /// Straight colour with the opacity in it.
    void setColor(osg::Vec4f const& color) { color_ = color; }
    /// False if the texture cannot be drawn. Null means colour only.
    bool setTexture(vtxTexture const* texture, int sampler);

    struct Quad {
        double x, y, w, h;              ///< GUI units
        double uMin, vMin, uMax, vMax;  ///< of the picture file
    };
    void addQuad(Quad const& quad);
    /// A line of colour only, `width` wide, GUI units; half the width more at each end that is marked.
    struct Line {
        double x1, y1, x2, y2, width;
        bool capBegin, capEnd;
    };
    void addLine(Line const& line);

    /// Sends what is queued.
    void flush();

    unsigned getRunCount() const { return runs_; }
    unsigned getQuadCount() const { return quads_; }
    unsigned getUploadCount() const { return uploads_; }
    void resetCounts() { runs_ = quads_ = uploads_ = 0; }
    void addUploads(int count) { uploads_ += static_cast<unsigned>(count); }

private:
    /// Where a texture's coordinates lead.
    struct Binding {
        vtxImagePlace place = vtxImagePlace::Alone;
        vtxDeviceHandle alone = 0;
        int sampler = 0;
        int layer = 0;
        double scaleU = 1.0, scaleV = 1.0, offsetU = 0.0, offsetV = 0.0;  ///< from the file's 0 to 1 to the layer's
        double texelsU = 1.0, texelsV = 1.0;                              ///< of the whole layer
        bool exact = false;  ///< glyphs and targets: a texel is to be a pixel where nothing stretches it
        bool plain = true;
    };
    struct Box {
        double left, top, right, bottom;
    };
    struct Coordinates {
        double uMin, vMin, uMax, vMax;
    };

    bool bindAlone_(vtxTextureImage& image, int sampler);
    bool bindPage_(vtxTextureImage const& image, int sampler);
    void addUpright_(Quad const& quad, Coordinates coordinates);
    void addTurned_(double const (&corner)[2], double const (&edgeU)[2], double const (&edgeV)[2],
                    Coordinates const& coordinates);
    Coordinates mapToLayer_(Quad const& quad) const;
    void snap_(Box& box, Coordinates& coordinates) const;
    bool clip_(Box& box, Coordinates& coordinates) const;
    /// Texture, colour and source; `whole` is the rectangle before clipping.
    void fillInstance_(vtxQuadInstance& instance, Coordinates const& shown, Coordinates const& whole);
    /// Makes the open run fit what comes next and gives its instance; `box` in pixels of the target.
    vtxQuadInstance& append_(Box const& box, bool needsScissor);
    bool fitsRun_(Box const& box, bool needsScissor) const;
    int findSlot_() const;

    vtxDevice& device_;
    vtxTextureStore& store_;
    vtxMisuseLog& misuse_;

    vtxQuadView view_;
    vtxQuadTransform transform_;
    osg::Vec4f color_{1.0f, 1.0f, 1.0f, 1.0f};
    Binding binding_;
    vtxTextureImage* image_ = nullptr;

    vtxQuadRun run_;
    int slot_ = 0;
    qor::vector<vtxQuadInstance> instances_;
    std::uint64_t usedPictureLayers_[vtxTextureStore::maxLayers / 64] = {};
    std::uint64_t usedGlyphLayers_[vtxTextureStore::maxLayers / 64] = {};
    unsigned runs_ = 0;
    unsigned quads_ = 0;
    unsigned uploads_ = 0;
};
