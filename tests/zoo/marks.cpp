#include <functional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "gui_lib/widget/Widget.h"
#include "tests/support/WidgetZoo.h"

namespace {

using gui::Widget;
using support::ZooAnimal;
using support::ZooHost;

class ZooMarks : public testing::TestWithParam<ZooAnimal> {};

INSTANTIATE_TEST_SUITE_P(All, ZooMarks, testing::ValuesIn(support::getZoo()),
                         [](testing::TestParamInfo<ZooAnimal> const& info) { return std::string(info.param.name); });

TEST_P(ZooMarks, WhateverChangesShowsAsIfAllWereLaidOutAnew) {
    ZooHost host;
    Widget& widget = *host.show(GetParam());
    Widget& root = widget.getRoot() ? *widget.getRoot() : widget;
    auto const look = [&](char const* change) {
        host.settle();
        std::string const shown = host.traceDraw(root);
        root.setDirty(Widget::DirtyTree);
        host.settle();
        EXPECT_EQ(shown, host.traceDraw(root)) << "after: " << change;
    };
    // The place in the tab order alone marks nothing, though the focus frame goes by it.
    widget.setTabOrder(1);
    root.setDirty(Widget::DirtyTree);
    look("nothing");
    host.tease(widget, look);
    std::pair<char const*, std::function<void()>> const changes[] = {
        {"text", [&] { widget.setText(L"Other words"); }},
        {"no text", [&] { widget.setText({}); }},
        {"size", [&] { widget.setSize(widget.getSize() + osg::Vec2i(37, 21)); }},
        {"place", [&] { widget.setPosition(widget.getPosition() + osg::Vec2i(7, 5)); }},
        {"disabled", [&] { widget.setEnabled(false); }},
        {"enabled", [&] { widget.setEnabled(true); }},
        {"half transparent", [&] { widget.setOpacity(0.5f); }},
        {"opaque", [&] { widget.setOpacity(1.0f); }},
        {"focus", [&] { widget.setFocused(true); }},
        {"no focus", [&] { widget.setFocused(false); }},
        {"hidden", [&] { widget.setVisible(false); }},
        {"shown", [&] { widget.setVisible(true); }},
    };
    for (auto const& [name, change] : changes) {
        change();
        look(name);
    }
}

}  // namespace
