#include <gtest/gtest.h>

#include "gui_lib/widget/RedrawHelper.h"
#include "tests/widget/Probe.h"

namespace widget_test {
namespace {

using gui::Widget;
using Names = std::vector<std::string>;

/// Four widgets that note their redraw under their name.
class WorkLists : public testing::Test {
protected:
    void SetUp() override {
        Widget::redrawAll();
        Widget::doRedrawAll();
        takeEvents();
        for (char const* name : {"a", "b", "c", "d"}) {
            widgets.push_back(new WidgetProbe);
            widgets.back()->setRedrawCallback([name] { noteEvent(name); });
        }
    }
    void TearDown() override {
        for (WidgetProbe* widget : widgets)
            Widget::destroy(widget);
    }

    std::vector<WidgetProbe*> widgets;
};

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

}  // namespace
}  // namespace widget_test
