#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

#include "gui_lib/widget/WidgetWorkLists.h"
#include "tests/models/Widgets.h"

namespace models {

namespace {

constexpr int containers = 3;
constexpr int slots = 12;

/// What is done to a widget; below `ActRedraw` it gets that DirtyFlag.
enum Act { ActRedraw = 3, ActDestroy, actCount };

/// The dirty marks and the three lists of work as they should be: searched from end to end, widgets by numbers.
class Model : public WidgetsModel {
public:
    struct Node {
        bool target = false, dirty = true, dirtySize = true, needDoRedraw = true, inRedraw = false, childMarked = false;
        int parent = none;
        std::vector<int> children;
    };

    int create(bool, int parent) {
        int const id = count();
        alive.push_back(true);
        nodes.emplace_back();
        enter(id);
        if (live(parent)) {
            nodes[id].parent = parent;
            nodes[parent].children.push_back(id);
            setDirty(parent, Widget::DirtySelf);
        }
        return id;
    }
    void enter(int id) {
        auto& list = inRedrawAll ? dirtyNext : dirty;
        if (std::find(list.begin(), list.end(), id) == list.end())
            list.push_back(id);
    }
    void setDirty(int id, Widget::DirtyFlag flag) {
        if (!nodes[id].dirty) {
            enter(id);
            childMarked(nodes[id].parent);
            nodes[id].dirty = true;
        }
        if (flag != Widget::DirtySelf)
            for (int const child : nodes[id].children)
                setDirty(child, flag == Widget::DirtyTree ? flag : Widget::DirtySelf);
    }
    void setDirtySize(int id) { nodes[id].dirtySize = true; }
    void childMarked(int id) {
        if (!live(id))
            return;
        if (nodes[id].target && nodes[id].inRedraw)
            nodes[id].childMarked = true;
        else if (nodes[id].target)
            setDirty(id, Widget::DirtySelf);
        childMarked(nodes[id].parent);
    }
    void setDrawToTarget(int id, bool target) {
        nodes[id].target = target;
        setDirty(id, Widget::DirtySelf);
    }
    /// A list that is walked keeps a hole, in others the last one fills it.
    static void leave(std::vector<int>& list, int id, bool walked) {
        auto const found = std::find(list.begin(), list.end(), id);
        if (found == list.end())
            return;
        *found = walked ? none : list.back();
        if (!walked)
            list.pop_back();
    }
    void destroy(int id) {
        for (int const child : std::exchange(nodes[id].children, {})) {
            nodes[child].parent = none;
            destroy(child);
        }
        alive[id] = false;
        leave(dirtyNext, id, false);
        leave(dirty, id, inRedrawAll);
        leave(toDoRedraw, id, inDoRedrawAll);
        int const parent = nodes[id].parent;
        if (!live(parent))
            return;
        std::erase(nodes[parent].children, id);
        setDirty(parent, Widget::DirtySelf);
    }
    void redraw(int id) {
        bool const outer = std::exchange(nodes[id].inRedraw, true);
        hear(id, false);
        if (!live(id))
            return;
        if (std::exchange(nodes[id].dirtySize, false))
            setDirty(id, Widget::DirtySelf);
        if (nodes[id].dirty) {
            nodes[id].needDoRedraw = true;
            if (std::find(toDoRedraw.begin(), toDoRedraw.end(), id) == toDoRedraw.end())
                toDoRedraw.push_back(id);
        }
        nodes[id].dirty = false;
        nodes[id].inRedraw = outer;
        if (!outer && std::exchange(nodes[id].childMarked, false))
            setDirty(id, Widget::DirtySelf);
    }
    void redrawAll() {
        inRedrawAll = true;
        for (std::size_t i = 0; i < dirty.size(); ++i)
            if (dirty[i] != none)
                redraw(dirty[i]);
        dirty = std::exchange(dirtyNext, {});
        inRedrawAll = false;
    }
    void doRedrawAll() {
        inDoRedrawAll = true;
        for (std::size_t i = 0; i < toDoRedraw.size(); ++i)
            if (int const id = toDoRedraw[i]; id != none) {
                hear(id, true);
                if (live(id))
                    nodes[id].needDoRedraw = false;
            }
        toDoRedraw.clear();
        inDoRedrawAll = false;
    }

    void describe() {
        for (int const id : dirty)
            tell("dirty", id);
        for (int const id : toDoRedraw)
            tell("to redraw", id);
        for (int id = 0; id < count(); ++id)
            if (live(id))
                tell("marks", id, nodes[id].dirty, nodes[id].needDoRedraw);
    }

    std::vector<Node> nodes;
    std::vector<int> dirty, dirtyNext, toDoRedraw;
    bool inRedrawAll = false, inDoRedrawAll = false;
};

class Toolkit : public Widgets {
public:
    Toolkit() {
        host.update();
        doRedrawAll();
    }

    void create(bool container, int parent) {
        auto* const widget = container ? new Container : new Widget;
        int const id = join(widget);
        widget->setRedrawCallback([this, id] { hear(id, false); });
        widget->setDoRedrawCallback([this, id] { hear(id, true); });
        if (live(parent))
            Open::insert(box(parent), widget, -1);
    }
    void setDirty(int id, Widget::DirtyFlag flag) { get(id)->setDirty(flag); }
    void setDirtySize(int id) { get(id)->setDirtySize(true); }
    void setDrawToTarget(int id, bool target) { get(id)->setDrawToTarget(target); }
    void redraw(int id) { get(id)->redraw(); }
    static void redrawAll() { Widget::redrawAll(); }
    static void doRedrawAll() { Widget::doRedrawAll(); }

    void describe() {
        auto const& lists = gui::WidgetWorkLists::get();
        for (auto const* list : {&lists.getDirtyList(), &lists.getDirtyListNext()})
            for (auto const& entry : *list)
                tell("dirty", numberOf(entry.widget));
        for (Widget const* widget : lists.getDoRedrawList())
            tell("to redraw", numberOf(widget));
        for (int id = 0; id < count(); ++id)
            if (Widget const* const widget = get(id))
                tell("marks", id, Open::dirtyMark(*widget), Open::doRedrawMark(*widget));
    }
};

class Marks : public Pair<Toolkit, Model> {
public:
    Marks() : Pair(slots) {
        // Container 0 holds containers, each of which holds leaves.
        verbs.push_back({"create", 10, {slots}, [this](int slot, int, int) {
                             create(slot, slot < containers,
                                    slot == 0 ? none : ids[slot < containers ? 0 : slot % containers]);
                         }});
        addOnLive("act", 12, {slots, actCount}, [](auto& side, int id, int action, int) { act(side, id, action); });
        addOnLive("markSize", 2, {slots}, [](auto& side, int id, auto...) { side.setDirtySize(id); });
        addOnLive("target", 2, {slots, 2}, [](auto& side, int id, int on, int) { side.setDrawToTarget(id, on); });
        add("redrawAll", 4, {}, [](auto& side, auto...) { side.redrawAll(); });
        add("doRedrawAll", 3, {}, [](auto& side, auto...) { side.doRedrawAll(); });
        addOnLive("trap", 8, {slots, 2, slots * actCount}, [this](auto& side, int id, int inDoRedraw, int what) {
            side.traps[{id, inDoRedraw}] = [&side, victim = ids[what / actCount], what] {
                if (side.live(victim))
                    act(side, victim, what % actCount);
            };
        });
    }

private:
    template <class SideType>
    static void act(SideType& side, int id, int action) {
        if (action == ActDestroy)
            side.destroy(id);
        else if (action == ActRedraw)
            side.redraw(id);
        else
            side.setDirty(id, static_cast<Widget::DirtyFlag>(action));
    }
};

TEST(Models, MarksAreWorkedOffInTheOrderThatSearchedListsGive) { playRandomly<Marks>(); }

}  // namespace

}  // namespace models
