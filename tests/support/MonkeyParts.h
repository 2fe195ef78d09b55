#pragma once

// What is shared by the sources of Monkey.

#include "gui_lib/base/UpdateTarget.h"
#include "gui_lib/frame/GUI.h"
#include "host/headless/HeadlessApplication.h"
#include "tests/support/Monkey.h"

namespace support {

/// The host of one scene; a blocking modal window goes on with the run.
class Monkey::Host final : public host::HeadlessApplication {
public:
    explicit Host(Monkey& monkey) : HeadlessApplication(BackEnd::Trace), monkey_(monkey) {}

    void resize(osg::Vec2i const& pixels) { applySize_(pixels, getScale()); }
    void passTime(double seconds) { setTime(getTime() + seconds); }

    // Application:
    void processModal() override { monkey_.playInModal_(); }

private:
    Monkey& monkey_;
};

/// One callback of a widget, or of nobody.
struct Monkey::Hook {
    Monkey* monkey;
    gui::WidgetHandler* self;
    MonkeyKind kind;

    template <class... Arguments>
    bool operator()(Arguments&&...) const {
        return monkey->onCallback_(kind, self);
    }
};

/// All that GUI and UpdateManager take as an object.
class Monkey::Listener final : public gui::GUI::MouseListener,
                               public gui::GUI::RawKeyListener,
                               public gui::GUI::RawMouseListener,
                               public gui::UpdateTarget {
public:
    explicit Listener(Monkey& monkey) : monkey_(monkey) {}

    void onMouseMove(int, int) override { call_(MonkeyKind::ListenerMove); }
    void onMouseDown(int, int, gui::MouseButton) override { call_(MonkeyKind::ListenerDown); }
    void onMouseDoubleClick(int, int, gui::MouseButton) override { call_(MonkeyKind::ListenerDoubleDown); }
    void onMouseUp(int, int, gui::MouseButton) override { call_(MonkeyKind::ListenerUp); }
    void onMouseWheel(int, int, int) override { call_(MonkeyKind::ListenerWheel); }
    void onRawKeyInput(gui::RawKeyInfo const&) override { call_(MonkeyKind::RawKey); }
    void onRawMouseInput(gui::RawMouseInfo const&) override { call_(MonkeyKind::RawMouse); }
    void update(double) override { call_(MonkeyKind::Tick); }

private:
    void call_(MonkeyKind kind) { monkey_.onCallback_(kind, nullptr); }

    Monkey& monkey_;
};

}  // namespace support
