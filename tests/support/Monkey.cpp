#include "tests/support/Monkey.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <utility>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/controls/scroll/ScrollBar.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/controls/small/TabGroupItem.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "host/Assets.h"
#include "platform/qor/Log.h"
#include "platform/qor/Memory.h"
#include "platform/trace/vtxTraceLog.h"
#include "tests/support/MonkeyParts.h"

namespace support {

namespace {

using gui::Widget;
using gui::WidgetHandler;

/// Lines that the run itself provokes. A picture of a surface may come to lie on that surface.
constexpr char const* expectedLines[] = {"A widget cannot be inserted into itself or its own child",
                                         "a frame buffer was drawn into itself"};
/// From the functions of a page: a widget that they look for was ended or moved away, or has lost the skin that keeps
/// the value.
constexpr char const* expectedOfPages[] = {"(a nil value)", "attempt to index a nil value", "can only be read"};

bool containsAny(std::string_view line, std::span<char const* const> parts) {
    return std::any_of(parts.begin(), parts.end(), [&](char const* part) { return line.find(part) != line.npos; });
}

bool isExpected(std::string_view line) {
    return containsAny(line, expectedLines) ||
           (line.find("assets/gallery/") != line.npos && containsAny(line, expectedOfPages));
}

/// The first misuse of the renderer that the run does not provoke; empty if there is none.
std::string findMisuse(vtxTraceLog const& log) {
    auto const& misuses = log.getMisuses();
    auto const found = std::find_if(misuses.begin(), misuses.end(),
                                    [](qor::string const& misuse) { return !isExpected(misuse.c_str()); });
    return found == misuses.end() ? std::string() : found->c_str();
}

/// The one that hears the screenshot callback, which is a bare function.
Monkey* playing = nullptr;
std::function<void()> screenshot;

constexpr int settleFrames = 100;

}  // namespace

// --- Life ---

Monkey::Monkey(Settings settings) : settings_(std::move(settings)) { playing = this; }

Monkey::~Monkey() { playing = nullptr; }

std::string Monkey::play(std::span<uint8_t> bytes) {
    bytes_ = bytes.first(bytes.size() - bytes.size() % MonkeyStep::size);
    next_ = 0;
    fault_.clear();
    auto before = qor::setLogSink([this](char const* tag, int, char const* text) {
        if (!isExpected(text))
            fail_(std::string("unexpected log line [") + tag + "] " + text);
    });
    warmUp_();
    std::size_t const count = bytes_.size() / MonkeyStep::size;
    while (next_ < count && fault_.empty()) {
        sceneEnd_ = std::min(next_ + settings_.sceneSteps, count);
        startScene_();
        while (next_ < sceneEnd_ && fault_.empty())
            playStep_();
        if (fault_.empty())
            settle_();
        endScene_();
    }
    qor::setLogSink(std::move(before));
    return fault_;
}

void Monkey::fail_(std::string const& text) {
    if (!fault_.empty())
        return;
    fault_ = "step " + std::to_string(stepIndex_) + ": " + text;
    say_("%s", fault_.c_str());
}

void Monkey::say_(char const* format, ...) {
    if (!settings_.talk)
        return;
    va_list arguments;
    va_start(arguments, format);
    std::vprintf(format, arguments);
    va_end(arguments);
    std::printf("\n");
    std::fflush(stdout);
}

// --- Scenes ---

void Monkey::warmUp_() {
    quiet_ = true;
    if (!settings_.makeFirstScene || !startHost_())
        return;
    scene_ = settings_.makeFirstScene(*host_);
    host_->runFrame();
    host_->runFrame();
    scene_.reset();
    endHost_();
}

bool Monkey::startHost_() {
    static bool const assetsFound = (host::addToolkitAssets(), true);
    (void)assetsFound;
    host_ = new Host(*this);
    host::HostOptions options;
    options.skin = settings_.skin.c_str();
    options.size = settings_.size;
    options.scale = 1.0f;
    if (!host_->start(options)) {
        fail_("the host does not start");
        return false;
    }
    host_->getTraceLog()->setRecording(false);
    return true;
}

void Monkey::endHost_() {
    gui::Application::destroy();
    host_ = nullptr;
    quiet_ = true;
    frameDepth_ = 0;
    listener_.reset();
    screenshot = nullptr;
}

void Monkey::startScene_() {
    if (!startHost_())
        return;
    seen_ = 0;
    live_.clear();
    hitCounts_.clear();
    modalSteps_ = 0;
    everMade_.clear();
    scene_ = settings_.makeScene(*host_);
    attachToHost_();
    attachToNew_();
    deliver_();
    host_->runFrame();
    quiet_ = false;
}

/// Without input and acts, and with the clock going on, all marks must be gone after a while, and none must come.
void Monkey::settle_() {
    quiet_ = true;
    stepIndex_ = next_;
    host_->releaseAllInput();
    gui::GUI::get()->setDebugDraw(false);
    // A zoomed widget marks itself in every frame, and so does an effect without end for the targets around it.
    for (MonkeyWidget const& each : live_) {
        if (Widget* const widget = WidgetHandler::get(each.handler))
            widget->setZoom(1.0f);
        if (Widget* const widget = WidgetHandler::get(each.handler))
            widget->setShaderEffect(nullptr, nullptr);
    }
    host_->setFrameTime(0.25);
    int still = 0;
    for (int i = 0; i < settleFrames && still < 3; ++i) {
        unsigned long const before = Widget::getRedrawCount();
        host_->runFrame();
        still = Widget::getRedrawCount() == before ? still + 1 : 0;
    }
    if (still < 3)
        fail_("widgets are still redrawn after " + std::to_string(settleFrames) + " quiet frames");
    check_();
}

void Monkey::endScene_() {
    quiet_ = true;
    attachToNew_();
    scene_.reset();
    // What dies with GUI calls out as well; only a frame cannot run there.
    frameDepth_ = deepestFrame;
    quiet_ = !fault_.empty();
    stepIndex_ = next_ - 1;
    gap_ = pick_ % 8;
    acts_ = 0;
    std::string const misuse = host_->getTraceLog() ? findMisuse(*host_->getTraceLog()) : std::string();
    endHost_();
    if (!misuse.empty())
        fail_("misuse of the renderer: " + misuse);
    for (WidgetHandler* handler : everMade_)
        if (WidgetHandler::get(handler))
            return fail_("a widget has outlived its GUI");
    checkMemory_();
}

void Monkey::checkMemory_() {
    // Records of handlers are never freed: a block for 512 widgets.
    qor::AllocationCounts const counts = qor::getAllocationCounts();
    auto const held = std::ptrdiff_t(counts.allocations - counts.frees);
    std::ptrdiff_t const allowed = heldAllocations_ + std::ptrdiff_t(everMade_.size() / 512 + 2);
    // What is made once and kept comes with the first scenes.
    if (++scenes_ > 3 && held > allowed)
        fail_("the scene leaves " + std::to_string(held - heldAllocations_) + " allocations behind");
    heldAllocations_ = held;
}

// --- Steps ---

void Monkey::playStep_() {
    std::size_t const outerIndex = std::exchange(stepIndex_, next_++);
    MonkeyStep const step(&bytes_[stepIndex_ * MonkeyStep::size]);
    unsigned const outerGap = std::exchange(gap_, step.gap);
    unsigned const outerActs = std::exchange(acts_, 0);
    uint8_t const outerPick = std::exchange(pick_, step.pick);
    if (settings_.progress)
        *settings_.progress = stepIndex_;
    say_("%zu %s %u %u %u%s", stepIndex_, getName(step.event), step.a, step.b, step.c,
         findMisuse(*host_->getTraceLog()).empty() ? "" : " (misused)");
    playEvent_(step);
    if ((step.pick & 7) != 0)
        deliver_();
    attachToNew_();
    if (actDepth_ == 0 && frameDepth_ == 0 && modalDepth_ == 0)
        check_();
    stepIndex_ = outerIndex;
    gap_ = outerGap;
    acts_ = outerActs;
    pick_ = outerPick;
}

void Monkey::deliver_() {
    if (gui::GUI* const gui = gui::GUI::get())
        gui->processMessages();
}

void Monkey::playInModal_() {
    ++modalDepth_;
    constexpr int stepsOfOneModal = 40;
    if (++modalSteps_ % stepsOfOneModal != 0 && next_ < sceneEnd_ && fault_.empty())
        playStep_();
    else if (gui::WindowBase* const window = gui::WindowsManager::get(0)->getActiveWindow())
        window->setVisible(false);
    if (next_ >= sceneEnd_ || !fault_.empty())
        host_->quit();
    ++frameDepth_;
    host_->runFrame();
    --frameDepth_;
    --modalDepth_;
}

void Monkey::check_() {
    if (!fault_.empty())
        return;
    if (std::string const misuse = findMisuse(*host_->getTraceLog()); !misuse.empty())
        return fail_("misuse of the renderer: " + misuse);
    std::erase_if(live_, [](MonkeyWidget const& each) { return !WidgetHandler::get(each.handler); });
    std::string const fault = findTreeFault(live_);
    if (!fault.empty())
        fail_(fault);
}

// --- Hooks ---

void Monkey::attachToNew_() {
    for (; seen_ < WidgetHandler::getCount(); ++seen_) {
        WidgetHandler* const handler = WidgetHandler::getAt(seen_);
        everMade_.push_back(handler);
        Widget* const widget = WidgetHandler::get(handler);
        if (!widget)
            continue;
        live_.push_back({handler, dynamic_cast<gui::Container*>(widget), dynamic_cast<gui::WindowBase*>(widget)});
        attach_(*widget);
    }
}

void Monkey::attach_(Widget& widget) {
    using Kind = MonkeyKind;
    auto const hook = [this, self = widget.getHandler()](Kind kind) { return Hook{this, self, kind}; };
    for (int type = gui::MouseCallbackMove; type <= gui::MouseCallbackLeave; ++type)
        widget.addMouseCallback(gui::MouseCallbackType(type),
                                std::make_shared<std::function<void(int, int, int)>>(
                                    hook(Kind(int(Kind::MouseMove) + type - gui::MouseCallbackMove))));
    widget.addMouseWheelCallback(std::make_shared<std::function<bool(int, int, int)>>(hook(Kind::Wheel)));
    for (int type = gui::KeyboardCallbackDown; type <= gui::KeyboardCallbackUp; ++type)
        widget.addKeyboardCallback(gui::KeyboardCallbackType(type),
                                   std::make_shared<std::function<bool(gui::KeyboardButton, int)>>(
                                       hook(Kind(int(Kind::KeyDown) + type - gui::KeyboardCallbackDown))));
    constexpr std::pair<char const*, Kind> names[] = {
        {Widget::changeCallbackName, Kind::Change},
        {Widget::focusCallbackName, Kind::Focus},
        {Widget::positionCallbackName, Kind::Position},
        {Widget::sizeCallbackName, Kind::Size},
        {gui::WindowBase::closeCallbackName, Kind::Close},
        {gui::TabGroupItem::showCallbackName, Kind::TabShow},
        {gui::TabGroupItem::hideCallbackName, Kind::TabHide},
        {gui::ScrollBar::thumbPressedCallbackName, Kind::ThumbPressed},
        {gui::ScrollBar::thumbReleasedCallbackName, Kind::ThumbReleased},
        {gui::ScrollPane::changeScrollPaneCallbackName, Kind::PaneChange},
    };
    for (auto const& [name, kind] : names)
        widget.addWidgetCallback(gui::getWidgetCallbackType(name), std::make_shared<std::function<void()>>(hook(kind)));
    widget.setRedrawCallback(hook(Kind::Redraw));
    widget.setDoRedrawCallback(hook(Kind::DoRedraw));
    if (auto* const window = dynamic_cast<gui::WindowBase*>(&widget))
        for (gui::KeyboardButton const key : {gui::KeyReturn, gui::KeyboardButton('a'), gui::KeySpace})
            window->addHotKeyCallback({key}, std::make_shared<std::function<void()>>(hook(Kind::HotKey)));
}

void Monkey::attachToHost_() {
    using Kind = MonkeyKind;
    gui::GUI& gui = *gui::GUI::get();
    auto const hook = [this](Kind kind) { return Hook{this, nullptr, kind}; };
    listener_ = std::make_unique<Listener>(*this);
    gui.addMouseListener(listener_.get());
    gui.addRawKeyListener(listener_.get());
    gui.addRawMouseListener(listener_.get());
    gui::UpdateManager::get().addTarget(listener_.get());
    gui.addKeyboardCallback(std::make_shared<gui::GUI::KeyboardCallback>(hook(Kind::GuiKey)));
    for (int surface = 0; gui.getSurfaceIdValid(surface); ++surface)
        gui.setSurfaceMouseCursorCallback(
            surface, [this](bool, int, gui::WindowBase* window) { onCallback_(Kind::Cursor, window->getHandler()); });
    gui.setSurfaceMouseFunc(0, [this](int x, int y) {
        onCallback_(Kind::SurfaceMouse, nullptr);
        return osg::Vec2i(x, y);
    });
    screenshot = hook(Kind::Screenshot);
    gui.setMakeScreenShotCallback([](char const*) {
        if (screenshot)
            screenshot();
    });
    host_->addUpdateCallback(std::make_shared<std::function<void()>>(hook(Kind::AppUpdate)));
    host_->setOnQuitCallback(hook(Kind::Quit));
    host_->setOnActivateCallback(hook(Kind::Activate));
}

}  // namespace support
