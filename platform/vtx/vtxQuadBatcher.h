#pragma once

#include "platform/osg/RectImpl.h"
#include "platform/qor/Containers.h"
#include "platform/vtx/vtxDevice.h"
#include "platform/vtx/vtxGapBuffer.h"
#include "platform/vtx/vtxMisuse.h"
#include "platform/vtx/vtxQuad.h"
#include "platform/vtx/vtxQuadRepeats.h"
#include "platform/vtx/vtxQuadView.h"
#include "platform/vtx/vtxTextureStore.h"
#include "platform/vtx/vtxUprightQuad.h"

#include <osg/Vec4f>

/// Internal: turns quads into instances, clipped and culled on the processor, and sends them to the device in runs that
/// are as long as can be. A run ends when a quad does not fit its state, its lone textures or its scissor, when a
/// picture goes into a page that it shows, or at `flush`.
/// The instances of a frame stay where they are, and so does what is known of each block of quads: what content it was,
/// where and through what clip it was drawn. A block that comes again in its turn and has not changed costs a
/// comparison, one that moved by whole pixels or has other colours some more; all others are made anew.
class vtxQuadBatcher {
public:
    vtxQuadBatcher(vtxDevice& device, vtxTextureStore& store, vtxMisuseLog& misuse);

    /// For the quads that follow.
    void setView(vtxQuadView const& view);
    /// The view as it is, through another clip; null: none.
    void setClip(osg::RectImpl<osg::Vec2i> const* clip) { view_.setClip(clip); }
    vtxQuadView const& getView() const { return view_; }
    void setTransform(vtxQuadTransform const& transform);
    vtxQuadTransform const& getTransform() const { return transform_; }
    /// The transform as it is, to another place.
    void setTranslation(double x, double y) {
        transform_.x = x;
        transform_.y = y;
    }
    /// Of lines: straight, with the opacity in it.
    void setColor(osg::Vec4f const& color) { color_ = color; }

    struct Shape {
        std::int32_t count;
        std::int16_t sampler;
        std::int16_t colorEach;  ///< 1 for a colour each, of 16 quads at most, 0 for the same for all
    };
    struct Block {
        vtxQuadKey key;
        vtxQuad const* quads;
        Shape shape;
        /// Null means colour only.
        vtxTexture const* texture;
        /// Straight, without the opacity.
        osg::Vec4f const* colors;
        float opacity;
        /// How the content came from the one before; may be null.
        vtxQuadChange const* change = nullptr;

        osg::Vec4f const& getColor(int quad) const { return colors[shape.colorEach ? quad : 0]; }
    };
    void addBlock(Block const& block);
    /// A line of colour only, `width` wide, GUI units; half the width more at each end that is marked.
    struct Line {
        double x1, y1, x2, y2, width;
        bool capBegin, capEnd;
    };
    void addLine(Line const& line);

    /// Sends what is queued.
    void flush();
    /// What comes is compared with what was drawn since the last call. Between frames, with nothing queued.
    void beginFrame();
    /// A pass was opened.
    void beginPass();

    unsigned getRunCount() const { return runs_; }
    unsigned getQuadCount() const { return quads_; }
    unsigned getMadeCount() const { return made_; }
    unsigned getUploadCount() const { return uploads_; }
    void resetCounts() { runs_ = quads_ = made_ = uploads_ = 0; }
    void addUploads(int count) { uploads_ += static_cast<unsigned>(count); }

private:
    /// What is known of a block that was turned into instances.
    struct Kept {
        std::uint64_t content;
        Shape shape;
        std::uint32_t owner;
        std::uint32_t view;  ///< number of the view; 0 for a block that cannot be kept
        double x, y;
        osg::RectImpl<osg::Vec2i> visible;
        std::uint32_t pageChanges;
        std::uint32_t instances;
        std::int16_t layer;
        vtxImagePlace page;  ///< Alone for colour only
        std::uint16_t seen;  ///< where each has its colour: bits of the quads that are not transparent
        bool movable;        ///< all of its quads are there and movable
    };
    /// What instances depend on besides content, place and clip. Only translations have a number.
    struct NumberedView {
        vtxDrawState state;
        double scale;
        std::uint32_t number;
    };
    /// Where a texture's coordinates lead.
    struct Binding {
        std::uint64_t* usedLayers;  ///< marks for the open run
        std::uint64_t layerBit = 0;
        std::uint32_t source = vtxQuadSource::Plain;
        vtxImagePlace place = vtxImagePlace::Alone;
        vtxDeviceHandle alone = 0;
        int sampler = 0;
        int layer = 0;
        vtxPair scale = {1.0, 1.0}, offset = {0.0, 0.0};  ///< from the file's 0 to 1 to the layer's
        vtxPair texels = {1.0, 1.0};                      ///< of the whole layer
        vtxPair halfTexel = {0.5, 0.5};
        bool exact = false;  ///< glyphs and targets: a texel is to be a pixel where nothing stretches it
        bool plain = true;
        bool page = false;     ///< of pictures
        bool endless = false;  ///< samples may lie anywhere
    };
    struct Box {
        double left, top, right, bottom;
    };
    struct Coordinates {
        vtxPair from, to;
    };

    // --- Blocks of the frame before ---
    /// The next block of the frame before if it is of this owner, else null.
    Kept* getNext_(std::uint32_t owner) {
        return blocks_.getLeft() && blocks_.getNext()->owner == owner ? blocks_.getNext() : nullptr;
    }
    /// Drops blocks of the frame before until one of this owner comes, if one does soon.
    void skipToOwner_(std::uint32_t owner);
    void dropBlocks_(std::size_t count);
    void startOver_();
    /// Whether the next block is this one, as it stands or after it was moved or got other colours.
    bool updateBlock_(Block const& block, Kept& kept);
    bool isKnown_(Block const& block, Kept const& kept);
    /// Writes the next block again.
    void keepBlock_(Kept const& kept);
    /// Makes those quads of the next block anew in which this one differs; false if it must be made as a whole.
    bool patchBlock_(Block const& block, Kept& kept);
    /// Takes the next block to the place in force; false if it looks another there.
    bool moveBlock_(Block const& block, Kept& kept);
    /// The same for the instance of a quad.
    bool moveQuad_(vtxQuad const& quad, vtxQuadInstance& instance) const;
    bool hasSameColors_(Block const& block, Kept const& kept);
    bool hasSameColorEach_(Block const& block, Kept const& kept);
    /// Gives the next block other colours; false if quads were left out, or would be, as transparent.
    bool colorBlock_(Block const& block, Kept const& kept);
    /// `seen` as in Kept.
    void noteBlock_(Block const& block, std::size_t first, std::uint16_t seen, bool movable);
    /// Every instance belongs to a block; that of a line is nobody's and is made anew each time.
    void noteLine_(std::size_t first);
    /// The number under which the view in force is known, 0 if blocks cannot be kept in it.
    std::uint32_t getViewNumber_() { return viewNumber_ != unknownView ? viewNumber_ : findViewNumber_(); }
    std::uint32_t findViewNumber_();

    /// False if the texture cannot be drawn.
    bool setTexture_(vtxTexture const* texture, int sampler);
    bool bindAlone_(vtxTextureImage& image, int sampler);
    bool bindPage_(vtxTextureImage const& image, int sampler);
    void makeBlock_(Block const& block);
    /// False if the next quads are transparent.
    bool setBlockColor_(Block const& block, int quad);
    /// Where quads of the block may differ from others in their corners alone; of no view if they may not.
    vtxQuadRepeats::Space getRepeatSpace_();
    /// The quad as one that was made before, at its own place; false if there is none or it looks another here.
    bool repeatQuad_(vtxQuadRepeats::Space const& space, vtxQuad const& quad);
    struct Repeat {
        vtxQuadRepeats::Entry const* made;
        vtxUprightQuad quad;
    };
    bool findRepeat_(vtxQuadRepeats::Space const& space, vtxQuad const& quad, Repeat& repeat) const;
    /// In the colour in force.
    void setRepeat_(vtxQuadInstance& instance, Repeat const& repeat);
    /// Makes another quad of an instance that could be moved; false if the new one could not.
    bool makeAgain_(vtxQuadRepeats::Space const& space, vtxQuad const& quad, vtxQuadInstance& instance);
    /// Part of the quad shows what lies outside of the picture.
    static bool isOutside_(vtxQuad const& quad);
    void addQuad_(vtxQuad const& quad);
    void addAny_(vtxQuad const& quad);
    /// GUI units; coordinates of the picture.
    void addUpright_(vtxPair position, vtxPair size, Coordinates const& coordinates);
    void addStretched_(vtxPair position, vtxPair size, Coordinates const& coordinates);
    /// For the transform, the view and the binding in force.
    void makeSpace_();
    /// With the colour in force.
    void setUpright_(vtxQuadInstance& instance, vtxUprightQuad const& quad);
    void setCorner_(vtxQuadInstance& instance, vtxUprightQuad const& quad) const;
    /// Target pixels, of an upright instance.
    vtxPair getLength_(vtxQuadInstance const& instance) const {
        return vtxPairs::nearest(vtxPair{instance.ux, instance.vy} * space_.viewScale);
    }
    /// Where a corner of a turned quad lies, in one axis.
    double snapTurned_(double place) const;
    void addTurned_(double const (&corner)[2], double const (&edgeU)[2], double const (&edgeV)[2],
                    Coordinates const& coordinates);
    void reportBadNumber_();
    /// Texture, colour and source; `whole` is the rectangle before clipping.
    void fillInstance_(vtxQuadInstance& instance, Coordinates const& shown, Coordinates const& whole);
    bool isRunOpen_() const { return instances_.size() != runStart_; }
    void openRun_(bool scissor);
    /// The open run, or one that is opened without a scissor, shows the layer.
    void useLayer_(vtxImagePlace page, std::int16_t layer);
    /// Makes the open run fit what comes next and gives its instance; `box` in pixels of the target.
    vtxQuadInstance& append_(Box const& box, bool needsScissor);
    bool fitsRun_(Box const& box, bool needsScissor) const;
    int findSlot_() const;
    /// Gives the texture of the binding its place in the run.
    void bindSlot_();

    vtxDevice& device_;
    vtxTextureStore& store_;
    vtxMisuseLog& misuse_;

    vtxQuadView view_;
    vtxQuadTransform transform_;
    osg::Vec4f color_{1.0f, 1.0f, 1.0f, 1.0f};
    std::uint64_t noLayers_ = 0;
    Binding binding_{&noLayers_};
    vtxUprightSpace space_;
    vtxTextureImage* image_ = nullptr;
    vtxQuadRepeats repeats_;

    vtxQuadRun run_;
    vtxGapBuffer<vtxQuadInstance> instances_;
    std::size_t runStart_ = 0;  ///< first instance of the open run
    vtxGapBuffer<Kept> blocks_;
    bool odd_ = false;       ///< a quad of the block was refused, or is drawn otherwise than the others
    bool movable_ = false;   ///< the last quad can be moved
    bool searched_ = false;  ///< the next block of the frame before was looked for and not found
    std::size_t lastFrameSize_ = 0;
    unsigned passes_ = 0;               ///< since what comes is compared
    unsigned framePasses_ = 0;          ///< since the frame began
    unsigned mostPasses_ = 1;           ///< that a frame had
    std::uint32_t newestOwner_ = 0;     ///< greatest number of an owner that was drawn
    std::uint32_t lastFrameOwner_ = 0;  ///< the same when the frame began
    qor::vector<NumberedView> views_;
    static constexpr std::uint32_t unknownView = ~0u;
    std::uint32_t viewNumber_ = unknownView;
    std::uint32_t lastViewNumber_ = 0;
    /// By vtxImagePlace: the layer that the open run used last for a block that was kept, else -1.
    std::int16_t lastUsedLayers_[3] = {-1, -1, -1};
    std::uint64_t usedPictureLayers_[vtxTextureStore::maxLayers / 64] = {};
    std::uint64_t usedGlyphLayers_[vtxTextureStore::maxLayers / 64] = {};
    unsigned runs_ = 0;
    unsigned quads_ = 0;
    unsigned made_ = 0;
    unsigned uploads_ = 0;
};
