#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "gui_lib/base/Keyboard.h"
#include "platform/qor/Api.h"
#include "testkit/Target.h"

namespace host {
class HostApplication;
}

namespace testkit {

struct Keys;

/// What a driver could not do. `what()` holds the action, the reason, what covers the target, what the driver did on
/// the way, the picture it saved, and the tree.
class VORLEX_API DriverError : public std::runtime_error {
public:
    DriverError(std::string const& text, std::string const& reason, std::string const& picture);
    ~DriverError() override;

    std::string const& getReason() const { return reason_; }
    /// Path of the picture, empty if there is none.
    std::string const& getPicture() const { return picture_; }

private:
    std::string reason_;
    std::string picture_;
};

/// How to press the mouse: `driver.click("list/row", {.held = "ctrl"})`.
struct Press {
    gui::MouseButton button = gui::MouseButtonMain;
    /// Keys held meanwhile, such as "ctrl" or "ctrl+shift".
    std::string_view held = {};
};

/// A person at the host's mouse and keyboard, for tests: it uses the host's input calls only, and runs frames after
/// each. It looks before it acts: the target must be alive and visible; where an ancestor's edge cuts it off, it turns
/// the wheel there; where another window covers it, it clicks its own window's header, or another place of it that does
/// nothing; then it moves to a point that the toolkit says hits the target or a part of it. What cannot be done throws
/// DriverError. It does not ask whether the target is enabled.
/// Coordinates: GUI units. Lifetime: inside that of the host's `start` and `stop`; may be used from a step of the host.
class VORLEX_API Driver {
public:
    explicit Driver(host::HostApplication& application);
    ~Driver();
    Driver(Driver const&) = delete;
    Driver& operator=(Driver const&) = delete;

    /// Where pictures of failures go, "out/testkit" at first; none is overwritten.
    void setPictureFolder(std::string const& folder) { pictureFolder_ = folder; }
    /// Where a point of another surface shows on surface 0; without it widgets there can be found, but not touched.
    void setSurfacePlace(int surface, std::function<osg::Vec2i(osg::Vec2i)> place);

    // --- Finding ---
    gui::Widget& find(Target const& target) const;
    /// The same as an object of its class: `driver.find<gui::CheckBox>("shadows").getState()`.
    template <class Type>
    Type& find(Target const& target) const {
        if (auto* const widget = dynamic_cast<Type*>(&find(target)))
            return *widget;
        fail_("find " + target.describe(), "it is of another class", nullptr);
    }
    /// One widget fits, hidden ones in shown windows counted.
    bool has(Target const& target) const;

    // --- Mouse ---
    void moveTo(Target const& target);
    /// Never close enough to an earlier click of this driver to make a double click.
    void click(Target const& target, Press const& press = {});
    void doubleClick(Target const& target, Press const& press = {});
    /// Presses at `from`, moves in several steps, lets go at `to`, which is brought into view before.
    void drag(Target const& from, Target const& to, Press const& press = {});
    void dragBy(Target const& from, osg::Vec2i const& distance, Press const& press = {});
    /// Notches, positive away from the user.
    void turnWheel(Target const& target, int notches);
    /// Where the mouse is.
    void pressButton(gui::MouseButton button = gui::MouseButtonMain);
    void releaseButton(gui::MouseButton button = gui::MouseButtonMain);

    // --- Keyboard: goes to what has the focus ---
    /// UTF-8; a line feed presses Return, a tabulator Tab.
    void typeText(std::string_view text);
    /// A combination as "ctrl+shift+s", "tab", "f12": see testkit/Keys.h.
    void pressKeys(std::string_view combination);

    // --- Time: of the host's clock, seconds ---
    void runFrames(int count);
    void wait(double seconds);
    /// Runs frames until the condition holds, at most 10 seconds. `what` says in the message what was waited for.
    void waitFor(std::function<bool()> const& condition, std::string_view what = "the condition",
                 double seconds = longestWait);
    /// For a later action that opens a window which blocks: runs once, in the frames that such a window runs. A window
    /// that blocks for longer than 10 seconds ends the action with an error.
    void answerModal(std::function<void()> function) { answer_ = std::move(function); }

    static constexpr double longestWait = 10.0;

private:
    class Action;
    class HeldKeys;
    class HeldButton;
    class FrameScope;

    [[noreturn]] void fail_(std::string const& action, std::string const& reason, gui::Widget const* cover) const;
    [[noreturn]] void fail_(std::string const& reason, gui::Widget const* cover = nullptr) const;
    std::string savePicture_() const;

    // --- Aiming ---
    gui::Widget& getUsable_(gui::WidgetHandler* handler) const;
    /// A point of surface 0 at which the target takes the mouse; clears the way to it.
    osg::Vec2i aim_(Target const& target);
    /// `aim_`, and the mouse is there.
    osg::Vec2i aimAndMove_(Target const& target);
    /// A point of surface 0 that hits the target as things are.
    osg::Vec2i look_(Target const& target) const;
    /// Whether a point at which a widget is hit will do.
    using Accepts = std::function<bool(gui::Widget&, osg::Vec2i const&)>;
    /// A point of the widget's surface that hits it at `place`, or anywhere. Null accepts every point.
    std::optional<osg::Vec2i> findHit_(gui::Widget& widget, std::optional<osg::Vec2i> const& place,
                                       Accepts const& accepts) const;
    /// What takes the mouse at a point of a surface.
    gui::Widget* getHit_(int surface, osg::Vec2i const& point) const;
    osg::Vec2i toScreen_(int surface, osg::Vec2i const& point) const;
    /// The point that the toolkit makes of the pixel for this one.
    static osg::Vec2i reach_(osg::Vec2i const& point);
    void scrollIntoView_(gui::WidgetHandler* handler, std::optional<osg::Vec2i> const& place);
    /// True if that moved the widget `moved`.
    bool turnWheelOver_(gui::Widget& clipper, gui::WidgetHandler* moved, int notches);
    /// Clicks the header of the widget's window, or a place of it that does nothing; false if there is none in view.
    bool raiseWindowOf_(gui::Widget& widget);

    // --- Acting ---
    void runFrame_();
    void runFrames_(int count);
    void onHostFrame_();
    /// False if time is up first.
    bool runUntil_(std::function<bool()> const& condition, double seconds);
    bool getButtonDown_() const;
    void moveMouse_(osg::Vec2i const& point);
    /// As a hand that is never quite still: what held the mouse has kept the others from hearing where it is.
    void stir_(osg::Vec2i const& point);
    void pushButton_(gui::MouseButton button, bool down);
    void pushWheel_(int delta);
    /// Waits until a press is none of a double click.
    void spacePresses_(gui::MouseButton button);
    void notePress_(gui::MouseButton button);
    void clickHere_(gui::MouseButton button);
    void dragHere_(osg::Vec2i const& from, osg::Vec2i const& to, Press const& press);
    void pushKey_(gui::KeyboardButton key, bool down, int modifiers);
    void pressHere_(Keys const& keys);

    host::HostApplication& application_;
    std::string pictureFolder_ = "out/testkit";
    /// By surface id.
    std::vector<std::function<osg::Vec2i(osg::Vec2i)>> surfacePlaces_;
    std::shared_ptr<std::function<void()>> frameCallback_;
    std::function<void()> answer_;
    /// Of the action in progress: what it is, and what was done on the way.
    std::string action_;
    std::string notes_;
    std::vector<gui::KeyboardButton> held_;
    /// Where the driver has moved the mouse.
    osg::Vec2i mouse_;
    gui::MouseButton lastButton_ = gui::MouseButtonNone;
    double lastPress_;
    /// Seconds that the last frame took.
    double frameTime_ = 0.0;
    /// Of the frame that the driver runs: when it began, and how many frames the host has begun in it; -1 outside.
    double frameStart_ = 0.0;
    int hostFrames_ = -1;
};

}  // namespace testkit
