#include "gui_lib/effects/ShaderEffect.h"

#include "gui_lib/base/easing/EasingType.h"
#include "gui_lib/effects/ShaderEffectManager.h"
#include "gui_lib/effects/ShaderEffectParams.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/widget/Widget.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "platform/qor/Log.h"
#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxEffectShader.h"
#include "platform/vtx/vtxGeometry.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui::skin {

ShaderEffect::ShaderEffect() = default;

ShaderEffect::~ShaderEffect() = default;

void ShaderEffect::setOwner(WidgetHandler* newOwner) { owner = newOwner; }

void ShaderEffect::setStartTime(float time) { startTime = time; }

void ShaderEffect::setCurrTime(float time) { currTime = time; }

void ShaderEffect::setTexture(vtxTexture* newTexture) { texture = newTexture; }

void ShaderEffect::setParams(ShaderEffectParams const& params) { duration = params.getParam("duration", 1.0f); }

void ShaderEffect::update(float time) {
    setCurrTime(time);
    if (!(duration > 0.0f && time - startTime >= duration)) {
        markOuterTargets_();
        return;
    }
    unsigned const use = useCount_;
    if (Widget* const widget = WidgetHandler::get(owner))
        widget->setShaderEffect(nullptr, nullptr);
    // A skin that the widget does not know of as its own still has it, unless it has been handed out anew meanwhile.
    if (useCount_ == use && ShaderEffectManager::get().getInUse(this))
        destroy();
}

// They hold a picture of what the effect showed before.
void ShaderEffect::markOuterTargets_() const {
    Widget const* const widget = WidgetHandler::get(owner);
    if (!widget || !widget->getVisible(true))
        return;
    WidgetHandler* next = widget->getParent();
    while (Widget* const up = WidgetHandler::get(next)) {
        next = up->getParent();
        if (up->getDrawToTarget())
            up->setDirty(Widget::DirtySelf);
    }
}

// --- Drawing ---

void ShaderEffect::doRedraw(osg::Vec2i const& size) { getRedrawFunc_()(size); }

void ShaderEffect::draw() { getDrawFunc_()(); }

void ShaderEffect::make(GraphicCommands* commands) {
    Widget const* const widget = WidgetHandler::get(owner);
    commands->drawFunc(getDrawFunc_(), widget ? widget->getSize() : osg::Vec2i(), getRedrawFunc_());
}

void ShaderEffect::setDrawParams_() const {}

std::function<void()> ShaderEffect::getDrawFunc_() const {
    return [this] { drawPass_(2); };
}

std::function<void(osg::Vec2i const&)> ShaderEffect::getRedrawFunc_() {
    return [this](osg::Vec2i const& size) {
        prepareShader_();
        redrawQuad_(size);
    };
}

void ShaderEffect::drawPass_(int primitiveCount) const {
    if (!shader)
        return;
    vtxRenderer* const renderer = vtxRenderer::get();
    vtxRenderer::ShaderTechniqueGuard const technique(vtxRenderer::TechniqueNone);
    shader->beginPass();
    shader->setGeometry(geometry.get());
    shader->setTexture(texture);
    shader->setMatrices(renderer->getProjectionMatrix(), renderer->getModelViewMatrix());
    setDrawParams_();
    shader->drawEffect(vtxGeometry::PrimitiveTriangles, primitiveCount, 0);
    shader->endPass();
}

void ShaderEffect::redrawQuad_(osg::Vec2i const& size) {
    double const right = size.x(), bottom = size.y();
    quadVertices_.clear();
    quadVertices_.push_back({0.0, 0.0, 0.0, 1.0f, 1.0f, 1.0f, 1.0f, 0.0, 0.0});
    quadVertices_.push_back({right, 0.0, 0.0, 1.0f, 1.0f, 1.0f, 1.0f, 1.0, 0.0});
    quadVertices_.push_back({right, bottom, 0.0, 1.0f, 1.0f, 1.0f, 1.0f, 1.0, 1.0});
    quadVertices_.push_back({0.0, bottom, 0.0, 1.0f, 1.0f, 1.0f, 1.0f, 0.0, 1.0});
    if (geometry)
        geometry->update(quadVertices_, nullptr);
    else
        geometry.reset(vtxRenderer::get()->createGeometry(quadVertices_, {0, 1, 2, 0, 2, 3}));
}

osg::Vec2f ShaderEffect::getShareOfScreen(osg::Vec2f const& size) {
    osg::Vec2i const screen = GUI::get() ? GUI::get()->getScreenSize() : osg::Vec2i();
    return osg::Vec2f(screen.x() > 0 ? size.x() / float(screen.x()) : 0.0f,
                      screen.y() > 0 ? size.y() / float(screen.y()) : 0.0f);
}

ShaderEffect::EasingFunc ShaderEffect::getEasingFunc_(int type) { return getEasingFunction(type); }

ShaderEffect::EasingFunc ShaderEffect::readEasing_(ShaderEffectParams const& params, char const* name) {
    return getEasingFunc_(qor::truncateToInt(params.getParam(name, float(defaultEasing))));
}

// --- Shader ---

void ShaderEffect::createShader_(char const* path, char const* failure) {
    vtxRenderer* const renderer = vtxRenderer::get();
    if (!renderer)
        return;
    failure_ = failure;
    qor::string cause;
    shader = renderer->createEffectShader(path, &cause);
    if (!shader)
        logFailure_(cause.c_str());
}

int ShaderEffect::findParameter_(char const* name) const { return shader ? shader->getParameter(name) : invalidHandle; }

void ShaderEffect::prepareShader_() {
    qor::string cause;
    if (!shader || shader->prepare(cause))
        return;
    shader = nullptr;
    logFailure_(cause.c_str());
}

void ShaderEffect::logFailure_(char const* cause) const {
    qor_logf("VORLEX", 64, "%s", failure_ ? failure_ : "Unable to create ShaderEffect!");
    qor_logf("VORLEX", 64, "%s", cause);
}

}  // namespace gui::skin
