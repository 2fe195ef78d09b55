#pragma once

#include <gtest/gtest.h>

#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "tests/models/RandomOps.h"
#include "tests/support/Attach.h"
#include "tests/support/TestHost.h"

namespace models {

using gui::Container;
using gui::Widget;
using osg::Vec2i;

/// What a widget can hear, first in the order of MouseCallbackType.
enum Event { Moved, Pressed, Doubled, Lifted, Released, Entered, Left, Wheeled, Focused, Keyed, Cursor };

/// The unit of the tests' places and sizes.
constexpr int step = 20;

/// Opens what widgets keep for their subclasses.
struct Open : Container {
    static void insert(Container& container, Widget* widget, int index) {
        (container.*&Open::insertWidget_)(widget, index);
    }
    static void clear(Container& container) { (container.*&Open::clear_)(); }
    static gui::WidgetHandler* hovered(Container const& container) { return container.*&Open::hoveredWidget; }
    static gui::WidgetHandler* focused(Container const& container) { return container.*&Open::focusedWidget; }
    static bool dirtyMark(Widget const& widget) { return widget.*&Open::dirty; }
    static bool doRedrawMark(Widget const& widget) { return widget.*&Open::needDoRedraw; }
};

/// The toolkit's side: widgets by the numbers in which they were made.
class Widgets : public Side {
public:
    ~Widgets() {
        host.destroyGui();
        for (std::size_t id = 0; id < handlers.size(); ++id)
            EXPECT_FALSE(live(static_cast<int>(id))) << id << " after the end of GUI";
    }

    int join(Widget* widget) {
        int const id = count();
        handlers.push_back(widget->getHandler());
        for (int event = Moved; event <= Left; ++event)
            support::onMouse(*widget, static_cast<gui::MouseCallbackType>(event + 1),
                             [this, id, event] { hear(id, event); });
        support::onEvent(*widget, Widget::focusCallbackName, [this, id] { hear(id, Focused); });
        support::onKey(*widget, gui::KeyboardCallbackDown, [this, id] {
            hear(id, Keyed);
            return false;
        });
        return id;
    }
    int count() const { return static_cast<int>(handlers.size()); }
    Widget* get(int id) const { return gui::WidgetHandler::get(handlerOf(id)); }
    Container& box(int id) const { return static_cast<Container&>(*get(id)); }
    bool live(int id) const { return get(id); }
    gui::WidgetHandler* handlerOf(int id) const { return id == none ? nullptr : handlers[id]; }
    int numberOf(gui::WidgetHandler const* handler) const {
        auto const found = std::find(handlers.begin(), handlers.end(), handler);
        return found == handlers.end() ? none : static_cast<int>(found - handlers.begin());
    }
    int numberOf(Widget const* widget) const { return widget ? numberOf(widget->getHandler()) : none; }
    static gui::WindowsManager& manager() { return *gui::WindowsManager::get(0); }

    void destroy(int id) { Widget::destroy(get(id)); }
    void setVisible(int id, bool visible) { get(id)->setVisible(visible); }
    void setEnabled(int id, bool enabled) { get(id)->setEnabled(enabled); }
    void setFocused(int id, bool focused) { get(id)->setFocused(focused); }
    void setPosition(int id, Vec2i const& position) { get(id)->setPosition(position); }

    void captureMouse(int id) { manager().captureMouse(handlerOf(id)); }
    void releaseMouse(int id) { manager().releaseMouse(handlerOf(id)); }
    void moveMouse(Vec2i const& point) { host.moveMouse(point.x(), point.y()); }
    void press(int button, double wait) {
        host.app().time += wait;
        host.pressMouse(static_cast<gui::MouseButton>(2 + button));
    }
    void releaseButton() { host.releaseMouse(static_cast<gui::MouseButton>(2)); }

    support::TestHost host;
    std::vector<gui::WidgetHandler*> handlers;
};

/// What the models of widgets have in common: who lives, and who has the mouse.
class WidgetsModel : public Side {
public:
    bool live(int id) const { return id != none && alive[id]; }
    int count() const { return static_cast<int>(alive.size()); }
    void hearLive(int id, Event event) {
        if (live(id))
            hear(id, event);
    }

    /// A press is a double click if the one before it was of the same button and not long ago.
    bool clickTwice(int button, double wait) {
        time += wait;
        bool const soon = time - std::exchange(lastPress, time) < 0.3;
        return std::exchange(lastButton, button) == button && soon;
    }
    void tellReleased() {
        if (!live(capture) || std::exchange(releasing, true))
            return;
        hear(capture, Released);
        releasing = false;
    }
    void dropCapture() {
        tellReleased();
        capture = none;
    }
    void captureMouse(int id) {
        if (id != capture)
            tellReleased();
        capture = id;
    }
    void releaseMouse(int id) {
        if (!releasing && (!live(id) || id == capture))
            dropCapture();
    }

    std::vector<bool> alive;
    Vec2i mouse;
    int capture = none, lastPressed = none, lastButton = none;
    double time = 1.0, lastPress = 0.0;
    bool releasing = false;
};

}  // namespace models
