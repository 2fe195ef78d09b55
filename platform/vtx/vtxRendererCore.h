#pragma once

#include "platform/osg/RectImpl.h"
#include "platform/qor/Containers.h"
#include "platform/qor/Mutex.h"
#include "platform/vtx/vtxDrawSettings.h"
#include "platform/vtx/vtxMisuse.h"
#include "platform/vtx/vtxModelView.h"
#include "platform/vtx/vtxQuadBatcher.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxStack.h"
#include "platform/vtx/vtxTargetPool.h"
#include "platform/vtx/vtxTextureStore.h"

#include <atomic>
#include <functional>
#include <memory>

class vtxEffectRecord;
class vtxFrameBufferRecord;
class vtxGeometryRecord;
class vtxPrimitives;
class vtxTargetScope;

/// Internal: the renderer behind vtxRenderer. It keeps the stacks and settings of the contract, checks its use, and
/// turns drawing into device operations. Threads: settings, stacks and drawing belong to the thread that draws. The
/// scale, the texture store, making geometry, frame buffers and effects and ending them are safe from a second thread
/// that records.
class vtxRendererCore final : public vtxRenderer {
public:
    explicit vtxRendererCore(std::unique_ptr<vtxDevice> device);
    ~vtxRendererCore() override;

    /// Null while there is no renderer.
    static vtxRendererCore* getCore();

    // --- For the managers ---
    vtxTextureStore& getTextureStore() { return store_; }
    /// Counts the changes of scale.
    unsigned getScaleEpoch() const { return scaleEpoch_.load(std::memory_order_acquire); }
    /// The texture manager calls it from flushReleased: textures and storage of ended targets go.
    void flushReleasedTargets();

    // --- For the shader ---
    /// What the shader's setters write.
    vtxDrawSettings& changeSettings() { return settings_; }
    /// The same for what a run shares, and for what shifts quads.
    vtxDrawSettings& changeView() { return changeSettings_(StaleView); }
    vtxDrawSettings& changeTransform() { return changeSettings_(StaleTransform); }
    vtxDrawSettings const& getSettings() const { return settings_; }
    void drawQuads(vtxShaderQuads const& quads, int batch);
    /// Batches from `first` up to `end`, as far as there are any.
    void drawQuads(vtxShaderQuads const& quads, int first, int end);
    void drawBkgQuads(vtxShaderBkgQuads const& quads);

    // --- For frame buffers, geometry and effects ---
    void renderToTarget(vtxFrameBufferRecord& target, std::function<void()> const& function);
    void retireTarget(vtxFrameBufferRecord& target, std::unique_ptr<vtxTargetStorage> storage);
    void removeGeometry(vtxGeometryRecord& geometry, vtxDeviceHandle handle);
    /// False, with a report, where no pass is open.
    bool requirePass(char const* operation);
    /// False, with a report, for a matrix with a number that is not finite.
    bool requireFinite(osg::Matrixf const& matrix, char const* operation);
    /// What is drawn next is neither queued quads nor part of their run; false if nothing of it can be seen.
    bool beginDirectDraw(vtxDrawState& state);
    /// The geometry, if it lives and holds what a draw from index `first` on asks for; null, with a report, if not.
    vtxGeometryRecord* checkGeometry(vtxGeometry* geometry, vtxGeometry::PrimitiveType type, int count, int first);
    /// The device object of a checked geometry, brought up to date.
    vtxDeviceHandle flushGeometry(vtxGeometryRecord& geometry);
    void countGeometryUpload() { ++geometryUploads_; }
    /// The texture of the picture alone for `draw`; false if the texture is no longer alive.
    bool bindTexture(vtxTexture const* texture, vtxGeometryDraw& draw);
    /// With the model-view, scale and opacity in force.
    void drawGeometry(vtxGeometryDraw& draw);
    /// The device's program of an effect file; 0 with the cause. Opens a pass where there is none.
    vtxDeviceHandle makeEffectProgram(char const* path, qor::string& error);
    /// With the scale and opacity in force.
    void drawEffect(vtxEffectDraw& draw);
    /// What the device needs so that a target's units fall on whole pixels.
    osg::Matrixf getDeviceProjection(osg::Matrixf const& projection) const;
    /// The batcher, ready for quads under the settings in force, and for lines of a straight colour.
    vtxQuadBatcher& prepareQuads();
    vtxQuadBatcher& prepareLines(osg::Vec4f const& color);
    void report(vtxMisuse misuse, char const* detail) { misuse_.report(misuse, detail); }
    /// Tells a recording back end about an operation of the contract.
    template <class... Arguments>
    void trace(char const* operation, char const* format, Arguments... arguments) {
        if (traceWanted_()) [[unlikely]]
            traceNow_(operation, format, arguments...);
    }

    // vtxRenderer:
    vtxTextureManager* getTextureManager() override { return textureManager_.get(); }
    vtxFontManager* getFontManager() override { return fontManager_.get(); }
    vtxShader* getShader() override { return &shader_; }
    void setScale(float scale) override;
    float getScale() override { return scale_.load(std::memory_order_acquire); }
    void setOpacity(float opacity) override {
        trace("setOpacity", "%g", opacity);
        if (opacity != settings_.opacity)
            changeOpacity_(opacity);
    }
    float getOpacity() override { return settings_.opacity; }
    vtxGeometry* createGeometry(qor::vector<vtxVertex> const& vertices, qor::vector<int> const& indices) override;
    vtxFrameBuffer* createFrameBuffer(osg::Vec2i const& size, int msaa, int mips) override;
    void pushViewport(osg::RectImpl<osg::Vec2i> const& rect) override;
    void popViewport() override;
    void setProjectionMatrix(osg::Matrixf const& matrix) override;
    osg::Matrixf const& getProjectionMatrix() override { return settings_.projection; }
    void pushProjectionMatrix() override;
    void popProjectionMatrix() override;
    void setModelViewMatrix(osg::Matrixf const& matrix) override;
    osg::Matrixf const& getModelViewMatrix() override { return settings_.modelView; }
    void translateModelView(float x, float y, float z) override;
    /// The same by whole units.
    void translateModelView(osg::Vec2i const& by) {
        float const scale = getScale();
        float const x = scale * static_cast<float>(by.x());
        float const y = scale * static_cast<float>(by.y());
        osg::Matrixf& matrix = settings_.modelView;
        if (!settings_.modelViewTranslates || traceWanted_()) [[unlikely]] {
            composeModelView_(x, y, 0.0f);
            return;
        }
        // As no part is the negative zero, the products by 0 of the long way add nothing.
        float const newX = matrix(3, 0) + x;
        float const newY = matrix(3, 1) + y;
        if (!(newX * 0.0f + newY * 0.0f == 0.0f)) [[unlikely]] {
            report(vtxMisuse::BadNumber, "setModelViewMatrix");
            return;
        }
        matrix(3, 0) = newX;
        matrix(3, 1) = newY;
        matrix(3, 2) += 0.0f;
    }
    void pushModelViewMatrix() override {
        trace("pushModelViewMatrix", "%s", "");
        modelViews_.push().keep(settings_);
    }
    void popModelViewMatrix() override {
        trace("popModelViewMatrix", "%s", "");
        if (!canPop_(modelViews_.size(), base_.modelViews, "popModelViewMatrix"))
            return;
        if (!modelViews_.top().translates || !settings_.modelViewTranslates)
            stale_ |= StaleTransform;
        modelViews_.top().apply(settings_);
        modelViews_.pop();
    }
    void pushClipRect(osg::RectImpl<osg::Vec2i> const& rect) override {
        trace("pushClipRect", "%d %d %d %d", rect.x1, rect.y1, rect.x2, rect.y2);
        // Outside passes and targets the host's own pixels are meant.
        float const scale = deviceDepth_ ? getScale() : 1.0f;
        osg::RectImpl<osg::Vec2i> const pixels = scale == 1.0f ? rect : roundToPixels_(rect, scale);
        osg::RectImpl<osg::Vec2i> const cut = clips_.size() > base_.clips ? pixels.intersected(clips_.top()) : pixels;
        clips_.push() = cut;
        stale_ |= StaleClip;
    }
    void popClipRect() override {
        trace("popClipRect", "%s", "");
        if (!canPop_(clips_.size(), base_.clips, "popClipRect"))
            return;
        clips_.pop();
        stale_ |= StaleClip;
    }
    void setTextureFiltering(TextureSampler sampler) override;
    void setGeometry(vtxGeometry* geometry) override;
    void drawPrimitives(vtxGeometry::PrimitiveType type, int count, int first) override;
    void drawCircle(osg::Vec4f const& color, float radius, unsigned segments) override;
    void drawLifeBar(osg::Vec4f const& color, osg::Vec2f const& size, float value) override;
    void beginDraw(TechniqueType technique) override;
    void endDraw() override;
    TechniqueType getTechnique() override;
    void pushTechnique(TechniqueType technique) override;
    void popTechnique() override;
    vtxEffectShader* createEffectShader(char const* path, qor::string* error) override;
    unsigned getGeneration() override { return generation_; }
    vtxDevice& getDevice() override { return *device_; }
    Counters getCounters() override;
    void resetCounters() override;
    std::uint32_t getDeviceTexture(vtxFrameBuffer& target) override;
    void readPixels(vtxFrameBuffer* target, osg::RectImpl<osg::Vec2i> const& rect, unsigned char* pixels) override;

private:
    friend class vtxTargetScope;

    /// A pass: the base one, or one that was pushed. Closed ones have ended or not begun.
    struct Pass {
        TechniqueType technique = TechniqueNone;
        bool open = false;
    };
    /// Heights of the stacks; also what a target's own stacks stand on.
    struct StackHeights {
        std::size_t clips = 0;
        std::size_t viewports = 0;
        std::size_t projections = 0;
        std::size_t modelViews = 0;
        std::size_t passes = 0;
        bool operator==(StackHeights const&) const = default;
    };

    /// What was derived from the settings and has to be derived anew.
    enum Stale : unsigned {
        StaleView = 1,       ///< projection, viewport, target, technique or what else a run shares
        StaleClip = 2,       ///< the clip
        StaleTransform = 4,  ///< what quads go through, but for where a translation leads
    };

    /// An effect file that was loaded, or why it was not.
    struct LoadedEffect {
        std::unique_ptr<vtxEffectRecord> record;
        qor::string error;
        bool logged = false;
    };

    StackHeights getHeights_() const;
    void openPass_(Pass& pass, TechniqueType technique);
    void closePass_(Pass& pass);
    bool isPassOpen_() const { return passes_.back().open; }
    void enterDevice_();
    void leaveDevice_();
    void flushUploads_();
    void releaseOutliving_();
    osg::RectImpl<osg::Vec2i> getTargetRect_() const;
    osg::RectImpl<osg::Vec2i> getViewport_() const;
    osg::RectImpl<osg::Vec2i> const* getClip_() const { return clips_.size() > base_.clips ? &clips_.top() : nullptr; }
    /// Nothing that is drawn can be seen: cheap to tell, for the many that are scrolled out of view.
    bool isClippedAway_() const;
    vtxDrawSettings& changeSettings_(Stale stale) {
        stale_ |= stale;
        return settings_;
    }
    vtxQuadBatcher::Shape getShape_(int count, bool colorEach) const {
        return {count, static_cast<std::int16_t>(settings_.sampler), colorEach};
    }
    void updateView_() {
        if (stale_ & StaleView)
            renewView_();
        else if (stale_ & StaleClip)
            batcher_.setClip(getClip_());
        stale_ &= StaleTransform;
    }
    void renewView_();
    void renewTransform_();
    bool canPop_(std::size_t height, std::size_t base, char const* operation) {
        if (height <= base) [[unlikely]]
            report(vtxMisuse::EmptyStack, operation);
        return height > base;
    }
    /// From GUI units to the pixel edges next to them.
    static osg::RectImpl<osg::Vec2i> roundToPixels_(osg::RectImpl<osg::Vec2i> const& rect, float scale);
    bool traceWanted_() const { return *traceSwitch_; }
    void traceNow_(char const* operation, char const* format, ...) __attribute__((format(printf, 3, 4)));
    void changeOpacity_(float opacity);
    void composeModelView_(float x, float y, float z);

    std::unique_ptr<vtxDevice> device_;
    bool const* traceSwitch_;
    vtxMisuseLog misuse_;
    vtxTextureStore store_;
    vtxTargetPool targets_;
    vtxQuadBatcher batcher_;
    vtxShader shader_;
    std::unique_ptr<vtxPrimitives> primitives_;
    std::unique_ptr<vtxTextureManager> textureManager_;
    std::unique_ptr<vtxFontManager> fontManager_;

    std::atomic<float> scale_{1.0f};
    std::atomic<unsigned> scaleEpoch_{0};
    unsigned generation_;
    unsigned targetCount_ = 0;
    unsigned directDraws_ = 0;
    unsigned geometryUploads_ = 0;

    vtxDrawSettings settings_;
    unsigned stale_ = StaleView | StaleTransform;  ///< of Stale
    osg::Vec2i hostSize_{0, 0};
    vtxStack<osg::RectImpl<osg::Vec2i>> clips_;
    qor::vector<osg::RectImpl<osg::Vec2i>> viewports_;
    qor::vector<osg::Matrixf> projections_;
    vtxStack<vtxModelView> modelViews_;
    qor::vector<Pass> passes_;
    StackHeights base_;
    StackHeights passStart_;
    int deviceDepth_ = 0;
    vtxTargetStorage* target_ = nullptr;

    mutable qor::mutex creationMutex_;
    qor::hash_set<vtxGeometryRecord*> geometries_;
    qor::hash_set<vtxFrameBufferRecord*> frameBuffers_;
    qor::vector<vtxDeviceHandle> retiredGeometries_;
    qor::vector<std::unique_ptr<vtxTargetStorage>> endedTargets_;
    qor::hash_map<qor::string, LoadedEffect> effects_;
};

/// The managers' factories.
std::unique_ptr<vtxTextureManager> vtxCreateTextureManager(vtxRendererCore& core);
std::unique_ptr<vtxFontManager> vtxCreateFontManager(vtxRendererCore& core);
