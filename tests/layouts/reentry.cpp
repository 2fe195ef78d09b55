#include <functional>
#include <memory>

#include "gui_lib/layouts/AnchorLayout.h"
#include "gui_lib/layouts/BorderLayout.h"
#include "gui_lib/layouts/FormLayout.h"
#include "gui_lib/layouts/HorzLayout.h"
#include "gui_lib/layouts/VertLayout.h"
#include "gui_lib/windows/Window.h"
#include "tests/layouts/Blocks.h"

namespace layout_test {
namespace {

/// Each layout class, stretched where it can be.
std::vector<std::pair<char const*, std::function<Layout*()>>> const& getMakers() {
    static std::vector<std::pair<char const*, std::function<Layout*()>>> const makers = {
        {"horz", [] { return new gui::HorzLayout(2); }},
        {"vert",
         [] {
             auto* const layout = new gui::VertLayout(2);
             layout->setVertAlign({Align::Stretch, 0});
             return layout;
         }},
        {"anchor",
         [] {
             auto* const layout = new gui::AnchorLayout;
             for (int i = 0; i < 3; ++i) {
                 gui::AnchorLayout::AnchorInfo info;
                 info.right = info.bottom = Align(Align::Max, i + 1);
                 layout->insertAnchorInfo(info, -1);
             }
             return layout;
         }},
        {"border", [] { return new gui::BorderLayout(2, 2); }},
        {"form", [] { return new gui::FormLayout(2, 2); }},
    };
    return makers;
}

using Deed = std::function<void(Box& box, Widget& child)>;

class Reentry : public Layouts {
protected:
    Box* makeBox(std::function<Layout*()> const& make) {
        auto* const made = new Box(Vec2i(100, 60));
        for (int i = 0; i < 3; ++i)
            made->add(new Block(Vec2i(10 + i, 10 + i)));
        give(*made, make());
        return made;
    }
    /// Does `deed` inside the first callback of `event` that child `index` calls while its container is resized, with
    /// each layout class. `after` sees the container, null if it died.
    void perform(Deed const& deed, std::function<void(Box*)> const& after) {
        for (auto const& [name, make] : getMakers())
            for (char const* const event : {Widget::sizeCallbackName, Widget::positionCallbackName})
                for (int index = 0; index < 3; ++index) {
                    SCOPED_TRACE(std::string(name) + ", " + event + ", " + std::to_string(index));
                    Box* const made = makeBox(make);
                    WidgetHandler* const handler = made->getHandler();
                    Widget* const child = made->getWidget(index);
                    // So that it is given another place and another size for sure.
                    child->setPosition(Vec2i(77, 77));
                    child->setSize(Vec2i(3, 3));
                    auto const done = std::make_shared<bool>(false);
                    support::onEvent(*child, event, [=] {
                        if (!std::exchange(*done, true))
                            deed(*made, *child);
                    });
                    made->setSize(Vec2i(140, 80));
                    EXPECT_TRUE(*done);
                    after(static_cast<Box*>(WidgetHandler::get(handler)));
                    Widget::destroy(WidgetHandler::get(handler));
                }
    }
};

TEST_F(Reentry, ACallbackMayEndTheContainerTheLayoutOrAChild) {
    perform([](Box& box, Widget&) { Widget::destroy(&box); }, [](Box*) {});
    perform([](Box& box, Widget&) { Layout::destroy(LayoutHandler::get(box.getLayout())); },
            [](Box* box) { EXPECT_EQ(box->getLayout(), nullptr); });
    perform([](Box&, Widget& child) { Widget::destroy(&child); }, [](Box*) {});
    perform([](Box& box, Widget&) { Widget::destroy(box.getWidget(0)); }, [](Box*) {});
    perform([](Box& box, Widget&) { box.clear(); }, [](Box*) {});
}

TEST_F(Reentry, ACallbackMayReplaceTheLayoutOrGiveItToAnotherContainer) {
    perform(
        [this](Box& box, Widget&) {
            auto* const row = new gui::HorzLayout(1);
            give(box, row);
        },
        [](Box* box) {
            // Placed by the new one, and not by the rest of the old one's walk.
            std::string const now = describeChildren(*box);
            box->updateLayout(true);
            EXPECT_EQ(describeChildren(*box), now);
        });
    perform(
        [](Box& box, Widget&) {
            auto* const other = new Box(Vec2i(30, 30));
            other->setLayout(box.getLayout());
        },
        [](Box*) {});
}

TEST_F(Reentry, ALayoutThatRunsAnewInsideItselfHasTheLastWord) {
    perform([](Box& box, Widget&) { box.setSize(Vec2i(90, 50)); },
            [](Box* box) {
                std::string const now = describeChildren(*box);
                box->updateLayout(true);
                EXPECT_EQ(describeChildren(*box), now);
            });
    // Children that come and go are placed at the next redraw.
    perform(
        [](Box& box, Widget& child) {
            box.insertWidget(new Block(Vec2i(7, 7)), 0);
            box.removeWidget(&child);
            Widget::destroy(&child);
        },
        [](Box* box) {
            Widget::redrawAll();
            std::string const now = describeChildren(*box);
            box->updateLayout(true);
            EXPECT_EQ(describeChildren(*box), now);
        });
}

TEST_F(Reentry, ALayoutTakenOverServesItsNewContainerOnly) {
    for (auto const& [name, make] : getMakers()) {
        SCOPED_TRACE(name);
        Box* const first = makeBox(make);
        Box* const second = makeBox([] { return new gui::HorzLayout; });
        LayoutHandler* const layout = first->getLayout();
        second->setLayout(layout);
        EXPECT_EQ(first->getLayout(), nullptr);
        EXPECT_EQ(LayoutHandler::get(layout)->getContainer(), second->getHandler());
        std::string const before = describeChildren(*first);
        first->setSize(Vec2i(55, 44));
        EXPECT_EQ(describeChildren(*first), before);
        Widget::destroy(first);
        EXPECT_NE(LayoutHandler::get(layout), nullptr);
        // Without a container it does nothing.
        second->setLayout(nullptr);
        EXPECT_EQ(LayoutHandler::get(layout), nullptr);
        Layout* const idle = make();
        idle->updateSize();
        EXPECT_EQ(idle->getPrefSize(), Vec2i(0, 0));
        EXPECT_EQ(idle->calcMaxSize(), Vec2i(0, 0));
        EXPECT_EQ(std::string(idle->getType()), name);
        Layout::destroy(idle);
        Widget::destroy(second);
    }
}

TEST_F(Reentry, ACopyOfAContainerLaysOutAsTheOriginal) {
    for (auto const& [name, make] : getMakers()) {
        SCOPED_TRACE(name);
        Box* const original = makeBox(make);
        Layout* const copy = LayoutHandler::get(original->getLayout())->clone();
        EXPECT_EQ(std::string(copy->getType()), name);
        auto* const other = new Box(Vec2i(100, 60));
        for (int i = 0; i < 3; ++i)
            other->add(new Block(Vec2i(10 + i, 10 + i)));
        other->setLayout(copy->handler());
        for (Box* const box : {original, other})
            box->setSize(Vec2i(130, 90));
        EXPECT_EQ(describeChildren(*other), describeChildren(*original));
    }
}

TEST_F(Reentry, DraggingTheBorderOfAWindowLaysItsViewOutAtEveryStep) {
    auto* const window = new gui::Window;
    window->setPosition(Vec2i(50, 50));
    window->setSize(Vec2i(200, 100));
    window->setResizable(true);
    auto* const row = new gui::HorzLayout;
    row->setHorzAlign({Align::Stretch, 0});
    window->setLayout(row->handler());
    for (int i = 0; i < 2; ++i)
        window->insertWidget(new Block(Vec2i(10, 10), Vec2i(30, 0)), -1);
    window->setVisible(true);
    host.frame();
    Widget const& last = *window->getWidget(1);
    EXPECT_EQ(describe(last), "100,0 100x10");
    host.moveMouse(249, 100);
    host.pressMouse();
    host.moveMouse(289, 100);
    EXPECT_EQ(describe(last), "120,0 120x10");
    host.moveMouse(60, 100);
    // The view's own minimum, 60, holds the window's layout from shrinking further, not the window.
    EXPECT_EQ(describe(last), "30,0 30x10");
    host.releaseMouse();
}

}  // namespace
}  // namespace layout_test
