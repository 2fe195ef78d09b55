#include "host/HostApplication.h"

#include <cmath>
#include <utility>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "host/PngWriter.h"
#include "host/lua/WindowResources.h"
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

class HostApplication::WorkScope {
public:
    WorkScope(HostApplication& application, bool atWork)
        : application_(application), before_(std::exchange(application.atWork_, atWork)) {}
    ~WorkScope() { application_.atWork_ = before_; }
    WorkScope(WorkScope const&) = delete;
    WorkScope& operator=(WorkScope const&) = delete;

private:
    HostApplication& application_;
    bool before_;
};

HostApplication::HostApplication() = default;
HostApplication::~HostApplication() = default;

// --- Start and end ---

bool HostApplication::start(HostOptions const& options) {
    registerWindowResources();
    title_ = options.title;
    skin_ = options.skin;
    float const displayScale = getDisplayScale_();
    followsDisplayScale_ = !(options.scale > 0.0f);
    scale_ = followsDisplayScale_ ? displayScale : options.scale;
    osg::Vec2i pixels = options.pixels;
    if (pixels.x() <= 0 || pixels.y() <= 0)
        pixels = {toPixels(options.size.x(), scale_), toPixels(options.size.y(), scale_)};
    createMainWindow(pixels.x(), pixels.y(), false);
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
    if (listener_)
        listener_->onStarted();
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

void HostApplication::takeInput_() {
    WorkScope const outside(*this, false);
    pumpInput_();
    if (listener_)
        listener_->onFrame();
}

void HostApplication::runFrame() {
    takeInput_();
    WorkScope const work(*this, true);
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
    if (drawOver_)
        drawOver_();
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
        push({HostInput::Resize, {width, height}, scale});
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

void HostApplication::push(HostInput const& input) {
    if (listener_ && !atWork_)
        listener_->onInput(input);
    // What comes of it is no input of its own.
    WorkScope const work(*this, true);
    deliver_(input);
}

void HostApplication::deliver_(HostInput const& input) {
    auto const& [a, b, c, d, e, f, g] = input.values;
    gui::GUI* const gui = gui::GUI::get();
    switch (input.kind) {
        case HostInput::MouseMove:
            cursor_ = osg::Vec2i(a, b);
            if (gui)
                gui->mouseMove(a, b);
            break;
        case HostInput::MouseButton:
            pushMouseButton_(a, b != 0);
            break;
        case HostInput::MouseWheel:
            if (gui)
                gui->mouseWheel(a);
            break;
        case HostInput::Key:
            pushKey_(static_cast<gui::KeyboardButton>(a), b, c != 0);
            break;
        case HostInput::Char:
            if (gui)
                gui->onChar(static_cast<gui::KeyboardButton>(a), b);
            break;
        case HostInput::RawKey:
            if (gui)
                gui->rawKeyInput({a, b, c, d != 0, e != 0});
            break;
        case HostInput::RawMouse:
            if (gui)
                gui->rawMouseInput({a, b, c, d, e, f != 0, g});
            break;
        case HostInput::ReleaseAll:
            releaseAllInput_();
            break;
        case HostInput::Resize:
            resizeWindow_({a, b});
            applySize_({a, b}, input.scale);
            break;
        case HostInput::Activate:
            onActivate(a != 0);
            break;
        case HostInput::Quit:
            onQuit();
            break;
    }
}

void HostApplication::pushMouseMove(int x, int y) { push({HostInput::MouseMove, {x, y}}); }

void HostApplication::pushMouseButton(int button, bool down) { push({HostInput::MouseButton, {button, down}}); }

void HostApplication::pushMouseWheel(int delta) { push({HostInput::MouseWheel, {delta}}); }

void HostApplication::pushKey(gui::KeyboardButton key, int modifiers, bool down) {
    push({HostInput::Key, {key, modifiers, down}});
}

void HostApplication::pushChar(gui::KeyboardButton key, int codePoint) { push({HostInput::Char, {key, codePoint}}); }

void HostApplication::pushRawKey(gui::RawKeyInfo const& info) {
    push({HostInput::RawKey, {info.scanCode, info.key, info.modifiers, info.down, info.repeated}});
}

void HostApplication::pushRawMouse(gui::RawMouseInfo const& info) {
    push({HostInput::RawMouse, {info.x, info.y, info.deltaX, info.deltaY, info.button, info.down, info.wheel}});
}

void HostApplication::releaseAllInput() { push({HostInput::ReleaseAll, {}}); }

void HostApplication::pushActivate(bool nowActive) { push({HostInput::Activate, {nowActive}}); }

void HostApplication::pushQuit() { push({HostInput::Quit, {}}); }

void HostApplication::pushMouseButton_(int button, bool down) {
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

void HostApplication::pushKey_(gui::KeyboardButton key, int modifiers, bool down) {
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

void HostApplication::releaseAllInput_() {
    auto const keys = keysDown_;
    for (int const key : keys)
        pushKey_(static_cast<gui::KeyboardButton>(key), 0, false);
    auto const buttons = buttonsDown_;
    gui::GUI* const gui = gui::GUI::get();
    // Whoever holds the mouse is told first, so that letting go is no click.
    if (gui && !buttons.empty())
        gui->addUserMessage(std::make_shared<std::function<void()>>(releaseCaptures));
    for (int const button : buttons)
        pushMouseButton_(button, false);
}

bool HostApplication::getMouseButtonDown(int button) const { return buttonsDown_.count(button) != 0; }

bool HostApplication::getKeyDown(gui::KeyboardButton button) const { return keysDown_.count(button) != 0; }

void HostApplication::getCursorSize(osg::Vec2i& size) const { size = osg::Vec2i(32, 32); }

void HostApplication::getCursorScreenPosition(osg::Vec2i& position) const { position = cursor_; }

}  // namespace host
