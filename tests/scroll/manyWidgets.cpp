#include <random>

#include <gtest/gtest.h>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/controls/scroll/ScrollPaneBars.h"
#include "gui_lib/controls/scroll/ScrollPaneView.h"
#include "gui_lib/controls/scroll/ScrollPaneViewContainer.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/RectIndex.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowView.h"
#include "platform/vtx/vtxRenderer.h"
#include "tests/support/HeapScope.h"
#include "tests/support/WidgetZoo.h"

namespace {

using gui::Widget;
using osg::Vec2i;

struct Counts {
    int sizeUpdates = 0;
    int redraws = 0;
    int hitTests = 0;
};

/// A button that counts what is asked of it.
class Counting : public gui::Button {
public:
    explicit Counting(Counts& counts) : counts_(counts) {}

    void updateSize() override { ++counts_.sizeUpdates, Button::updateSize(); }
    void redraw() override { ++counts_.redraws, Button::redraw(); }
    bool getVisible(bool recursive) const override { return ++counts_.hitTests, Button::getVisible(recursive); }

private:
    Counts& counts_;
};

/// A window with a pane of 440 by 200 that holds buttons of 100 by 30 in four columns, 40 from row to row.
class ManyWidgets : public testing::Test {
protected:
    explicit ManyWidgets(int count = 10000) {
        pane->setPosition(Vec2i(10, 10));
        pane->setSize(Vec2i(448, 208));
        window->setSize(Vec2i(600, 400));
        window->setVisible(true);
        window->insertWidget(pane, -1);
        for (int i = 0; i < count; ++i)
            addAt(Vec2i(i % 4 * 110, i / 4 * 40), new Counting(counts));
        pane->setVertScrollBarStep(40.0);
        host.settle();
    }

    Widget* addAt(Vec2i const& place, Widget* widget) {
        widget->setText(L"Button");
        widget->setPosition(place);
        widget->setSize(Vec2i(100, 30));
        pane->insertWidget(widget, -1);
        return widget;
    }
    void moveOver(Vec2i const& inPane) {
        Vec2i const point = pane->widgetToScreen(inPane);
        host.moveMouse(point.x(), point.y());
    }
    Vec2i mouse() { return gui::GUI::get()->getMousePosition(0); }
    gui::ScrollPaneViewContainer& inner() { return *pane->getView()->getContainer(); }

    support::ZooHost host;
    Counts counts;
    gui::Window* window = new gui::Window;
    gui::ScrollPane* pane = new gui::ScrollPane;
};

TEST_F(ManyWidgets, ScrollingLaysNothingOutAndAsksFewWhereTheyAre) {
    moveOver(Vec2i(105, 100));  // between two columns
    pane->setVertScrollValue(1000);
    counts = {};
    unsigned long const redraws = Widget::getRedrawCount();
    for (int i = 0; i < 20; ++i) {
        gui::GUI::get()->mouseWheel(-1);
        host.update();
        pane->setVertScrollValue(pane->getVertScrollValue() + 400);
        host.update();
    }
    EXPECT_EQ(pane->getVertScrollValue(), 1000 + 20 * 440);
    EXPECT_EQ(counts.sizeUpdates, 0);
    EXPECT_EQ(counts.redraws, 0);
    EXPECT_EQ(Widget::getRedrawCount(), redraws) << "nobody has anything to lay out";
    EXPECT_LT(counts.hitTests, 200);
    // Over a button only the ones that the mouse comes to and leaves are laid out.
    moveOver(Vec2i(50, 24));
    host.settle();
    counts = {};
    gui::GUI::get()->mouseWheel(-1);
    host.frame();
    EXPECT_EQ(counts.sizeUpdates, 0);
    EXPECT_LE(counts.redraws, 2);
}

TEST_F(ManyWidgets, OnlyWhatIsInViewReachesTheDevice) {
    vtxRenderer& renderer = *vtxRenderer::get();
    auto const countQuads = [&] {
        host.frame();
        renderer.resetCounters();
        host.frame();
        return renderer.getCounters().quads;
    };
    auto const countAll = [&] {
        std::vector<unsigned> quads;
        for (int value : {0, 40, 20000, 99800, 100000}) {
            pane->setVertScrollValue(value);
            quads.push_back(countQuads());
        }
        return quads;
    };
    std::vector<unsigned> const all = countAll();
    for (int i = 0; i < pane->getWidgetCount(); ++i) {
        Widget* const widget = pane->getWidget(i);
        bool seen = false;
        for (int value : {0, 40, 20000, 99800, 100000})
            seen |= std::abs(widget->getPosition().y() - std::min(value, 99798) - 100) < 150;
        widget->setVisible(seen);
    }
    EXPECT_EQ(countAll(), all) << "as without the others";
    EXPECT_LT(all[2], 20u * 20u);
}

TEST_F(ManyWidgets, AFrameOfScrollingAllocatesNothing) {
    moveOver(Vec2i(105, 100));
    auto const scroll = [&] {
        for (int value : {40, 400, 20000, 100000, 0}) {
            pane->setVertScrollValue(value);
            host.frame();
            gui::GUI::get()->mouseWheel(-1);
            host.frame();
        }
    };
    scroll();
    scroll();
    support::HeapScope const heap;
    scroll();
    EXPECT_EQ(heap.getAllocations(), 0u);
}

/// Takes the mouse far beyond its edges.
class Wide final : public gui::Button {
public:
    bool getScreenPointInside(Vec2i const& point) const override {
        Vec2i const inside = screenToWidget(point);
        return std::abs(inside.x()) < 1000 && inside.y() >= 0 && inside.y() < 5;
    }
};

class SomeWidgets : public ManyWidgets {
protected:
    SomeWidgets() : ManyWidgets(400) {}

    Widget* hit(Vec2i const& inContainer) {
        return inner().getWidgetAtScreenPoint(inner().widgetToScreen(inContainer));
    }
    /// The answer that asking each widget gives.
    Widget* hitByWalk(Vec2i const& inContainer) {
        return inner().gui::Container::getWidgetAtScreenPoint(inner().widgetToScreen(inContainer));
    }
};

TEST_F(SomeWidgets, TheIndexOfPlacesAnswersAsAWalkWhateverChanges) {
    std::mt19937 random(5);
    auto const pick = [&](int count) { return int(random() % unsigned(count)); };
    qor::vector<Widget*> out;
    for (int round = 0; round < 300; ++round) {
        Widget* const widget = pane->getWidget(pick(pane->getWidgetCount()));
        switch (pick(8)) {
            case 0:
                widget->setPosition(Vec2i(pick(440), pick(4000)));
                break;
            case 1:
                widget->setSize(Vec2i(pick(300), pick(300)));
                break;
            case 2:
                widget->setVisible(!widget->getVisible(false));
                break;
            case 3:
                Widget::destroy(widget);
                break;
            case 4:
                addAt(Vec2i(pick(440), pick(4000)), new gui::Button);
                break;
            case 5:
                pane->removeWidget(widget), pane->insertWidget(widget, pick(300));
                break;
            case 6:
                widget->resetParent(), widget->setParent(inner().getHandler());
                break;
            default:
                pane->setVertScrollValue(pick(4000));
                break;
        }
        for (int i = 0; i < 6; ++i) {
            Widget* const at = pane->getWidget(pick(pane->getWidgetCount()));
            // Corners and edges count as inside.
            Vec2i const point = at->getPosition() + Vec2i(pick(3) * at->getSize().x() / 2, pick(4) * 10);
            ASSERT_EQ(hit(point), hitByWalk(point)) << "round " << round;
        }
    }
}

TEST(WindowViewHits, ManyWidgetsAreFoundAsByAskingEach) {
    support::TestHost host;
    auto* const window = new gui::Window;
    window->setPosition(Vec2i(30, 40));
    window->setSize(Vec2i(600, 400));
    window->setVisible(true);
    std::mt19937 random(9);
    auto const pick = [&](int count) { return int(random() % unsigned(count)); };
    qor::vector<Widget*> widgets;
    for (int i = 0; i < 200; ++i) {
        widgets.push_back(i == 100 ? new Wide : new gui::Button);
        widgets.back()->setPosition(Vec2i(pick(560), pick(360)));
        widgets.back()->setSize(Vec2i(pick(60), pick(40)));
        window->insertWidget(widgets.back(), -1);
    }
    host.frame();
    gui::WindowView* const view = window->getView();
    for (bool const wide : {true, false}) {
        for (int round = 0; round < 200; ++round) {
            Vec2i const point = view->widgetToScreen(Vec2i(pick(640) - 20, pick(440) - 20));
            auto const hit = [&] { return view->getWidgetAtScreenPoint(point); };
            auto const hitByWalk = [&] { return view->gui::Container::getWidgetAtScreenPoint(point); };
            // Asked again the places count as at rest.
            for (int i = 0; i < 3; ++i)
                ASSERT_EQ(hit(), hitByWalk());
            // What is found at the same point follows what is shown there.
            qor::small_vector<Widget*, 8> hidden;
            for (; hit() && hit() != view; hidden.back()->setVisible(false)) {
                hidden.push_back(hit());
                ASSERT_EQ(hidden.back(), hitByWalk());
            }
            for (; !hidden.empty(); hidden.pop_back()) {
                hidden.back()->setVisible(true);
                ASSERT_EQ(hit(), hidden.back());
                ASSERT_EQ(hit(), hitByWalk());
            }
            if (round % 20 == 0)
                widgets[std::size_t(pick(100))]->setPosition(Vec2i(pick(560), pick(360)));
        }
        if (wide)
            Widget::destroy(widgets[100]);
    }
}

TEST_F(SomeWidgets, WidgetsThatDecideOnHitsThemselvesAreAsked) {
    Vec2i const point(430, 5003);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(hit(point), nullptr) << "below the container";
    Widget* const wide = addAt(Vec2i(0, 5000), new Wide);
    host.settle();
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(hit(point), wide);
    Widget::destroy(wide);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(hit(point), &inner());
}

}  // namespace
