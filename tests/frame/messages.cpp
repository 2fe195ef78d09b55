#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "platform/vtx/vtxRenderer.h"
#include "tests/support/HeapScope.h"
#include "tests/support/TestHost.h"

namespace {

using gui::GUI;
using Events = std::vector<std::string>;

/// Writes down what it hears, and may do something about it.
class Ear : public GUI::MouseListener, public GUI::RawMouseListener, public GUI::RawKeyListener {
public:
    explicit Ear(Events& events) : events_(events) {}

    void onMouseMove(int x, int y) override { note_("move", x, y); }
    void onMouseDown(int, int, gui::MouseButton button) override { note_("down", button); }
    void onMouseDoubleClick(int, int, gui::MouseButton button) override { note_("double", button); }
    void onMouseUp(int, int, gui::MouseButton button) override { note_("up", button); }
    void onMouseWheel(int x, int y, int delta) override { note_("wheel", x, y, delta); }
    void onRawMouseInput(gui::RawMouseInfo const& info) override { note_("raw mouse", info.x, info.y, info.wheel); }
    void onRawKeyInput(gui::RawKeyInfo const& info) override { note_("raw key", info.scanCode); }

private:
    template <class... Numbers>
    void note_(char const* word, Numbers... numbers) {
        std::string text = word;
        ((text += " " + std::to_string(int(numbers))), ...);
        events_.push_back(text);
    }

    Events& events_;
};

class Input : public testing::Test {
protected:
    Input() { GUI::get()->addMouseListener(&ear); }

    Events drain() {
        GUI::get()->processMessages();
        return std::exchange(events, {});
    }
    static std::shared_ptr<std::function<void()>> function(std::function<void()> body) {
        return std::make_shared<std::function<void()>>(std::move(body));
    }
    support::TestHost host;
    GUI& gui = *GUI::get();
    Events events;
    Ear ear{events};
};

TEST_F(Input, ArrivesOnceInTheOrderInWhichItWasPosted) {
    for (int i = 0; i < 2; ++i) {
        gui.addMouseListener(&ear);
        gui.addRawMouseListener(&ear);
        gui.addRawKeyListener(&ear);
    }
    vtxRenderer::get()->setScale(2.0f);
    gui.setMouseOffset(osg::Vec2i(10, 20));

    gui.rawKeyInput({.scanCode = 7});
    gui.mouseDown(gui::MouseButtonMain);
    gui.rawMouseInput({.x = 30, .y = 60, .wheel = 3});
    gui.addUserMessage(function([this] { events.push_back("user"); }));
    gui.mouseMove(30, 60);
    gui.mouseWheel(-2);
    gui.mouseUp(gui::MouseButtonMain);
    EXPECT_TRUE(events.empty()) << "delivered before the drain";
    EXPECT_EQ(drain(),
              (Events{"raw key 7", "down 1", "raw mouse 20 40 3", "user", "move 20 40", "wheel 20 40 -2", "up 1"}));
}

TEST_F(Input, ADoubleClickIsASecondPressOfTheSameButtonInTime) {
    struct Press {
        double time;
        gui::MouseButton button;
        char const* expected;
    };
    // A third press is a double click of the second; the limit itself is too late; the position plays no part.
    Press const presses[] = {
        {2.0, gui::MouseButtonMain, "down 1"},      {2.2, gui::MouseButtonMain, "double 1"},
        {2.4, gui::MouseButtonMain, "double 1"},    {3.0, gui::MouseButtonMain, "down 1"},
        {3.1, gui::MouseButtonSecondary, "down 3"}, {3.2, gui::MouseButtonMain, "down 1"},
        {3.2, gui::MouseButtonSecondary, "down 3"}, {4.0, gui::MouseButtonMain, "down 1"},
        {4.25, gui::MouseButtonMain, "double 1"},   {4.5, gui::MouseButtonMain, "down 1"},
        {4.5, gui::MouseButtonMain, "double 1"},
    };
    int place = 0;
    for (Press const& press : presses) {
        host.app().time = press.time;
        gui.setDoubleClickTime(press.time < 4.0 ? 0.3 : press.time < 4.5 ? 0.26 : 0.25);
        place += 100;
        gui.mouseMove(place, 0);
        gui.mouseDown(press.button);
        EXPECT_EQ(drain().back(), press.expected) << press.time;
    }
}

int screenShots = 0;

TEST_F(Input, PrintScreenTakesThePictureAtOnceThoughACallbackKeepsTheKey) {
    screenShots = 0;
    gui.setMakeScreenShotCallback([](char const* file) { screenShots += file ? 100 : 1; });
    auto* const window = new gui::Window;
    window->setVisible(true);
    window->addHotKeyCallback({gui::KeyPrintScreen}, function([this] { events.push_back("hot key"); }));
    auto const keeper = std::make_shared<GUI::KeyboardCallback>([this](gui::KeyboardButton, int, bool down) {
        events.push_back(down ? "down" : "up");
        return true;
    });
    gui.addKeyboardCallback(keeper);
    gui.addKeyboardCallback(keeper);
    gui.keyDown(gui::KeyPrintScreen, 0);
    EXPECT_EQ(screenShots, 0);
    gui.keyUp(gui::KeyPrintScreen, 0);
    EXPECT_EQ(screenShots, 1);
    EXPECT_EQ(drain(), (Events{"down", "up"}));
    EXPECT_EQ(screenShots, 1);
    gui.removeKeyboardCallback(keeper);
    gui.keyDown(gui::KeyPrintScreen, 0);
    EXPECT_EQ(drain(), Events{"hot key"});
    gui.addKeyboardCallback(std::make_shared<GUI::KeyboardCallback>());
    EXPECT_THROW(gui.processKeyboardCallbacks(gui::KeyEnd, 0, true), std::bad_function_call);
}

TEST_F(Input, InTheSteadyStateNothingIsAllocated) {
    gui.removeMouseListener(&ear);
    auto const user = function([] {});
    auto const postAll = [&](int round) {
        for (int i = 0; i < 4; ++i) {
            gui.mouseMove(round * 10 + i + 1, 7);
            gui.mouseDown(gui::MouseButtonMain);
            gui.mouseUp(gui::MouseButtonMain);
            gui.mouseWheel(1);
            gui.keyDown(gui::KeyHome, 0);
            gui.keyUp(gui::KeyHome, 0);
            gui.onChar(gui::KeyHome, 'x');
            gui.addUserMessage(user);
        }
        gui.processMessages();
    };
    postAll(0);
    postAll(1);
    support::HeapScope const heap;
    postAll(2);
    EXPECT_EQ(heap.getAllocations(), 0u);
}

TEST_F(Input, AMessageThatThrowsLosesTheRestAndGuiCanEnd) {
    gui.addUserMessage(function({}));
    gui.addUserMessage(function([this] { events.push_back("lost"); }));
    EXPECT_THROW(gui.processMessages(), std::bad_function_call);
    EXPECT_EQ(drain(), Events());
    GUI::destroy();
    EXPECT_EQ(GUI::get(), nullptr);
}

}  // namespace
