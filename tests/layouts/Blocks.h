#pragma once

#include <gtest/gtest.h>

#include <string>

#include "gui_lib/base/Align.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/layouts/Layout.h"
#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "tests/support/Attach.h"
#include "tests/support/TestHost.h"

namespace layout_test {

using gui::Align;
using gui::Layout;
using gui::LayoutHandler;
using gui::Widget;
using gui::WidgetHandler;
using osg::Vec2i;

/// A widget that answers size questions as a test wants it.
struct Block : Widget {
    explicit Block(Vec2i const& prefSize = {}, Vec2i const& minSize = {}, Vec2i const& maxSize = {})
        : pref(prefSize), least(minSize), most(maxSize) {}

    Vec2i calcSize() const override { return pref; }
    Vec2i getMinSize() const override { return least; }
    Vec2i getMaxSize() const override { return most; }

    Vec2i pref;
    Vec2i least;
    Vec2i most;
};

/// A container without a skin, with a client rectangle of the test's choice inside it.
struct Box : gui::Panel {
    explicit Box(Vec2i const& boxSize = {}) { setSize(boxSize); }

    osg::RectImpl<Vec2i> getClientRect() const override {
        return {corner.x(), corner.y(), corner.x() + getSize().x(), corner.y() + getSize().y()};
    }
    Block* add(Block* block) {
        insertWidget(block, -1);
        return block;
    }
    /// Keeps the place of a child that dies now.
    void bury(int index) {
        Widget* const child = getWidget(index);
        child->resetParent();
        Widget::destroy(child);
    }

    Vec2i corner;
};

inline std::string describe(Widget const& widget) {
    Vec2i const position = widget.getPosition();
    Vec2i const size = widget.getSize();
    return std::to_string(position.x()) + "," + std::to_string(position.y()) + " " + std::to_string(size.x()) + "x" +
           std::to_string(size.y());
}

/// "x,y WxH" of each child, "-" for a dead one.
inline std::string describeChildren(gui::Container const& container) {
    std::string result;
    for (int i = 0; i < container.getWidgetCount(); ++i) {
        Widget const* const child = container.getWidget(i);
        result += (i ? " | " : "") + (child ? describe(*child) : "-");
    }
    return result;
}

class Layouts : public testing::Test {
protected:
    template <class LayoutType>
    LayoutType* give(Box& owner, LayoutType* layout) {
        owner.setLayout(layout->handler());
        return layout;
    }

    support::TestHost host;
    Box* box = new Box(Vec2i(100, 60));
};

}  // namespace layout_test
