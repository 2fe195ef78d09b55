#include <gtest/gtest.h>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/layouts/AnchorLayout.h"
#include "gui_lib/layouts/BorderLayout.h"
#include "gui_lib/layouts/FormLayout.h"
#include "gui_lib/layouts/HorzLayout.h"
#include "gui_lib/layouts/VertLayout.h"
#include "tests/golden/ContactSheet.h"
#include "tests/golden/Stage.h"

namespace {

using gui::Align;
using gui::Widget;
using osg::Vec2i;

Vec2i const first{150, 110};
Vec2i const then{236, 152};

gui::Panel* makePanel(gui::Layout* layout, std::initializer_list<wchar_t const*> texts) {
    auto* const panel = new gui::Panel;
    panel->setSize(first);
    for (wchar_t const* const text : texts) {
        auto* const button = new gui::Button;
        button->setText(text);
        panel->insertWidget(button, -1);
    }
    panel->setLayout(layout->handler());
    return panel;
}

template <class LayoutType>
LayoutType* makeLine(Align const& horz, Align const& vert) {
    auto* const layout = new LayoutType(5);
    layout->setHorzAlign(horz);
    layout->setVertAlign(vert);
    return layout;
}

Widget* makeAnchored() {
    auto* const layout = new gui::AnchorLayout;
    Align const near(Align::Min, 0);
    Align const far(Align::Max, 0);
    Align const middle(Align::Center, 0);
    Align const scaled(Align::Stretch, 0);
    Align const anchors[][4] = {{near, near, far, near},
                                {near, near, near, far},
                                {middle, middle, middle, middle},
                                {far, far, far, far},
                                {scaled, scaled, scaled, scaled}};
    gui::Panel* const panel = makePanel(layout, {L"Wide", L"High", L"Mid", L"Far", L"Part"});
    Vec2i const places[] = {{8, 8}, {8, 40}, {60, 40}, {100, 76}, {50, 76}};
    for (int i = 0; i < 5; ++i) {
        panel->getWidget(i)->setSize(i == 0 ? Vec2i(134, 26) : i == 1 ? Vec2i(36, 62) : Vec2i(42, 26));
        panel->getWidget(i)->setPosition(places[i]);
        gui::AnchorLayout::AnchorInfo info;
        info.left = anchors[i][0], info.top = anchors[i][1], info.right = anchors[i][2], info.bottom = anchors[i][3];
        layout->insertAnchorInfo(info, -1);
    }
    panel->updateLayout(true);
    return panel;
}

Widget* makeForm() {
    auto* const layout = new gui::FormLayout(6, 4);
    layout->setCaptionsAlign({Align::Max, 0}, {Align::Center, 0});
    layout->setFieldsAlign({Align::Stretch, 0}, {Align::Center, 0});
    return makePanel(layout, {L"One", L"The field", L"Longer", L"Field", L"Alone"});
}

support::ZooAnimal const animals[] = {
    {"aligned row",
     [] {
         return static_cast<Widget*>(
             makePanel(makeLine<gui::HorzLayout>({Align::Max, -4}, {Align::Center, 0}), {L"Yes", L"No", L"?"}));
     }},
    {"stretched row",
     [] {
         return static_cast<Widget*>(
             makePanel(makeLine<gui::HorzLayout>({Align::Stretch, 0}, {Align::Stretch, 0}), {L"A", L"B", L"C"}));
     }},
    {"aligned column",
     [] {
         return static_cast<Widget*>(
             makePanel(makeLine<gui::VertLayout>({Align::Center, 0}, {Align::Center, 0}), {L"Above", L"In", L"Below"}));
     }},
    {"stretched column",
     [] {
         return static_cast<Widget*>(
             makePanel(makeLine<gui::VertLayout>({Align::Stretch, 0}, {Align::Stretch, 0}), {L"1", L"2", L"3"}));
     }},
    {"anchors", makeAnchored},
    {"borders",
     [] {
         return static_cast<Widget*>(
             makePanel(new gui::BorderLayout(4, 4), {L"North", L"South", L"Centre", L"West", L"East"}));
     }},
    {"form", makeForm},
};

TEST(GoldenLayouts, EveryLayoutPlacesAsItDidBeforeAndAfterAResize) {
    golden::Stage stage("skins/dark.lua", Vec2i(250, 166), 1.0f);
    golden::ContactSheet sheet("layouts", stage.getPixels(), 4);
    for (support::ZooAnimal const& animal : animals) {
        Widget& panel = stage.place(animal);
        sheet.add(animal.name, stage.takePicture(panel));
        panel.setSize(then);
        sheet.add(std::string(animal.name) + ", resized", stage.takePicture(panel));
        stage.clear();
    }
    sheet.finish();
}

}  // namespace
