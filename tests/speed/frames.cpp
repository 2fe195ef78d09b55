// What a frame may cost, by counters: allocations, runs of the device, widgets touched, things built anew.

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/layouts/VertLayout.h"
#include "gui_lib/windows/Window.h"
#include "host/CommandPlayer.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "tests/speed/Watched.h"
#include "tests/support/HeapScope.h"
#include "tests/support/WidgetZoo.h"

namespace {

using gui::Widget;
using osg::Vec2i;
using speed_test::Touches;
using speed_test::Watched;
using WatchedButton = Watched<gui::Button>;

support::TestHost::Settings settingsOf(Vec2i const& size) {
    support::TestHost::Settings settings;
    settings.size = size;
    return settings;
}

/// A window with a grid of push buttons, all visible, in the dark skin.
class Panel {
public:
    explicit Panel(int count) : host("skins/dark.lua", settingsOf(Vec2i(1100, 2600))) {
        window->setSize(Vec2i(1050, 2550));
        for (int i = 0; i < count; ++i) {
            buttons.push_back(new WatchedButton(touches));
            buttons.back()->setPosition(Vec2i(i % 10 * 100, i / 10 * 24));
            buttons.back()->setSize(Vec2i(96, 20));
            setLabel(i, 0);
            window->insertWidget(buttons.back(), -1);
        }
        window->setVisible(true);
        host.settle();
        // None is new to the glyph pages any more.
        for (int label : {1, 2}) {
            setLabel(0, label);
            host.settle();
        }
    }

    /// `which` is 0 to 2. All have 12 characters.
    void setLabel(int index, int which) {
        wchar_t const* const labels[3] = {L"Label 000000", L"Label 123456", L"Label 789012"};
        buttons[std::size_t(index)]->setText(labels[which]);
    }
    void hover(int index) {
        Vec2i const point = buttons[std::size_t(index)]->widgetToScreen(Vec2i(48, 10));
        host.moveMouse(point.x(), point.y());
    }
    vtxRenderer::Counters countFrame() {
        vtxRenderer::get()->resetCounters();
        host.frame();
        return vtxRenderer::get()->getCounters();
    }

    Touches touches;
    support::ZooHost host;
    gui::Window* window = new gui::Window;
    std::vector<WatchedButton*> buttons;
};

/// Does something to button after button until all is warm, then goes on with buttons that it was not done to before.
template <class Function>
size_t countAllocations(Function act) {
    int index = 0;
    while (index < 40)
        act(index++);
    support::HeapScope const heap;
    while (index < 60)
        act(index++);
    return heap.getAllocations();
}

}  // namespace

// --- Memory ---

TEST(SteadyFrames, AllocateNothing) {
    Panel panel(100);
    EXPECT_EQ(countAllocations([&](int) { panel.host.frame(); }), 0u) << "nothing changes";
    EXPECT_EQ(countAllocations([&](int index) {
                  panel.setLabel(index, 1 + index % 2);
                  panel.host.frame();
              }),
              0u)
        << "one other label";
    EXPECT_EQ(countAllocations([&](int index) {
                  panel.hover(index);
                  panel.host.frame();
              }),
              0u)
        << "the mouse onto the next button";
}

TEST(SteadyFrames, RecordingPlayingAndReleasingAWindowAllocatesNothing) {
    Panel panel(100);
    gui::GraphicCommands list;
    vtxRenderer& renderer = *vtxRenderer::get();
    EXPECT_EQ(countAllocations([&](int) {
                  panel.window->make(&list);
                  host::CommandPlayer::parse(list);
                  host::CommandPlayer::doRedraw(list);
                  renderer.beginDraw(vtxRenderer::TechniqueNormal);
                  renderer.getShader()->turnOnDrawQuads();
                  host::CommandPlayer::draw(list);
                  renderer.endDraw();
                  host::CommandPlayer::release(list);
              }),
              0u);
}

// --- The device ---

TEST(SteadyFrames, AsManyRunsOfTheDeviceForTenTimesTheButtons) {
    std::vector<unsigned> runs, quads;
    for (int count : {100, 1000}) {
        Panel panel(count);
        vtxRenderer::Counters const counters = panel.countFrame();
        runs.push_back(counters.runs + counters.geometryDraws);
        quads.push_back(counters.quads);
    }
    EXPECT_EQ(runs[1], runs[0]);
    EXPECT_LE(runs[0], 3u);
    EXPECT_GT(quads[1], 9 * quads[0]) << "all are drawn";
}

TEST(SteadyFrames, ASecondFrameWithoutAChangeBuildsNothingAndDrawsTheSame) {
    Panel panel(100);
    panel.hover(5);
    panel.setLabel(7, 1);
    unsigned long const before = Widget::getRedrawCount();
    panel.touches = {};
    std::string const first = panel.host.traceFrame();
    EXPECT_EQ(Widget::getRedrawCount(), before + 1) << "the label; hovering was laid out with its message";
    EXPECT_EQ(panel.touches.redraws, 1);
    EXPECT_EQ(panel.touches.doRedraws, 2);

    panel.touches = {};
    vtxRenderer::Counters const counters = panel.countFrame();
    EXPECT_EQ(Widget::getRedrawCount(), before + 1);
    EXPECT_EQ(panel.touches.redraws, 0);
    EXPECT_EQ(panel.touches.doRedraws, 0);
    EXPECT_EQ(counters.uploads, 0u);
    EXPECT_EQ(counters.targets, 0u);
    EXPECT_TRUE(panel.host.traceFrame() == first);
}

TEST(SteadyFrames, AZoomedWidgetComesToRestAndStillFollowsItsChildren) {
    Touches touches;
    Panel panel(1);
    auto* const pane = new gui::Panel;
    panel.window->insertWidget(pane, -1);
    pane->setPosition(Vec2i(0, 60));
    pane->setSize(Vec2i(300, 150));
    auto* const button = new WatchedButton(touches);
    pane->setLayout((new gui::VertLayout(0))->handler());
    pane->insertWidget(button, -1);
    button->setText(L"One");
    pane->setZoom(1.5f);
    panel.host.settle();

    unsigned long const redraws = Widget::getRedrawCount();
    EXPECT_EQ(panel.countFrame().targets, 0u);
    EXPECT_EQ(Widget::getRedrawCount(), redraws);
    button->setText(L"Two");
    EXPECT_EQ(panel.countFrame().targets, 1u) << "the child's text";
    pane->setSize(Vec2i(330, 180));
    EXPECT_EQ(panel.countFrame().targets, 1u) << "another size";
    panel.host.settle();
    EXPECT_EQ(panel.countFrame().targets, 0u);
}

// --- Widgets ---

namespace {

/// Buttons in a window that is hidden, buttons hidden in a window that is shown, and buttons in no window at all; none
/// of them is marked.
class Unseen : public testing::Test {
protected:
    Unseen() {
        auto* const hiddenWindow = new Watched<gui::Window>(inHiddenWindow);
        for (int i = 0; i < 100; ++i) {
            hiddenWindow->insertWidget(new WatchedButton(inHiddenWindow), -1);
            auto* const hidden = new WatchedButton(hiddenInWindow);
            panel.window->insertWidget(hidden, -1);
            hidden->setVisible(false);
            nowhere.emplace_back(new WatchedButton(withoutWindow));
        }
        hiddenWindow->setVisible(true);
        panel.host.settle();
        hiddenWindow->setVisible(false);
        panel.host.settle();
        for (Touches* touches : {&inHiddenWindow, &hiddenInWindow, &withoutWindow, &panel.touches})
            *touches = {};
    }
    ~Unseen() override {
        for (WatchedButton* button : nowhere)
            Widget::destroy(button);
    }

    static void expectUntouched(Touches const& touches, char const* where) {
        EXPECT_EQ(touches.drawn + touches.redraws + touches.doRedraws + touches.others, 0)
            << where << ", last: " << touches.last;
    }

    Touches inHiddenWindow, hiddenInWindow, withoutWindow;
    Panel panel{10};
    std::vector<WatchedButton*> nowhere;
};

TEST_F(Unseen, NoneIsTouchedByAFrameButInTheDrawWalk) {
    gui::GUI& gui = *gui::GUI::get();
    for (int round = 0; round < 2; ++round) {
        if (round == 1)
            panel.setLabel(3, 1);
        hiddenInWindow = {};
        panel.host.update();
        gui.redraw(false);
        gui.doRedraw();
        expectUntouched(hiddenInWindow, "hidden, in a window that is shown");
        gui.parse();
        gui.draw();
        expectUntouched(inHiddenWindow, "in a window that is hidden");
        expectUntouched(withoutWindow, "in no window");
    }
}

TEST_F(Unseen, WhatIsSeenAndUnmarkedIsNeitherLaidOutNorBuiltNorMeasured) {
    gui::GUI& gui = *gui::GUI::get();
    gui::Button* const changing = new gui::Button;
    panel.window->insertWidget(changing, -1);
    changing->setSize(Vec2i(96, 20));
    panel.host.settle();
    changing->setText(L"Another");
    panel.touches = {};
    panel.host.update();
    gui.redraw(false);
    gui.doRedraw();
    expectUntouched(panel.touches, "beside the one that changed");
    gui.draw();
    EXPECT_EQ(panel.touches.redraws + panel.touches.doRedraws, 0);
    EXPECT_GE(panel.touches.drawn, 10) << "and drawn";
}

}  // namespace
