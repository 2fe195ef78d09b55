#include <algorithm>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowView.h"
#include "tests/models/Widgets.h"
#include "tests/support/LogCapture.h"

namespace models {

namespace {

constexpr int containerSlots = 5;
constexpr int slots = 12;
/// Of traps; the last ones end widgets.
constexpr int actions = 8;

/// A window with a view and a tree of widgets below, as they should be: plain records, found by numbers that are never
/// used again. Number 0 is the window, 1 its view; the view takes every point of the tests.
class TreeModel : public WidgetsModel {
public:
    struct Node {
        bool container = false, focusable = false;
        bool dying = false, visible = true, enabled = true, focused = false;
        int parent = none, hovered = none, focusedChild = none, tabOrder = 0;
        Vec2i position, size;
        std::vector<int> children;
    };

    TreeModel() {
        create(true, true);
        create(true, true);
        nodes[0].children = {1};
        nodes[1].parent = 0;
    }
    void describe() {
        tell("capture, refusals", capture, refusals);
        for (int id = 0; id < count(); ++id) {
            if (!live(id))
                continue;
            Node const& node = nodes[id];
            tell("widget", id, node.parent, node.visible, enabled(id), node.focused, node.tabOrder);
            if (!node.container)
                continue;
            tell("hovered, focused", node.hovered, node.focusedChild);
            if (id > 0)
                for (int const child : node.children)
                    tell("child", child);
        }
    }

    bool enabled(int id) const { return !live(id) || (nodes[id].enabled && enabled(nodes[id].parent)); }
    bool isOrHolds(int id, int other) const {
        return live(other) && (id == other || isOrHolds(id, nodes[other].parent));
    }
    // --- Tree ---
    int create(bool container, bool focusable) {
        alive.push_back(true);
        nodes.emplace_back();
        nodes.back().container = container;
        nodes.back().focusable = focusable || container;
        return count() - 1;
    }
    void insert(int container, int id, int index) {
        if (nodes[id].parent == container)
            return;
        if (isOrHolds(id, container)) {
            ++refusals;
            return;
        }
        detach(id);
        nodes[id].parent = container;
        auto& children = nodes[container].children;
        bool const inside = index >= 0 && index < std::ssize(children);
        children.insert(inside ? children.begin() + index : children.end(), id);
    }
    void detach(int id) {
        int const parent = std::exchange(nodes[id].parent, none);
        forget(parent, id);
        if (live(parent))
            std::erase(nodes[parent].children, id);
    }
    void forget(int container, int id) {
        if (!live(container))
            return;
        if (nodes[container].hovered == id)
            nodes[container].hovered = none;
        if (nodes[container].focusedChild == id)
            nodes[container].focusedChild = none;
    }
    void clear(int container) {
        while (live(container) && !nodes[container].children.empty()) {
            nodes[container].hovered = nodes[container].focusedChild = none;
            for (int const child : std::exchange(nodes[container].children, {})) {
                nodes[child].parent = none;
                destroy(child);
            }
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
        clear(id);
        alive[id] = false;
        detach(id);
    }

    // --- Points and hover ---
    Vec2i origin(int id) const { return live(id) ? nodes[id].position + origin(nodes[id].parent) : Vec2i(); }
    bool takes(int id, Vec2i const& point) const {
        Vec2i const inside = point - origin(id);
        Vec2i const size = nodes[id].size;
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
        hearLive(id, enter ? Entered : Left);
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
    void setVisible(int id, bool visible) { nodes[id].visible = visible; }
    void setSize(int id, Vec2i const& size) { nodes[id].size = size; }
    void setTabOrder(int id, int order) {
        if (nodes[id].focusable)
            nodes[id].tabOrder = order;
    }
    void setPosition(int id, Vec2i const& position) {
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
        if (id == 0 && focused)
            dropCapture();
        nodes[id].focused = focused;
        if (live(nodes[id].parent))
            setFocusedChild(nodes[id].parent, focused ? id : none);
        hearLive(id, Focused);
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
    int mouseTarget() const { return live(capture) && enabled(capture) ? capture : 0; }
    void moveMouse(Vec2i const& point) {
        if (std::exchange(mouse, point) != point)
            route(mouseTarget(), Moved);
    }
    void press(int button, double wait) {
        bool const twice = clickTwice(button, wait);
        int const target = mouseTarget();
        if (target == 0)
            setFocused(0, true);
        route(target, twice && lastPressed == target ? Doubled : Pressed);
        lastPressed = target;
    }
    void releaseButton() { route(mouseTarget(), Lifted); }
    /// A mouse event reaches a widget: a container hands it to the child under the mouse first.
    void route(int id, Event event) {
        if (nodes[id].container) {
            if (!enabled(id))
                return;
            if (event == Doubled)
                setFocusedChild(id, nodes[id].hovered);
            if (event == Moved || event == Pressed)
                updateHover(id);
            if (!live(id))
                return;
            int const hovered = nodes[id].hovered;
            if (live(hovered) && enabled(hovered))
                route(hovered, event);
            if (live(id) && event != Moved)
                updateHover(id);
            if (live(id) && event == Pressed && nodes[id].hovered == hovered)
                setFocusedChild(id, hovered);
        }
        hearLive(id, event);
    }

    // --- Keys ---
    void key(int id = 0) {
        if (id == 0 && !nodes[0].focused)
            return;
        int const child = nodes[id].focusedChild;
        if (live(child) && enabled(child))
            key(child);
        hearLive(id, Keyed);
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
        key();
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

    std::vector<Node> nodes;
    int refusals = 0;
};

struct Focusable : Widget {
    bool getFocusable() const override { return true; }
};

class Toolkit : public Widgets {
public:
    Toolkit() {
        auto* const window = new gui::Window;
        window->setSize(Vec2i(800, 600));
        join(window);
        join(window->getView());
        window->setVisible(true);
    }

    void create(bool container, bool focusable) {
        join(container ? new Container : focusable ? new Focusable : new Widget);
    }
    void insert(int into, int id, int index) { Open::insert(box(into), get(id), index); }
    void clear(int id) { Open::clear(box(id)); }
    void detach(int id) { get(id)->detachFromParent(); }
    void end(int id) { delete get(id); }
    void setTabOrder(int id, int order) { get(id)->setTabOrder(order); }
    void setSize(int id, Vec2i const& size) { get(id)->setSize(size); }
    void tab(bool forwards) {
        if (!forwards)
            host.app().keys.insert(gui::KeyLeftShift);
        host.typeKey(gui::KeyTab);
        host.app().keys.clear();
    }

    void describe() {
        tell("capture, refusals", numberOf(manager().getCapture()), log_.getLines().size());
        for (int id = 0; id < count(); ++id) {
            Widget* const widget = get(id);
            if (!widget)
                continue;
            tell("widget", id, numberOf(widget->getParent()), widget->getVisible(false), widget->getEnabled(),
                 widget->getFocused(), widget->getTabOrder());
            auto* const container = dynamic_cast<Container*>(widget);
            if (!container)
                continue;
            tell("hovered, focused", numberOf(Open::hovered(*container)), numberOf(Open::focused(*container)));
            for (int i = 0; id > 0 && i < container->getWidgetCount(); ++i)
                tell("child", numberOf(container->getWidget(i)));
        }
    }

private:
    support::LogCapture log_;
};

class Tree : public Pair<Toolkit, TreeModel> {
public:
    Tree() : Pair(slots + 1) {
        // The last slot is the view's; containers have the slots below `containerSlots` and this one.
        ids[slots] = 1;
        for (int id : {0, 1}) {
            model.nodes[id].position = real.get(id)->getPosition();
            model.nodes[id].size = real.get(id)->getSize();
        }
        real.moveMouse(Vec2i(1, 2) * step);
        model.moveMouse(Vec2i(1, 2) * step);
        real.told = model.told;
        addTreeVerbs();
        addInputVerbs();
    }

private:
    template <class Run>
    void addOnContainer(char const* name, int weight, std::array<int, 3> ranges, Run run) {
        add(name, weight, ranges, [this, run](auto& side, int slot, int a, int b) {
            int const id = ids[slot < containerSlots ? slot : slots];
            if (side.live(id))
                run(side, id, a, b);
        });
    }
    /// Often a trap is meant for who hears or for its parent.
    int victimOf(int id, int slot) const {
        int const parent = model.nodes[id].parent;
        return slot < slots ? ids[slot] : slot % 2 == 0 ? id : parent > 1 ? parent : none;
    }
    template <class SideType>
    static void spring(SideType& side, int id, int action) {
        static constexpr void (*table[])(SideType&, int) = {
            [](SideType& s, int it) { s.detach(it); },
            [](SideType& s, int it) { s.setVisible(it, false); },
            [](SideType& s, int it) { s.setEnabled(it, false); },
            [](SideType& s, int it) { s.captureMouse(it); },
            [](SideType& s, int it) { s.releaseMouse(it); },
        };
        action < std::ssize(table) ? table[action](side, id) : side.destroy(id);
    }

    void addTreeVerbs() {
        verbs.push_back({"create", 12, {slots}, [this](int slot, int, int) {
                             create(slot, slot < containerSlots, slot % 2 == 0);
                         }});
        addOnContainer("insert", 20, {containerSlots + 4, slots, 7}, [this](auto& side, int into, int slot, int index) {
            if (side.live(ids[slot]))
                side.insert(into, ids[slot], index - 1);
        });
        addOnContainer("clear", 1, {containerSlots + 1}, [](auto& side, int id, auto...) { side.clear(id); });
        addOnLive("destroy", 2, {slots}, [](auto& side, int id, auto...) { side.destroy(id); });
        addOnLive("delete", 1, {slots}, [](auto& side, int id, auto...) { side.end(id); });
        addOnLive("trap", 20, {slots, Keyed + 1, (slots + 6) * actions},
                  [this](auto& side, int id, int event, int what) {
                      side.traps[{id, event}] = [&side, victim = victimOf(id, what / actions), what] {
                          if (side.live(victim))
                              spring(side, victim, what % actions);
                      };
                  });
        addOnLive("visible", 3, {slots, 3}, [](auto& side, int id, int on, int) { side.setVisible(id, on); });
        addOnLive("enabled", 3, {slots, 3}, [](auto& side, int id, int on, int) { side.setEnabled(id, on); });
        addOnLive("focused", 6, {slots, 3}, [](auto& side, int id, int on, int) { side.setFocused(id, on); });
        add("focusWindow", 1, {3}, [](auto& side, int on, auto...) { side.setFocused(0, on); });
        addOnLive("tabOrder", 4, {slots, 4}, [](auto& side, int id, int order, int) { side.setTabOrder(id, order); });
        addOnLive("position", 6, {slots, 5, 5},
                  [](auto& side, int id, int x, int y) { side.setPosition(id, Vec2i(x, y) * step); });
        addOnLive("size", 8, {slots, 12, 12},
                  [](auto& side, int id, int x, int y) { side.setSize(id, Vec2i(x + 2, y + 2) * step); });
    }

    void addInputVerbs() {
        add("move", 12, {10, 8}, [](auto& side, int x, int y, int) { side.moveMouse(Vec2i(x, y + 2) * step); });
        add("press", 8, {2, 3}, [](auto& side, int button, int fifths, int) { side.press(button, 0.2 * fifths); });
        add("release", 6, {}, [](auto& side, auto...) { side.releaseButton(); });
        add("tab", 5, {2}, [](auto& side, int forwards, auto...) { side.tab(forwards); });
        add("capture", 4, {slots}, [this](auto& side, int slot, auto...) { side.captureMouse(ids[slot]); });
        add("releaseCapture", 2, {slots}, [this](auto& side, int slot, auto...) { side.releaseMouse(ids[slot]); });
    }
};

TEST(Models, TheTreeAndWhoHearsWhatAreAsAPlainModelSays) { playRandomly<Tree>(); }

}  // namespace

}  // namespace models
