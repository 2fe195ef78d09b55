#include "host/HostApplication.h"

#include <cmath>
#include <utility>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "host/PngWriter.h"
#include "platform/qor/Log.h"
#include "platform/vtx/vtxRenderer.h"

namespace host {

namespace {

char const* const logTag = "HOST";
constexpr int logError = 64;

int toPixels(int units, float scale) { return static_cast<int>(std::lround(static_cast<double>(units) * scale)); }

/// Ends the capture of every surface.
void releaseCaptures() {
    for (int surface = 0; gui::GUI::get()->getSurfaceIdValid(surface); ++surface)
        gui::WindowsManager::get(surface)->releaseMouse(nullptr);
}

}  // namespace

HostApplication::HostApplication() = default;
HostApplication::~HostApplication() = default;

// --- Start and end ---

bool HostApplication::start(HostOptions const& options) {
    title_ = options.title;
    float const displayScale = getDisplayScale_();
    followsDisplayScale_ = !(options.scale > 0.0f);
    scale_ = followsDisplayScale_ ? displayScale : options.scale;
    createMainWindow(toPixels(options.size.x(), scale_), toPixels(options.size.y(), scale_), false);
    started_ = true;
    rendererMade_ = running && createRenderer_();
    if (!rendererMade_) {
        running = false;
        return false;
    }
    try {
        gui::GUI::create(options.skin, osg::Vec2i(width, height), scale_);
    } catch (gui::GUI::Exception const& exception) {
        qor_logf(logTag, logError, "%s", exception.what());
        running = false;
        return false;
    }
    onStarted_();
    onActivate(true);
    return true;
}

void HostApplication::stop() {
    if (!started_)
        return;
    gui::GUI::destroy();
    // Refused, with a log line, from inside a frame: what GUI still needs stays then.
    if (gui::GUI::get())
        return;
    started_ = false;
    if (std::exchange(rendererMade_, false))
        vtxRenderer::destroy();
    destroyWindow_();
}

// --- Frame ---

void HostApplication::runFrame() {
    pumpInput_();
    callUpdateCallbacks_();
    // Not before: what runs above may stop the host.
    gui::GUI* const gui = gui::GUI::get();
    if (!gui)
        return;
    gui->processMessages();
    gui::UpdateManager::get().updateTargets();
    // What the tick changed shows in this frame: a tooltip would come up with the words of the one before it.
    gui->redraw(false);
    beginPicture_();
    gui->doRedraw();
    gui->parse();
    if (drawSurfaces_)
        drawSurfaces_();
    beginPicture_();
    if (drawScene_)
        drawScene_();
    else
        clearPicture_();
    gui->draw();
    present_();
    ++frameCount_;
}

void HostApplication::update() { runFrame(); }

void HostApplication::processModal() { runFrame(); }

bool HostApplication::saveScreenshot(char const* path) {
    qor::vector<unsigned char> const pixels = readPicture_();
    if (pixels.empty())
        return false;
    qor::string error;
    if (writePng(path, osg::Vec2i(width, height), pixels.data(), error))
        return true;
    qor_logf(logTag, logError, "%s", error.c_str());
    return false;
}

// --- Size and scale ---

float HostApplication::getDisplayScale_() { return 1.0f; }

void HostApplication::setScale(float scale) {
    followsDisplayScale_ = false;
    if (scale > 0.0f && scale != scale_)
        applySize_(osg::Vec2i(width, height), scale);
}

void HostApplication::applySize_(osg::Vec2i const& pixels, float scale) {
    width = pixels.x();
    height = pixels.y();
    scale_ = scale;
    gui::GUI* const gui = gui::GUI::get();
    vtxRenderer* const renderer = vtxRenderer::get();
    if (!gui || !renderer)
        return;
    bool const rescaled = renderer->getScale() != scale;
    if (rescaled)
        renderer->setScale(scale);
    gui->setViewportSize(pixels);
    if (rescaled)
        gui->redraw(true);
}

// --- Input ---

void HostApplication::pushMouseMove(int x, int y) {
    cursor_ = osg::Vec2i(x, y);
    if (gui::GUI* const gui = gui::GUI::get())
        gui->mouseMove(x, y);
}

void HostApplication::pushMouseButton(int button, bool down) {
    if (down)
        buttonsDown_.insert(button);
    else
        buttonsDown_.erase(button);
    gui::GUI* const gui = gui::GUI::get();
    if (!gui)
        return;
    if (down)
        gui->mouseDown(static_cast<gui::MouseButton>(button));
    else
        gui->mouseUp(static_cast<gui::MouseButton>(button));
}

void HostApplication::pushMouseWheel(int delta) {
    if (gui::GUI* const gui = gui::GUI::get())
        gui->mouseWheel(delta);
}

void HostApplication::pushKey(gui::KeyboardButton key, int modifiers, bool down) {
    if (down)
        keysDown_.insert(key);
    else
        keysDown_.erase(key);
    gui::GUI* const gui = gui::GUI::get();
    if (!gui)
        return;
    if (down)
        gui->keyDown(key, modifiers);
    else
        gui->keyUp(key, modifiers);
}

void HostApplication::pushChar(gui::KeyboardButton key, int codePoint) {
    if (gui::GUI* const gui = gui::GUI::get())
        gui->onChar(key, codePoint);
}

void HostApplication::pushRawKey(gui::RawKeyInfo const& info) {
    if (gui::GUI* const gui = gui::GUI::get())
        gui->rawKeyInput(info);
}

void HostApplication::pushRawMouse(gui::RawMouseInfo const& info) {
    if (gui::GUI* const gui = gui::GUI::get())
        gui->rawMouseInput(info);
}

void HostApplication::releaseAllInput() {
    auto const keys = keysDown_;
    for (int const key : keys)
        pushKey(static_cast<gui::KeyboardButton>(key), 0, false);
    auto const buttons = buttonsDown_;
    gui::GUI* const gui = gui::GUI::get();
    // Whoever holds the mouse is told first, so that letting go is no click.
    if (gui && !buttons.empty())
        gui->addUserMessage(std::make_shared<std::function<void()>>(releaseCaptures));
    for (int const button : buttons)
        pushMouseButton(button, false);
}

bool HostApplication::getMouseButtonDown(int button) const { return buttonsDown_.count(button) != 0; }

bool HostApplication::getKeyDown(gui::KeyboardButton button) const { return keysDown_.count(button) != 0; }

void HostApplication::getCursorSize(osg::Vec2i& size) const { size = osg::Vec2i(32, 32); }

void HostApplication::getCursorScreenPosition(osg::Vec2i& position) const { position = cursor_; }

}  // namespace host
