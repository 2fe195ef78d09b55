// What a driver does: input, frames, waiting, and its report when it fails. Aiming is in DriverAim.cpp.

#include "testkit/Driver.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <utility>

#include "gui_lib/base/RawInput.h"
#include "gui_lib/frame/GUI.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/qor/Utf8.h"
#include "testkit/Keys.h"
#include "testkit/TreeDump.h"

namespace testkit {

namespace {

constexpr int dragSteps = 8;
/// Frames of one action that pass while the clock stands still, before that counts as a fault.
constexpr int stillFrames = 1000;
/// A host without a clock that moves must not block for ever.
constexpr int longestBlock = 100000;

/// The raw point that the toolkit takes for a point. Below scale 1 not every unit has one: the next one then.
osg::Vec2i toRaw(osg::Vec2i const& point) {
    gui::GUI const& gui = *gui::GUI::get();
    osg::Vec2i raw = gui.convertToRawScreenPosition(point.x(), point.y());
    osg::Vec2i const back = gui.convertFromRawScreenPosition(raw.x(), raw.y());
    raw.x() += back.x() < point.x() ? 1 : 0;
    raw.y() += back.y() < point.y() ? 1 : 0;
    return raw;
}

}  // namespace

DriverError::DriverError(std::string const& text, std::string const& reason, std::string const& picture)
    : std::runtime_error(text), reason_(reason), picture_(picture) {}

DriverError::~DriverError() = default;

// --- Scopes ---

/// Names what the driver is at, for its report; an action within another one stands for itself.
class Driver::Action {
public:
    Action(Driver& driver, std::string const& words)
        : driver_(driver),
          action_(std::exchange(driver.action_, words)),
          notes_(std::exchange(driver.notes_, std::string())) {
        if (!gui::GUI::get() || !driver.application_.getRunning()) {
            restore_();
            driver.fail_(words, "the application has ended", nullptr);
        }
    }
    ~Action() { restore_(); }
    Action(Action const&) = delete;
    Action& operator=(Action const&) = delete;

private:
    void restore_() {
        driver_.action_ = action_;
        driver_.notes_ = notes_;
    }

    Driver& driver_;
    std::string action_;
    std::string notes_;
};

/// Holds keys down; lets them go in the end, whatever happened.
class Driver::HeldKeys {
public:
    HeldKeys(Driver& driver, std::vector<gui::KeyboardButton> const& keys) : driver_(driver), before_(driver.held_) {
        for (gui::KeyboardButton const key : keys) {
            driver_.held_.push_back(key);
            driver_.pushKey_(key, true, getModifiers(driver_.held_));
        }
    }
    ~HeldKeys() {
        while (driver_.held_.size() > before_.size()) {
            gui::KeyboardButton const key = driver_.held_.back();
            driver_.held_.pop_back();
            driver_.pushKey_(key, false, getModifiers(driver_.held_));
        }
    }
    HeldKeys(HeldKeys const&) = delete;
    HeldKeys& operator=(HeldKeys const&) = delete;

    static std::vector<gui::KeyboardButton> parse(Driver const& driver, std::string_view words) {
        if (words.empty())
            return {};
        std::optional<Keys> const keys = parseKeys(words);
        if (!keys || keys->key != gui::KeyNone)
            driver.fail_("\"" + std::string(words) +
                         "\" cannot be held: it takes shift, ctrl and alt, joined by \"+\"");
        return keys->held;
    }

private:
    Driver& driver_;
    std::vector<gui::KeyboardButton> before_;
};

/// Holds a mouse button down; lets it go in the end, whatever happened.
class Driver::HeldButton {
public:
    HeldButton(Driver& driver, gui::MouseButton button) : driver_(driver), button_(button) {
        driver_.pushButton_(button_, true);
    }
    ~HeldButton() { driver_.pushButton_(button_, false); }
    HeldButton(HeldButton const&) = delete;
    HeldButton& operator=(HeldButton const&) = delete;

private:
    Driver& driver_;
    gui::MouseButton button_;
};

// --- Life ---

Driver::Driver(host::HostApplication& application)
    : application_(application),
      frameCallback_(std::make_shared<std::function<void()>>([this] { onHostFrame_(); })),
      lastPress_(application.getTime()) {
    application_.addUpdateCallback(frameCallback_);
}

Driver::~Driver() {
    // The application may have ended before.
    if (gui::Application::get() == &application_)
        application_.removeUpdateCallback(frameCallback_);
}

void Driver::setSurfacePlace(int surface, std::function<osg::Vec2i(osg::Vec2i)> place) {
    if (surface <= 0)
        return;
    surfacePlaces_.resize(std::max(surfacePlaces_.size(), static_cast<std::size_t>(surface) + 1));
    surfacePlaces_[static_cast<std::size_t>(surface)] = std::move(place);
}

// --- Finding ---

gui::Widget& Driver::find(Target const& target) const {
    std::string error;
    gui::Widget* const widget = target.find(error);
    if (widget)
        return *widget;
    fail_(action_.empty() ? "find " + target.describe() : action_,
          error.empty() ? "no window takes the mouse there" : error, nullptr);
}

bool Driver::has(Target const& target) const {
    std::string error;
    return target.find(error) != nullptr;
}

// --- Frames and waiting ---

/// Counts the frames inside one frame of the driver.
class Driver::FrameScope {
public:
    explicit FrameScope(Driver& driver)
        : driver_(driver),
          start_(std::exchange(driver.frameStart_, driver.application_.getTime())),
          frames_(std::exchange(driver.hostFrames_, 0)) {}
    ~FrameScope() {
        driver_.frameStart_ = start_;
        driver_.hostFrames_ = frames_;
    }
    FrameScope(FrameScope const&) = delete;
    FrameScope& operator=(FrameScope const&) = delete;

private:
    Driver& driver_;
    double start_;
    int frames_;
};

void Driver::runFrame_() {
    if (!application_.getRunning() || !gui::GUI::get())
        return;
    double const before = application_.getTime();
    {
        FrameScope const scope(*this);
        application_.runFrame();
    }
    frameTime_ = application_.getTime() - before;
}

void Driver::runFrames_(int count) {
    for (int i = 0; i < count; ++i)
        runFrame_();
}

void Driver::onHostFrame_() {
    // The first one is the driver's own; any other is run by a window that blocks.
    if (hostFrames_ < 0 || ++hostFrames_ == 1)
        return;
    if (auto answer = std::exchange(answer_, {})) {
        frameStart_ = application_.getTime();
        // As a step it is input from outside, which a recording holds.
        if (auto* const headless = dynamic_cast<host::HeadlessApplication*>(&application_))
            headless->addStep(0.0, std::move(answer));
        else
            answer();
    } else if (application_.getTime() - frameStart_ > longestWait || hostFrames_ > longestBlock) {
        fail_("a window that blocks was not closed in 10 seconds; give Driver::answerModal what answers it");
    }
}

bool Driver::runUntil_(std::function<bool()> const& condition, double seconds) {
    double const start = application_.getTime();
    int still = 0;
    while (!condition()) {
        double const before = application_.getTime();
        if (!application_.getRunning() || !gui::GUI::get())
            fail_("the application has ended");
        if (before - start >= seconds)
            return false;
        runFrame_();
        still = application_.getTime() == before ? still + 1 : 0;
        if (still > stillFrames)
            fail_("the host's clock stands still");
    }
    return true;
}

void Driver::runFrames(int count) {
    Action const action(*this, "run frames");
    runFrames_(count);
}

void Driver::wait(double seconds) {
    Action const action(*this, "wait");
    double const end = application_.getTime() + seconds;
    // A little more than nothing: sums of frame times are not exact.
    runUntil_([&] { return application_.getTime() >= end - 1e-6; }, seconds);
}

void Driver::waitFor(std::function<bool()> const& condition, std::string_view what, double seconds) {
    Action const action(*this, "wait for " + std::string(what));
    seconds = std::clamp(seconds, 0.0, longestWait);
    if (!runUntil_(condition, seconds)) {
        char time[32];
        std::snprintf(time, sizeof(time), "%g", seconds);
        fail_(std::string("it has not come in ") + time + " seconds");
    }
}

// --- Mouse ---

osg::Vec2i Driver::reach_(osg::Vec2i const& point) {
    osg::Vec2i const raw = toRaw(point);
    return gui::GUI::get()->convertFromRawScreenPosition(raw.x(), raw.y());
}

bool Driver::getButtonDown_() const {
    return application_.getMouseButtonDown(gui::MouseButtonMain) ||
           application_.getMouseButtonDown(gui::MouseButtonMiddle) ||
           application_.getMouseButtonDown(gui::MouseButtonSecondary);
}

void Driver::moveMouse_(osg::Vec2i const& point) {
    mouse_ = point;
    osg::Vec2i const raw = toRaw(point);
    osg::Vec2i before;
    application_.getCursorScreenPosition(before);
    gui::RawMouseInfo info;
    info.x = raw.x();
    info.y = raw.y();
    info.deltaX = raw.x() - before.x();
    info.deltaY = raw.y() - before.y();
    application_.pushRawMouse(info);
    application_.pushMouseMove(raw.x(), raw.y());
    runFrame_();
}

void Driver::stir_(osg::Vec2i const& point) {
    moveMouse_(point + osg::Vec2i(1, 0));
    moveMouse_(point);
}

void Driver::pushButton_(gui::MouseButton button, bool down) {
    gui::RawMouseInfo info;
    osg::Vec2i place;
    application_.getCursorScreenPosition(place);
    info.x = place.x();
    info.y = place.y();
    info.button = button;
    info.down = down;
    application_.pushRawMouse(info);
    application_.pushMouseButton(button, down);
}

void Driver::spacePresses_(gui::MouseButton button) {
    if (lastButton_ != gui::MouseButtonNone && lastButton_ != button)
        return;
    if (!runUntil_([&] { return application_.getTime() >= lastPress_ + gui::GUI::get()->getDoubleClickTime(); },
                   longestWait))
        fail_("the toolkit's double-click time keeps two clicks apart for more than 10 seconds");
}

void Driver::notePress_(gui::MouseButton button) {
    lastButton_ = button;
    lastPress_ = application_.getTime();
}

void Driver::clickHere_(gui::MouseButton button) {
    spacePresses_(button);
    {
        HeldButton const held(*this, button);
        runFrame_();
        notePress_(button);
    }
    runFrames_(2);
}

void Driver::moveTo(Target const& target) {
    Action const action(*this, "move to " + target.describe());
    aimAndMove_(target);
}

void Driver::click(Target const& target, Press const& press) {
    Action const action(*this, "click " + target.describe());
    auto const keys = HeldKeys::parse(*this, press.held);
    aimAndMove_(target);
    {
        HeldKeys const held(*this, keys);
        clickHere_(press.button);
    }
    runFrames_(1);
}

void Driver::doubleClick(Target const& target, Press const& press) {
    Action const action(*this, "double-click " + target.describe());
    auto const keys = HeldKeys::parse(*this, press.held);
    double const time = gui::GUI::get()->getDoubleClickTime();
    if (!(time > 0.0))
        fail_("the toolkit's double-click time leaves no double clicks");
    aimAndMove_(target);
    spacePresses_(press.button);
    // Slow frames leave no room for frames between the presses.
    int const between = frameTime_ * 4.0 < time ? 1 : 0;
    {
        HeldKeys const held(*this, keys);
        for (int i = 0; i < 2; ++i) {
            {
                HeldButton const button(*this, press.button);
                runFrames_(i == 1 ? 1 : between);
            }
            runFrames_(i == 1 ? 2 : between);
        }
        notePress_(press.button);
    }
    runFrames_(1);
}

void Driver::dragHere_(osg::Vec2i const& from, osg::Vec2i const& to, Press const& press) {
    {
        HeldKeys const held(*this, HeldKeys::parse(*this, press.held));
        spacePresses_(press.button);
        HeldButton const button(*this, press.button);
        runFrame_();
        notePress_(press.button);
        for (int step = 1; step <= dragSteps; ++step) {
            osg::Vec2i const way = to - from;
            moveMouse_(from + osg::Vec2i(way.x() * step / dragSteps, way.y() * step / dragSteps));
        }
        runFrame_();
    }
    runFrame_();
    stir_(to);
}

void Driver::drag(Target const& from, Target const& to, Press const& press) {
    Action const action(*this, "drag " + from.describe() + " to " + to.describe());
    aim_(to);
    osg::Vec2i const start = aimAndMove_(from);
    dragHere_(start, look_(to), press);
}

void Driver::dragBy(Target const& from, osg::Vec2i const& distance, Press const& press) {
    Action const action(
        *this, "drag " + from.describe() + " by " + std::to_string(distance.x()) + "," + std::to_string(distance.y()));
    osg::Vec2i const start = aimAndMove_(from);
    dragHere_(start, start + distance, press);
}

void Driver::turnWheel(Target const& target, int notches) {
    Action const action(*this, "turn the wheel over " + target.describe());
    aimAndMove_(target);
    for (int i = 0; i < std::abs(notches); ++i)
        pushWheel_(notches > 0 ? 1 : -1);
    runFrames_(1);
}

void Driver::pushWheel_(int delta) {
    gui::RawMouseInfo info;
    osg::Vec2i place;
    application_.getCursorScreenPosition(place);
    info.x = place.x();
    info.y = place.y();
    info.wheel = delta;
    application_.pushRawMouse(info);
    application_.pushMouseWheel(delta);
    runFrame_();
}

void Driver::pressButton(gui::MouseButton button) {
    Action const action(*this, "press a mouse button");
    spacePresses_(button);
    pushButton_(button, true);
    runFrame_();
    notePress_(button);
}

void Driver::releaseButton(gui::MouseButton button) {
    Action const action(*this, "release a mouse button");
    pushButton_(button, false);
    runFrame_();
    stir_(mouse_);
}

// --- Keyboard ---

void Driver::pushKey_(gui::KeyboardButton key, bool down, int modifiers) {
    application_.pushRawKey({0, key, modifiers, down, false});
    application_.pushKey(key, modifiers, down);
}

void Driver::pressHere_(Keys const& keys) {
    {
        HeldKeys const held(*this, keys.held);
        if (keys.key != gui::KeyNone)
            pushKey_(keys.key, true, getModifiers(held_));
        if (keys.character != 0)
            application_.pushChar(keys.key, keys.character);
        runFrame_();
        if (keys.key != gui::KeyNone)
            pushKey_(keys.key, false, getModifiers(held_));
    }
    runFrame_();
}

void Driver::typeText(std::string_view text) {
    Action const action(*this, "type \"" + std::string(text) + "\"");
    for (wchar_t const character : qor::utf8_to_wchar(text)) {
        std::optional<Keys> const keys = getKeysOfCharacter(static_cast<int>(character));
        if (!keys)
            fail_("no key types the control character " + std::to_string(static_cast<int>(character)));
        pressHere_(*keys);
    }
}

void Driver::pressKeys(std::string_view combination) {
    Action const action(*this, "press \"" + std::string(combination) + "\"");
    std::optional<Keys> const keys = parseKeys(combination);
    if (!keys)
        fail_("there is a word in it that names no key; it takes words as \"ctrl+shift+s\", \"tab\", \"page up\"");
    pressHere_(*keys);
}

// --- Failing ---

std::string Driver::savePicture_() const {
    if (!gui::GUI::get())
        return {};
    std::string path;
    std::error_code ignored;
    for (int number = 1; path.empty() || std::filesystem::exists(path, ignored); ++number)
        path = pictureFolder_ + "/driver-" + std::to_string(number) + ".png";
    return application_.saveScreenshot(path.c_str()) ? path : std::string();
}

void Driver::fail_(std::string const& reason, gui::Widget const* cover) const { fail_(action_, reason, cover); }

void Driver::fail_(std::string const& action, std::string const& reason, gui::Widget const* cover) const {
    auto const* const headless = dynamic_cast<host::HeadlessApplication const*>(&application_);
    bool const trace = headless && headless->getTraceLog();
    std::string const picture = trace ? std::string() : savePicture_();
    std::string text = "Cannot " + action + ": " + reason + ".";
    if (cover)
        text += "\n  covered by: " + describe(*cover);
    text += notes_;
    text += "\n  picture: " + (trace             ? "none, the trace back end has no pixels"
                               : picture.empty() ? "none, it could not be saved in " + pictureFolder_
                                                 : picture);
    throw DriverError(text + "\n" + dumpTree(), reason, picture);
}

}  // namespace testkit
