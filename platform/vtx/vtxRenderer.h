#pragma once

#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/vtx/vtxGeometry.h"

#include <osg/Matrixf>
#include <osg/Vec2f>
#include <osg/Vec2i>
#include <osg/Vec4f>

#include <cstdint>
#include <memory>

class vtxDevice;
class vtxEffectShader;
class vtxFontManager;
class vtxFrameBuffer;
class vtxShader;
class vtxTextureManager;

/// The renderer contract: everything that the toolkit draws goes through this object and its services.
/// Coordinates: sizes are GUI units and are multiplied by `getScale` here; viewports, and clips pushed while neither a
/// pass nor a target is open, are raw pixels from the top left. Lifetime: one object, made by the host with `create`
/// before the toolkit and ended with `destroy` after it.
class VORLEX_API vtxRenderer {
public:
    /// 0 effect geometry, 1 normal pass, 4 drawing into a frame buffer, 5 normal pass while drawing to a headset's
    /// target.
    enum TechniqueType { TechniqueNone = 0, TechniqueNormal = 1, TechniqueTarget = 4, TechniqueTargetVR = 5 };
    /// 0 linear, 1 nearest, 2 linear with mips, 3 linear and repeating.
    enum TextureSampler { SamplerLinear = 0, SamplerNearest = 1, SamplerMips = 2, SamplerRepeat = 3 };

    /// What the back end was asked for since the start or the last `resetCounters`.
    struct Counters {
        unsigned runs = 0;           ///< draw calls for quads
        unsigned quads = 0;          ///< quads in them, after culling
        unsigned madeQuads = 0;      ///< those of them that did not stay as they were in the frame before
        unsigned geometryDraws = 0;  ///< geometry, circles, bars and effects
        unsigned targets = 0;        ///< times that a frame buffer was rendered
        unsigned uploads = 0;        ///< pictures, glyphs and geometry sent
    };

    /// Makes the one renderer over a back end. A second call while one exists logs and keeps the first.
    static vtxRenderer* create(std::unique_ptr<vtxDevice> device);
    /// Ends the renderer and its back end; with a GL back end the context must be current.
    static void destroy();
    /// Null before `create` and after `destroy`.
    static vtxRenderer* get();

    virtual vtxTextureManager* getTextureManager() = 0;
    virtual vtxFontManager* getFontManager() = 0;
    virtual vtxShader* getShader() = 0;
    virtual void setScale(float scale) = 0;
    virtual float getScale() = 0;
    /// Clamped to 0..1.
    virtual void setOpacity(float opacity) = 0;
    virtual vtxGeometry* createGeometry(qor::vector<vtxVertex> const& vertices, qor::vector<int> const& indices) = 0;
    virtual vtxFrameBuffer* createFrameBuffer(osg::Vec2i const& size, int msaa, int mips) = 0;
    virtual void pushViewport(osg::RectImpl<osg::Vec2i> const& rect) = 0;
    virtual void popViewport() = 0;
    virtual void setProjectionMatrix(osg::Matrixf const& matrix) = 0;
    virtual osg::Matrixf const& getProjectionMatrix() = 0;
    virtual void pushProjectionMatrix() = 0;
    virtual void popProjectionMatrix() = 0;
    virtual void setModelViewMatrix(osg::Matrixf const& matrix) = 0;
    virtual osg::Matrixf const& getModelViewMatrix() = 0;
    virtual void pushModelViewMatrix() = 0;
    virtual void popModelViewMatrix() = 0;
    /// Intersects with the clip below. In GUI units from the top left of the target, edges rounded to whole pixels; in
    /// raw pixels where neither a pass nor a target is open.
    virtual void pushClipRect(osg::RectImpl<osg::Vec2i> const& rect) = 0;
    virtual void popClipRect() = 0;
    virtual void setTextureFiltering(TextureSampler sampler) = 0;
    virtual void setGeometry(vtxGeometry* geometry) = 0;
    virtual void drawPrimitives(vtxGeometry::PrimitiveType type, int count, int first) = 0;
    /// A filled disc around the model-view origin; `radius` in GUI units, at least 3 segments.
    virtual void drawCircle(osg::Vec4f const& color, float radius, unsigned segments) = 0;
    /// A bar that begins at the model-view origin: the part up to `value` (0 to 1) in the colour, the rest in the
    /// colour at a quarter of its alpha. `size` in GUI units.
    virtual void drawLifeBar(osg::Vec4f const& color, osg::Vec2f const& size, float value) = 0;
    virtual void beginDraw(TechniqueType technique) = 0;
    virtual void endDraw() = 0;
    virtual TechniqueType getTechnique() = 0;
    virtual void pushTechnique(TechniqueType technique) = 0;
    virtual void popTechnique() = 0;
    /// Loads an effect file; null on failure. The cause is logged, once a path, or told to `error` if that is not null.
    virtual vtxEffectShader* createEffectShader(char const* path, qor::basic_string<char>* error = nullptr) = 0;

    /// The model-view composed with a translation (GUI units), as a ModelViewMatrixGuard composes it.
    virtual void translateModelView(float x, float y, float z) = 0;
    /// The opacity multiplier in force; guards read it to put it back.
    virtual float getOpacity() = 0;
    /// Counts the renderers made so far; pooled objects that outlive one compare it and do nothing when stale.
    virtual unsigned getGeneration() = 0;
    /// The back end, for hosts and tests.
    virtual vtxDevice& getDevice() = 0;
    /// For the frame's figures: read them at its end and reset them at its start.
    virtual Counters getCounters() = 0;
    virtual void resetCounters() = 0;
    /// The back end's handle of a frame buffer's picture, for hosts that show it themselves; 0 before it was rendered.
    virtual std::uint32_t getDeviceTexture(vtxFrameBuffer& target) = 0;
    /// RGBA rows from the top of a frame buffer, or of what the host has bound if null; `rect` in pixels, `pixels` room
    /// for it. Draws what is queued first.
    virtual void readPixels(vtxFrameBuffer* target, osg::RectImpl<osg::Vec2i> const& rect, unsigned char* pixels) = 0;

    class ClipRectGuard;
    class ViewportGuard;
    class ProjectionMatrixGuard;
    class ModelViewMatrixGuard;
    class PlaceGuard;
    class OpacityGuard;
    class ShiftPositionGuard;
    class ShaderTechniqueGuard;

protected:
    vtxRenderer();
    virtual ~vtxRenderer();
};

/// Pushes a clip rectangle for a scope; clips intersect.
class VORLEX_API vtxRenderer::ClipRectGuard {
public:
    explicit ClipRectGuard(osg::RectImpl<osg::Vec2i> const& rect);
    ~ClipRectGuard();
    ClipRectGuard(ClipRectGuard const&) = delete;
    ClipRectGuard& operator=(ClipRectGuard const&) = delete;
};

/// Pushes a viewport (raw pixels) for a scope.
class VORLEX_API vtxRenderer::ViewportGuard {
public:
    explicit ViewportGuard(osg::RectImpl<osg::Vec2i> const& rect);
    ~ViewportGuard();
    ViewportGuard(ViewportGuard const&) = delete;
    ViewportGuard& operator=(ViewportGuard const&) = delete;
};

/// Pushes the projection for a scope.
class VORLEX_API vtxRenderer::ProjectionMatrixGuard {
public:
    ProjectionMatrixGuard();
    ~ProjectionMatrixGuard();
    ProjectionMatrixGuard(ProjectionMatrixGuard const&) = delete;
    ProjectionMatrixGuard& operator=(ProjectionMatrixGuard const&) = delete;
    /// Sides in GUI units; near -1, far 1.
    void makeOrtho2D(float left, float right, float bottom, float top);
};

/// Pushes the model-view for a scope. `make...` only change the guard's matrix, `set...` also apply it. Each step is
/// composed after what the matrix holds; translations are GUI units, angles radians about the axis (x, y, z).
class VORLEX_API vtxRenderer::ModelViewMatrixGuard {
public:
    ModelViewMatrixGuard();
    ~ModelViewMatrixGuard();
    ModelViewMatrixGuard(ModelViewMatrixGuard const&) = delete;
    ModelViewMatrixGuard& operator=(ModelViewMatrixGuard const&) = delete;
    ModelViewMatrixGuard& makeIdentity();
    ModelViewMatrixGuard& makeTranslate(float x, float y, float z);
    ModelViewMatrixGuard& makeRotate(float angle, float x, float y, float z);
    void setIdentity();
    void setTranslate(float x, float y, float z);

private:
    osg::Matrixf matrix_;
};

/// What a ModelViewMatrixGuard that translates and a ClipRectGuard inside it do, for walks over many objects.
class VORLEX_API vtxRenderer::PlaceGuard {
public:
    /// GUI units; no clip with null.
    PlaceGuard(osg::Vec2i const& place, osg::RectImpl<osg::Vec2i> const* clip);
    ~PlaceGuard();
    PlaceGuard(PlaceGuard const&) = delete;
    PlaceGuard& operator=(PlaceGuard const&) = delete;

private:
    bool clipped_;
};

/// Sets the opacity for a scope and puts the earlier one back; it does not multiply.
class VORLEX_API vtxRenderer::OpacityGuard {
public:
    explicit OpacityGuard(float opacity);
    ~OpacityGuard();
    OpacityGuard(OpacityGuard const&) = delete;
    OpacityGuard& operator=(OpacityGuard const&) = delete;

private:
    float saved_;
};

/// Shifts quad positions by (x, y) times `z` pixels for a scope; `z` not above 0 means the renderer's scale.
class VORLEX_API vtxRenderer::ShiftPositionGuard {
public:
    ShiftPositionGuard(float x, float y, float z);
    ~ShiftPositionGuard();
    ShiftPositionGuard(ShiftPositionGuard const&) = delete;
    ShiftPositionGuard& operator=(ShiftPositionGuard const&) = delete;

private:
    float x_, y_, z_;
};

/// Nests a technique for a scope. With no pass open it counts as a pass.
class VORLEX_API vtxRenderer::ShaderTechniqueGuard {
public:
    explicit ShaderTechniqueGuard(TechniqueType technique);
    ~ShaderTechniqueGuard();
    ShaderTechniqueGuard(ShaderTechniqueGuard const&) = delete;
    ShaderTechniqueGuard& operator=(ShaderTechniqueGuard const&) = delete;
};
