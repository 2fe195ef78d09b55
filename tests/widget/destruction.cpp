#include <gtest/gtest.h>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/base/UpdateTarget.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/CloseButton.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowBaseSkin.h"
#include "gui_lib/windows/WindowData.h"
#include "gui_lib/windows/WindowHeader.h"
#include "gui_lib/windows/WindowView.h"
#include "tests/support/Attach.h"
#include "tests/support/TestHost.h"
#include "tests/widget/Probe.h"

namespace widget_test {
namespace {

using gui::GUI;
using gui::Widget;
using gui::WidgetHandler;
using gui::Window;
using gui::WindowsManager;

/// A window with two nested containers and, at screen (120..160, 140..180), the actor beside a sibling.
struct Scene {
    Scene() {
        window->setPosition(at(100, 100));
        window->setSize(at(400, 300));
        window->insertWidget(outer, -1);
        outer->setSize(at(300, 200));
        outer->insert(inner);
        inner->setSize(at(200, 100));
        actor = inner->add("", 20, 20, 40, 40);
        sibling = inner->add("", 100, 20, 40, 40);
        for (Widget* widget : {static_cast<Widget*>(actor), static_cast<Widget*>(sibling)})
            widget->setTabOrder(1);
        window->setVisible(true);
        for (Widget* widget : all())
            handlers.push_back(widget->getHandler());
    }
    ~Scene() { Widget::destroy(WidgetHandler::get(handlers.back())); }

    std::vector<Widget*> all() const { return {actor, sibling, inner, outer, window}; }
    Widget* live(std::size_t index) const { return WidgetHandler::get(handlers[index]); }

    Probe<Window>* window = new Probe<Window>;
    Box* outer = new Box;
    Box* inner = new Box;
    WidgetProbe* actor = nullptr;
    WidgetProbe* sibling = nullptr;
    std::vector<WidgetHandler*> handlers;
};

using Action = std::function<void()>;

/// How a callback is put on a widget, and what makes it run.
struct Event {
    char const* name;
    void (*attach)(Widget& holder, Action action);
    void (*trigger)(support::TestHost& host, Scene& scene);
};

template <gui::MouseCallbackType type>
void attachMouse(Widget& holder, Action action) {
    support::onMouse(holder, type, action);
}

template <gui::KeyboardCallbackType type>
void attachKey(Widget& holder, Action action) {
    support::onKey(holder, type, [action] { return action(), false; });
}

void attachWheel(Widget& holder, Action action) {
    support::onWheel(holder, [action] { return action(), false; });
}

template <char const* const& name>
void attachWidget(Widget& holder, Action action) {
    support::onEvent(holder, name, action);
}

void attachHotKey(Widget& holder, Action action) {
    if (auto* const window = dynamic_cast<Window*>(&holder))
        window->addHotKeyCallback(gui::HotKey{gui::KeyF1}, std::make_shared<std::function<void()>>(action));
}

void moveOnActor(support::TestHost& host, Scene&) {
    host.moveMouse(10, 10);
    host.moveMouse(140, 160);
    host.moveMouse(141, 161);
}

void clickActor(support::TestHost& host, Scene& scene) {
    moveOnActor(host, scene);
    host.pressMouse();
    host.releaseMouse();
}

void doubleClickActor(support::TestHost& host, Scene& scene) {
    clickActor(host, scene);
    host.pressMouse();
    host.releaseMouse();
}

void leaveActor(support::TestHost& host, Scene& scene) {
    moveOnActor(host, scene);
    host.moveMouse(10, 10);
}

void typeAtActor(support::TestHost& host, Scene& scene) {
    scene.window->setFocused(true);
    if (Widget* const actor = scene.live(0))
        actor->setFocused(true);
    host.typeKey(gui::KeyF1);
    GUI::get()->onChar(gui::KeyF1, 'x');
    host.update();
}

void wheelOnActor(support::TestHost& host, Scene& scene) {
    clickActor(host, scene);
    GUI::get()->mouseWheel(1);
    host.update();
}

void releaseCaptures(support::TestHost&, Scene& scene) {
    for (std::size_t i = 0; i < scene.handlers.size(); ++i) {
        WindowsManager::get(0)->captureMouse(scene.handlers[i]);
        WindowsManager::get(0)->releaseMouse(nullptr);
    }
}

void moveFocusByTab(support::TestHost& host, Scene& scene) {
    scene.window->setFocused(true);
    for (int i = 0; i < 3; ++i)
        host.typeKey(gui::KeyTab);
}

void changeGeometry(support::TestHost&, Scene& scene) {
    for (std::size_t i = 0; i < scene.handlers.size(); ++i)
        if (Widget* const widget = scene.live(i))
            widget->setPosition(widget->getPosition() + at(1, 1));
    for (std::size_t i = 0; i < scene.handlers.size(); ++i)
        if (Widget* const widget = scene.live(i))
            widget->setSize(widget->getSize() + at(1, 1));
}

void redrawEverything(support::TestHost& host, Scene& scene) {
    if (Widget* const window = scene.live(4))
        window->setDirty(Widget::DirtyTree);
    host.frame();
}

Event const events[] = {
    {"mouse move", attachMouse<gui::MouseCallbackMove>, moveOnActor},
    {"mouse enter", attachMouse<gui::MouseCallbackEnter>, moveOnActor},
    {"mouse leave", attachMouse<gui::MouseCallbackLeave>, leaveActor},
    {"mouse down", attachMouse<gui::MouseCallbackDown>, clickActor},
    {"mouse up", attachMouse<gui::MouseCallbackUp>, clickActor},
    {"mouse double down", attachMouse<gui::MouseCallbackDoubleDown>, doubleClickActor},
    {"mouse released", attachMouse<gui::MouseCallbackReleased>, releaseCaptures},
    {"wheel", attachWheel, wheelOnActor},
    {"key down", attachKey<gui::KeyboardCallbackDown>, typeAtActor},
    {"char", attachKey<gui::KeyboardCallbackChar>, typeAtActor},
    {"key up", attachKey<gui::KeyboardCallbackUp>, typeAtActor},
    {"hot key", attachHotKey, typeAtActor},
    {"focus by press", attachWidget<Widget::focusCallbackName>, clickActor},
    {"focus by tab", attachWidget<Widget::focusCallbackName>, moveFocusByTab},
    {"focus lost by hiding", attachWidget<Widget::focusCallbackName>,
     [](support::TestHost& host, Scene& scene) {
         clickActor(host, scene);
         if (Widget* const window = scene.live(4))
             window->setVisible(false);
     }},
    {"position", attachWidget<Widget::positionCallbackName>, changeGeometry},
    {"size", attachWidget<Widget::sizeCallbackName>, changeGeometry},
    {"close", attachWidget<gui::WindowBase::closeCallbackName>,
     [](support::TestHost&, Scene& scene) { scene.window->close(); }},
    {"redraw", [](Widget& holder, Action action) { holder.setRedrawCallback(action); }, redrawEverything},
    {"doRedraw", [](Widget& holder, Action action) { holder.setDoRedrawCallback(action); }, redrawEverything},
    {"own death", attachMouse<gui::MouseCallbackReleased>,
     [](support::TestHost&, Scene& scene) {
         WindowsManager::get(0)->captureMouse(scene.handlers[0]);
         Widget::destroy(scene.live(0));
     }},
};

TEST(Destruction, AnyWidgetMayDieInsideAnyCallbackOfAnyWidget) {
    support::TestHost host;
    for (Event const& event : events) {
        bool reached = false;
        for (std::size_t holder = 0; holder < 5; ++holder) {
            for (std::size_t victim = 0; victim < 5; ++victim) {
                SCOPED_TRACE(testing::Message() << event.name << ", held by " << holder << ", ends " << victim);
                // Outlives the scene, whose end calls out too.
                bool ran = false;
                Scene scene;
                host.frame();
                event.attach(*scene.all()[holder], [&ran, &scene, victim] {
                    ran = true;
                    Widget::destroy(scene.live(victim));
                });
                event.trigger(host, scene);
                EXPECT_TRUE(!ran || !scene.live(victim));
                reached |= ran;
                host.frame();
                clickActor(host, scene);
                host.frame();
            }
        }
        EXPECT_TRUE(reached) << event.name;
    }
}

TEST(Destruction, AKillInsideACallbackEndsTheWindowAtTheNextDrain) {
    support::TestHost host;
    Scene scene;
    support::onMouse(*scene.actor, gui::MouseCallbackDown, [&] {
        scene.window->kill();
        scene.window->kill();
    });
    moveOnActor(host, scene);
    GUI::get()->mouseDown(gui::MouseButtonMain);
    GUI::get()->processMessages();
    ASSERT_NE(scene.live(4), nullptr);
    EXPECT_FALSE(scene.window->getVisible(false));
    GUI::get()->processMessages();
    EXPECT_EQ(scene.live(4), nullptr);
    EXPECT_EQ(scene.live(0), nullptr);
}

TEST(Destruction, AWindowThatDrainsItsOwnKillAsItDiesDiesOnce) {
    support::TestHost host;
    auto* const window = new Probe<Window>;
    window->setVisible(true);
    window->setFocused(true);
    WidgetHandler* const handler = window->getHandler();
    int drains = 0;
    support::onEvent(*window, Widget::focusCallbackName, [&] {
        ++drains;
        GUI::get()->processMessages();
    });
    GUI::get()->killWindow(window);
    Widget::destroy(window);
    EXPECT_EQ(drains, 1);
    EXPECT_EQ(WidgetHandler::get(handler), nullptr);
}

TEST(Destruction, AWindowDeletedWhileItIsShownIsForgottenEverywhere) {
    support::TestHost host;
    auto* const window = new Probe<Window>;
    window->setSize(at(100, 100));
    window->setVisible(true);
    window->setTransparentForUserInput(true);
    host.moveMouse(50, 50);
    window->setAsWidget(true);
    delete window;
    host.moveMouse(51, 51);
    host.click(52, 52);
    host.frame();
    EXPECT_EQ(WindowsManager::get(0)->getHoveredWindow(), nullptr);
    EXPECT_EQ(WindowsManager::get(0)->getActiveWindow(), nullptr);
}

TEST(Destruction, AWindowGoesOnWithoutThePartsThatTheHostDestroyed) {
    support::TestHost host;
    Scene scene;
    Widget::destroy(scene.window->getHeader()->getCloseButton());
    EXPECT_EQ(scene.window->getHeader()->getCloseButton(), nullptr);
    scene.window->setSize(at(300, 300));
    Widget::destroy(scene.window->getHeader());
    Widget::destroy(scene.window->getView());
    EXPECT_EQ(scene.window->getHeader(), nullptr);
    EXPECT_EQ(scene.window->getView(), nullptr);
    scene.window->setText(L"title");
    scene.window->setSize(at(200, 200));
    scene.window->setNextWidgetFocused();
    scene.window->insertWidget(nullptr, 0);
    EXPECT_EQ(scene.window->getWidgetCount(), 0);
    EXPECT_EQ(scene.window->getLayout(), nullptr);
    clickActor(host, scene);
    host.frame();
}

TEST(Destruction, ACloseButtonThatIsTakenOutWhileItIsPlacedOutlivesTheWindow) {
    support::TestHost host;
    Scene scene;
    gui::CloseButton* const button = scene.window->getHeader()->getCloseButton();
    ASSERT_NE(button->getWidgetSkin(), nullptr);
    support::onEvent(*button, Widget::sizeCallbackName, [button] { button->detachFromParent(); });
    scene.window->getSkin()->getWindowData()->setHeaderHeight(44);
    scene.window->setSize(at(300, 300));
    EXPECT_EQ(scene.window->getHeader()->getCloseButton(), nullptr);
    EXPECT_EQ(button->getWidgetSkin(), nullptr) << "it belongs to the header";
    Widget::destroy(scene.window);
    button->setText(L"x");
    host.frame();
    Widget::destroy(button);
}

TEST(Destruction, ACursorCallbackOfTheHostMayEndTheWindow) {
    support::TestHost host;
    Scene scene;
    scene.window->setResizable(true);
    GUI::get()->setSurfaceMouseCursorCallback(0, [&scene](bool shown, int cursor, gui::WindowBase*) {
        if (shown && cursor != 0)
            Widget::destroy(scene.live(4));
    });
    host.moveMouse(101, 200);
    EXPECT_EQ(scene.live(4), nullptr);
    host.frame();
}

struct Ender : gui::UpdateTarget, GUI::MouseListener {
    explicit Ender(Scene& itsScene) : scene(itsScene) {}
    void update(double) override { Widget::destroy(scene.live(4)); }
    void onMouseDown(int, int, gui::MouseButton) override { Widget::destroy(scene.live(4)); }
    Scene& scene;
};

TEST(Destruction, ListenersAndTicksMayEndTheHoveredWindow) {
    support::TestHost host;
    for (bool byTick : {false, true}) {
        Scene scene;
        Ender ender(scene);
        moveOnActor(host, scene);
        if (byTick)
            gui::UpdateManager::get().addTarget(&ender);
        else
            GUI::get()->addMouseListener(&ender);
        host.frame();
        clickActor(host, scene);
        EXPECT_EQ(scene.live(4), nullptr);
        gui::UpdateManager::get().removeTarget(&ender);
        GUI::get()->removeMouseListener(&ender);
    }
}

TEST(Destruction, WidgetsLiveAndDieWithoutGui) {
    ASSERT_EQ(GUI::get(), nullptr);
    auto* const window = new Probe<Window>;
    window->setSize(at(300, 200));
    window->setVisible(true);
    window->setZOrder(2);
    window->setFocused(true);
    window->pushMouseCursor(36);
    window->setTransparentForUserInput(true);
    window->centerWindow();
    auto* const child = new WidgetProbe;
    window->insertWidget(child, 0);
    child->setDrawToTarget(true);
    EXPECT_EQ(child->getRootSurfaceId(), 0);
    window->onMouseDown(at(10, 10), gui::MouseButtonMain);
    window->onMouseMove(at(12, 12));
    window->onMouseUp(at(12, 12), gui::MouseButtonMain);
    Widget::redrawAll();
    WidgetHandler* const handler = window->getHandler();
    window->kill();
    EXPECT_EQ(WidgetHandler::get(handler), nullptr);
}

}  // namespace
}  // namespace widget_test
