#pragma once

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

#include <osg/Vec2i>

#include "tests/models/RandomOps.h"

namespace models {

/// What a widget can hear, in the order of MouseCallbackType, then focus and keys.
enum Heard { HeardMove, HeardDown, HeardDouble, HeardUp, HeardReleased, HeardEnter, HeardLeave, HeardFocus, HeardKey };

/// A window with a view and a tree of widgets below, as they should be: plain records, found by numbers that are never
/// used again. Number 0 is the window, 1 its view; the view takes every point of the tests.
struct TreeModel {
    struct Node {
        bool container = false, focusable = false;
        bool alive = true, dying = false, visible = true, enabled = true, focused = false;
        int parent = none, hovered = none, focusedChild = none, tabOrder = 0;
        osg::Vec2i position, size;
        std::vector<int> children;
    };

    bool live(int id) const { return id != none && nodes[id].alive; }
    bool enabled(int id) const { return !live(id) || (nodes[id].enabled && enabled(nodes[id].parent)); }
    bool isOrHolds(int id, int other) const {
        return live(other) && (id == other || isOrHolds(id, nodes[other].parent));
    }
    int indexOf(int container, int id) const {
        auto const& children = nodes[container].children;
        auto const found = std::find(children.begin(), children.end(), id);
        return found == children.end() ? none : static_cast<int>(found - children.begin());
    }

    // --- Tree ---
    int create(bool container, bool focusable) {
        nodes.emplace_back();
        nodes.back().container = container;
        nodes.back().focusable = focusable || container;
        return static_cast<int>(nodes.size()) - 1;
    }
    /// False if it is refused as a child.
    bool insert(int container, int id, int index) {
        if (indexOf(container, id) != none)
            return true;
        if (isOrHolds(id, container))
            return false;
        remove(nodes[id].parent, id);
        nodes[id].parent = container;
        auto& children = nodes[container].children;
        bool const inside = index >= 0 && index < std::ssize(children);
        children.insert(inside ? children.begin() + index : children.end(), id);
        return true;
    }
    void forget(int container, int id) {
        if (!live(container))
            return;
        if (nodes[container].hovered == id)
            nodes[container].hovered = none;
        if (nodes[container].focusedChild == id)
            nodes[container].focusedChild = none;
    }
    void remove(int container, int id) {
        if (!live(container) || std::erase(nodes[container].children, id) == 0)
            return;
        forget(container, id);
        nodes[id].parent = none;
    }
    std::vector<int> letGo(int container) {
        nodes[container].hovered = nodes[container].focusedChild = none;
        return std::exchange(nodes[container].children, {});
    }
    void removeAll(int container) {
        for (int const child : letGo(container))
            nodes[child].parent = none;
    }
    void deleteChildren(int container) {
        while (live(container) && !nodes[container].children.empty())
            for (int const child : letGo(container)) {
                if (!live(child))
                    continue;
                nodes[child].parent = none;
                destroy(child);
            }
    }
    void destroy(int id) {
        if (!live(id) || std::exchange(nodes[id].dying, true))
            return;
        forget(nodes[id].parent, id);
        releaseMouse(id);
        if (live(id))
            end(id);
    }
    /// Without the farewell of `destroy`.
    void end(int id) {
        nodes[id].dying = true;
        deleteChildren(id);
        nodes[id].alive = false;
        remove(nodes[id].parent, id);
    }

    // --- Points and hover ---
    osg::Vec2i origin(int id) const { return live(id) ? nodes[id].position + origin(nodes[id].parent) : osg::Vec2i(); }
    bool takes(int id, osg::Vec2i const& point) const {
        osg::Vec2i const inside = point - origin(id);
        osg::Vec2i const size = nodes[id].size;
        return live(id) && nodes[id].visible && inside.x() >= 0 && inside.y() >= 0 && inside.x() <= size.x() &&
               inside.y() <= size.y();
    }
    void setHovered(int container, int id) {
        if (live(nodes[container].hovered))
            enterOrLeave(nodes[container].hovered, false);
        if (!live(container))
            return;
        // The leave may have ended the new one or taken it out.
        bool const stays = live(id) && nodes[id].parent == container;
        nodes[container].hovered = stays ? id : none;
        if (stays)
            enterOrLeave(id, true);
    }
    void enterOrLeave(int id, bool enter) {
        if (nodes[id].container && enter)
            updateHover(id);
        else if (nodes[id].container)
            setHovered(id, none);
        tell(id, enter ? HeardEnter : HeardLeave);
    }
    void updateHover(int container) {
        int found = none;
        if (takes(container, mouse))
            for (int const child : nodes[container].children)
                if (takes(child, mouse))
                    found = child;
        if (!enabled(found))
            found = none;
        if (found != nodes[container].hovered)
            setHovered(container, found);
    }
    /// A widget has moved or woken under a resting mouse.
    void hoverAnew(int id) {
        if (!nodes[id].container)
            return;
        updateHover(id);
        if (live(id) && live(nodes[id].hovered) && enabled(nodes[id].hovered))
            hoverAnew(nodes[id].hovered);
    }

    // --- State ---
    void setPosition(int id, osg::Vec2i const& position) {
        if (std::exchange(nodes[id].position, position) != position)
            hoverAnew(id);
    }
    void setEnabled(int id, bool enable) {
        if (std::exchange(nodes[id].enabled, enable) != enable && enabled(id))
            hoverAnew(id);
    }
    void setFocused(int id, bool focused) {
        if (nodes[id].focused == focused)
            return;
        // Focus raises the window, which takes the mouse from whoever has it.
        if (id == 0 && focused) {
            tellReleased();
            capture = none;
        }
        nodes[id].focused = focused;
        if (live(nodes[id].parent))
            setFocusedChild(nodes[id].parent, focused ? id : none);
        tell(id, HeardFocus);
        if (live(id) && live(nodes[id].focusedChild))
            setFocused(nodes[id].focusedChild, focused);
    }
    void setFocusedChild(int container, int id) {
        int const old = nodes[container].focusedChild;
        if (old == id)
            return;
        if (live(old))
            setFocused(old, false);
        if (!live(container))
            return;
        nodes[container].focusedChild = none;
        if (!live(id) || nodes[id].parent != container || !nodes[id].focusable)
            return;
        nodes[container].focusedChild = id;
        setFocused(id, true);
        if (live(container))
            setFocused(container, true);
    }

    // --- Mouse ---
    void tellReleased() {
        if (!live(capture) || std::exchange(releasing, true))
            return;
        tell(capture, HeardReleased);
        releasing = false;
    }
    void captureMouse(int id) {
        if (id != capture)
            tellReleased();
        capture = id;
    }
    void releaseMouse(int id) {
        if (releasing || (live(id) ? id != capture : capture == none))
            return;
        tellReleased();
        capture = none;
    }
    int mouseTarget() const { return live(capture) && enabled(capture) ? capture : 0; }
    void moveMouse(osg::Vec2i const& point) {
        if (std::exchange(mouse, point) != point)
            route(mouseTarget(), HeardMove);
    }
    void press(bool twice) {
        int const target = mouseTarget();
        if (target == 0)
            setFocused(0, true);
        route(target, twice && lastPressed == target ? HeardDouble : HeardDown);
        lastPressed = target;
    }
    void releaseButton() { route(mouseTarget(), HeardUp); }
    /// A mouse event reaches a widget: a container hands it to the child under the mouse first.
    void route(int id, Heard heard) {
        if (nodes[id].container) {
            if (!enabled(id))
                return;
            if (heard == HeardDouble)
                setFocusedChild(id, nodes[id].hovered);
            if (heard == HeardMove || heard == HeardDown)
                updateHover(id);
            if (!live(id))
                return;
            int const hovered = nodes[id].hovered;
            if (live(hovered) && enabled(hovered))
                route(hovered, heard);
            if (live(id) && heard != HeardMove)
                updateHover(id);
            if (live(id) && heard == HeardDown && nodes[id].hovered == hovered)
                setFocusedChild(id, hovered);
        }
        tell(id, heard);
    }

    // --- Keys ---
    void key(int id = 0) {
        if (id == 0 && !nodes[0].focused)
            return;
        int const child = nodes[id].focusedChild;
        if (live(child) && enabled(child))
            key(child);
        tell(id, HeardKey);
    }
    void collectTabOrdered(int id, std::vector<int>& out) const {
        if (!nodes[id].visible || !enabled(id))
            return;
        if (nodes[id].focusable && nodes[id].tabOrder != 0)
            out.push_back(id);
        for (int const child : nodes[id].children)
            collectTabOrdered(child, out);
    }
    void tab(bool forwards) {
        std::vector<int> chain;
        collectTabOrdered(1, chain);
        if (!nodes[0].focused || chain.empty())
            return;
        auto const before = [this](int a, int b) { return nodes[a].tabOrder < nodes[b].tabOrder; };
        std::stable_sort(chain.begin(), chain.end(), before);
        if (!forwards)
            std::reverse(chain.begin(), chain.end());
        auto const place = std::find_if(chain.begin(), chain.end(), [this](int id) { return nodes[id].focused; });
        int const current = place == chain.end() ? none : *place;
        int const next = current == none || place + 1 == chain.end() ? chain.front() : *(place + 1);
        if (next == current)
            return;
        if (current != none)
            setFocused(current, false);
        chain.clear();
        collectTabOrdered(1, chain);
        if (std::find(chain.begin(), chain.end(), next) != chain.end())
            setFocused(next, true);
    }

    void tell(int id, Heard heard) {
        if (live(id) && hear)
            hear(id, heard);
    }

    std::vector<Node> nodes;
    osg::Vec2i mouse;
    int capture = none, lastPressed = none;
    bool releasing = false;
    /// Hears who hears what, and may do a thing to a widget meanwhile.
    std::function<void(int, Heard)> hear;
};

}  // namespace models
