#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <osg/Vec2i>

#include "tests/support/MonkeySteps.h"

namespace gui {
class Container;
class Widget;
class WidgetHandler;
class WindowBase;
}  // namespace gui

namespace host {
class HostApplication;
}

namespace support {

/// Every kind of function that a host can hang into the toolkit and that may act.
enum class MonkeyKind : uint8_t {
    MouseMove,
    MouseDown,
    MouseDoubleDown,
    MouseUp,
    MouseReleased,
    MouseEnter,
    MouseLeave,
    Wheel,
    KeyDown,
    Char,
    KeyUp,
    Change,
    Focus,
    Position,
    Size,
    Close,
    TabShow,
    TabHide,
    ThumbPressed,
    ThumbReleased,
    PaneChange,
    Redraw,
    DoRedraw,
    HotKey,
    Cursor,
    ListenerMove,
    ListenerDown,
    ListenerDoubleDown,
    ListenerUp,
    ListenerWheel,
    RawKey,
    RawMouse,
    GuiKey,
    SurfaceMouse,
    Tick,
    AppUpdate,
    UserMessage,
    Screenshot,
    Quit,
    Activate,
    Count
};

inline constexpr std::size_t monkeyKindCount = std::size_t(MonkeyKind::Count);

/// How often each verb was used in each kind of callback.
using MonkeyMatrix = std::array<std::array<uint32_t, monkeyVerbCount>, monkeyKindCount>;

char const* getName(MonkeyKind kind);
/// Why the verb can never be used in the kind; null if it can.
char const* getImpossible(MonkeyKind kind, MonkeyVerb verb);

/// A widget, and what it was found to be when it was new.
struct MonkeyWidget {
    gui::WidgetHandler* handler;
    gui::Container* container;
    gui::WindowBase* window;
};

/// What is wrong with the widgets that are alive: parents and children that do not know each other, hover, focus or
/// capture that points to strangers, windows in wrong lists, dead widgets in the work lists. Empty if all is well.
std::string findTreeFault(std::vector<MonkeyWidget> const& live);

/// Plays a run of events on a scene, and from inside callbacks ends, moves, reskins and animates widgets, posts input
/// and runs nested frames; looks after each event whether all is still well. Lifetime: one run at a time; it makes and
/// ends the host of each scene.
class Monkey {
public:
    struct Settings {
        /// Builds a scene in a host that has been started; what it returns ends the scene.
        std::function<std::shared_ptr<void>(host::HostApplication&)> makeScene;
        /// If there is one: such a scene comes first, unplayed, so that what is made once and kept has been made.
        std::function<std::shared_ptr<void>(host::HostApplication&)> makeFirstScene;
        std::string skin = "skins/dark.lua";
        osg::Vec2i size{1440, 900};
        /// The scene begins anew after so many steps.
        std::size_t sceneSteps = 2000;
        /// With fewer alive, a step makes some first.
        std::size_t fewestWidgets = 60;
        /// Takes the number of the step at hand, for who must know where a run has died.
        std::size_t* progress = nullptr;
        /// A line for each step and each act to standard output.
        bool talk = false;
    };

    explicit Monkey(Settings settings);
    ~Monkey();
    Monkey(Monkey const&) = delete;
    Monkey& operator=(Monkey const&) = delete;

    /// The first fault found, with the number of its step; empty if the run ended well. Fills in the verbs that the
    /// bytes leave open.
    std::string play(std::span<uint8_t> bytes);

    MonkeyMatrix& getMatrix() { return matrix_; }
    uint64_t getCallbackCount() const { return callbackCount_; }
    uint64_t getActCount() const { return actCount_; }

private:
    class Host;
    class Listener;
    struct Hook;

    /// A frame inside frames.
    static constexpr int deepestFrame = 3;

    // --- Scenes and steps ---
    void warmUp_();
    bool startHost_();
    void endHost_();
    void startScene_();
    void endScene_();
    void settle_();
    void checkMemory_();
    void playStep_();
    void playEvent_(MonkeyStep const& step);
    void playMouse_(MonkeyStep const& step);
    void playKeys_(MonkeyStep const& step);
    void playHost_(MonkeyStep const& step);
    void playWindows_(MonkeyStep const& step);
    void changeWidget_(MonkeyStep const& step, gui::Widget* widget);
    void changeHost_(MonkeyStep const& step, gui::Widget* widget);
    void playInModal_();
    void deliver_();
    void moveMouse_(MonkeyStep const& step);
    void moveOnto_(gui::Widget const& widget, unsigned place);
    void makeAnimal_(unsigned number);
    void makeModal_(MonkeyStep const& step);

    // --- Watching ---
    void attachToNew_();
    void attach_(gui::Widget& widget);
    void attachToHost_();
    void check_();
    void fail_(std::string const& text);
    void say_(char const* format, ...) __attribute__((format(printf, 2, 3)));
    gui::Widget* pickWidget_(unsigned number) const;
    /// One that a press on its middle would reach; of a class that was picked seldom.
    gui::Widget* pickHit_(MonkeyStep const& step);

    // --- Acting ---
    /// Every callback comes here. The result is what a callback that answers returns.
    bool onCallback_(MonkeyKind kind, gui::WidgetHandler* self);
    bool chooseVerb_(MonkeyKind kind, gui::Widget* self, MonkeyVerb& verb);
    bool can_(MonkeyVerb verb, MonkeyKind kind, gui::Widget* self) const;
    void act_(MonkeyVerb verb, gui::Widget* self);
    gui::Widget* findTarget_(MonkeyVerb verb, gui::Widget* self) const;
    void end_(gui::Widget* widget);
    void moveWidget_(gui::Widget* self);
    void captureSome_(gui::Widget* self);
    void showModal_();
    void loadSkin_(gui::Widget* self);
    /// The whole skin file, as live reload does; refused amid passes.
    void reloadSkin_();
    void postInput_();

    Settings settings_;
    MonkeyMatrix matrix_{};
    std::span<uint8_t> bytes_;
    std::size_t next_ = 0;
    std::size_t sceneEnd_ = 0;
    std::string fault_;

    Host* host_ = nullptr;
    std::shared_ptr<void> scene_;
    std::unique_ptr<Listener> listener_;
    int seen_ = 0;
    std::vector<MonkeyWidget> live_;
    std::map<std::string_view, unsigned> hitCounts_;
    std::vector<gui::WidgetHandler*> everMade_;

    /// The step at hand and how it acts.
    std::size_t stepIndex_ = 0;
    unsigned gap_ = 255;
    unsigned acts_ = 0;
    uint8_t pick_ = 0;
    int actDepth_ = 0;
    int frameDepth_ = 0;
    int modalDepth_ = 0;
    int modalSteps_ = 0;
    bool quiet_ = true;
    uint64_t callbackCount_ = 0;
    uint64_t actCount_ = 0;
    std::size_t scenes_ = 0;
    std::ptrdiff_t heldAllocations_ = 0;
};

}  // namespace support
