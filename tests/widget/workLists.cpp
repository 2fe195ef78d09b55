#include <random>

#include <gtest/gtest.h>

#include "gui_lib/widget/RedrawHelper.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/widget/WidgetWorkLists.h"
#include "tests/widget/Probe.h"

namespace widget_test {
namespace {

using gui::Widget;
using gui::WidgetWorkLists;
using Names = std::vector<std::string>;

/// A widget that notes its redraw under its name.
WidgetProbe* makeNoted(std::string name) {
    auto* const widget = new WidgetProbe;
    widget->setRedrawCallback([name] { noteEvent(name); });
    return widget;
}

class WorkLists : public testing::Test {
protected:
    void SetUp() override {
        Widget::redrawAll();
        Widget::doRedrawAll();
        takeEvents();
        for (char const* name : {"a", "b", "c", "d"})
            widgets.push_back(makeNoted(name));
    }
    void TearDown() override {
        for (WidgetProbe* widget : widgets)
            Widget::destroy(widget);
    }
    void destroy(int index) { Widget::destroy(std::exchange(widgets[index], nullptr)); }

    std::vector<WidgetProbe*> widgets;
};

TEST_F(WorkLists, TheLastEntryTakesThePlaceOfAWidgetThatDies) {
    destroy(1);
    Widget::redrawAll();
    EXPECT_EQ(takeEvents(), (Names{"a", "d", "c"}));
}

TEST_F(WorkLists, AWidgetMarkedTwiceIsRedrawnOnceAndTellsItsParentOnce) {
    auto* const parent = new Box;
    parent->insert(widgets[0]);
    Widget::redrawAll();
    takeEvents();
    int const before = parent->childMarks();
    widgets[0]->setDirty(Widget::DirtySelf);
    widgets[0]->setDirty(Widget::DirtyTree);
    EXPECT_EQ(parent->childMarks(), before + 1);
    Widget::redrawAll();
    EXPECT_EQ(takeEvents(), (Names{"a"}));
    widgets[0] = nullptr;
    Widget::destroy(parent);
}

TEST_F(WorkLists, AMarkMadeDuringThePassWaitsForTheNext) {
    Widget::redrawAll();
    takeEvents();
    widgets[1]->setDirty(Widget::DirtySelf);
    widgets[1]->setRedrawCallback([this] { widgets[0]->setDirty(Widget::DirtySelf); });
    Widget::redrawAll();
    EXPECT_EQ(takeEvents(), Names{});
    EXPECT_TRUE(widgets[0]->isDirty());
    Widget::redrawAll();
    EXPECT_EQ(takeEvents(), (Names{"a"}));
}

TEST_F(WorkLists, AWidgetThatDiesDuringThePassIsSkippedAndTheRestKeepsItsOrder) {
    widgets[0]->setRedrawCallback([this] { destroy(1); });
    Widget::redrawAll();
    EXPECT_EQ(takeEvents(), (Names{"c", "d"}));
}

TEST_F(WorkLists, TheNextPassSwapsTooWhenAWidgetDiesDuringThisOne) {
    Widget::redrawAll();
    takeEvents();
    auto* const trigger = makeNoted("trigger");
    trigger->setRedrawCallback([this] {
        for (WidgetProbe* widget : widgets)
            widget->setDirty(Widget::DirtySelf);
        destroy(0);
    });
    Widget::redrawAll();
    Widget::redrawAll();
    EXPECT_EQ(takeEvents(), (Names{"d", "b", "c"}));
    Widget::destroy(trigger);
}

TEST_F(WorkLists, ANestedPassReturnsAtOnce) {
    widgets[0]->setRedrawCallback([] { Widget::redrawAll(); });
    Widget::redrawAll();
    EXPECT_EQ(takeEvents(), (Names{"b", "c", "d"}));
}

TEST_F(WorkLists, AnExceptionLeavesTheMarksOfThoseNotReached) {
    widgets[1]->setRedrawCallback([] { throw std::runtime_error("stop"); });
    EXPECT_THROW(Widget::redrawAll(), std::runtime_error);
    EXPECT_EQ(takeEvents(), (Names{"a"}));
    widgets[1]->setRedrawCallback({});
    Widget::redrawAll();
    EXPECT_EQ(takeEvents(), (Names{"c", "d"}));
}

TEST_F(WorkLists, AHiddenWidgetLosesItsMarksWithoutARedraw) {
    widgets[0]->setVisible(false);
    Widget::redrawAll();
    EXPECT_FALSE(widgets[0]->isDirty());
    EXPECT_EQ(widgets[0]->redraws(), 0);
    EXPECT_TRUE(widgets[0]->needsDoRedraw());
    widgets[0]->doRedraw();
    EXPECT_FALSE(widgets[0]->needsDoRedraw());
}

TEST_F(WorkLists, TheDoRedrawPassReachesWhatEntersWhileItRunsAndSkipsWhatDies) {
    Widget::redrawAll();
    takeEvents();
    auto* const late = new WidgetProbe;
    late->setVisible(false);
    late->setDoRedrawCallback([] { noteEvent("late"); });
    Widget::redrawAll();
    widgets[0]->setDoRedrawCallback([this, late] {
        destroy(1);
        late->setVisible(true);
        late->redraw();
    });
    widgets[1]->setDoRedrawCallback([] { noteEvent("b"); });
    widgets[2]->setDoRedrawCallback([] { noteEvent("c"); });
    Widget::doRedrawAll();
    EXPECT_EQ(takeEvents(), (Names{"c", "late"}));
    EXPECT_TRUE(WidgetWorkLists::get().getDoRedrawList().empty());
    Widget::doRedrawAll();
    EXPECT_EQ(takeEvents(), Names{});
    Widget::destroy(late);
}

TEST_F(WorkLists, ARedrawHelperRunsItsFunctionOnceAfterEachMark) {
    auto* const helper = new gui::RedrawHelper([] { noteEvent("helped"); });
    for (int pass = 0; pass < 2; ++pass) {
        Widget::redrawAll();
        takeEvents();
        Widget::doRedrawAll();
        Widget::doRedrawAll();
        EXPECT_EQ(takeEvents(), (Names{"helped"}));
        helper->setDirty(Widget::DirtySelf);
    }
    Widget::destroy(helper);
}

TEST_F(WorkLists, ATargetMarkedByItsOwnLayoutIsRedrawnInTheNextPass) {
    auto* const target = new Box;
    target->setDrawToTarget(true);
    target->setSize(at(50, 50));
    target->insert(widgets[0]);
    target->setLayout((new WideLayout)->handler());
    for (int pass = 0; pass < 4; ++pass)
        Widget::redrawAll();
    EXPECT_FALSE(target->isDirty());
    widgets[0]->setSize(at(1, 1));
    Widget::redrawAll();
    target->updateLayout(false);
    int const before = target->redraws();
    Widget::redrawAll();
    EXPECT_EQ(target->redraws(), before + 1);
    EXPECT_TRUE(target->isDirty());
    Widget::redrawAll();
    EXPECT_EQ(target->redraws(), before + 2);
    EXPECT_FALSE(target->isDirty());
    widgets[0] = nullptr;
    Widget::destroy(target);
}

TEST_F(WorkLists, AMarkTravelsToEveryAncestorThatDrawsToATarget) {
    auto* const outer = new Box;
    auto* const middle = new Box;
    auto* const inner = new Box;
    outer->insert(middle);
    middle->insert(inner);
    inner->insert(widgets[0]);
    outer->setZoom(1.5f);
    inner->setOpacity(0.5f);
    Widget::redrawAll();
    widgets[0]->setDirty(Widget::DirtySelf);
    EXPECT_TRUE(outer->isDirty());
    EXPECT_FALSE(middle->isDirty());
    EXPECT_TRUE(inner->isDirty());
    widgets[0] = nullptr;
    Widget::destroy(outer);
}

TEST_F(WorkLists, ManyRandomMarksAndDeathsKeepTheListsAsASimpleModelDoes) {
    std::mt19937 random(7);
    Widget::redrawAll();
    takeEvents();
    std::vector<WidgetProbe*> alive = widgets;
    std::vector<WidgetProbe*> model;
    for (int step = 0; step < 4000; ++step) {
        int const action = static_cast<int>(random() % 10);
        if (action < 3 || alive.size() < 5) {
            alive.push_back(new WidgetProbe);
            model.push_back(alive.back());
        } else if (action < 7) {
            WidgetProbe* const widget = alive[random() % alive.size()];
            widget->setDirty(Widget::DirtySelf);
            if (std::find(model.begin(), model.end(), widget) == model.end())
                model.push_back(widget);
        } else if (action < 9) {
            std::size_t const index = random() % alive.size();
            WidgetProbe* const widget = alive[index];
            alive.erase(alive.begin() + index);
            Widget::destroy(widget);
            auto const place = std::find(model.begin(), model.end(), widget);
            if (place != model.end()) {
                *place = model.back();
                model.pop_back();
            }
        } else if (random() % 8 == 0) {
            Widget::redrawAll();
            Widget::doRedrawAll();
            model.clear();
        }
        auto const& list = WidgetWorkLists::get().getDirtyList();
        ASSERT_EQ(list.size(), model.size());
        for (std::size_t i = 0; i < model.size(); ++i)
            ASSERT_EQ(list[i].widget, model[i]);
    }
    for (WidgetProbe* widget : alive)
        Widget::destroy(widget);
    widgets.clear();
}

}  // namespace
}  // namespace widget_test
