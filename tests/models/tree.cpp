#include <map>
#include <random>

#include <gtest/gtest.h>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowView.h"
#include "tests/models/RandomOps.h"
#include "tests/models/TreeModel.h"
#include "tests/support/Attach.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TestHost.h"

namespace models {

namespace {

using gui::Container;
using gui::Widget;
using gui::WidgetHandler;
using osg::Vec2i;

constexpr int containerSlots = 5;
constexpr int slots = 12;
/// As a container this and all above is the view of the window.
constexpr int viewSlot = containerSlots;
constexpr int step = 20;
/// Of traps; the last ones end widgets.
constexpr int actions = 8;

/// Opens what containers keep for their subclasses.
struct Open : Container {
    static void insert(Container& container, Widget* widget, int index) {
        (container.*&Open::insertWidget_)(widget, index);
    }
    static void remove(Container& container, Widget* widget) { (container.*&Open::removeWidget_)(widget); }
    static void removeAll(Container& container) { (container.*&Open::removeAllWidgets_)(); }
    static void clear(Container& container) { (container.*&Open::clear_)(); }
    static int indexOf(Container const& container, Widget const* widget) {
        return (container.*&Open::getWidgetIndex_)(widget);
    }
    static WidgetHandler* hovered(Container const& container) { return container.*&Open::hoveredWidget; }
    static WidgetHandler* focused(Container const& container) { return container.*&Open::focusedWidget; }
};

struct Focusable : Widget {
    bool getFocusable() const override { return true; }
};

/// Handlers of earlier trials' widgets: nothing may ever wake them.
std::vector<WidgetHandler*> graveyard;

class Tree : public Trial {
public:
    Tree() {
        window_ = new gui::Window;
        window_->setSize(Vec2i(800, 600));
        join(window_, model_.create(true, true));
        join(window_->getView(), model_.create(true, true));
        model_.nodes[1].parent = 0;
        model_.nodes[0].children = {1};
        for (int id : {0, 1}) {
            model_.nodes[id].position = real_[id]->getPosition();
            model_.nodes[id].size = real_[id]->getSize();
        }
        std::fill_n(ids_, slots, none);
        window_->setVisible(true);
        host_.moveMouse(step, 2 * step);
        model_.moveMouse(Vec2i(step, 2 * step));
        heard_[0].clear();
        model_.hear = [this](int id, Heard heard) { hear(1, id, heard); };
        addTreeVerbs();
        addStateVerbs();
        addInputVerbs();
    }

    ~Tree() override {
        host_.destroyGui();
        for (WidgetHandler* const handler : handlers_)
            EXPECT_EQ(WidgetHandler::get(handler), nullptr) << "after the end of GUI";
        graveyard.insert(graveyard.end(), handlers_.begin(), handlers_.end());
        if (graveyard.size() > 2000)
            graveyard.erase(graveyard.begin(), graveyard.begin() + 1000);
    }

    std::string compare(bool deep) override {
        if (heard_[0] != heard_[1])
            return "heard " + testing::PrintToString(heard_[0]) + ", not " + testing::PrintToString(heard_[1]);
        for (auto& heard : heard_)
            heard.clear();
        WidgetHandler* const capture = gui::WindowsManager::get(0)->getCapture();
        if (capture != handlerOf(model_.capture))
            return "the capture differs";
        for (int id = 0; id < static_cast<int>(handlers_.size()); ++id) {
            if ((deep || model_.live(id)) &&
                WidgetHandler::get(handlers_[id]) != (model_.live(id) ? real_[id] : nullptr))
                return std::to_string(id) + (model_.live(id) ? " should live" : " should be dead");
            if (std::string const what = model_.live(id) ? compareNode(id, deep) : ""; !what.empty())
                return what + " of " + std::to_string(id) + " differs";
        }
        if (deep && log_.getLines().size() != refusals_)
            return "refusals: " + log_.dump();
        for (WidgetHandler* const handler : graveyard)
            if (deep && WidgetHandler::get(handler))
                return "a handler of an earlier GUI lives again";
        return "";
    }

private:
    struct Trap {
        int victim, action;
    };

    WidgetHandler* handlerOf(int id) const { return id == none ? nullptr : handlers_[id]; }
    Container& containerOf(int id) const { return static_cast<Container&>(*real_[id]); }
    int containerId(int slot) const { return slot >= viewSlot ? 1 : ids_[slot]; }

    std::string compareNode(int id, bool deep) {
        Widget& widget = *real_[id];
        TreeModel::Node const& node = model_.nodes[id];
        if (widget.getParent() != handlerOf(node.parent))
            return "parent";
        if (widget.getVisible(false) != node.visible || widget.getEnabled() != model_.enabled(id))
            return "state";
        if (widget.getFocused() != node.focused || widget.getTabOrder() != node.tabOrder)
            return "focus";
        if (!node.container)
            return "";
        Container& container = containerOf(id);
        if (Open::hovered(container) != handlerOf(node.hovered))
            return "hovered child";
        if (Open::focused(container) != handlerOf(node.focusedChild))
            return "focused child";
        if (id == 0)
            return "";
        if (container.getWidgetCount() != static_cast<int>(node.children.size()))
            return "count of children";
        for (int i = 0; i < container.getWidgetCount(); ++i)
            if (container.getWidget(i) != real_[node.children[i]])
                return "child " + std::to_string(i);
        for (int slot = 0; deep && slot < slots; ++slot)
            if (int const other = ids_[slot]; model_.live(other))
                if (Open::indexOf(container, real_[other]) != model_.indexOf(id, other))
                    return "index of " + std::to_string(other);
        return "";
    }

    // --- Both sides hear what they do themselves; a trap does something the first time that an event comes ---
    void hear(int side, int id, Heard heard) {
        heard_[side].emplace_back(id, heard);
        auto const found = traps_[side].find({id, heard});
        if (found == traps_[side].end())
            return;
        Trap const trap = found->second;
        traps_[side].erase(found);
        // Whether the toolkit's victim lives is known by its own handler.
        if (side == 1 && model_.live(trap.victim))
            springModel(trap.victim, trap.action);
        else if (Widget* const widget = side == 0 ? WidgetHandler::get(handlers_[trap.victim]) : nullptr)
            spring(*widget, trap.action);
    }
    static void spring(Widget& widget, int action) {
        switch (action) {
            case 0:
                return widget.detachFromParent();
            case 1:
                return widget.setVisible(false);
            case 2:
                return widget.setEnabled(false);
            case 3:
                return gui::WindowsManager::get(0)->captureMouse(widget.getHandler());
            case 4:
                return gui::WindowsManager::get(0)->releaseMouse(widget.getHandler());
            default:
                return Widget::destroy(&widget);
        }
    }
    void springModel(int id, int action) {
        switch (action) {
            case 0:
                return model_.remove(model_.nodes[id].parent, id);
            case 1:
                model_.nodes[id].visible = false;
                return;
            case 2:
                return model_.setEnabled(id, false);
            case 3:
                return model_.captureMouse(id);
            case 4:
                return model_.releaseMouse(id);
            default:
                return model_.destroy(id);
        }
    }

    void join(Widget* widget, int id) {
        real_.push_back(widget);
        handlers_.push_back(widget->getHandler());
        for (int heard = HeardMove; heard <= HeardLeave; ++heard)
            support::onMouse(*widget, static_cast<gui::MouseCallbackType>(heard + 1),
                             [this, id, heard] { hear(0, id, static_cast<Heard>(heard)); });
        support::onEvent(*widget, Widget::focusCallbackName, [this, id] { hear(0, id, HeardFocus); });
        support::onKey(*widget, gui::KeyboardCallbackDown, [this, id] {
            hear(0, id, HeardKey);
            return false;
        });
    }

    void create(int slot) {
        if (model_.live(ids_[slot]))
            return;
        bool const container = slot < containerSlots;
        bool const focusable = slot % 2 == 0;
        ids_[slot] = model_.create(container, focusable);
        join(container ? new Container : focusable ? new Focusable : new Widget, ids_[slot]);
    }

    /// A verb on a widget that lives.
    template <class Run>
    std::function<void(int, int, int)> onLive(Run run) {
        return [this, run](int slot, int a, int b) {
            if (model_.live(ids_[slot]))
                run(ids_[slot], a, b);
        };
    }
    template <class Run>
    std::function<void(int, int, int)> onLiveContainer(Run run) {
        return [this, run](int slot, int a, int b) {
            if (model_.live(containerId(slot)))
                run(containerId(slot), a, b);
        };
    }

    /// Often a trap is meant for who hears or for its parent.
    int victimOf(int id, int slot) const {
        int const parent = model_.nodes[id].parent;
        return slot < slots ? ids_[slot] : slot % 2 == 0 ? id : parent > 1 ? parent : none;
    }

    void addTreeVerbs() {
        verbs.push_back({"create", 12, {slots}, [this](int slot, int, int) { create(slot); }});
        verbs.push_back({"insert", 20, {viewSlot + 4, slots, 7}, onLiveContainer([this](int into, int slot, int index) {
                             if (!model_.live(ids_[slot]))
                                 return;
                             Open::insert(containerOf(into), real_[ids_[slot]], index - 1);
                             refusals_ += !model_.insert(into, ids_[slot], index - 1);
                         })});
        verbs.push_back({"remove", 2, {viewSlot + 1, slots}, onLiveContainer([this](int from, int slot, int) {
                             if (!model_.live(ids_[slot]))
                                 return;
                             Open::remove(containerOf(from), real_[ids_[slot]]);
                             model_.remove(from, ids_[slot]);
                         })});
        verbs.push_back({"clear", 1, {viewSlot + 1}, onLiveContainer([this](int id, int, int) {
                             Open::clear(containerOf(id));
                             model_.deleteChildren(id);
                         })});
        verbs.push_back({"removeAll", 1, {viewSlot + 1}, onLiveContainer([this](int id, int, int) {
                             Open::removeAll(containerOf(id));
                             model_.removeAll(id);
                         })});
        verbs.push_back({"destroy", 2, {slots}, onLive([this](int id, int, int) {
                             Widget::destroy(real_[id]);
                             model_.destroy(id);
                         })});
        verbs.push_back({"delete", 1, {slots}, onLive([this](int id, int, int) {
                             delete real_[id];
                             model_.end(id);
                         })});
        verbs.push_back(
            {"trap", 20, {slots, HeardKey + 1, (slots + 6) * actions}, onLive([this](int id, int heard, int what) {
                 if (int const victim = victimOf(id, what / actions); victim != none)
                     for (auto& traps : traps_)
                         traps[{id, static_cast<Heard>(heard)}] = {victim, what % actions};
             })});
    }

    void addStateVerbs() {
        verbs.push_back({"visible", 3, {slots, 3}, onLive([this](int id, int visible, int) {
                             real_[id]->setVisible(visible);
                             model_.nodes[id].visible = visible;
                         })});
        verbs.push_back({"enabled", 3, {slots, 3}, onLive([this](int id, int enabled, int) {
                             real_[id]->setEnabled(enabled);
                             model_.setEnabled(id, enabled);
                         })});
        verbs.push_back({"focused", 6, {slots, 3}, onLive([this](int id, int focused, int) {
                             real_[id]->setFocused(focused != 0);
                             model_.setFocused(id, focused != 0);
                         })});
        verbs.push_back({"focusWindow", 1, {3}, [this](int focused, int, int) {
                             window_->setFocused(focused);
                             model_.setFocused(0, focused);
                         }});
        verbs.push_back({"tabOrder", 4, {slots, 4}, onLive([this](int id, int order, int) {
                             real_[id]->setTabOrder(order);
                             if (model_.nodes[id].focusable)
                                 model_.nodes[id].tabOrder = order;
                         })});
        verbs.push_back({"position", 6, {slots, 5, 5}, onLive([this](int id, int x, int y) {
                             real_[id]->setPosition(Vec2i(x * step, y * step));
                             model_.setPosition(id, Vec2i(x * step, y * step));
                         })});
        verbs.push_back({"size", 8, {slots, 12, 12}, onLive([this](int id, int x, int y) {
                             real_[id]->setSize(Vec2i(x + 2, y + 2) * step);
                             model_.nodes[id].size = Vec2i(x + 2, y + 2) * step;
                         })});
    }

    void addInputVerbs() {
        verbs.push_back({"move", 12, {10, 8}, [this](int x, int y, int) {
                             Vec2i const point(x * step, (y + 2) * step);
                             host_.moveMouse(point.x(), point.y());
                             model_.moveMouse(point);
                         }});
        verbs.push_back({"press", 8, {2, 3}, [this](int button, int tenths, int) {
                             host_.app().time += 0.2 * tenths;
                             host_.pressMouse(static_cast<gui::MouseButton>(2 + button));
                             bool const twice = button == lastButton_ && host_.app().time - lastPress_ < 0.3;
                             lastButton_ = button;
                             lastPress_ = host_.app().time;
                             model_.press(twice);
                         }});
        verbs.push_back({"release", 6, {2}, [this](int button, int, int) {
                             host_.releaseMouse(static_cast<gui::MouseButton>(2 + button));
                             model_.releaseButton();
                         }});
        verbs.push_back({"key", 3, {}, [this](int, int, int) {
                             host_.typeKey(gui::KeySpace);
                             model_.key();
                         }});
        verbs.push_back({"tab", 5, {2}, [this](int backwards, int, int) {
                             if (backwards)
                                 host_.app().keys.insert(gui::KeyLeftShift);
                             host_.typeKey(gui::KeyTab);
                             host_.app().keys.clear();
                             model_.key();
                             model_.tab(!backwards);
                         }});
        verbs.push_back({"capture", 4, {slots}, [this](int slot, int, int) {
                             gui::WindowsManager::get(0)->captureMouse(handlerOf(ids_[slot]));
                             model_.captureMouse(ids_[slot]);
                         }});
        verbs.push_back({"releaseCapture", 2, {slots}, [this](int slot, int, int) {
                             gui::WindowsManager::get(0)->releaseMouse(handlerOf(ids_[slot]));
                             model_.releaseMouse(ids_[slot]);
                         }});
    }

    support::LogCapture log_;
    std::size_t refusals_ = 0;
    TreeModel model_;
    std::vector<Widget*> real_;
    std::vector<WidgetHandler*> handlers_;
    /// The numbers of the widgets in the slots; they stay after a death.
    int ids_[slots];
    std::vector<std::pair<int, Heard>> heard_[2];
    std::map<std::pair<int, Heard>, Trap> traps_[2];
    int lastButton_ = none;
    double lastPress_ = 0.0;
    support::TestHost host_;
    gui::Window* window_ = nullptr;
};

TEST(Models, TheTreeAndWhoHearsWhatAreAsAPlainModelSays) { playRandomly("tree", makeTrial<Tree>); }

}  // namespace

}  // namespace models
