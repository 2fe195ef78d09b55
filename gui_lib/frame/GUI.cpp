#include "gui_lib/frame/GUI.h"

#include "gui_lib/Skin/Image.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/Skin/SkinFile.h"
#include "gui_lib/base/Application.h"
#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/effects/ShaderEffectManager.h"
#include "gui_lib/frame/GUIScopes.h"
#include "gui_lib/frame/MessagePool.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawText.h"
#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/layouts/MeasurePass.h"
#include "gui_lib/widget/Widget.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/OffscreenWindow.h"
#include "platform/qor/Log.h"
#include "platform/qor/Lua.h"
#include "platform/qor/RenderingThread.h"
#include "platform/qor/Truncate.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTextureManager.h"

#include <lua.hpp>

#include <algorithm>
#include <cmath>
#include <utility>

namespace gui {

namespace {

char const* const logTag = "VORLEX";
constexpr int logError = 64;

/// Cuts a converted coordinate towards 0. A scale such as 1.1 is not exact: what it misses a whole number by is given
/// back first, or 1408 pixels would be 1279 units and not 1280.
int truncateConverted(double value) {
    constexpr double scaleError = 0.001;
    return qor::truncateToInt(value + std::copysign(scaleError, value));
}

osg::Vec2i divide(osg::Vec2i const& value, double scale) {
    return {truncateConverted(value.x() / scale), truncateConverted(value.y() / scale)};
}

osg::Vec2i identity(int x, int y) { return {x, y}; }

}  // namespace

GUI* GUI::instance_ = nullptr;

// --- Life ---

GUI::Exception::Exception(qor::basic_string<char> const& text) : std::runtime_error(text.c_str()) {}
GUI::Exception::~Exception() = default;

GUI::GUI(osg::Vec2i const& size)
    : viewportSize(size),
      mouseScale(1.0f, 1.0f),
      offscreenScaleFactor(1.0f, 1.0f),
      messagePool(std::make_unique<MessagePool>()),
      bkgPicture(std::make_unique<Image>()) {}

void GUI::create(qor::basic_string<char> const& skinFile, osg::Vec2i const& size, float scale) {
    if (instance_)
        return;
    if (!vtxRenderer::get())
        throw Exception("GUI render not created!\n");
    if (!Application::get())
        throw Exception("GUI application not created! Make the Application before GUI::create.\n");
    // Widgets of the steps below need the singleton; a failed step takes it away again.
    instance_ = new GUI(size);
    try {
        instance_->initialize_(skinFile, size, scale);
    } catch (...) {
        delete instance_;
        instance_ = nullptr;
        throw;
    }
}

void GUI::initialize_(qor::basic_string<char> const& skinFile, osg::Vec2i const& size, float scale) {
    vtxRenderer& renderer = *vtxRenderer::get();
    renderer.setScale(scale > 0.0f ? scale : 1.0f);
    screenSize = divide(size, renderer.getScale());
    initSkinLuaState_(skinFile);
    createSurface();
    UpdateManager::create_();
    skin::ShaderEffectManager::create_();
}

void GUI::initSkinLuaState_(qor::basic_string<char> const& skinFile) {
    luaState = QOR_lua_open("gui::GUI::initSkinLuaState_");
    QOR_lua_openlibs(luaState);
    {
        skin::SkinFile file(luaState);
        qor::basic_string<char> error;
        if (!file.run(skinFile, error))
            throw Exception("Cannot load gui skin from " + skinFile + "!\nError:" + error + "\n");
        file.keep();
    }
    skinFile_ = skinFile;
    // Stays on the stack, above the results of the file.
    if (qor::luaGetGlobal(luaState, "Skin") != LUA_TTABLE)
        throw Exception("Global Skin table not loaded!\n");
    skinHeld_ = lua_gettop(luaState);
}

void GUI::destroy() {
    if (!instance_)
        return;
    if (instance_->busy_ > 0 || (UpdateManager::exists() && UpdateManager::get().getUpdating()) ||
        qor::isLuaRunning(instance_->luaState)) {
        qor_logf(logTag, logError,
                 "GUI::destroy ignored: it was called from inside a message, a tick, a pass or a script. Call it "
                 "between frames.");
        return;
    }
    delete instance_;
    instance_ = nullptr;
    GraphicCommandDrawText::destroyTextStrings();
}

GUI::~GUI() {
    // Callbacks of dying widgets may ask for the end once more.
    ++busy_;
    // Skins and Lua bindings see no state from here on, while widgets that die below may still fire callbacks.
    QOR_lua_close(std::exchange(luaState, nullptr));
    skin::ShaderEffectManager::destroy_();
    LayoutHandler::shutdown();
    WidgetHandler::shutdown();
    for (SurfaceEntry& surface : surfaces)
        surface.windowsManager.reset();
    UpdateManager::destroy_();
    bkgPicture.reset();
    queueCount = 0;
    messagePool.reset();
}

// --- Frame ---

void GUI::redraw(bool all) {
    PassScope const running(*this);
    if (all)
        for (SurfaceEntry& surface : surfaces)
            surface.windowsManager->redrawAll();
    Widget::redrawAll();
}

void GUI::parse() {
    PassScope const running(*this);
    for (std::size_t i = 0; i < surfaces.size(); ++i)
        surfaces[i].windowsManager->parse();
}

void GUI::doRedraw() {
    PassScope const running(*this);
    vtxRenderer& renderer = *vtxRenderer::get();
    renderer.getFontManager()->doRedraw();
    bkgPicture->doRedraw();
    for (SurfaceEntry& surface : surfaces)
        surface.windowsManager->makeSnapshots();
    Widget::doRedrawAll();
    renderer.getTextureManager()->flushReleased();
}

void GUI::draw() {
    PassScope const running(*this);
    vtxRenderer& renderer = *vtxRenderer::get();
    int const width = Application::get()->getWidth();
    int const height = Application::get()->getHeight();
    float const scale = renderer.getScale();
    osg::RectImpl<osg::Vec2i> const all(0, 0, width, height);

    vtxRenderer::ViewportGuard const viewport(all);
    vtxRenderer::ClipRectGuard const clip(all);
    vtxRenderer::ProjectionMatrixGuard projection;
    projection.makeOrtho2D(0.0f, float(width) / scale, float(height) / scale, 0.0f);
    vtxRenderer::ModelViewMatrixGuard modelView;
    modelView.makeIdentity().setTranslate(float(screenPosition.x()), float(screenPosition.y()), 0.0f);

    RendererPassScope const pass(renderer,
                                 drawToTargetVR ? vtxRenderer::TechniqueTargetVR : vtxRenderer::TechniqueNormal);
    renderer.getShader()->resetPositionShift();
    renderer.getShader()->turnOnDrawQuads();
    bkgPicture->draw();
    surfaces.front().windowsManager->draw();
}

// --- Surfaces ---

int GUI::createSurface() {
    int const id = int(surfaces.size());
    surfaces.emplace_back();
    surfaces.back().mouseFunc = std::make_shared<SurfaceMouseFunc const>(identity);
    auto manager = std::make_unique<WindowsManager>(id);
    surfaces[std::size_t(id)].windowsManager = std::move(manager);
    return id;
}

bool GUI::getSurfaceIdValid(int id) const { return id >= 0 && std::size_t(id) < surfaces.size(); }

WindowsManager* GUI::getWindowsManager(int id) const {
    return getSurfaceIdValid(id) ? surfaces[std::size_t(id)].windowsManager.get() : nullptr;
}

template <class Draw>
void GUI::drawIntoTarget_(osg::Vec2i const& size, osg::Vec2f const& scale, float gamma, float intensity, Draw draw) {
    /// Puts back what holds only while a surface is drawn.
    class Restore {
    public:
        explicit Restore(GUI& gui) : gui_(gui), screenPosition_(gui.screenPosition) {}
        ~Restore() {
            vtxShader& shader = *vtxRenderer::get()->getShader();
            shader.setGamma(1.0f);
            shader.setIntensity(1.0f);
            gui_.offscreenScaleFactor = osg::Vec2f(1.0f, 1.0f);
            gui_.screenPosition = screenPosition_;
        }

    private:
        GUI& gui_;
        osg::Vec2i screenPosition_;
    };

    PassScope const running(*this);
    vtxRenderer& renderer = *vtxRenderer::get();
    vtxRenderer::ProjectionMatrixGuard projection;
    vtxRenderer::ViewportGuard const viewport(osg::RectImpl<osg::Vec2i>(0, 0, size.x(), size.y()));
    projection.makeOrtho2D(0.0f, float(size.x()) / scale.x(), float(size.y()) / scale.y(), 0.0f);
    vtxRenderer::ModelViewMatrixGuard modelView;
    modelView.setIdentity();

    RendererPassScope const pass(renderer, vtxRenderer::TechniqueNormal);
    Restore const restore(*this);
    screenPosition = osg::Vec2i(0, 0);
    offscreenScaleFactor = scale / renderer.getScale();
    vtxShader& shader = *renderer.getShader();
    shader.turnOnDrawQuads();
    shader.setGamma(gamma);
    shader.setIntensity(intensity);
    draw();
}

void GUI::drawToSurface(int id, osg::Vec2i const& size, osg::Vec2f const& scale, float gamma, float intensity) {
    if (WindowsManager* const manager = getWindowsManager(id))
        drawIntoTarget_(size, scale, gamma, intensity, [manager] { manager->draw(); });
}

void GUI::drawOffscreenWindow(OffscreenWindow* window, osg::Vec2i const& size, osg::Vec2f const& scale, float gamma,
                              float intensity) {
    if (window)
        drawIntoTarget_(size, scale, gamma, intensity, [window] { window->draw(); });
}

void GUI::setSurfaceMouseFunc(int id, SurfaceMouseFunc function) {
    if (!getSurfaceIdValid(id))
        return;
    surfaces[std::size_t(id)].mouseFunc =
        std::make_shared<SurfaceMouseFunc const>(function ? std::move(function) : identity);
}

void GUI::setSurfaceMouseCursorCallback(int id, std::function<void(bool, int, WindowBase*)> callback) {
    if (WindowsManager* const manager = getWindowsManager(id))
        manager->setCursorCallback(std::move(callback));
}

osg::Vec2i GUI::getMousePosition(int surfaceId) const {
    if (!getSurfaceIdValid(surfaceId))
        return mousePosition;
    auto const function = surfaces[std::size_t(surfaceId)].mouseFunc;
    return (*function)(mousePosition.x(), mousePosition.y());
}

// --- Overlays and custom windows ---

long long GUI::createCustomOverlay() {
    customOverlays.emplace_back();
    return static_cast<long long>(customOverlays.size()) - 1;
}

void GUI::drawCustomOverlay(long long) {
    vtxRenderer& renderer = *vtxRenderer::get();
    RendererPassScope const pass(renderer,
                                 drawToTargetVR ? vtxRenderer::TechniqueTargetVR : vtxRenderer::TechniqueNormal);
    renderer.getShader()->resetPositionShift();
    renderer.getShader()->turnOnDrawQuads();
}

// Kept for callers; lists are played by their takers.
void GUI::submitCustomOverlay(long long) {}
void GUI::submitCustomOverlay(long long, void (*)(GraphicCommands*)) {}
void GUI::submitGraphicCommands(void (*)(GraphicCommands*)) {}

void GUI::addCustomWindow(WindowBase* window) {
    qor::RenderingThread::callFunctionWithSync(
        [this, window] {
            customWindows.emplace_back();
            customWindows.back().window = window;
        },
        logTag);
}

void GUI::removeCustomWindow(WindowBase* window) {
    qor::RenderingThread::callFunctionWithSync(
        [this, window] {
            auto const found = std::find_if(customWindows.begin(), customWindows.end(),
                                            [window](SurfaceEntry const& entry) { return entry.window == window; });
            if (found != customWindows.end())
                customWindows.erase(found);
        },
        logTag);
}

// --- Geometry ---

void GUI::setViewportPosition(osg::Vec2i const& position) {
    viewportPosition = position;
    screenPosition = divide(position, vtxRenderer::get()->getScale());
}

void GUI::setViewportSize(osg::Vec2i const& size) {
    viewportSize = size;
    screenSize = divide(size, vtxRenderer::get()->getScale());
    screenPosition = divide(viewportPosition, vtxRenderer::get()->getScale());
}

float GUI::getScaleFactor() const { return 1.0f / vtxRenderer::get()->getScale(); }

osg::RectImpl<osg::Vec2i> GUI::screenToViewport(osg::RectImpl<osg::Vec2i> const& rect) const {
    double const scale = vtxRenderer::get()->getScale();
    int const left = truncateConverted(rect.x1 * scale + screenPosition.x());
    int const top = truncateConverted(rect.y1 * scale + screenPosition.y());
    int const width = truncateConverted((double(rect.x2) - rect.x1) * scale);
    int const height = truncateConverted((double(rect.y2) - rect.y1) * scale);
    return {left, top, qor::truncateToInt(double(left) + width), qor::truncateToInt(double(top) + height)};
}

osg::RectImpl<osg::Vec2i> GUI::viewportToScreen(osg::RectImpl<osg::Vec2i> const& rect) const {
    double const scale = vtxRenderer::get()->getScale();
    int const left = truncateConverted(rect.x1 / scale - screenPosition.x());
    int const top = truncateConverted(rect.y1 / scale - screenPosition.y());
    int const width = truncateConverted((double(rect.x2) - rect.x1) / scale);
    int const height = truncateConverted((double(rect.y2) - rect.y1) / scale);
    return {left, top, qor::truncateToInt(double(left) + width), qor::truncateToInt(double(top) + height)};
}

osg::Vec2i GUI::convertFromRawScreenPosition(int x, int y) const {
    double const scale = vtxRenderer::get()->getScale();
    auto const convert = [scale](double raw, double factor, int offset, int screen) {
        return truncateConverted((raw * factor + offset) / scale - screen);
    };
    return {convert(x, mouseScale.x(), mouseOffset.x(), screenPosition.x()),
            convert(y, mouseScale.y(), mouseOffset.y(), screenPosition.y())};
}

osg::Vec2i GUI::convertToRawScreenPosition(int x, int y) const {
    double const scale = vtxRenderer::get()->getScale();
    auto const convert = [scale](double unit, double factor, int offset, int screen) {
        return truncateConverted(((screen + unit) * scale - offset) / factor);
    };
    return {convert(x, mouseScale.x(), mouseOffset.x(), screenPosition.x()),
            convert(y, mouseScale.y(), mouseOffset.y(), screenPosition.y())};
}

// --- Settings ---

void GUI::setBkgPicture(qor::basic_string<char> const& file, bool fill) {
    bkgFile_ = file;
    bkgPicture->setTexture(file, osg::RectImpl<osg::Vec2i>());
    bkgPicture->setAlign(Align2(Align(Align::Center, 0), Align(Align::Center, 0)));
    bkgPicture->setResizeToFill(fill);
    bkgPicture->redraw(screenSize);
}

void GUI::setDebugDraw(bool on) {
    debugDraw = on;
    for (SurfaceEntry& surface : surfaces)
        surface.windowsManager->redrawAll();
}

void GUI::setTabSpacesCount(int count) {
    tabSpacesCount = std::max(count, 0);
    MeasurePass::forgetAll();
}

GUI::DisableClippingGuard::DisableClippingGuard() {
    if (GUI* const gui = GUI::get())
        gui->enableClipping(false);
}

GUI::DisableClippingGuard::~DisableClippingGuard() {
    if (GUI* const gui = GUI::get())
        gui->enableClipping(true);
}

// --- Skins ---

void GUI::loadSkin(qor::basic_string<char> const& name, skin::Skin& target) {
    if (!luaState)
        return;
    // A name that gives nothing now may do so after a reload.
    target.setLoadedName(name);
    qor::LuaStackGuard const guard(luaState);
    qor::basic_string<char> error;
    if (!skin::SkinFile::callFunction(luaState, name, error))
        qor_logf(logTag, logError, "Skin loading failed! Error: %s\n", error.c_str());
    else if (lua_istable(luaState, -1))
        target.loadFromScript(luaState);
}

}  // namespace gui
