#pragma once

#include <algorithm>
#include <functional>
#include <set>
#include <utility>
#include <vector>

#include <osg/Vec2i>

#include "tests/models/RandomOps.h"

namespace models {

enum WindowKind { KindWindow, KindPopup, KindModal, KindOverlay };

/// What a window hears, in the order of MouseCallbackType, then the wheel and whether its cursor came or went.
enum Told {
    ToldMove,
    ToldDown,
    ToldDouble,
    ToldUp,
    ToldReleased,
    ToldEnter,
    ToldLeave,
    ToldWheel,
    ToldShown,
    ToldGone
};

/// The windows of two surfaces as they should be: plain records in plain lists, found by numbers that are never used
/// again. All but popups have one child, which only takes the mouse; it has the number after its window's.
struct GroupsModel {
    static constexpr int surfaceCount = 2;

    struct Window {
        WindowKind kind = KindWindow;
        bool alive = true, visible = false, focused = false, active = false, enabled = true, hasCursor = true;
        bool asWidget = false, transparent = false, isChild = false;
        bool hasChild() const { return kind != KindPopup; }
        int zOrder = 0, surface = 0, entered = none;
        osg::Vec2i position, size;
    };
    using List = std::vector<int>;
    struct Surface {
        /// By WindowKind.
        List groups[4];
        int hovered = none, capture = none, lastPressed = none, transparent = none;
        std::set<int> cursors;
        osg::Vec2i mouse;
    };

    bool live(int id) const { return id != none && all[id].alive; }
    static bool contains(List const& list, int id) { return std::find(list.begin(), list.end(), id) != list.end(); }

    // --- Life ---
    int create(WindowKind kind) {
        int const id = static_cast<int>(all.size());
        all.emplace_back().kind = kind;
        if (all.back().hasChild())
            all.emplace_back().isChild = true;
        return id;
    }
    void destroy(int id) {
        releaseMouse(all[id].surface, id);
        end(id);
    }
    /// Without the farewell of `destroy`.
    void end(int id) {
        if (all[id].kind == KindModal)
            setVisible(id, false);
        else if (all[id].kind == KindPopup || all[id].visible)
            hide(id);
        for (Surface& surface : surfaces) {
            std::erase(surface.groups[all[id].kind], id);
            surface.cursors.erase(id);
            if (surface.hovered == id)
                surface.hovered = none;
            if (surface.transparent == id)
                surface.transparent = none;
        }
        if (all[id].hasChild()) {
            // The child has no window any more when it says farewell, which counts as surface 0.
            releaseMouse(0, id + 1);
            all[id + 1].alive = false;
        }
        all[id].alive = false;
    }

    // --- State ---
    void setVisible(int id, bool visible) {
        if (std::exchange(all[id].visible, visible) != visible)
            visible ? show(id) : hide(id);
    }
    void setFocused(int id, bool focused) {
        if (all[id].kind == KindWindow && focused && !all[id].focused)
            raise(id);
        all[id].focused = focused;
        if (all[id].kind == KindPopup)
            all[id].active = focused;
    }
    void setZOrder(int id, int zOrder) {
        if (all[id].zOrder == zOrder)
            return;
        hide(id);
        all[id].zOrder = zOrder;
        if (all[id].visible)
            show(id);
    }
    void setTransparent(int id, bool transparent) {
        if (std::exchange(all[id].transparent, transparent) == transparent)
            return;
        surfaces[all[id].surface].transparent = transparent ? id : none;
        updateHover(all[id].surface);
    }
    void setHasCursor(int id, bool hasCursor) {
        if (std::exchange(all[id].hasCursor, hasCursor) != hasCursor)
            tell(id, hasCursor ? ToldShown : ToldGone);
    }
    void setSurface(int id, int index) {
        if (all[id].surface != index)
            setVisible(id, false);
        all[id].surface = index;
    }

    // --- Finding ---
    int active(int index) const {
        List const* const groups = surfaces[index].groups;
        for (WindowKind const kind : {KindPopup, KindModal})
            if (!groups[kind].empty())
                return groups[kind].back();
        int found = none;
        for (int const id : groups[KindWindow])
            if (all[id].focused)
                found = id;
        return found;
    }
    bool takes(int id, osg::Vec2i const& point) const {
        osg::Vec2i const inner = point - all[id].position;
        return all[id].hasCursor && inner.x() >= 0 && inner.y() >= 0 && inner.x() <= all[id].size.x() &&
               inner.y() <= all[id].size.y();
    }
    int find(int index, osg::Vec2i const& point) const {
        Surface const& surface = surfaces[index];
        int found = none;
        for (int const id : surface.groups[KindWindow])
            if (id != surface.transparent && takes(id, point))
                found = id;
        if (!surface.groups[KindModal].empty())
            found = surface.groups[KindModal].back();
        for (int const id : surface.groups[KindPopup])
            if (takes(id, point))
                found = id;
        return found;
    }
    bool anyCursor(int index) const {
        for (WindowKind const kind : {KindModal, KindPopup, KindWindow})
            for (int const id : surfaces[index].groups[kind])
                if (all[id].hasCursor)
                    return true;
        return false;
    }

    // --- Groups ---
    void shown(Surface& surface, int id) {
        if (all[id].hasCursor && surface.cursors.insert(id).second)
            tell(id, ToldShown);
    }
    void gone(Surface& surface, int id) {
        if (all[id].hasCursor && surface.cursors.erase(id) > 0)
            tell(id, ToldGone);
    }
    void insertByZOrder(List& list, int id) {
        auto const below = [this](int zOrder, int other) { return zOrder < all[other].zOrder; };
        list.insert(std::upper_bound(list.begin(), list.end(), all[id].zOrder, below), id);
    }
    void show(int id) {
        WindowKind const kind = all[id].kind;
        int const index = all[id].entered = all[id].surface;
        Surface& surface = surfaces[index];
        List& group = surface.groups[kind];
        if (all[id].asWidget)
            return;
        if (kind == KindModal)
            dropCapture(surface);
        if (kind == KindModal || kind == KindWindow)
            closePopups(index, false);
        if (kind == KindModal || kind == KindPopup)
            setFocused(id, true);
        if (std::erase(group, id) > 0 && kind == KindWindow)
            gone(surface, id);
        if (kind == KindModal || kind == KindPopup)
            group.push_back(id);
        else
            insertByZOrder(group, id);
        if (kind == KindOverlay)
            return;
        shown(surface, id);
        updateHover(index);
    }
    void hide(int id) {
        WindowKind const kind = all[id].kind;
        int const entered = std::exchange(all[id].entered, none);
        int const index = entered != none ? entered : all[id].surface;
        Surface& surface = surfaces[index];
        if (all[id].asWidget)
            return;
        if (kind == KindModal || kind == KindWindow)
            closePopups(index, false);
        if (kind != KindOverlay)
            setFocused(id, false);
        bool const wasIn = std::erase(surface.groups[kind], id) > 0;
        if (kind == KindOverlay)
            return;
        if (wasIn || kind != KindWindow)
            gone(surface, id);
        if (kind == KindWindow && live(surface.capture) && surface.capture == id + 1)
            dropCapture(surface);
        updateHover(index);
    }
    void raise(int id) {
        Surface& surface = surfaces[all[id].surface];
        List& windows = surface.groups[KindWindow];
        if (all[id].asWidget)
            return;
        closePopups(all[id].surface, false);
        if (!surface.groups[KindModal].empty())
            return;
        for (int const other : List(windows))
            if (other != id)
                setFocused(other, false);
        dropCapture(surface);
        bool const wasIn = contains(windows, id);
        auto const transparent = std::find(windows.begin(), windows.end(), surface.transparent);
        auto const keptIndex = transparent - windows.begin();
        int const kept = transparent == windows.end() ? none : *transparent;
        std::erase(windows, kept);
        std::erase(windows, id);
        // A hidden window takes the focus, but no place.
        if (id != kept && all[id].visible)
            insertByZOrder(windows, id);
        if (kept != none)
            windows.insert(windows.begin() + std::min<std::ptrdiff_t>(keptIndex, std::ssize(windows)), kept);
        if (wasIn)
            gone(surface, id);
        if (contains(windows, id))
            shown(surface, id);
    }
    void closePopups(int index, bool spareActive) {
        List const& popups = surfaces[index].groups[KindPopup];
        for (int const popup : List(popups))
            if (contains(popups, popup) && !(spareActive && all[popup].active))
                setVisible(popup, false);
    }
    void updateHover(int index) {
        int& hovered = surfaces[index].hovered;
        int const found = find(index, surfaces[index].mouse);
        if (found == hovered)
            return;
        if (hovered != none)
            tell(hovered, ToldLeave);
        hovered = found;
        if (found != none)
            tell(found, ToldEnter);
    }

    // --- Input; `mouse` of each surface is set before a move ---
    void tell(int id, Told told) {
        bool const needsEnabled = told <= ToldUp;
        if (!needsEnabled || all[id].enabled || all[id].isChild)
            hear(id, told);
    }
    int captured(Surface const& surface) const {
        int const id = surface.capture;
        return live(id) && all[all[id].isChild ? id - 1 : id].enabled ? id : none;
    }
    void dropCapture(Surface& surface) {
        if (live(surface.capture))
            tell(surface.capture, ToldReleased);
        surface.capture = none;
    }
    void captureMouse(int index, int id) {
        if (id != surfaces[index].capture)
            dropCapture(surfaces[index]);
        surfaces[index].capture = id;
    }
    void releaseMouse(int index, int id) {
        if (!live(id) || id == surfaces[index].capture)
            dropCapture(surfaces[index]);
    }
    void move() {
        for (int index = 0; index < surfaceCount; ++index) {
            int target = captured(surfaces[index]);
            if (target == none) {
                updateHover(index);
                target = surfaces[index].hovered;
            }
            if (target != none)
                return tell(target, ToldMove);
        }
    }
    void press(bool twice) {
        for (int index = 0; index < surfaceCount; ++index) {
            Surface& surface = surfaces[index];
            int target = captured(surface);
            bool handled = target != none;
            if (target == none) {
                int const found = find(index, surface.mouse);
                handled = found != none;
                closePopups(index, contains(surface.groups[KindPopup], found));
                target = surface.hovered;
                for (int const popup : surface.groups[KindPopup])
                    all[popup].active = all[popup].active && target == none;
                if (target != none)
                    setFocused(target, true);
                target = surface.hovered;
            }
            if (target != none)
                tell(target, twice && surface.lastPressed == target ? ToldDouble : ToldDown);
            surface.lastPressed = target;
            if (handled || target != none)
                return;
        }
    }
    void release() {
        for (Surface const& surface : surfaces) {
            int const target = captured(surface) != none ? captured(surface) : surface.hovered;
            if (target != none)
                return tell(target, ToldUp);
        }
    }
    void wheel() {
        for (int index = 0; index < surfaceCount; ++index) {
            int const first = active(index);
            int const below = find(index, surfaces[index].mouse);
            for (int const id : {first, below == first ? none : below}) {
                if (id == none)
                    continue;
                tell(id, ToldWheel);
                if (all[id].kind == KindPopup)
                    return;
            }
        }
    }

    std::vector<Window> all;
    Surface surfaces[surfaceCount];
    std::function<void(int, Told)> hear;
};

}  // namespace models
