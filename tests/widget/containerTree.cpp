#include <random>

#include <gtest/gtest.h>

#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "tests/support/LogCapture.h"
#include "tests/widget/Probe.h"

namespace widget_test {
namespace {

using gui::LayoutHandler;
using gui::Widget;
using gui::WidgetHandler;
using Children = std::vector<Widget*>;

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

TEST_F(ContainerTree, ChildrenStandWhereTheyWereInserted) {
    auto* const a = new WidgetProbe;
    auto* const b = new WidgetProbe;
    auto* const c = new WidgetProbe;
    auto* const d = new WidgetProbe;
    box->insert(a, 99);
    box->insert(b, 0);
    box->insert(c, 1);
    box->insert(d, -3);
    box->insert(a, 0);
    box->insert(nullptr, 0);
    EXPECT_EQ(box->children(), (Children{b, c, a, d}));
    EXPECT_EQ(box->indexOf(a), 2);
    EXPECT_EQ(box->indexOf(nullptr), -1);
    EXPECT_EQ(box->getWidget(-1), nullptr);
    EXPECT_EQ(box->getWidget(4), nullptr);
    Widget::destroy(c);
    EXPECT_EQ(box->children(), (Children{b, a, d}));
}

TEST_F(ContainerTree, AChildThatMovesLeavesItsOldContainer) {
    auto* const child = box->add("", 0, 0, 10, 10);
    other->insert(child, 0);
    EXPECT_EQ(box->children(), Children{});
    EXPECT_EQ(other->children(), Children{child});
    EXPECT_EQ(child->getParent(), other->getHandler());
    child->detachFromParent();
    EXPECT_EQ(other->children(), Children{});
    EXPECT_EQ(child->getParent(), nullptr);
    Widget::destroy(child);
}

TEST_F(ContainerTree, NothingBecomesItsOwnChild) {
    box->insert(other);
    support::LogCapture log;
    box->insert(box);
    other->insert(box);
    EXPECT_EQ(log.count("cannot be inserted"), 2u);
    EXPECT_EQ(box->children(), Children{other});
    EXPECT_EQ(other->children(), Children{});
}

TEST_F(ContainerTree, ReleasedChildrenLiveOnAndClearedOnesDie) {
    auto* const kept = box->add("", 0, 0, 10, 10);
    box->removeAll();
    EXPECT_EQ(kept->getParent(), nullptr);
    EXPECT_EQ(box->indexOf(kept), -1);
    box->insert(kept);
    EXPECT_EQ(box->children(), Children{kept});
    WidgetHandler* const handler = kept->getHandler();
    box->clear();
    EXPECT_EQ(WidgetHandler::get(handler), nullptr);
    EXPECT_EQ(box->getWidgetCount(), 0);
}

TEST_F(ContainerTree, RandomMovesKeepTwoContainersAsASimpleModelDoes) {
    std::mt19937 random(11);
    Box* const boxes[] = {box, other};
    Children models[2];
    Children all;
    for (int i = 0; i < 40; ++i)
        all.push_back(new WidgetProbe);
    auto const drop = [&models](Widget* widget) {
        for (Children& model : models)
            std::erase(model, widget);
    };
    for (int step = 0; step < 5000; ++step) {
        std::size_t const pick = random() % all.size();
        int const to = static_cast<int>(random() % 2);
        switch (random() % 5) {
            case 0:
            case 1: {
                int const index = static_cast<int>(random() % 45) - 2;
                boxes[to]->insert(all[pick], index);
                Children& model = models[to];
                if (std::find(model.begin(), model.end(), all[pick]) != model.end())
                    break;
                drop(all[pick]);
                bool const inside = index >= 0 && index < std::ssize(model);
                model.insert(inside ? model.begin() + index : model.end(), all[pick]);
                break;
            }
            case 2:
                boxes[to]->remove(all[pick]);
                std::erase(models[to], all[pick]);
                break;
            case 3:
                drop(all[pick]);
                Widget::destroy(all[pick]);
                all[pick] = new WidgetProbe;
                break;
            default:
                all[pick]->detachFromParent();
                drop(all[pick]);
        }
        for (int i = 0; i < 2; ++i) {
            ASSERT_EQ(boxes[i]->children(), models[i]);
            auto const place = std::find(models[i].begin(), models[i].end(), all[pick]);
            ASSERT_EQ(boxes[i]->indexOf(all[pick]), place == models[i].end() ? -1 : place - models[i].begin());
        }
    }
    for (Widget* widget : all)
        Widget::destroy(widget);
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

// --- Marks ---

TEST_F(ContainerTree, AMarkReachesTheChildrenThatItsKindNames) {
    auto* const inner = new Box;
    box->insert(inner);
    auto* const deep = inner->add("", 0, 0, 1, 1);
    auto const marksAfter = [&](Widget::DirtyFlag flag) {
        Widget::redrawAll();
        Widget::redrawAll();
        box->setDirty(flag);
        return std::vector<bool>{box->isDirty(), inner->isDirty(), deep->isDirty()};
    };
    EXPECT_EQ(marksAfter(Widget::DirtySelf), (std::vector<bool>{true, false, false}));
    EXPECT_EQ(marksAfter(Widget::DirtyChildren), (std::vector<bool>{true, true, false}));
    EXPECT_EQ(marksAfter(Widget::DirtyTree), (std::vector<bool>{true, true, true}));
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

TEST_F(ContainerEvents, TheLaterOfTwoOverlappingChildrenIsHit) {
    box->onMouseMove(at(50, 50));
    EXPECT_EQ(takeEvents(), (Words{"right enter", "right move"}));
    right->setVisible(false);
    box->onMouseMove(at(50, 50));
    EXPECT_EQ(takeEvents(), (Words{"right leave", "left enter", "left move"}));
    EXPECT_EQ(box->getTooltipWidget(at(50, 50)), left);
    EXPECT_EQ(box->getTooltipWidget(at(90, 50)), box);
}

TEST_F(ContainerEvents, AHoverThatIsUpdatedInsideALeaveTellsNobodyTwice) {
    int updates = 0;
    right->addMouseCallback(gui::MouseCallbackLeave,
                            std::make_shared<std::function<void(int, int, int)>>([&](int, int, int) {
                                // As a container that moves does; bounded, lest a fault eats the stack.
                                if (++updates < 10)
                                    box->onMouseCursorMove(at(10, 10));
                            }));
    box->onMouseMove(at(90, 50));
    takeEvents();
    box->onMouseMove(at(10, 10));
    EXPECT_EQ(takeEvents(), (Words{"right leave", "left enter", "left move"}));
    box->onMouseMove(at(90, 50));
    takeEvents();
    box->onMouseMove(at(10, 10));
    EXPECT_EQ(takeEvents(), (Words{"right leave", "left enter", "left move"})) << "a later leave counts";
}

TEST_F(ContainerEvents, ADisabledContainerKeepsAllButTheWheelFromItsChildren) {
    box->onMouseMove(at(10, 10));
    int wheels = 0;
    left->addMouseWheelCallback(std::make_shared<std::function<bool(int, int, int)>>([&](int, int, int) {
        ++wheels;
        return true;
    }));
    left->addMouseWheelCallback(std::make_shared<std::function<bool(int, int, int)>>([&](int, int, int) {
        wheels += 100;
        return true;
    }));
    takeEvents();
    box->setEnabled(false);
    box->onMouseDown(at(10, 10), gui::MouseButtonMain);
    box->onMouseMove(at(10, 10));
    box->onMouseUp(at(10, 10), gui::MouseButtonMain);
    EXPECT_EQ(takeEvents(), Words{});
    EXPECT_FALSE(box->onMouseWheel(at(10, 10), 1)) << "a child below a disabled parent is not live";
    EXPECT_EQ(wheels, 0);
    box->setEnabled(true);
    EXPECT_TRUE(box->onMouseWheel(at(10, 10), 1));
    EXPECT_EQ(wheels, 1) << "the first true ends the walk";
}

TEST_F(ContainerEvents, APressFocusesTheChildAndOneOnEmptyGroundClearsTheFocus) {
    int own = 0;
    box->addMouseCallback(gui::MouseCallbackDown,
                          std::make_shared<std::function<void(int, int, int)>>([&](int, int, int) { ++own; }));
    box->setSize(at(200, 100));
    box->onMouseDown(at(90, 10), gui::MouseButtonMain);
    EXPECT_TRUE(right->getFocused());
    EXPECT_TRUE(box->getFocused());
    EXPECT_EQ(box->getFocusedWidget(), right);
    box->onMouseDown(at(10, 10), gui::MouseButtonMain);
    EXPECT_FALSE(right->getFocused());
    EXPECT_TRUE(left->getFocused());
    box->onMouseDown(at(150, 10), gui::MouseButtonMain);
    EXPECT_EQ(box->getFocusedWidget(), nullptr);
    EXPECT_FALSE(left->getFocused());
    EXPECT_EQ(own, 3) << "also when a child took the click";
}

TEST_F(ContainerEvents, AChildThatRemovesItselfOnAPressGetsNoFocus) {
    right->addMouseCallback(gui::MouseCallbackDown, std::make_shared<std::function<void(int, int, int)>>(
                                                        [this](int, int, int) { box->remove(right); }));
    box->onMouseDown(at(90, 10), gui::MouseButtonMain);
    EXPECT_EQ(takeEvents(), (Words{"right enter", "right down"})) << "no leave goes to a removed child";
    EXPECT_FALSE(right->getFocused());
    EXPECT_EQ(box->getFocusedWidget(), nullptr);
    Widget::destroy(right);
}

TEST_F(ContainerEvents, LosingTheFocusForgetsTheFocusedChild) {
    other->insert(box);
    auto* const beside = other->add("beside", 300, 0, 10, 10);
    left->setFocused(true);
    EXPECT_TRUE(other->getFocused());
    beside->setFocused(true);
    EXPECT_FALSE(left->getFocused());
    EXPECT_FALSE(box->getFocused());
    EXPECT_EQ(box->getFocusedWidget(), nullptr);
    box->setFocused(true);
    EXPECT_FALSE(left->getFocused());
}

TEST_F(ContainerEvents, AChildThatIsFocusedWhileAnotherGetsTheFocusLosesIt) {
    auto* const third = box->add("third", 0, 0, 1, 1);
    left->setFocused(true);
    left->addWidgetCallback(gui::getWidgetCallbackType(Widget::focusCallbackName),
                            std::make_shared<std::function<void()>>([third] { third->setFocused(true); }));
    right->setFocused(true);
    EXPECT_EQ(box->getFocusedWidget(), right);
    EXPECT_TRUE(right->getFocused());
    EXPECT_FALSE(third->getFocused());
}

TEST_F(ContainerEvents, WhatALeaveOrALossOfFocusTakesOutIsNeitherEnteredNorFocused) {
    int takenOut = 0;
    left->addMouseCallback(gui::MouseCallbackLeave,
                           std::make_shared<std::function<void(int, int, int)>>([&](int, int, int) {
                               box->remove(right);
                               other->insert(right);
                               ++takenOut;
                           }));
    box->onMouseMove(at(10, 10));
    takeEvents();
    box->onMouseMove(at(90, 50));
    EXPECT_EQ(takeEvents(), (Words{"left leave"}));
    box->insert(right);
    left->addWidgetCallback(gui::getWidgetCallbackType(Widget::focusCallbackName),
                            std::make_shared<std::function<void()>>([&] {
                                if (!left->getFocused())
                                    other->insert(right);
                                ++takenOut;
                            }));
    left->setFocused(true);
    box->onMouseDown(at(90, 50), gui::MouseButtonMain);
    EXPECT_EQ(takenOut, 3);
    EXPECT_EQ(box->getFocusedWidget(), nullptr);
}

TEST_F(ContainerEvents, KeysGoToTheFocusedChildAndTheContainersOwnCallbacksCannotKeepThem) {
    int own = 0;
    box->addKeyboardCallback(gui::KeyboardCallbackDown, std::make_shared<std::function<bool(gui::KeyboardButton, int)>>(
                                                            [&](gui::KeyboardButton, int) { return ++own > 0; }));
    bool answer = false;
    left->addKeyboardCallback(gui::KeyboardCallbackDown,
                              std::make_shared<std::function<bool(gui::KeyboardButton, int)>>(
                                  [&](gui::KeyboardButton, int) { return answer; }));
    left->setFocused(true);
    left->setVisible(false);
    EXPECT_FALSE(box->onKeyDown(gui::KeySpace, 0));
    EXPECT_EQ(own, 1);
    answer = true;
    EXPECT_TRUE(box->onKeyDown(gui::KeySpace, 0)) << "a hidden child with the focus still gets keys";
    EXPECT_EQ(own, 1);
}

TEST_F(ContainerEvents, TheTabChainLeavesOutHiddenSubtreesAndWidgetsWithoutOrder) {
    auto* const inner = new Box;
    box->insert(inner);
    auto* const deep = inner->add("", 0, 0, 1, 1);
    deep->setTabOrder(1);
    left->setTabOrder(5);
    qor::vector<WidgetHandler*> chain;
    box->getTabOrderedWidgets(chain);
    EXPECT_EQ(chain, (qor::vector<WidgetHandler*>{left->getHandler(), deep->getHandler()}));
    inner->setVisible(false);
    chain.clear();
    box->getTabOrderedWidgets(chain);
    EXPECT_EQ(chain, (qor::vector<WidgetHandler*>{left->getHandler()}));
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
