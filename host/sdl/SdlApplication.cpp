#include "host/sdl/SdlApplication.h"

#define SDL_MAIN_HANDLED
#include <SDL.h>
#include <epoxy/gl.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <optional>
#include <utility>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/WindowBase.h"
#include "host/PngWriter.h"
#include "host/sdl/SdlKeys.h"
#include "platform/gl/vtxGLDevice.h"
#include "platform/qor/Log.h"
#include "platform/qor/Utf8.h"
#include "platform/vtx/vtxRenderer.h"

namespace host {

namespace {

char const* const logTag = "HOST";
constexpr int logError = 64;
/// No limit is asked for at or above this.
constexpr int unlimitedFramerate = 1000;
/// Where the mouse is said to be while it is over something else, pixels: nothing of the toolkit is there.
constexpr int farOutside = -10000;

SDL_SystemCursor getSystemCursor(int cursor) {
    switch (cursor) {
        case gui::WindowBase::CursorColumnResize:
        case gui::WindowBase::CursorResizeHorz:
            return SDL_SYSTEM_CURSOR_SIZEWE;
        case gui::WindowBase::CursorResizeRising:
            return SDL_SYSTEM_CURSOR_SIZENESW;
        case gui::WindowBase::CursorResizeVert:
            return SDL_SYSTEM_CURSOR_SIZENS;
        case gui::WindowBase::CursorResizeFalling:
            return SDL_SYSTEM_CURSOR_SIZENWSE;
        default:
            return SDL_SYSTEM_CURSOR_ARROW;
    }
}

/// Seconds, above 0.
double readClock() {
    return 1.0 + static_cast<double>(SDL_GetPerformanceCounter()) / static_cast<double>(SDL_GetPerformanceFrequency());
}

bool isModifierEvent(SDL_Event const& event) {
    if (event.type != SDL_KEYDOWN && event.type != SDL_KEYUP)
        return false;
    switch (event.key.keysym.sym) {
        case SDLK_LSHIFT:
        case SDLK_RSHIFT:
        case SDLK_LCTRL:
        case SDLK_RCTRL:
        case SDLK_LALT:
        case SDLK_RALT:
            return event.key.repeat == 0;
        default:
            return false;
    }
}

void saveNumberedScreenshot(char const*) {
    auto* const application = dynamic_cast<HostApplication*>(gui::Application::get());
    if (!application)
        return;
    for (int number = 1;; ++number) {
        qor::string path;
        path.format("screenshot-%d.png", number);
        std::error_code error;
        if (std::filesystem::exists(path.c_str(), error))
            continue;
        application->saveScreenshot(path.c_str());
        return;
    }
}

}  // namespace

struct SdlApplication::Impl {
    explicit Impl(SdlApplication& owner) : application(owner) {}

    void setCursor(int cursor);
    void takeEvents();
    bool takeEvent(SDL_Event& event);
    void handle(SDL_Event const& event);
    void handleWindow(SDL_WindowEvent const& event);
    void handleKey(SDL_KeyboardEvent const& event);
    void handleText(SDL_TextInputEvent const& event);
    void handleButton(SDL_MouseButtonEvent const& event);
    void handleMotion(SDL_MouseMotionEvent const& event);
    void handleWheel(SDL_MouseWheelEvent const& event);
    void resize();
    void leave();
    osg::Vec2i toPixels(int x, int y) const;
    osg::Vec2i getCursorPosition() const;
    osg::Vec2i getDrawableSize() const;
    float getPixelRatio() const;
    float getDisplayScale() const;
    void limitFramerate();

    SdlApplication& application;
    SDL_Window* window = nullptr;
    SDL_GLContext context = nullptr;
    bool initialized = false;
    /// Taken from the queue, not yet handled.
    std::optional<SDL_Event> waiting;
    gui::KeyboardButton lastKey = gui::KeyNone;
    std::map<SDL_SystemCursor, SDL_Cursor*> cursors;
    qor::string screenshotPath;
    Uint64 frameEnd = 0;
    double time = readClock();
};

SdlApplication::SdlApplication() : impl_(std::make_unique<Impl>(*this)) {}

SdlApplication::~SdlApplication() { stop(); }

void SdlApplication::run() {
    while (getRunning())
        runFrame();
}

// --- Window and context ---

void SdlApplication::createWindow_(int newWidth, int newHeight, bool newFullScreen) {
    if (!impl_->initialized) {
        qor_logf(logTag, logError, "No display: %s. Start under a display server, or run headless.", SDL_GetError());
        running = false;
        return;
    }
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
    SDL_GL_SetAttribute(SDL_GL_DEPTH_SIZE, 24);
    Uint32 flags = SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI;
    if (newFullScreen)
        flags |= SDL_WINDOW_FULLSCREEN_DESKTOP;
    impl_->window =
        SDL_CreateWindow(title_.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, newWidth, newHeight, flags);
    impl_->context = impl_->window ? SDL_GL_CreateContext(impl_->window) : nullptr;
    if (!impl_->context) {
        qor_logf(logTag, logError, "No OpenGL 3.3 window: %s. Install or enable a GL driver, or run headless.",
                 SDL_GetError());
        running = false;
        return;
    }
    // A window of so many pixels was asked for; where the display counts in points, ask again in points.
    float const ratio = impl_->getPixelRatio();
    if (ratio > 1.0f)
        SDL_SetWindowSize(impl_->window, static_cast<int>(std::lround(newWidth / ratio)),
                          static_cast<int>(std::lround(newHeight / ratio)));
    osg::Vec2i const pixels = impl_->getDrawableSize();
    width = pixels.x();
    height = pixels.y();
    SDL_GL_SetSwapInterval(1);
    SDL_StartTextInput();
}

bool SdlApplication::createRenderer_() {
    std::unique_ptr<vtxDevice> device = vtxCreateGLDevice();
    return device && vtxRenderer::create(std::move(device)) != nullptr;
}

void SdlApplication::onStarted_() {
    gui::GUI* const gui = gui::GUI::get();
    gui->setMakeScreenShotCallback(saveNumberedScreenshot);
    // Until the toolkit asks for a cursor the display would choose.
    impl_->setCursor(gui::WindowBase::CursorDefault);
    gui->setSurfaceMouseCursorCallback(
        0, [this](bool owned, int cursor, gui::WindowBase*) { impl_->setCursor(owned ? cursor : 0); });
}

void SdlApplication::destroyWindow_() {
    for (auto const& [shape, cursor] : impl_->cursors)
        SDL_FreeCursor(cursor);
    impl_->cursors.clear();
    if (impl_->context)
        SDL_GL_DeleteContext(std::exchange(impl_->context, nullptr));
    if (impl_->window)
        SDL_DestroyWindow(std::exchange(impl_->window, nullptr));
    if (std::exchange(impl_->initialized, false))
        SDL_Quit();
}

float SdlApplication::getDisplayScale_() {
    // The first question of a start, so the display is opened here.
    if (!impl_->initialized) {
        SDL_SetMainReady();
        impl_->initialized = SDL_Init(SDL_INIT_VIDEO) == 0;
    }
    return impl_->initialized ? impl_->getDisplayScale() : 1.0f;
}

bool SdlApplication::getFullScreen() const {
    return impl_->window && (SDL_GetWindowFlags(impl_->window) & SDL_WINDOW_FULLSCREEN_DESKTOP) != 0;
}

// --- Frame ---

void SdlApplication::beginPicture_() {
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glViewport(0, 0, width, height);
}

void SdlApplication::clearPicture_() {
    glClearColor(0.13f, 0.15f, 0.18f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
}

void SdlApplication::present_() {
    if (!impl_->screenshotPath.empty()) {
        qor::string const path = std::exchange(impl_->screenshotPath, {});
        HostApplication::saveScreenshot(path.c_str());
    }
    SDL_GL_SwapWindow(impl_->window);
    impl_->limitFramerate();
}

bool SdlApplication::saveScreenshot(char const* path) {
    impl_->screenshotPath = path;
    return true;
}

qor::vector<unsigned char> SdlApplication::readPicture_() {
    qor::vector<unsigned char> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    std::size_t const row = static_cast<std::size_t>(width) * 4;
    for (int y = 0; y < height / 2; ++y)
        std::swap_ranges(pixels.begin() + static_cast<std::ptrdiff_t>(row * static_cast<std::size_t>(y)),
                         pixels.begin() + static_cast<std::ptrdiff_t>(row * static_cast<std::size_t>(y + 1)),
                         pixels.begin() + static_cast<std::ptrdiff_t>(row * static_cast<std::size_t>(height - 1 - y)));
    // The window has no alpha of its own.
    for (std::size_t i = 3; i < pixels.size(); i += 4)
        pixels[i] = 255;
    return pixels;
}

void SdlApplication::Impl::limitFramerate() {
    int const framerate = application.getFramerate();
    Uint64 const frequency = SDL_GetPerformanceFrequency();
    if (framerate > 0 && framerate < unlimitedFramerate) {
        Uint64 const due = frameEnd + frequency / static_cast<Uint64>(framerate);
        Uint64 const now = SDL_GetPerformanceCounter();
        if (now < due)
            SDL_Delay(static_cast<Uint32>((due - now) * 1000 / frequency));
    }
    frameEnd = SDL_GetPerformanceCounter();
}

double SdlApplication::getTime() const { return impl_->time; }

// --- Clipboard and cursor ---

void SdlApplication::setClipboardText(qor::basic_string<wchar_t> const& text) {
    qor::string utf8;
    qor::wchar_to_utf8(text, utf8);
    SDL_SetClipboardText(utf8.c_str());
}

qor::basic_string<wchar_t> SdlApplication::getClipboardText() const {
    qor::basic_string<wchar_t> text;
    if (char* const utf8 = SDL_GetClipboardText()) {
        qor::iconv_utf8_to_wchar(utf8, text);
        SDL_free(utf8);
    }
    if (getListener())
        getListener()->onClipboardRead(text);
    return text;
}

osg::Vec2i SdlApplication::Impl::getCursorPosition() const {
    int x = 0;
    int y = 0;
    int left = 0;
    int top = 0;
    SDL_GetGlobalMouseState(&x, &y);
    SDL_GetWindowPosition(window, &left, &top);
    return toPixels(x - left, y - top);
}

void SdlApplication::Impl::setCursor(int number) {
    SDL_SystemCursor const shape = getSystemCursor(number);
    SDL_Cursor*& cursor = cursors[shape];
    if (!cursor)
        cursor = SDL_CreateSystemCursor(shape);
    if (cursor)
        SDL_SetCursor(cursor);
}

// --- Sizes ---

osg::Vec2i SdlApplication::Impl::getDrawableSize() const {
    int x = 0;
    int y = 0;
    SDL_GL_GetDrawableSize(window, &x, &y);
    return {x, y};
}

float SdlApplication::Impl::getPixelRatio() const {
    int points = 0;
    SDL_GetWindowSize(window, &points, nullptr);
    return points > 0 ? static_cast<float>(getDrawableSize().x()) / static_cast<float>(points) : 1.0f;
}

osg::Vec2i SdlApplication::Impl::toPixels(int x, int y) const {
    float const ratio = getPixelRatio();
    return {static_cast<int>(std::lround(static_cast<float>(x) * ratio)),
            static_cast<int>(std::lround(static_cast<float>(y) * ratio))};
}

float SdlApplication::Impl::getDisplayScale() const {
    constexpr float normalDpi = 96.0f;
    float dpi = normalDpi;
    int const display = window ? SDL_GetWindowDisplayIndex(window) : 0;
    if (SDL_GetDisplayDPI(display, &dpi, nullptr, nullptr) != 0)
        return 1.0f;
    // Quarter steps, never below 1: displays report odd numbers.
    return std::clamp(std::round(dpi / normalDpi * 4.0f) / 4.0f, 1.0f, 4.0f);
}

// --- Events ---

void SdlApplication::pumpInput_() {
    impl_->time = readClock();
    impl_->takeEvents();
    // Also while it is outside.
    setCursorPosition(impl_->getCursorPosition());
}

void SdlApplication::Impl::takeEvents() {
    // The toolkit asks which modifiers are held when it takes the frame's messages. So a modifier that changes after a
    // press waits for the next frame, and all that follows with it.
    bool pressed = false;
    SDL_Event event;
    while (takeEvent(event)) {
        bool const modifier = isModifierEvent(event);
        if (modifier && pressed) {
            waiting = event;
            return;
        }
        pressed = pressed || (event.type == SDL_KEYDOWN && !modifier) || event.type == SDL_MOUSEBUTTONDOWN ||
                  event.type == SDL_MOUSEWHEEL;
        handle(event);
    }
}

bool SdlApplication::Impl::takeEvent(SDL_Event& event) {
    if (!waiting)
        return SDL_PollEvent(&event) != 0;
    event = *waiting;
    waiting.reset();
    return true;
}

void SdlApplication::Impl::handle(SDL_Event const& event) {
    switch (event.type) {
        case SDL_QUIT:
            application.pushQuit();
            break;
        case SDL_WINDOWEVENT:
            handleWindow(event.window);
            break;
        case SDL_KEYDOWN:
        case SDL_KEYUP:
            handleKey(event.key);
            break;
        case SDL_TEXTINPUT:
            handleText(event.text);
            break;
        case SDL_MOUSEMOTION:
            handleMotion(event.motion);
            break;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            handleButton(event.button);
            break;
        case SDL_MOUSEWHEEL:
            handleWheel(event.wheel);
            break;
        default:
            break;
    }
}

void SdlApplication::Impl::handleWindow(SDL_WindowEvent const& event) {
    switch (event.event) {
        case SDL_WINDOWEVENT_SIZE_CHANGED:
        case SDL_WINDOWEVENT_DISPLAY_CHANGED:
            resize();
            break;
        case SDL_WINDOWEVENT_FOCUS_LOST:
            application.releaseAllInput();
            application.pushActivate(false);
            break;
        case SDL_WINDOWEVENT_FOCUS_GAINED:
            application.pushActivate(true);
            break;
        case SDL_WINDOWEVENT_LEAVE:
            // With a button held the mouse is still followed.
            if (SDL_GetMouseState(nullptr, nullptr) == 0)
                leave();
            break;
        default:
            break;
    }
}

void SdlApplication::Impl::resize() {
    osg::Vec2i const pixels = getDrawableSize();
    float const scale = application.getFollowsDisplayScale() ? getDisplayScale() : application.getScale();
    application.push({HostInput::Resize, {pixels.x(), pixels.y()}, scale});
}

void SdlApplication::Impl::leave() { application.pushMouseMove(farOutside, farOutside); }

void SdlApplication::Impl::handleKey(SDL_KeyboardEvent const& event) {
    bool const down = event.type == SDL_KEYDOWN;
    int const modifiers = event.keysym.mod;
    gui::KeyboardButton const key = getKeyFromSdl(event.keysym.sym);
    application.pushRawKey({static_cast<int>(event.keysym.scancode), key, modifiers, down, event.repeat != 0});
    if (key == gui::KeyNone)
        return;
    application.pushKey(key, modifiers, down);
    if (!down)
        return;
    lastKey = key;
    // SDL reports no text for these: the control character goes with the key.
    bool const control = (modifiers & KMOD_CTRL) != 0 && (modifiers & (KMOD_ALT | KMOD_MODE)) == 0;
    if (control && key > 32 && key < 127)
        application.pushChar(key, key & 31);
}

void SdlApplication::Impl::handleText(SDL_TextInputEvent const& event) {
    qor::basic_string<wchar_t> text;
    qor::iconv_utf8_to_wchar(event.text, text);
    for (wchar_t const character : text)
        application.pushChar(lastKey, static_cast<int>(character));
}

void SdlApplication::Impl::handleMotion(SDL_MouseMotionEvent const& event) {
    osg::Vec2i const point = toPixels(event.x, event.y);
    gui::RawMouseInfo info;
    info.x = point.x();
    info.y = point.y();
    info.deltaX = event.xrel;
    info.deltaY = event.yrel;
    application.pushRawMouse(info);
    application.pushMouseMove(point.x(), point.y());
}

void SdlApplication::Impl::handleButton(SDL_MouseButtonEvent const& event) {
    bool const down = event.type == SDL_MOUSEBUTTONDOWN;
    osg::Vec2i const point = toPixels(event.x, event.y);
    gui::RawMouseInfo info;
    info.x = point.x();
    info.y = point.y();
    info.button = event.button;
    info.down = down;
    application.pushRawMouse(info);
    application.pushMouseMove(point.x(), point.y());
    // While a button is held the mouse is followed outside the window too.
    bool const held = down || SDL_GetMouseState(nullptr, nullptr) != 0;
    SDL_CaptureMouse(held ? SDL_TRUE : SDL_FALSE);
    application.pushMouseButton(event.button, down);
    bool const inside =
        point.x() >= 0 && point.y() >= 0 && point.x() < application.getWidth() && point.y() < application.getHeight();
    if (!held && !inside)
        leave();
}

void SdlApplication::Impl::handleWheel(SDL_MouseWheelEvent const& event) {
    int const delta = event.direction == SDL_MOUSEWHEEL_FLIPPED ? -event.y : event.y;
    if (delta == 0)
        return;
    gui::RawMouseInfo info;
    osg::Vec2i const point = toPixels(event.mouseX, event.mouseY);
    info.x = point.x();
    info.y = point.y();
    info.wheel = delta;
    application.pushRawMouse(info);
    application.pushMouseWheel(delta);
}

}  // namespace host
