#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/scroll/ScrollBarData.h"
#include "gui_lib/controls/scroll/ScrollBarSkin.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/controls/scroll/ScrollPaneBars.h"
#include "gui_lib/controls/scroll/ScrollPaneData.h"
#include "gui_lib/controls/scroll/ScrollPaneSkin.h"
#include "gui_lib/controls/scroll/ScrollPaneView.h"
#include "gui_lib/controls/scroll/ScrollPaneViewContainer.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/layouts/Layout.h"
#include "gui_lib/layouts/LayoutHandler.h"
#include "tests/scroll/ScrollGround.h"

namespace scrolltest {

namespace {

using gui::ScrollPane;

/// Children over one another, as wide as the container, 100 high each.
class Pile final : public gui::Layout {
public:
    gui::Layout* clone() const override { return new Pile; }
    char const* getType() const override { return "Pile"; }
    void updateSize() override {
        WidgetHandler* const container = getContainer();
        auto const get = [container](int index) {
            auto const* const owner = static_cast<gui::Container*>(WidgetHandler::get(container));
            return owner ? owner->getWidget(index) : nullptr;
        };
        int const width = WidgetHandler::get(container)->getSize().x();
        for (int i = 0; get(i); ++i) {
            get(i)->setPosition(Vec2i(0, 100 * i));
            if (get(i))
                get(i)->setSize(Vec2i(width, 100));
        }
    }
};

/// A pane of 200 by 100 with nothing in it. Its bars are 10 wide and 12 high.
class Panes : public Ground {
protected:
    Panes() {
        pane->setPosition(Vec2i(50, 60));
        pane->setSize(Vec2i(200, 100));
        window->insertWidget(pane, -1);
        host.frame();
        count(*pane, ScrollPane::changeScrollPaneCallbackName);
    }

    Widget* add(int x, int y, int width, int height, Widget* widget = new Widget) {
        widget->setPosition(Vec2i(x, y));
        widget->setSize(Vec2i(width, height));
        pane->insertWidget(widget, -1);
        return widget;
    }
    void update() {
        pane->updateWidgetsBounds();
        host.frame();
    }
    std::string bars() const {
        auto const tell = [](char const* word, gui::ScrollBar const& bar) {
            if (!bar.getVisible(false))
                return std::string();
            double from, to;
            bar.getRange(from, to);
            char text[128];
            std::snprintf(text, sizeof text, "%s %g to %g, %g in view, page %g; ", word, from, to, bar.getThumbValue(),
                          bar.getPageStep());
            return std::string(text);
        };
        return tell("horz", *pane->getHorzScrollBar()) + tell("vert", *pane->getVertScrollBar());
    }
    Vec2i offset() const { return inner().getPosition(); }
    gui::ScrollPaneViewContainer& inner() const { return *pane->getView()->getContainer(); }
    bool turn(int delta) { return pane->onMouseWheel(pane->widgetToScreen(Vec2i(50, 50)), delta); }

    ScrollPane* pane = new ScrollPane;
};

TEST_F(Panes, BarsShowWhereTheWidgetsNeedMoreThanTheWholePane) {
    add(0, 0, 200, 100);
    host.frame();
    EXPECT_EQ(bars(), "");
    EXPECT_EQ(pane->getView()->getSize(), Vec2i(200, 100));
    EXPECT_EQ(inner().getSize(), Vec2i(200, 100));
    Widget* const wide = add(10, 10, 300, 20);
    host.frame();
    EXPECT_EQ(bars(), "horz 0 to 310, 200 in view, page 200; ") << "what lies under the bar calls no other one";
    EXPECT_EQ(pane->getView()->getSize(), Vec2i(200, 88));
    EXPECT_EQ(pane->getHorzScrollBar()->getPosition(), Vec2i(0, 88));
    EXPECT_EQ(pane->getHorzScrollBar()->getSize(), Vec2i(200, 12));
    EXPECT_EQ(inner().getSize(), Vec2i(310, 100));
    Widget* const tall = add(0, 0, 5, 101);
    host.frame();
    EXPECT_EQ(bars(), "horz 0 to 310, 190 in view, page 190; vert 0 to 101, 88 in view, page 88; ");
    EXPECT_EQ(pane->getHorzScrollBar()->getSize(), Vec2i(190, 12));
    EXPECT_EQ(pane->getVertScrollBar()->getSize(), Vec2i(10, 88));
    EXPECT_EQ(pane->getVertScrollBar()->getPosition(), Vec2i(190, 0));
    EXPECT_EQ(pane->getView()->getSize(), Vec2i(190, 88));
    wide->setVisible(false);
    EXPECT_NE(bars().find("horz"), std::string::npos) << "a widget's own change waits to be told";
    update();
    EXPECT_EQ(bars(), "vert 0 to 101, 100 in view, page 100; ");
    pane->setHorzScrollBarPageStep(33);
    pane->setVertScrollBarPageStep(44);
    wide->setVisible(true);
    update();
    EXPECT_EQ(bars(), "horz 0 to 310, 190 in view, page 33; vert 0 to 101, 88 in view, page 44; ");
    pane->setHorzScrollBarPageStep(-1);
    EXPECT_EQ(pane->getHorzScrollBar()->getPageStep(), 190);
    pane->setSize(Vec2i(400, 300));
    host.frame();
    EXPECT_EQ(bars(), "");
    pane->setSize(Vec2i(200, 100));
    host.frame();
    EXPECT_NE(bars(), "");
    pane->removeWidget(wide);
    pane->removeWidget(tall);
    host.frame();
    EXPECT_EQ(bars(), "");
    Widget::destroy(wide);
    Widget::destroy(tall);
}

TEST_F(Panes, WhatIsScrolledMovesBehindTheView) {
    Widget* const child = add(0, 0, 1000, 500);
    host.frame();
    pane->setVertScrollValue(30.5);
    EXPECT_EQ(pane->getVertScrollValue(), 31);
    pane->setVertScrollBarStep(0.25);
    pane->setVertScrollValue(30.5);
    pane->setHorzScrollValue(5000);
    EXPECT_EQ(offset(), Vec2i(-810, -30)) << "whole units";
    EXPECT_EQ(take(), "") << "the program did it";
    click(*pane->getHorzScrollBar(), Vec2i(3, 5));
    EXPECT_EQ(pane->getHorzScrollValue(), 620) << "a page is the view";
    EXPECT_EQ(offset(), Vec2i(-620, -30));
    EXPECT_EQ(take(), "scroll pane change; ");
    // 78 units of 88 are the travel; the thumb is at 5.
    press(*pane->getVertScrollBar(), Vec2i(5, 10));
    host.moveMouse(host.app().cursorPosition.x(), 700);
    EXPECT_EQ(pane->getVertScrollValue(), 412);
    EXPECT_EQ(take(), "scroll pane change; ");
    host.releaseMouse();
    child->setSize(Vec2i(1000, 300));
    update();
    EXPECT_EQ(pane->getVertScrollValue(), 212) << "the content has become shorter";
    EXPECT_EQ(offset().y(), -212);
    take();
    pane->setSize(Vec2i(200, 150));
    host.frame();
    EXPECT_EQ(offset().y(), -162);
    EXPECT_EQ(take(), "scroll pane change; ") << "the thumb's share tells as the user would";
    child->setSize(Vec2i(10, 10));
    update();
    EXPECT_EQ(offset(), Vec2i());
    EXPECT_EQ(pane->getVertScrollValue(), 0);
    pane->setVertScrollValue(50);
    EXPECT_EQ(pane->getVertScrollValue(), 0) << "a hidden bar has no value";
    EXPECT_EQ(offset(), Vec2i());
}

TEST_F(Panes, WidgetsBeforeTheCornerAreMovedIn) {
    Widget* const before = add(-40, -30, 20, 20);
    Widget* const hidden = add(60, 70, 5, 5);
    hidden->setVisible(false);
    host.frame();
    EXPECT_EQ(bars(), "horz -40 to 200, 190 in view, page 190; vert -30 to 100, 88 in view, page 88; ");
    EXPECT_EQ(before->getPosition(), Vec2i(0, 0));
    EXPECT_EQ(hidden->getPosition(), Vec2i(100, 100)) << "all are moved";
    EXPECT_EQ(inner().getSize(), Vec2i(240, 130));
    pane->setHorzScrollValue(-1000);
    EXPECT_EQ(offset(), Vec2i(40, 0)) << "until the next update the range begins below 0";
    update();
    EXPECT_EQ(bars(), "");
    EXPECT_EQ(offset(), Vec2i());
    EXPECT_EQ(before->getPosition(), Vec2i(0, 0));
}

TEST_F(Panes, TheWheelScrollsUpAndDownAndThenSideways) {
    EXPECT_FALSE(turn(-1)) << "nothing to scroll";
    Widget* const child = add(0, 0, 230, 140);
    host.frame();
    EXPECT_TRUE(turn(-1));
    EXPECT_EQ(offset(), Vec2i(0, -20));
    pane->setVertScrollBarStep(50);
    EXPECT_TRUE(turn(-1));
    EXPECT_EQ(offset(), Vec2i(0, -52)) << "to the end";
    EXPECT_FALSE(turn(-1));
    pane->setHorzMouseWheel(true);
    EXPECT_TRUE(turn(-1));
    EXPECT_TRUE(turn(-1));
    EXPECT_EQ(offset(), Vec2i(-40, -52));
    EXPECT_FALSE(turn(-1));
    EXPECT_TRUE(turn(1));
    EXPECT_EQ(offset(), Vec2i(-40, 0)) << "50 less, to the nearest multiple of 50";
    pane->setVertMouseWheel(false);
    EXPECT_TRUE(turn(3));
    EXPECT_EQ(offset(), Vec2i(0, 0));
    EXPECT_FALSE(turn(1));
    take();
    pane->getSkin()->getSkinData()->setPixelsPerWheelClick(7);
    EXPECT_TRUE(turn(-2));
    EXPECT_EQ(offset(), Vec2i(-14, 0));
    EXPECT_EQ(take(), "scroll pane change; ");
    bool uses = true;
    support::onWheel(*child, [&] { return uses; });
    moveTo(*child, Vec2i(30, 30));
    EXPECT_TRUE(turn(1));
    EXPECT_EQ(offset(), Vec2i(-14, 0)) << "the widget kept it";
    uses = false;
    EXPECT_TRUE(turn(1));
    EXPECT_EQ(offset(), Vec2i(-7, 0));
}

TEST_F(Panes, ALayoutPlacesTheWidgetsAndWhatItStretchedStaysSo) {
    Widget* const first = add(0, 0, 10, 10);
    Widget* const second = add(0, 0, 10, 10);
    pane->setLayout((new Pile)->handler());
    EXPECT_EQ(pane->getLayout(), inner().getLayout());
    host.frame();
    EXPECT_EQ(second->getPosition(), Vec2i(0, 100));
    EXPECT_EQ(bars(), "vert 0 to 200, 100 in view, page 100; ");
    EXPECT_EQ(first->getSize(), Vec2i(200, 100));
    pane->setSize(Vec2i(300, 100));
    host.frame();
    EXPECT_EQ(first->getSize().x(), 300);
    pane->setSize(Vec2i(150, 100));
    host.frame();
    EXPECT_EQ(first->getSize().x(), 300) << "the container never shrinks below what fills it";
    auto* const copy = static_cast<ScrollPane*>(pane->clone());
    ASSERT_NE(copy->getLayout(), nullptr);
    EXPECT_NE(copy->getLayout(), pane->getLayout());
    EXPECT_STREQ(gui::LayoutHandler::get(copy->getLayout())->getType(), "Pile");
    EXPECT_EQ(copy->getWidgetCount(), 2);
    Widget::destroy(copy);
}

TEST_F(Panes, ThePaneSpeaksForTheContainerOfItsWidgetsAsLongAsThatIsThere) {
    Widget* const a = add(0, 0, 10, 10);
    auto* const b = new Widget;
    pane->insertWidget(b, 0);
    EXPECT_EQ(pane->getWidget(0), b);
    EXPECT_EQ(pane->getWidgetIndex(a), 1);
    EXPECT_EQ(pane->getWidgetIndex(pane), -1);
    pane->removeAllWidgets();
    EXPECT_EQ(pane->getWidgetCount(), 0);
    pane->insertWidget(a, -1);
    WidgetHandler* const handler = a->getHandler();
    pane->clear();
    EXPECT_EQ(WidgetHandler::get(handler), nullptr);
    Widget::destroy(pane->getView());
    pane->insertWidget(b, -1);
    EXPECT_EQ(pane->getWidget(0), nullptr);
    Widget::destroy(pane->getVertScrollBar());
    turn(1);
    pane->setHorzScrollValue(3);
    update();
    Widget::destroy(b);
}

TEST_F(Panes, TheMouseFindsTheInnermostAndNotTheParts) {
    auto* const panel = static_cast<gui::Panel*>(add(20, 150, 100, 40, new gui::Panel));
    auto* const button = new gui::Button;
    button->setSize(Vec2i(30, 20));
    button->setTooltipText(L"Hint");
    panel->insertWidget(button, -1);
    host.frame();
    pane->setVertScrollValue(100);
    Vec2i const onButton = button->widgetToScreen(Vec2i(5, 5));
    Vec2i const onBlank = pane->widgetToScreen(Vec2i(150, 20));
    Vec2i const onBar = pane->getVertScrollBar()->widgetToScreen(Vec2i(5, 50));
    EXPECT_EQ(onButton, pane->widgetToScreen(Vec2i(25, 65))) << "90 is the end";
    EXPECT_EQ(pane->findWidgetAtScreenPoint(onButton), button);
    EXPECT_EQ(pane->getTooltipWidget(onButton), button);
    EXPECT_EQ(pane->getView()->findWidgetAtScreenPoint(onBlank), pane->getView());
    EXPECT_EQ(pane->findWidgetAtScreenPoint(onBlank), pane);
    EXPECT_EQ(pane->findWidgetAtScreenPoint(onBar), pane->getVertScrollBar());
    EXPECT_EQ(pane->findWidgetAtScreenPoint(Vec2i()), nullptr);
    EXPECT_TRUE(pane->getHasMouseInputAtScreenPoint(onButton));
    EXPECT_TRUE(pane->getHasMouseInputAtScreenPoint(onBar));
    EXPECT_FALSE(pane->getHasMouseInputAtScreenPoint(onBlank));
    EXPECT_FALSE(pane->getHasMouseInputAtScreenPoint(Vec2i()));
    support::onMouse(*pane, gui::MouseCallbackMove, [this] { events += "move; "; });
    EXPECT_TRUE(pane->getHasMouseInputAtScreenPoint(onBlank));
    host.moveMouse(onBlank.x(), onBlank.y());
    EXPECT_EQ(take(), "move; ");
    host.moveMouse(onBar.x(), onBar.y());
    EXPECT_EQ(take(), "") << "bars are none of the pane's ground";
    host.moveMouse(onButton.x(), onButton.y());
    EXPECT_EQ(button->getInteractiveState(), gui::skin::InteractiveStateHover);
    turn(1);
    EXPECT_EQ(button->getInteractiveState(), gui::skin::InteractiveStateReleased) << "it was scrolled away";
}

TEST_F(Panes, ACopyHasCopiesOfTheWidgetsAndTheLooksOfTheBars) {
    pane->getSkin()->getVertScrollBarSkin()->getSkinData()->setThumbAlign({gui::Align::Max, 3});
    pane->setHorzMouseWheel(true);
    pane->setVertScrollBarStep(4);
    pane->setHorzScrollBarPageStep(21);
    add(0, 0, 500, 600)->setText(L"Big");
    host.frame();
    pane->setVertScrollValue(200);
    pane->setHorzScrollValue(40);
    auto* const copy = static_cast<ScrollPane*>(pane->clone());
    window->insertWidget(copy, -1);
    EXPECT_EQ(copy->getVertScrollValue(), 70) << "cut to the range that a new bar has";
    host.frame();
    EXPECT_EQ(copy->getView()->getContainer()->getPosition(), Vec2i(-40, -72)) << "the nearest step";
    EXPECT_TRUE(copy->getHorzMouseWheel());
    EXPECT_EQ(copy->getHorzScrollBar()->getPageStep(), 21);
    ASSERT_EQ(copy->getWidgetCount(), 1);
    EXPECT_EQ(copy->getWidget(0)->getText(), L"Big");
    EXPECT_EQ(copy->getSkin()->getVertScrollBarSkin()->getSkinData()->getThumbAlign().offset, 3);
}

TEST_F(Panes, ItMayDieWhereverItCallsOut) {
    pane->setVertScrollValue(30);
    auto const make = [this] {
        auto* const each = static_cast<ScrollPane*>(pane->clone());
        for (int i = 0; i < 3; ++i) {
            auto* const child = new Widget;
            child->setSize(Vec2i(300, 90 + 50 * i));
            each->insertWidget(child, -1);
        }
        return each;
    };
    dieEverywhere<ScrollPane>(
        make,
        {
            {ScrollPane::changeScrollPaneCallbackName, [](ScrollPane& each) -> Widget* { return &each; }},
            {Widget::sizeCallbackName, [](ScrollPane& each) -> Widget* { return &each; }},
            {Widget::sizeCallbackName, [](ScrollPane& each) -> Widget* { return each.getVertScrollBar(); }},
            {Widget::positionCallbackName, [](ScrollPane& each) -> Widget* { return each.getVertScrollBar(); }},
            {Widget::changeCallbackName, [](ScrollPane& each) -> Widget* { return each.getVertScrollBar(); }},
            {Widget::sizeCallbackName, [](ScrollPane& each) -> Widget* { return each.getHorzScrollBar(); }},
            {Widget::positionCallbackName, [](ScrollPane& each) -> Widget* { return each.getHorzScrollBar(); }},
            {Widget::sizeCallbackName, [](ScrollPane& each) -> Widget* { return each.getView(); }},
            {Widget::sizeCallbackName, [](ScrollPane& each) -> Widget* { return each.getView()->getContainer(); }},
            {Widget::positionCallbackName, [](ScrollPane& each) -> Widget* { return each.getView()->getContainer(); }},
            {Widget::positionCallbackName, [](ScrollPane& each) { return each.getWidget(0); }},
            {Widget::sizeCallbackName, [](ScrollPane& each) { return each.getWidget(0); }},
        },
        {
            [this](ScrollPane& each) { each.setSize(Vec2i(220, 130)), host.frame(); },
            [](ScrollPane& each) { each.setVertScrollValue(50); },
            [](ScrollPane& each) { each.onMouseWheel(Vec2i(), -1); },
            [this](ScrollPane& each) { click(*each.getVertScrollBar(), Vec2i(5, 80)); },
            [](ScrollPane& each) { each.updateWidgetsBounds(), each.getWidget(0)->setPosition(Vec2i(-9, 5)); },
            [](ScrollPane& each) { each.setLayout((new Pile)->handler()); },
            [](ScrollPane& each) { each.clear(); },
            [this](ScrollPane& each) { pane->copyParams(&each); },
        });
}

}  // namespace

}  // namespace scrolltest
