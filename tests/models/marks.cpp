#include <algorithm>
#include <map>
#include <utility>

#include <gtest/gtest.h>

#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/widget/WidgetWorkLists.h"
#include "tests/models/RandomOps.h"
#include "tests/support/TestHost.h"

namespace models {

namespace {

using gui::Widget;

constexpr int containers = 3;
constexpr int slots = 12;

/// What a widget does, once, in its next redraw or doRedraw callback.
enum Act { ActMark, ActMarkTree, ActDestroy, ActRedraw, actCount };

/// The dirty marks and the three lists of work as they should be: searched from end to end, widgets by numbers.
struct MarksModel {
    struct Node {
        bool alive = true, container = false, visible = true, target = false;
        bool dirty = true, dirtySize = true, needDoRedraw = true, inRedraw = false, childMarked = false;
        int parent = none;
        std::vector<int> children;
    };
    struct Entry {
        int id;
        bool alive;
    };

    bool live(int id) const { return id != none && nodes[id].alive; }
    void create(bool container) {
        nodes.emplace_back().container = container;
        enter(static_cast<int>(nodes.size()) - 1);
    }
    void enter(int id) {
        auto& list = inRedrawAll ? dirtyNext : dirty;
        if (std::none_of(list.begin(), list.end(), [id](Entry const& entry) { return entry.id == id; }))
            list.push_back({id, true});
    }
    void insert(int container, int id) {
        nodes[id].parent = container;
        nodes[container].children.push_back(id);
        mark(container, Widget::DirtySelf);
    }
    void mark(int id, Widget::DirtyFlag flag) {
        if (!nodes[id].dirty) {
            enter(id);
            childMarked(nodes[id].parent);
            nodes[id].dirty = true;
        }
        if (flag != Widget::DirtySelf)
            for (int const child : nodes[id].children)
                mark(child, flag == Widget::DirtyTree ? flag : Widget::DirtySelf);
    }
    void childMarked(int id) {
        if (!live(id))
            return;
        if (nodes[id].target && nodes[id].inRedraw)
            nodes[id].childMarked = true;
        else if (nodes[id].target)
            mark(id, Widget::DirtySelf);
        childMarked(nodes[id].parent);
    }
    template <class List, class Match>
    static void swapOut(List& list, Match match) {
        auto const found = std::find_if(list.begin(), list.end(), match);
        if (found == list.end())
            return;
        *found = list.back();
        list.pop_back();
    }
    void destroy(int id) {
        for (int const child : std::exchange(nodes[id].children, {})) {
            nodes[child].parent = none;
            destroy(child);
        }
        nodes[id].alive = false;
        auto const isId = [id](Entry const& entry) { return entry.id == id; };
        swapOut(dirtyNext, isId);
        if (!inRedrawAll)
            swapOut(dirty, isId);
        else if (auto const found = std::find_if(dirty.begin(), dirty.end(), isId); found != dirty.end())
            found->alive = false;
        if (inDoRedrawAll)
            std::replace(toDoRedraw.begin(), toDoRedraw.end(), id, none);
        else
            swapOut(toDoRedraw, [id](int other) { return other == id; });
        if (!live(nodes[id].parent))
            return;
        std::erase(nodes[nodes[id].parent].children, id);
        mark(nodes[id].parent, Widget::DirtySelf);
    }
    void redraw(int id) {
        bool const outer = std::exchange(nodes[id].inRedraw, true);
        hear(id, false);
        if (!live(id))
            return;
        if (nodes[id].dirtySize)
            mark(id, Widget::DirtySelf);
        nodes[id].dirtySize = false;
        if (nodes[id].dirty && nodes[id].visible) {
            nodes[id].needDoRedraw = true;
            if (std::find(toDoRedraw.begin(), toDoRedraw.end(), id) == toDoRedraw.end())
                toDoRedraw.push_back(id);
        }
        nodes[id].dirty = false;
        nodes[id].inRedraw = outer;
        if (!outer && std::exchange(nodes[id].childMarked, false))
            mark(id, Widget::DirtySelf);
    }
    void redrawAll() {
        inRedrawAll = true;
        for (std::size_t i = 0; i < dirty.size(); ++i)
            if (dirty[i].alive)
                redraw(dirty[i].id);
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

    std::vector<Node> nodes;
    std::vector<Entry> dirty, dirtyNext;
    std::vector<int> toDoRedraw;
    bool inRedrawAll = false, inDoRedrawAll = false;
    std::function<void(int, bool)> hear;
};

/// A widget that shows its marks.
template <class Base>
struct Marked : Base {
    bool dirtyMark() const { return this->dirty; }
    bool doRedrawMark() const { return this->needDoRedraw; }
};

struct Box : Marked<gui::Container> {
    void insert(Widget* widget) { insertWidget_(widget, -1); }
};

class Marks : public Trial {
public:
    Marks() {
        host_.update();
        Widget::doRedrawAll();
        std::fill_n(ids_, slots, none);
        model_.hear = [this](int id, bool inDoRedraw) { hear(1, id, inDoRedraw); };
        verbs = {
            {"create", 10, {slots}, [this](int slot, int, int) { create(slot); }},
            {"destroy", 2, {slots}, onLive([this](int id, int) { act(id, ActDestroy); })},
            {"mark", 8, {slots, 3}, onLive([this](int id, int flag) {
                 real_[id]->setDirty(static_cast<Widget::DirtyFlag>(flag));
                 model_.mark(id, static_cast<Widget::DirtyFlag>(flag));
             })},
            {"markSize", 2, {slots}, onLive([this](int id, int) {
                 real_[id]->setDirtySize(true);
                 model_.nodes[id].dirtySize = true;
             })},
            {"visible", 2, {slots, 3}, onLive([this](int id, int visible) {
                 real_[id]->setVisible(visible);
                 if (std::exchange(model_.nodes[id].visible, visible != 0) != (visible != 0))
                     model_.mark(id, Widget::DirtySelf);
             })},
            {"target", 2, {slots, 2}, onLive([this](int id, int target) {
                 real_[id]->setDrawToTarget(target);
                 model_.nodes[id].target = target;
                 model_.mark(id, Widget::DirtySelf);
             })},
            {"redraw", 2, {slots}, onLive([this](int id, int) { act(id, ActRedraw); })},
            {"redrawAll",
             4,
             {},
             [this](int, int, int) {
                 Widget::redrawAll();
                 model_.redrawAll();
             }},
            {"doRedrawAll",
             3,
             {},
             [this](int, int, int) {
                 Widget::doRedrawAll();
                 model_.doRedrawAll();
             }},
            {"trap",
             8,
             {slots, 2, slots * actCount},
             [this](int slot, int inDoRedraw, int what) {
                 if (model_.live(ids_[slot]) && model_.live(ids_[what / actCount]))
                     for (auto& traps : traps_)
                         traps[{ids_[slot], inDoRedraw != 0}] = {ids_[what / actCount], what % actCount};
             }},
        };
    }

    std::string compare(bool) override {
        if (heard_[0] != heard_[1])
            return "redrawn " + testing::PrintToString(heard_[0]) + ", not " + testing::PrintToString(heard_[1]);
        for (auto& heard : heard_)
            heard.clear();
        std::vector<Widget*> dirty, wanted, toDoRedraw;
        for (auto const& entry : gui::WidgetWorkLists::get().getDirtyList())
            dirty.push_back(entry.widget);
        for (auto const& entry : model_.dirty)
            wanted.push_back(real_[entry.id]);
        if (dirty != wanted || !gui::WidgetWorkLists::get().getDirtyListNext().empty())
            return "the list of dirty widgets differs";
        for (int const id : model_.toDoRedraw)
            toDoRedraw.push_back(real_[id]);
        auto const& list = gui::WidgetWorkLists::get().getDoRedrawList();
        if (!std::equal(list.begin(), list.end(), toDoRedraw.begin(), toDoRedraw.end()))
            return "the list for doRedraw differs";
        for (int const id : ids_) {
            if (!model_.live(id))
                continue;
            auto const& node = model_.nodes[id];
            auto const [dirtyMark, doRedrawMark] = marksOf(id);
            if (dirtyMark != node.dirty || doRedrawMark != node.needDoRedraw)
                return "the marks of " + std::to_string(id) + " differ";
        }
        return "";
    }

private:
    template <class Run>
    std::function<void(int, int, int)> onLive(Run run) {
        return [this, run](int slot, int value, int) {
            if (model_.live(ids_[slot]))
                run(ids_[slot], value);
        };
    }
    std::pair<bool, bool> marksOf(int id) const {
        if (model_.nodes[id].container) {
            auto const* const box = static_cast<Box*>(real_[id]);
            return {box->dirtyMark(), box->doRedrawMark()};
        }
        auto const* const leaf = static_cast<Marked<Widget>*>(real_[id]);
        return {leaf->dirtyMark(), leaf->doRedrawMark()};
    }
    void create(int slot) {
        if (model_.live(ids_[slot]))
            return;
        int const id = ids_[slot] = static_cast<int>(real_.size());
        model_.create(slot < containers);
        Widget* const widget = slot < containers ? static_cast<Widget*>(new Box) : new Marked<Widget>;
        real_.push_back(widget);
        handlers_.push_back(widget->getHandler());
        widget->setRedrawCallback([this, id] { hear(0, id, false); });
        widget->setDoRedrawCallback([this, id] { hear(0, id, true); });
        // Container 0 holds containers, each of which holds leaves.
        int const parent = slot == 0 ? none : ids_[slot < containers ? 0 : slot % containers];
        if (!model_.live(parent))
            return;
        static_cast<Box*>(real_[parent])->insert(widget);
        model_.insert(parent, id);
    }
    void act(int id, int action) {
        actReal(*real_[id], action);
        actModel(id, action);
    }
    static void actReal(Widget& widget, int action) {
        if (action == ActDestroy)
            Widget::destroy(&widget);
        else if (action == ActRedraw)
            widget.redraw();
        else
            widget.setDirty(action == ActMark ? Widget::DirtySelf : Widget::DirtyTree);
    }
    void actModel(int id, int action) {
        if (action == ActDestroy)
            model_.destroy(id);
        else if (action == ActRedraw)
            model_.redraw(id);
        else
            model_.mark(id, action == ActMark ? Widget::DirtySelf : Widget::DirtyTree);
    }
    void hear(int side, int id, bool inDoRedraw) {
        heard_[side].emplace_back(id, inDoRedraw);
        auto const found = traps_[side].find({id, inDoRedraw});
        if (found == traps_[side].end())
            return;
        auto const [victim, action] = found->second;
        traps_[side].erase(found);
        // Whether the toolkit's victim lives is known by its own handler.
        if (side == 1 && model_.live(victim))
            actModel(victim, action);
        else if (Widget* const widget = side == 0 ? gui::WidgetHandler::get(handlers_[victim]) : nullptr)
            actReal(*widget, action);
    }

    MarksModel model_;
    std::vector<Widget*> real_;
    std::vector<gui::WidgetHandler*> handlers_;
    int ids_[slots];
    std::vector<std::pair<int, bool>> heard_[2];
    std::map<std::pair<int, bool>, std::pair<int, int>> traps_[2];
    support::TestHost host_;
};

TEST(Models, MarksAreWorkedOffInTheOrderThatSearchedListsGive) { playRandomly("marks", makeTrial<Marks>); }

}  // namespace

}  // namespace models
