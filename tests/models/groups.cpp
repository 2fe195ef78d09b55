#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/PopupWindow.h"
#include "gui_lib/windows/Window.h"
#include "tests/models/Widgets.h"

namespace models {

namespace {

using gui::WindowBase;

enum WindowKind { KindWindow, KindPopup, KindModal };

/// The windows as they should be: plain records in plain lists, found by numbers that are never used again. Ordinary
/// windows have one child, which only takes the mouse; it has the number after its window's.
class GroupsModel : public WidgetsModel {
public:
    struct Window {
        WindowKind kind = KindWindow;
        bool visible = false, focused = false, active = false, transparent = false;
        bool isChild = false, hasCursor = true;
        int zOrder = 0;
        Vec2i position, size;
    };
    using List = std::vector<int>;

    static bool contains(List const& list, int id) { return std::find(list.begin(), list.end(), id) != list.end(); }

    void describe() {
        for (WindowKind const kind : {KindWindow, KindModal, KindPopup})
            for (int const id : groups[kind])
                tell("shown", id);
        tell("active, hovered, capture", active(), hovered, capture);
        for (int id = 0; id < count(); ++id)
            if (live(id) && !all[id].isChild)
                tell("window", id, all[id].visible, all[id].focused, all[id].active);
            else if (live(id))
                tell("child", id);
    }

    // --- Life ---
    int create(WindowKind kind, Vec2i const& position, Vec2i const& size) {
        int const id = count();
        all.push_back({.kind = kind, .position = position, .size = size});
        if (kind == KindWindow)
            all.emplace_back().isChild = true;
        alive.resize(all.size(), true);
        return id;
    }
    void destroy(int id) {
        releaseMouse(id);
        if (all[id].kind == KindModal)
            setVisible(id, false);
        else if (all[id].kind == KindPopup || all[id].visible)
            hide(id);
        std::erase(groups[all[id].kind], id);
        cursors.erase(id);
        if (hovered == id)
            hovered = none;
        if (transparent == id)
            transparent = none;
        if (all[id].kind == KindWindow) {
            releaseMouse(id + 1);
            alive[id + 1] = false;
        }
        alive[id] = false;
    }

    // --- State ---
    void setVisible(int id, bool visible) {
        if (std::exchange(all[id].visible, visible) != visible)
            visible ? show(id) : hide(id);
    }
    void setFocused(int id, bool focused) {
        if (all[id].kind == KindWindow && focused && !all[id].focused)
            raise(id);
        if (all[id].kind == KindPopup)
            all[id].active = focused;
        if (std::exchange(all[id].focused, focused) != focused)
            hear(id, Focused);
    }
    void setPosition(int id, Vec2i const& position) { all[id].position = position; }
    void setZOrder(int id, int zOrder) {
        if (all[id].zOrder == zOrder)
            return;
        hide(id);
        all[id].zOrder = zOrder;
        if (all[id].visible)
            show(id);
    }
    void setTransparent(int id, bool on) {
        if (std::exchange(all[id].transparent, on) == on)
            return;
        transparent = on ? id : none;
        updateHover();
    }
    void setHasCursor(int id, bool on) {
        if (std::exchange(all[id].hasCursor, on) != on)
            hear(id, Cursor, on);
    }

    // --- Finding ---
    int active() const {
        for (WindowKind const kind : {KindPopup, KindModal})
            if (!groups[kind].empty())
                return groups[kind].back();
        int found = none;
        for (int const id : groups[KindWindow])
            if (all[id].focused)
                found = id;
        return found;
    }
    bool takes(int id) const {
        Vec2i const inner = mouse - all[id].position, size = all[id].size;
        return all[id].hasCursor && inner.x() >= 0 && inner.y() >= 0 && inner.x() <= size.x() && inner.y() <= size.y();
    }
    int find() const {
        int found = none;
        for (int const id : groups[KindWindow])
            if (id != transparent && takes(id))
                found = id;
        if (!groups[KindModal].empty())
            found = groups[KindModal].back();
        for (int const id : groups[KindPopup])
            if (takes(id))
                found = id;
        return found;
    }
    // --- Groups ---
    /// The host hears whose cursor is shown.
    void shown(int id) {
        if (all[id].hasCursor && cursors.insert(id).second)
            hear(id, Cursor, true);
    }
    void gone(int id) {
        if (all[id].hasCursor && cursors.erase(id) > 0)
            hear(id, Cursor, false);
    }
    void insertByZOrder(List& list, int id) {
        auto const below = [this](int zOrder, int other) { return zOrder < all[other].zOrder; };
        list.insert(std::upper_bound(list.begin(), list.end(), all[id].zOrder, below), id);
    }
    void show(int id) {
        WindowKind const kind = all[id].kind;
        List& group = groups[kind];
        if (kind == KindModal)
            dropCapture();
        if (kind != KindPopup)
            closePopups(false);
        if (kind != KindWindow)
            setFocused(id, true);
        if (std::erase(group, id) > 0 && kind == KindWindow)
            gone(id);
        if (kind == KindWindow)
            insertByZOrder(group, id);
        else
            group.push_back(id);
        shown(id);
        updateHover();
    }
    void hide(int id) {
        WindowKind const kind = all[id].kind;
        if (kind != KindPopup)
            closePopups(false);
        setFocused(id, false);
        if (std::erase(groups[kind], id) > 0 || kind != KindWindow)
            gone(id);
        if (kind == KindWindow && live(capture) && capture == id + 1)
            dropCapture();
        updateHover();
    }
    void raise(int id) {
        List& windows = groups[KindWindow];
        closePopups(false);
        if (!groups[KindModal].empty())
            return;
        for (int const other : List(windows))
            if (other != id)
                setFocused(other, false);
        dropCapture();
        bool const wasIn = contains(windows, id);
        auto const place = std::find(windows.begin(), windows.end(), transparent);
        auto const keptIndex = place - windows.begin();
        int const kept = place == windows.end() ? none : *place;
        std::erase(windows, kept);
        std::erase(windows, id);
        // A hidden window takes the focus, but no place.
        if (id != kept && all[id].visible)
            insertByZOrder(windows, id);
        if (kept != none)
            windows.insert(windows.begin() + std::min<std::ptrdiff_t>(keptIndex, std::ssize(windows)), kept);
        if (wasIn)
            gone(id);
        if (contains(windows, id))
            shown(id);
    }
    void closePopups(bool spareActive) {
        List const& popups = groups[KindPopup];
        for (int const popup : List(popups))
            if (contains(popups, popup) && !(spareActive && all[popup].active))
                setVisible(popup, false);
    }
    void updateHover() {
        int const found = find();
        if (found == hovered)
            return;
        if (hovered != none)
            hear(hovered, Left);
        hovered = found;
        if (found != none)
            hear(found, Entered);
    }

    // --- Input ---
    int target() const { return live(capture) ? capture : hovered; }
    void moveMouse(Vec2i const& point) {
        if (std::exchange(mouse, point) == point)
            return;
        if (!live(capture))
            updateHover();
        hearLive(target(), Moved);
    }
    void press(int button, double wait) {
        bool const twice = clickTwice(button, wait);
        if (!live(capture)) {
            closePopups(contains(groups[KindPopup], find()));
            for (int const popup : groups[KindPopup])
                all[popup].active = all[popup].active && hovered == none;
            if (hovered != none)
                setFocused(hovered, true);
        }
        int const pressed = target();
        // The view takes the focus, and through it a window that came under the mouse only now.
        if (pressed != none && pressed != capture)
            setFocused(pressed, true);
        hearLive(pressed, twice && lastPressed == pressed ? Doubled : Pressed);
        lastPressed = pressed;
    }
    void releaseButton() { hearLive(target(), Lifted); }
    void wheel() {
        int const first = active(), below = find();
        for (int const id : {first, below == first ? none : below}) {
            if (id == none)
                continue;
            hear(id, Wheeled);
            if (all[id].kind == KindPopup)
                return;
        }
    }

    std::vector<Window> all;
    /// By WindowKind.
    List groups[3];
    std::set<int> cursors;
    int hovered = none, transparent = none;
};

constexpr WindowKind kinds[] = {KindWindow, KindWindow, KindWindow, KindWindow,
                                KindPopup,  KindPopup,  KindPopup,  KindModal};
constexpr int slots = 8, ordinarySlots = 4, captureSlots = 7;

class Toolkit : public Widgets {
public:
    Toolkit() {
        gui_.setSurfaceMouseCursorCallback(
            0, [this](bool on, int, WindowBase* window) { hear(numberOf(window), Cursor, on); });
    }

    void create(WindowKind kind, Vec2i const& position, Vec2i const& size) {
        WindowBase* const window = make(kind);
        int const id = join(window);
        support::onWheel(*window, [this, id] {
            hear(id, Wheeled);
            return false;
        });
        if (kind == KindWindow) {
            auto* const child = new Widget;
            // Out of reach unless it has the mouse.
            child->setPosition(Vec2i(-9999, -9999));
            window->insertWidget(child, -1);
            join(child);
        }
        window->setPosition(position);
        window->setSize(size);
    }
    void setZOrder(int id, int zOrder) { static_cast<gui::Window*>(get(id))->setZOrder(zOrder); }
    void setTransparent(int id, bool on) { static_cast<gui::Window*>(get(id))->setTransparentForUserInput(on); }
    void setHasCursor(int id, bool on) { static_cast<WindowBase*>(get(id))->setHasCursor(on); }
    void wheel() {
        gui_.mouseWheel(1);
        gui_.processMessages();
    }

    void describe() {
        qor::vector<WindowBase*> windows;
        manager().getShownWindows(windows);
        for (WindowBase const* window : windows)
            tell("shown", numberOf(window));
        tell("active, hovered, capture", numberOf(manager().getActiveWindow()), numberOf(manager().getHoveredWindow()),
             numberOf(manager().getCapture()));
        for (int id = 0; id < count(); ++id) {
            Widget* const widget = get(id);
            auto const* const popup = dynamic_cast<gui::PopupWindow*>(widget);
            if (dynamic_cast<WindowBase*>(widget))
                tell("window", id, widget->getVisible(false), widget->getFocused(), popup && popup->getActive());
            else if (widget)
                tell("child", id);
        }
    }

private:
    static WindowBase* make(WindowKind kind) {
        if (kind == KindWindow)
            return new gui::Window;
        if (kind == KindPopup)
            return new gui::PopupWindow;
        auto* const modal = new gui::ModalWindow(true);
        modal->setLockFlow(false);
        return modal;
    }

    gui::GUI& gui_ = *gui::GUI::get();
};

class Groups : public Pair<Toolkit, GroupsModel> {
public:
    Groups() : Pair(slots) {
        verbs.push_back({"create", 8, {slots, 12, 12}, [this](int slot, int x, int y) {
                             create(slot, kinds[slot], Vec2i(x, y) * step, Vec2i(6 + x % 5, 5 + y % 4) * step);
                         }});
        addOnLive("destroy", 1, {slots}, [](auto& side, int id, auto...) { side.destroy(id); });
        addOnLive("visible", 14, {slots, 3}, [](auto& side, int id, int on, int) { side.setVisible(id, on); });
        addOnLive("focused", 6, {slots, 4}, [](auto& side, int id, int on, int) { side.setFocused(id, on); });
        addOnLive("zOrder", 3, {ordinarySlots, 4}, [](auto& side, int id, int z, int) { side.setZOrder(id, z); });
        addOnLive("transparent", 2, {ordinarySlots, 2},
                  [](auto& side, int id, int on, int) { side.setTransparent(id, on); });
        addOnLive("hasCursor", 2, {slots, 3}, [](auto& side, int id, int on, int) { side.setHasCursor(id, on); });
        addOnLive("position", 4, {slots, 12, 12},
                  [](auto& side, int id, int x, int y) { side.setPosition(id, Vec2i(x, y) * step); });
        add("move", 12, {16, 16}, [](auto& side, int x, int y, int) { side.moveMouse(Vec2i(x, y) * step); });
        add("press", 10, {2, 3}, [](auto& side, int button, int fifths, int) { side.press(button, 0.2 * fifths); });
        add("release", 4, {}, [](auto& side, auto...) { side.releaseButton(); });
        add("wheel", 3, {}, [](auto& side, auto...) { side.wheel(); });
        addOnLive("capture", 3, {captureSlots},
                  [this](auto& side, int id, auto...) { side.captureMouse(id + (model.all[id].kind == KindWindow)); });
        add("releaseCapture", 2, {slots}, [this](auto& side, int slot, auto...) { side.releaseMouse(ids[slot]); });
    }
};

TEST(Models, TheGroupsOfWindowsAreAsPlainListsSay) { playRandomly<Groups>(); }

}  // namespace

}  // namespace models
