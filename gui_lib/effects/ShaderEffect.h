#pragma once

#include <functional>
#include <memory>

#include <osg/Vec2f>
#include <osg/Vec2i>

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/vtx/vtxGeometry.h"

class vtxEffectShader;
class vtxTexture;

namespace gui {

class GraphicCommands;
class WidgetHandler;

namespace skin {

class ShaderEffectParams;
class Skin;

/// A short animated transition that is drawn in place of a widget: the widget is rendered into a target, and the effect
/// draws that picture with a shader of its own, whose parameters follow the time.
/// Lifetime: pooled; made, handed out and deleted by ShaderEffectManager only. The owner is a widget, kept by its
/// handler. Coordinates: GUI units of the owner; times are seconds of UpdateManager.
class VORLEX_API ShaderEffect {
public:
    ShaderEffect(ShaderEffect const&) = delete;
    ShaderEffect& operator=(ShaderEffect const&) = delete;

    /// Gives the effect back to the manager.
    virtual void destroy() = 0;
    virtual void setOwner(WidgetHandler* newOwner);
    virtual void setStartTime(float time);
    /// A concrete effect calculates its parameters here.
    virtual void setCurrTime(float time);
    /// The picture to draw; not owned, set before each `draw` and `make`.
    virtual void setTexture(vtxTexture* newTexture);
    /// Reads "duration" (1.0 if absent; not above 0 means without end); a concrete effect reads its own too.
    virtual void setParams(ShaderEffectParams const& params);
    virtual void doRedraw(osg::Vec2i const& size);
    virtual void draw();
    /// Records what `draw` does; the recorded functions point at this effect.
    virtual void make(GraphicCommands* commands);
    /// Sets the time and ends the effect when its duration is over. Targets around the owner are drawn again.
    virtual void update(float time);
    virtual ~ShaderEffect();

    WidgetHandler* getOwner() const { return owner; }
    float getStartTime() const { return startTime; }
    float getCurrTime() const { return currTime; }
    float getDuration() const { return duration; }
    /// False if its effect file cannot be used, which was logged; then it draws nothing, and its owner is drawn
    /// without.
    bool getHasShader() const { return shader != nullptr; }
    /// A size in GUI units as shares of the screen's, as effect files take sizes.
    static osg::Vec2f getShareOfScreen(osg::Vec2f const& size);

protected:
    using EasingFunc = std::function<float(float, float, float, float)>;

    ShaderEffect();

    /// Hands the parameters to the shader, which is in its pass.
    virtual void setDrawParams_() const;
    virtual std::function<void()> getDrawFunc_() const;
    virtual std::function<void(osg::Vec2i const&)> getRedrawFunc_();

    /// The easing function of a number, called with (elapsed time, start value, total change, duration).
    static EasingFunc getEasingFunc_(int type);
    /// The easing function whose number stands in the parameters, by default the linear one.
    static EasingFunc readEasing_(ShaderEffectParams const& params, char const* name);
    /// Loads the effect file; where that fails, or where the shader cannot be made at its first `doRedraw`, `failure`
    /// is logged and the cause after it. The text must last.
    void createShader_(char const* path, char const* failure);
    /// The shader's parameter; `invalidHandle` without a shader.
    int findParameter_(char const* name) const;
    /// Gives the shader up if it cannot be made; part of the redraw function.
    void prepareShader_();
    /// What the draw function does: a pass over `primitiveCount` triangles of the geometry.
    void drawPass_(int primitiveCount) const;

    /// Linear::easeIn.
    static constexpr int defaultEasing = 1;

    /// What `vtxEffectShader::getParameter` gives for a parameter that does not exist.
    int const invalidHandle = -1;
    WidgetHandler* owner = nullptr;
    vtxEffectShader* shader = nullptr;
    vtxTexture* texture = nullptr;
    std::unique_ptr<vtxGeometry> geometry;
    float startTime = 0.0f;
    float currTime = 0.0f;
    float duration = 1.0f;

private:
    friend class ShaderEffectManager;
    friend class Skin;

    void markOuterTargets_() const;
    void redrawQuad_(osg::Vec2i const& size);
    void logFailure_(char const* cause) const;

    /// The skin that shows the effect; null if none does, or it has died.
    Skin* skin_ = nullptr;
    char const* failure_ = nullptr;
    qor::vector<vtxVertex> quadVertices_;
    /// Place in the manager, and how often it has handed this effect out.
    int kind_ = -1;
    int slot_ = 0;
    unsigned useCount_ = 0;
};

}  // namespace skin
}  // namespace gui
