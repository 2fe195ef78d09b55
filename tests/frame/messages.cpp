#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/MessagePool.h"
#include "gui_lib/widget/WidgetHandler.h"
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
    explicit Ear(Events& events, std::string name = "") : events_(events), name_(std::move(name)) {}

    void onMouseMove(int x, int y) override { note_("move", x, y); }
    void onMouseDown(int, int, gui::MouseButton button) override { note_("down", button); }
    void onMouseDoubleClick(int, int, gui::MouseButton button) override { note_("double", button); }
    void onMouseUp(int, int, gui::MouseButton button) override { note_("up", button); }
    void onMouseWheel(int x, int y, int delta) override { note_("wheel", x, y, delta); }
    void onRawMouseInput(gui::RawMouseInfo const& info) override { note_("raw mouse", info.x, info.y, info.wheel); }
    void onRawKeyInput(gui::RawKeyInfo const& info) override { note_("raw key", info.scanCode); }

    std::function<void()> reaction;

private:
    template <class... Numbers>
    void note_(char const* word, Numbers... numbers) {
        std::string text = name_ + word;
        ((text += " " + std::to_string(int(numbers))), ...);
        events_.push_back(text);
        if (reaction)
            reaction();
    }

    Events& events_;
    std::string name_;
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
    std::shared_ptr<GUI::KeyboardCallback> keyCallback(std::string name, bool result) {
        return std::make_shared<GUI::KeyboardCallback>([this, name, result](gui::KeyboardButton, int, bool down) {
            events.push_back(name + (down ? " down" : " up"));
            return result;
        });
    }

    support::TestHost host;
    GUI& gui = *GUI::get();
    Events events;
    Ear ear{events};
};

// --- Queue ---

TEST_F(Input, AMoveIsDroppedOnlyWhereTheMouseWasLastDelivered) {
    gui.mouseMove(5, 5);
    gui.mouseMove(6, 6);
    gui.mouseMove(0, 0);
    gui.mouseMove(5, 5);
    EXPECT_EQ(drain(), (Events{"move 5 5", "move 6 6", "move 5 5"}));
    gui.mouseMove(5, 5);
    EXPECT_EQ(drain(), Events());
}

TEST_F(Input, ArrivesInTheOrderInWhichItWasPosted) {
    gui.addRawMouseListener(&ear);
    gui.addRawKeyListener(&ear);
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

TEST_F(Input, WhatAMessagePostsWaitsForTheNextDrain) {
    gui.addUserMessage(function([this] {
        events.push_back("first");
        gui.addUserMessage(function([this] { events.push_back("second"); }));
    }));
    EXPECT_EQ(drain(), Events{"first"});
    EXPECT_EQ(drain(), Events{"second"});
}

TEST_F(Input, ANestedDrainDeliversWhatIsNewAndTheOuterGoesOn) {
    gui.addUserMessage(function([this] {
        gui.addUserMessage(function([this] { events.push_back("inner"); }));
        gui.processMessages();
    }));
    gui.addUserMessage(function([this] { events.push_back("rest of outer"); }));
    EXPECT_EQ(drain(), (Events{"inner", "rest of outer"}));
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

// --- Listeners ---

TEST_F(Input, AListenerThatIsRemovedMeanwhileIsNotCalledAndANewOneWaits) {
    Ear second(events, "second ");
    Ear third(events, "third ");
    gui.addMouseListener(&second);
    gui.addMouseListener(&second);
    ear.reaction = [&] {
        gui.removeMouseListener(&second);
        gui.addMouseListener(&third);
        gui.removeMouseListener(&ear);
    };
    gui.mouseWheel(1);
    EXPECT_EQ(drain(), Events{"wheel 0 0 1"});
    gui.mouseWheel(1);
    EXPECT_EQ(drain(), Events{"third wheel 0 0 1"});
}

TEST_F(Input, KeyboardCallbacksAllRunAndAnyKeepsTheKeyFromTheWindows) {
    auto* const window = new gui::Window;
    window->setVisible(true);
    window->addHotKeyCallback({gui::KeyF1}, function([this] { events.push_back("hot key"); }));
    auto const keeper = keyCallback("keeper", true);
    gui.addKeyboardCallback(keeper);
    gui.addKeyboardCallback(keeper);
    gui.addKeyboardCallback(keyCallback("other", false));
    gui.keyDown(gui::KeyF1, 0);
    gui.keyUp(gui::KeyF1, 0);
    EXPECT_EQ(drain(), (Events{"keeper down", "other down", "keeper up", "other up"}));
    gui.removeKeyboardCallback(keeper);
    gui.keyDown(gui::KeyF1, 0);
    EXPECT_EQ(drain(), (Events{"other down", "hot key"}));
}

TEST_F(Input, AKeyboardCallbackMayRemoveALaterOne) {
    auto const later = keyCallback("later", true);
    gui.addKeyboardCallback(std::make_shared<GUI::KeyboardCallback>([&](gui::KeyboardButton, int, bool) {
        gui.removeKeyboardCallback(later);
        return false;
    }));
    gui.addKeyboardCallback(later);
    EXPECT_FALSE(gui.processKeyboardCallbacks(gui::KeyEnd, 0, true));
    EXPECT_TRUE(events.empty());
    gui.addKeyboardCallback(std::make_shared<GUI::KeyboardCallback>());
    EXPECT_THROW(gui.processKeyboardCallbacks(gui::KeyEnd, 0, true), std::bad_function_call);
}

int screenShots = 0;

TEST_F(Input, PrintScreenTakesThePictureAtOnceThoughACallbackKeepsTheKey) {
    screenShots = 0;
    gui.setMakeScreenShotCallback([](char const* file) { screenShots += file ? 100 : 1; });
    gui.addKeyboardCallback(keyCallback("keeper", true));
    gui.keyDown(gui::KeyPrintScreen, 0);
    EXPECT_EQ(screenShots, 0);
    gui.keyUp(gui::KeyPrintScreen, 0);
    EXPECT_EQ(screenShots, 1);
    EXPECT_EQ(drain(), (Events{"keeper down", "keeper up"}));
    EXPECT_EQ(screenShots, 1);
}

// --- Pool ---

TEST_F(Input, ThePoolGivesTheFirstObjectThatIsFree) {
    auto& storage = gui.getMessagePool().storage<gui::MessageMouseWheel>();
    std::vector<gui::Message*> all;
    for (int i = 0; i < 200; ++i)
        all.push_back(storage.take(i));
    for (int index : {150, 3, 64, 63})
        all[size_t(index)]->release();
    for (int index : {3, 63, 64, 150})
        EXPECT_EQ(storage.take(0), all[size_t(index)]) << index;
    EXPECT_EQ(storage.size(), 200u);
    EXPECT_NE(storage.take(0), nullptr);
    EXPECT_EQ(storage.size(), 201u);
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

TEST_F(Input, AMessageThatThrowsLosesTheRestButNotTheirObjects) {
    auto& storage = gui.getMessagePool().storage<gui::MessageUserCallback>();
    auto const runThree = [&](std::shared_ptr<std::function<void()>> first) {
        gui.addUserMessage(std::move(first));
        gui.addUserMessage(function([this] { events.push_back("lost"); }));
        gui.addUserMessage(function([this] { events.push_back("lost"); }));
    };
    runThree(function([] { throw std::runtime_error("host"); }));
    EXPECT_THROW(gui.processMessages(), std::runtime_error);
    runThree(function({}));
    EXPECT_THROW(gui.processMessages(), std::bad_function_call);
    EXPECT_EQ(drain(), Events());
    EXPECT_EQ(storage.size(), 3u);
    // The drain is over as far as ending is concerned.
    GUI::destroy();
    EXPECT_EQ(GUI::get(), nullptr);
}

TEST_F(Input, AWindowKilledTwiceOrEndedMeanwhileDiesOnce) {
    for (bool destroyed : {false, true}) {
        auto* const window = new gui::Window;
        gui::WidgetHandler* const handler = window->getHandler();
        window->setVisible(true);
        window->kill();
        gui.killWindow(window);
        gui.killWindow(nullptr);
        EXPECT_FALSE(window->getVisible(false));
        if (destroyed)
            gui::Widget::destroy(window);
        gui::Widget* const other = new gui::Window;
        drain();
        EXPECT_EQ(gui::WidgetHandler::get(handler), nullptr);
        EXPECT_EQ(gui::WidgetHandler::get(other->getHandler()), other);
    }
}

}  // namespace
