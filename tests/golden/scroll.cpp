#include <span>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/scroll/HorzScrollBar.h"
#include "gui_lib/controls/scroll/ScrollBarButton.h"
#include "gui_lib/controls/scroll/ScrollBarData.h"
#include "gui_lib/controls/scroll/ScrollBarSkin.h"
#include "gui_lib/controls/scroll/ScrollBarThumb.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/controls/scroll/VertScrollBar.h"
#include "tests/golden/ContactSheet.h"
#include "tests/golden/Stage.h"

namespace {

using golden::Stage;
using gui::Widget;
using osg::Vec2i;
using support::ZooAnimal;

using State = std::pair<char const*, void (*)(Stage&, Widget&)>;

Vec2i getMiddle(Widget const& widget) {
    return widget.widgetToScreen(Vec2i(widget.getSize().x() / 2, widget.getSize().y() / 2));
}

gui::ScrollBar& asBar(Widget& widget) { return static_cast<gui::ScrollBar&>(widget); }
gui::ScrollPane& asPane(Widget& widget) { return static_cast<gui::ScrollPane&>(widget); }

void pressAt(Stage& stage, Widget& part) {
    stage.moveMouse(getMiddle(part));
    stage.getHost().pressMouse();
}

State const barStates[] = {
    {"resting", [](Stage&, Widget&) {}},
    {"thumb hovered", [](Stage& stage, Widget& bar) { stage.moveMouse(getMiddle(*asBar(bar).getThumb())); }},
    {"thumb dragged",
     [](Stage& stage, Widget& bar) {
         pressAt(stage, *asBar(bar).getThumb());
         stage.moveMouse(getMiddle(*asBar(bar).getThumb()) + Vec2i(7, 7));
     }},
    {"decrease hovered",
     [](Stage& stage, Widget& bar) { stage.moveMouse(getMiddle(*asBar(bar).getDecreaseButton())); }},
    {"increase pressed", [](Stage& stage, Widget& bar) { pressAt(stage, *asBar(bar).getIncreaseButton()); }},
    {"disabled", [](Stage&, Widget& bar) { bar.setEnabled(false); }},
    {"at the end, short thumb",
     [](Stage&, Widget& bar) {
         asBar(bar).setThumbValue(1.0);
         asBar(bar).setValue(1000.0);
     }},
    {"all in view", [](Stage&, Widget& bar) { asBar(bar).setThumbValue(100.0); }},
    {"without buttons", [](Stage&, Widget& bar) { asBar(bar).getSkin()->getSkinData()->setHasButtons(false); }},
};

void fillPane(Widget& pane, Vec2i const& size) {
    for (int y = 0; y < size.y(); y += 44)
        for (int x = 0; x < size.x(); x += 92) {
            auto* const button = new gui::Button;
            button->setText(L"Scrolled");
            button->setPosition(Vec2i(x, y));
            button->setSize(Vec2i(84, 36));
            asPane(pane).insertWidget(button, -1);
        }
}

State const paneStates[] = {
    {"no bar", [](Stage&, Widget& pane) { fillPane(pane, Vec2i(90, 80)); }},
    {"horizontal bar", [](Stage&, Widget& pane) { fillPane(pane, Vec2i(300, 40)); }},
    {"vertical bar", [](Stage&, Widget& pane) { fillPane(pane, Vec2i(90, 200)); }},
    {"both bars", [](Stage&, Widget& pane) { fillPane(pane, Vec2i(300, 300)); }},
    {"scrolled",
     [](Stage& stage, Widget& pane) {
         fillPane(pane, Vec2i(300, 300));
         stage.getHost().settle();
         asPane(pane).setHorzScrollValue(33.0);
         asPane(pane).setVertScrollValue(1000.0);
     }},
    {"disabled",
     [](Stage&, Widget& pane) {
         fillPane(pane, Vec2i(300, 300));
         pane.setEnabled(false);
     }},
};

template <class WidgetType, int width, int height>
Widget* makeSized() {
    auto* const widget = new WidgetType;
    widget->setSize(Vec2i(width, height));
    if (auto* const bar = dynamic_cast<gui::ScrollBar*>(widget))
        bar->setValue(20.0);
    return widget;
}

class GoldenScroll : public testing::TestWithParam<std::pair<char const*, float>> {};

INSTANTIATE_TEST_SUITE_P(All, GoldenScroll,
                         testing::Values(std::pair("dark", 1.0f), std::pair("light", 1.0f), std::pair("dark", 2.0f)));

TEST_P(GoldenScroll, BarsAndPanesLookAsTheyDid) {
    auto const& [skin, scale] = GetParam();
    Stage stage(("skins/" + std::string(skin) + ".lua").c_str(), Vec2i(192, 138), scale);
    golden::ContactSheet sheet("scroll_" + std::string(skin) + (scale == 1.0f ? "_1x" : "_2x"), stage.getPixels(),
                               scale == 1.0f ? 5 : 2);
    auto const add = [&](ZooAnimal const& animal, std::span<State const> states) {
        for (auto const& [name, enter] : states) {
            Widget& widget = stage.place(animal);
            enter(stage, widget);
            stage.getHost().settle();
            sheet.add(std::string(animal.name) + ", " + name, stage.takePicture(widget));
            stage.clear();
        }
    };
    // At scale 2 those with the most edges will do.
    std::span<State const> const bars = scale == 1.0f ? std::span(barStates) : std::span(barStates).subspan(2, 1);
    std::span<State const> const panes = scale == 1.0f ? std::span(paneStates) : std::span(paneStates).subspan(3, 2);
    add({"HorzScrollBar", makeSized<gui::HorzScrollBar, 180, 16>}, bars);
    add({"VertScrollBar", makeSized<gui::VertScrollBar, 16, 126>}, bars);
    add({"ScrollPane", makeSized<gui::ScrollPane, 180, 126>}, panes);
    sheet.finish();
}

}  // namespace
