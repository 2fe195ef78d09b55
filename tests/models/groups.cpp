#include <gtest/gtest.h>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/BuddyWindow.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/OverlayWindow.h"
#include "gui_lib/windows/Window.h"
#include "tests/models/GroupsModel.h"
#include "tests/models/RandomOps.h"
#include "tests/support/Attach.h"
#include "tests/support/TestHost.h"

namespace models {

namespace {

using gui::Widget;
using gui::WidgetHandler;
using gui::WindowBase;
using gui::WindowsManager;
using osg::Vec2i;

constexpr WindowKind kinds[] = {KindWindow, KindWindow, KindWindow, KindWindow,  KindPopup,
                                KindPopup,  KindPopup,  KindModal,  KindOverlay, KindOverlay};
constexpr int slots = static_cast<int>(std::size(kinds));
constexpr int buddySlot = 6;
constexpr int step = 20;
/// Surface 1 sees the mouse elsewhere.
Vec2i const secondSurfaceOffset(-40, 20);

class Groups : public Trial {
public:
    Groups() {
        std::fill_n(ids_, slots, none);
        gui_.createSurface();
        gui_.setSurfaceMouseFunc(1, [](int x, int y) { return Vec2i(x, y) + secondSurfaceOffset; });
        for (int surface = 0; surface < GroupsModel::surfaceCount; ++surface)
            gui_.setSurfaceMouseCursorCallback(surface, [this](bool shown, int, WindowBase* window) {
                heard_[0].emplace_back(numberOf(window), shown ? ToldShown : ToldGone);
            });
        model_.hear = [this](int id, Told told) { heard_[1].emplace_back(id, told); };
        model_.surfaces[1].mouse = secondSurfaceOffset;
        addWindowVerbs();
        addInputVerbs();
    }
    ~Groups() override { host_.destroyGui(); }

    std::string compare(bool) override {
        if (heard_[0] != heard_[1])
            return "heard " + testing::PrintToString(heard_[0]) + ", not " + testing::PrintToString(heard_[1]);
        for (auto& heard : heard_)
            heard.clear();
        for (int surface = 0; surface < GroupsModel::surfaceCount; ++surface)
            if (std::string const what = compareSurface(surface); !what.empty())
                return what + " of surface " + std::to_string(surface) + " differs";
        for (int id = 0; id < static_cast<int>(handlers_.size()); ++id) {
            auto const& window = model_.all[id];
            if (!WidgetHandler::get(handlers_[id]) == window.alive)
                return std::to_string(id) + (window.alive ? " should live" : " should be dead");
            if (!window.alive || window.isChild)
                continue;
            WindowBase& real = *windowOf(id);
            if (real.getVisible(false) != window.visible || real.getFocused() != window.focused)
                return std::to_string(id) + " differs";
            if (window.kind == KindPopup && static_cast<gui::PopupWindow&>(real).getActive() != window.active)
                return "whether " + std::to_string(id) + " is active differs";
        }
        return "";
    }

private:
    WindowBase* windowOf(int id) const { return static_cast<WindowBase*>(WidgetHandler::get(handlers_[id])); }
    WidgetHandler* handlerOf(int id) const { return id == none ? nullptr : handlers_[id]; }
    int numberOf(Widget const* widget) const {
        for (std::size_t id = 0; widget && id < handlers_.size(); ++id)
            if (handlers_[id] == widget->getHandler())
                return static_cast<int>(id);
        return none;
    }

    std::string compareSurface(int index) const {
        WindowsManager& manager = *WindowsManager::get(index);
        GroupsModel::Surface const& surface = model_.surfaces[index];
        std::vector<int> wanted, shown;
        for (WindowKind const kind : {KindOverlay, KindWindow, KindModal, KindPopup})
            wanted.insert(wanted.end(), surface.groups[kind].begin(), surface.groups[kind].end());
        qor::vector<WindowBase*> windows;
        manager.getShownWindows(windows);
        for (WindowBase const* window : windows)
            shown.push_back(numberOf(window));
        if (shown != wanted)
            return "the order " + testing::PrintToString(shown) + ", not " + testing::PrintToString(wanted) + ",";
        if (numberOf(manager.getActiveWindow()) != model_.active(index))
            return "the active window";
        if (numberOf(manager.getHoveredWindow()) != surface.hovered)
            return "the hovered window";
        if (manager.getCapture() != handlerOf(surface.capture))
            return "the capture";
        if (manager.getHasCursorWindow() != model_.anyCursor(index))
            return "whether a window has the cursor";
        if (numberOf(manager.findWindowAtPoint(point_)) != model_.find(index, point_))
            return "the window at a point";
        return "";
    }

    WindowBase* make(int slot) {
        if (kinds[slot] == KindWindow)
            return new gui::Window;
        if (kinds[slot] == KindOverlay)
            return new gui::OverlayWindow;
        if (kinds[slot] == KindPopup)
            return slot == buddySlot ? new gui::BuddyWindow : new gui::PopupWindow;
        auto* const modal = new gui::ModalWindow(true);
        modal->setLockFlow(false);
        return modal;
    }

    void create(int slot, int x, int y) {
        if (model_.live(ids_[slot]))
            return;
        WindowBase* const window = make(slot);
        int const id = ids_[slot] = model_.create(kinds[slot]);
        join(window, id);
        if (model_.all.size() > handlers_.size()) {
            auto* const child = new Widget;
            // Out of reach unless it has the mouse.
            child->setPosition(Vec2i(-9999, -9999));
            window->insertWidget(child, -1);
            join(child, id + 1);
        }
        Vec2i const size = Vec2i(6 + x % 5, 5 + y % 4) * step;
        window->setPosition(Vec2i(x, y) * step);
        window->setSize(size);
        model_.all[id].position = Vec2i(x, y) * step;
        model_.all[id].size = size;
    }

    void join(Widget* widget, int id) {
        handlers_.push_back(widget->getHandler());
        for (int told = ToldMove; told <= ToldLeave; ++told)
            support::onMouse(*widget, static_cast<gui::MouseCallbackType>(told + 1),
                             [this, id, told] { heard_[0].emplace_back(id, static_cast<Told>(told)); });
        support::onWheel(*widget, [this, id] {
            heard_[0].emplace_back(id, ToldWheel);
            return false;
        });
    }

    /// A verb on a window that lives.
    template <class Run>
    std::function<void(int, int, int)> onLive(Run run) {
        return [this, run](int slot, int a, int b) {
            if (model_.live(ids_[slot]))
                run(*windowOf(ids_[slot]), ids_[slot], a, b);
        };
    }

    void setZOrder(WindowBase& window, int id, int zOrder) {
        if (auto* const ordinary = dynamic_cast<gui::Window*>(&window))
            ordinary->setZOrder(zOrder);
        else if (auto* const overlay = dynamic_cast<gui::OverlayWindow*>(&window))
            overlay->setZOrder(zOrder);
        else
            return;
        model_.setZOrder(id, zOrder);
    }

    void addWindowVerbs() {
        verbs.push_back({"create", 8, {slots, 12, 12}, [this](int slot, int x, int y) { create(slot, x, y); }});
        verbs.push_back({"destroy", 1, {slots}, onLive([this](WindowBase& window, int id, int, int) {
                             Widget::destroy(&window);
                             model_.destroy(id);
                         })});
        verbs.push_back({"kill", 1, {slots}, onLive([this](WindowBase& window, int id, int, int) {
                             window.kill();
                             model_.setVisible(id, false);
                             if (model_.all[id].kind != KindModal)
                                 killed_.push_back(id);
                         })});
        verbs.push_back({"visible", 14, {slots, 3}, onLive([this](WindowBase& window, int id, int visible, int) {
                             window.setVisible(visible);
                             model_.setVisible(id, visible);
                         })});
        verbs.push_back({"focused", 6, {slots, 4}, onLive([this](WindowBase& window, int id, int focused, int) {
                             window.setFocused(focused);
                             model_.setFocused(id, focused);
                         })});
        verbs.push_back({"zOrder", 4, {slots, 4}, onLive([this](WindowBase& window, int id, int zOrder, int) {
                             setZOrder(window, id, zOrder);
                         })});
        verbs.push_back({"transparent", 2, {4, 2}, onLive([this](WindowBase& window, int id, int transparent, int) {
                             static_cast<gui::Window&>(window).setTransparentForUserInput(transparent);
                             model_.setTransparent(id, transparent);
                         })});
        verbs.push_back({"hasCursor", 2, {slots, 3}, onLive([this](WindowBase& window, int id, int hasCursor, int) {
                             window.setHasCursor(hasCursor);
                             model_.setHasCursor(id, hasCursor);
                         })});
        verbs.push_back({"enabled", 2, {slots, 3}, onLive([this](WindowBase& window, int id, int enabled, int) {
                             window.setEnabled(enabled);
                             model_.all[id].enabled = enabled;
                         })});
        verbs.push_back({"asWidget", 1, {slots, 3}, onLive([this](WindowBase& window, int id, int asWidget, int) {
                             window.setAsWidget(asWidget == 0);
                             model_.all[id].asWidget = asWidget == 0;
                         })});
        verbs.push_back({"surface", 2, {slots, 4}, onLive([this](WindowBase& window, int id, int surface, int) {
                             window.setSurfaceId(surface / 3);
                             model_.setSurface(id, surface / 3);
                         })});
        verbs.push_back({"position", 4, {slots, 12, 12}, onLive([this](WindowBase& window, int id, int x, int y) {
                             window.setPosition(Vec2i(x, y) * step);
                             model_.all[id].position = Vec2i(x, y) * step;
                         })});
    }

    void addInputVerbs() {
        verbs.push_back({"move", 12, {16, 16}, [this](int x, int y, int) {
                             bool const same = point_ == Vec2i(x, y) * step;
                             point_ = Vec2i(x, y) * step;
                             host_.moveMouse(point_.x(), point_.y());
                             dieKilled();
                             if (same)
                                 return;
                             model_.surfaces[0].mouse = point_;
                             model_.surfaces[1].mouse = point_ + secondSurfaceOffset;
                             model_.move();
                         }});
        verbs.push_back({"press", 10, {2, 3}, [this](int button, int tenths, int) {
                             host_.app().time += 0.2 * tenths;
                             host_.pressMouse(static_cast<gui::MouseButton>(2 + button));
                             dieKilled();
                             bool const twice = button == lastButton_ && host_.app().time - lastPress_ < 0.3;
                             lastButton_ = button;
                             lastPress_ = host_.app().time;
                             model_.press(twice);
                         }});
        verbs.push_back({"release", 4, {}, [this](int, int, int) {
                             host_.releaseMouse(static_cast<gui::MouseButton>(2));
                             dieKilled();
                             model_.release();
                         }});
        verbs.push_back({"wheel", 3, {}, [this](int, int, int) {
                             gui_.mouseWheel(1);
                             gui_.processMessages();
                             dieKilled();
                             model_.wheel();
                         }});
        verbs.push_back({"capture", 3, {slots, 3}, onLive([this](WindowBase&, int id, int surface, int) {
                             int const target = id + (model_.all[id].hasChild() ? 1 : 0);
                             WindowsManager::get(surface / 2)->captureMouse(handlerOf(target));
                             model_.captureMouse(surface / 2, target);
                         })});
        verbs.push_back({"releaseCapture", 2, {2, slots}, [this](int surface, int slot, int) {
                             WindowsManager::get(surface)->releaseMouse(handlerOf(ids_[slot]));
                             model_.releaseMouse(surface, ids_[slot]);
                         }});
    }

    /// The queue has been drained: killed windows end before what was posted after.
    void dieKilled() {
        for (int const id : std::exchange(killed_, {}))
            if (model_.live(id))
                model_.end(id);
    }

    GroupsModel model_;
    std::vector<WidgetHandler*> handlers_;
    int ids_[slots];
    std::vector<int> killed_;
    std::vector<std::pair<int, Told>> heard_[2];
    Vec2i point_;
    int lastButton_ = none;
    double lastPress_ = 0.0;
    support::TestHost host_;
    gui::GUI& gui_ = *gui::GUI::get();
};

TEST(Models, TheGroupsOfWindowsAreAsPlainListsSay) { playRandomly("groups", makeTrial<Groups>); }

}  // namespace

}  // namespace models
