#include <gtest/gtest.h>

#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "tests/support/Attach.h"
#include "tests/widget/Probe.h"

namespace widget_test {
namespace {

using gui::LayoutHandler;
using gui::Widget;
using gui::WidgetHandler;

class ContainerTree : public testing::Test {
protected:
    void SetUp() override { takeEvents(); }
    void TearDown() override {
        Widget::destroy(WidgetHandler::get(boxHandler));
        Widget::destroy(WidgetHandler::get(otherHandler));
    }

    Box* box = new Box;
    Box* other = new Box;
    WidgetHandler* boxHandler = box->getHandler();
    WidgetHandler* otherHandler = other->getHandler();
};

TEST_F(ContainerTree, NobodyIsNoChild) {
    box->insert(nullptr, 0);
    EXPECT_EQ(box->getWidgetCount(), 0);
    EXPECT_EQ(box->indexOf(nullptr), -1);
    box->add("", 0, 0, 1, 1);
    for (int absent : {-1, 1})
        EXPECT_EQ(box->getWidget(absent), nullptr);
}

// --- Layout ---

TEST_F(ContainerTree, ALayoutRunsOnceAFrameAfterManyInsertionsAndAtOnceAfterAChangeOfSize) {
    auto* const layout = new WideLayout;
    box->setLayout(layout->handler());
    Widget::redrawAll();
    int const before = layout->runs;
    for (int i = 0; i < 5; ++i)
        box->add("", 0, 0, 5, 5);
    EXPECT_EQ(layout->runs, before);
    Widget::redrawAll();
    EXPECT_EQ(layout->runs, before + 1);
    box->setSize(at(70, 70));
    EXPECT_EQ(layout->runs, before + 2);
    EXPECT_EQ(box->getWidget(3)->getSize(), at(70, 10));
    box->updateLayout(true);
    EXPECT_EQ(layout->runs, before + 3);
}

TEST_F(ContainerTree, AContainerOwnsItsLayoutAndALayoutThatMovesHasOneOwner) {
    int deaths = 0;
    auto const make = [&deaths] {
        auto* const layout = new WideLayout;
        layout->deaths = &deaths;
        return layout;
    };
    WideLayout* const first = make();
    box->setLayout(first->handler());
    box->setLayout(make()->handler());
    EXPECT_EQ(deaths, 1);
    LayoutHandler* const second = box->getLayout();
    other->setLayout(second);
    EXPECT_EQ(box->getLayout(), nullptr);
    EXPECT_EQ(deaths, 1);
    gui::Layout::destroy(LayoutHandler::get(second));
    EXPECT_EQ(other->getLayout(), nullptr);
    EXPECT_EQ(deaths, 2);
    other->setLayout(make()->handler());
    Widget::destroy(other);
    EXPECT_EQ(deaths, 3);
}

TEST_F(ContainerTree, ACopyOfAContainerHasALayoutOfItsOwn) {
    box->setLayout((new WideLayout)->handler());
    auto* const copy = static_cast<gui::Container*>(box->clone());
    ASSERT_NE(LayoutHandler::get(copy->getLayout()), nullptr);
    EXPECT_NE(copy->getLayout(), box->getLayout());
    Widget::destroy(copy);
}

// --- Hover, press and focus ---

using Words = std::vector<std::string>;

class ContainerEvents : public ContainerTree {
protected:
    void SetUp() override {
        box->setSize(at(100, 100));
        left = box->add("left", 0, 0, 60, 100);
        right = box->add("right", 40, 0, 60, 100);
        takeEvents();
    }

    WidgetProbe* left = nullptr;
    WidgetProbe* right = nullptr;
};

TEST_F(ContainerEvents, AHoverThatIsUpdatedInsideALeaveTellsNobodyTwice) {
    int updates = 0;
    support::onMouse(*right, gui::MouseCallbackLeave, [&] {
        // As a container that moves does; bounded, lest a fault eats the stack.
        if (++updates < 10)
            box->onMouseCursorMove(at(10, 10));
    });
    box->onMouseMove(at(90, 50));
    takeEvents();
    box->onMouseMove(at(10, 10));
    EXPECT_EQ(takeEvents(), (Words{"right leave", "left enter", "left move"}));
    box->onMouseMove(at(90, 50));
    takeEvents();
    box->onMouseMove(at(10, 10));
    EXPECT_EQ(takeEvents(), (Words{"right leave", "left enter", "left move"})) << "a later leave counts";
}

TEST_F(ContainerEvents, TheWheelGoesToTheLiveHoveredChildWhoseFirstTrueEndsTheWalk) {
    box->onMouseMove(at(10, 10));
    int wheels = 0;
    support::onWheel(*left, [&] { return ++wheels > 0; });
    support::onWheel(*left, [&] { return (wheels += 100) > 0; });
    box->setEnabled(false);
    EXPECT_FALSE(box->onMouseWheel(at(10, 10), 1)) << "a child below a disabled parent is not live";
    EXPECT_EQ(wheels, 0);
    box->setEnabled(true);
    EXPECT_TRUE(box->onMouseWheel(at(10, 10), 1));
    EXPECT_EQ(wheels, 1);
}

TEST_F(ContainerEvents, AChildThatIsFocusedWhileAnotherGetsTheFocusLosesIt) {
    auto* const third = box->add("third", 0, 0, 1, 1);
    left->setFocused(true);
    support::onEvent(*left, Widget::focusCallbackName, [third] { third->setFocused(true); });
    right->setFocused(true);
    EXPECT_EQ(box->getFocusedWidget(), right);
    EXPECT_TRUE(right->getFocused());
    EXPECT_FALSE(third->getFocused());
}

TEST_F(ContainerEvents, WhatALeaveOrALossOfFocusTakesOutIsNeitherEnteredNorFocused) {
    int takenOut = 0;
    support::onMouse(*left, gui::MouseCallbackLeave, [&] {
        other->insert(right);
        ++takenOut;
    });
    box->onMouseMove(at(10, 10));
    takeEvents();
    box->onMouseMove(at(90, 50));
    EXPECT_EQ(takeEvents(), (Words{"left leave"}));
    box->insert(right);
    support::onEvent(*left, Widget::focusCallbackName, [&] {
        if (!left->getFocused())
            other->insert(right);
        ++takenOut;
    });
    left->setFocused(true);
    box->onMouseDown(at(90, 50), gui::MouseButtonMain);
    EXPECT_EQ(takenOut, 3);
    EXPECT_EQ(box->getFocusedWidget(), nullptr);
}

TEST_F(ContainerEvents, KeysGoToTheFocusedChildAndTheContainersOwnCallbacksCannotKeepThem) {
    int own = 0;
    bool answer = false;
    support::onKey(*box, gui::KeyboardCallbackDown, [&] { return ++own > 0; });
    support::onKey(*left, gui::KeyboardCallbackDown, [&] { return answer; });
    left->setFocused(true);
    left->setVisible(false);
    EXPECT_FALSE(box->onKeyDown(gui::KeySpace, 0));
    EXPECT_EQ(own, 1);
    answer = true;
    EXPECT_TRUE(box->onKeyDown(gui::KeySpace, 0)) << "a hidden child with the focus still gets keys";
    EXPECT_EQ(own, 1);
}

// --- Callbacks ---

TEST_F(ContainerEvents, CallbacksRunInOrderOnceEachWhileTheListChanges) {
    using Callback = Widget::WidgetCallback;
    int const type = gui::getWidgetCallbackType(Widget::changeCallbackName);
    std::vector<int> ran;
    auto const make = [](std::function<void()> function) {
        return std::make_shared<std::function<void()>>(std::move(function));
    };
    Callback const last = make([&] { ran.push_back(4); });
    Callback second;
    Callback const first = make([&] {
        ran.push_back(1);
        left->addWidgetCallback(type, last);
    });
    second = make([&] {
        ran.push_back(2);
        left->removeWidgetCallback(type, second);
    });
    left->addWidgetCallback(type, first);
    left->addWidgetCallback(type, second);
    left->addWidgetCallback(type, make([&] { ran.push_back(3); }));
    left->addWidgetCallback(type, first);
    left->addWidgetCallback(type, nullptr);
    left->change();
    EXPECT_EQ(ran, (std::vector<int>{1, 2, 4})) << "added is called, and removing oneself skips the next";
    ran.clear();
    left->change();
    EXPECT_EQ(ran, (std::vector<int>{1, 3, 4}));
    std::weak_ptr<std::function<void()>> only;
    auto owned = make([&] {
        right->removeWidgetCallback(type, only.lock());
        EXPECT_FALSE(only.expired()) << "a running callback is held";
    });
    only = owned;
    right->addWidgetCallback(type, std::move(owned));
    right->change();
    EXPECT_TRUE(only.expired());
    left->addWidgetCallback(type, std::make_shared<std::function<void()>>());
    EXPECT_THROW(left->change(), std::bad_function_call);
}

}  // namespace
}  // namespace widget_test
