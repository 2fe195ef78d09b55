#include <gtest/gtest.h>

#include "gui_lib/controls/buttons/Button.h"
#include "gui_lib/controls/small/Tooltip.h"
#include "gui_lib/controls/small/TooltipData.h"
#include "gui_lib/controls/small/TooltipSkin.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/windows/Window.h"
#include "tests/support/Attach.h"
#include "tests/support/SkinText.h"
#include "tests/support/TestHost.h"

namespace {

using osg::Vec2i;

std::string tooltipSkin() {
    return "Skin = {tooltipSkin = " +
           support::skinFunction(
               "startTime = 0.5, duration = 4, insets = {left = 5, top = 5, right = 5, bottom = 5}",
               std::string("text = {font = '") + support::fontFile + "', fontSize = 14, color = '0xffffffff'}") +
           "}";
}

/// A window with two buttons in its view, both with a tooltip, and a clock far from its start.
class Tooltips : public testing::Test {
protected:
    Tooltips() : host(tooltipSkin()) {
        window->setPosition(Vec2i(100, 100));
        window->setSize(Vec2i(300, 100));
        for (gui::Button* button : {first, second}) {
            button->setSize(Vec2i(100, 50));
            window->insertWidget(button, -1);
        }
        second->setPosition(Vec2i(150, 0));
        first->setTooltipText(L"first");
        second->setTooltipText(L"a longer second");
        window->setVisible(true);
        host.app().time = 100.0;
    }

    bool visible() { return manager.getTooltip()->getVisible(false); }
    qor::basic_string<wchar_t> text() { return manager.getTooltip()->getText(); }
    void pointAtFirst() { host.moveMouse(120 + ++wobble, 120); }
    void pointAtSecond() { host.moveMouse(270 + ++wobble, 120); }
    void pointAtNothing() { host.moveMouse(120 + ++wobble, 180); }

    support::TestHost host;
    gui::WindowsManager& manager = *gui::WindowsManager::get(0);
    gui::Window* window = new gui::Window;
    gui::Button* first = new gui::Button;
    gui::Button* second = new gui::Button;
    int wobble = 0;
};

TEST_F(Tooltips, ComeAfterTheirTimeGoAfterTheirTimeAndFollowTheMouse) {
    EXPECT_FALSE(visible()) << "hidden from the start";
    pointAtFirst();
    host.advance(0.4);
    EXPECT_FALSE(visible());
    pointAtFirst();
    host.advance(0.4);
    EXPECT_FALSE(visible()) << "a move begins the waiting again";
    host.advance(0.2);
    ASSERT_TRUE(visible());
    EXPECT_EQ(text(), L"first");
    EXPECT_EQ(manager.getTooltip()->getPosition(), Vec2i(120 + wobble, 140));
    EXPECT_EQ(manager.getTooltip()->getSize(), manager.getTooltip()->calcSize());
    pointAtFirst();
    host.advance(0.1);
    EXPECT_TRUE(visible()) << "moving on over the same text keeps it";
    host.advance(0.5);
    EXPECT_EQ(manager.getTooltip()->getPosition(), Vec2i(120 + wobble, 140));
    host.advance(3.5);
    EXPECT_FALSE(visible());
    host.advance(10.0);
    EXPECT_FALSE(visible()) << "until the next move";
}

TEST_F(Tooltips, OneSoonAfterAnotherComesAtOnce) {
    pointAtFirst();
    host.advance(0.6);
    ASSERT_TRUE(visible());
    pointAtSecond();
    host.advance(0.01);
    EXPECT_FALSE(visible()) << "another text hides it";
    host.advance(0.2);
    EXPECT_FALSE(visible()) << "the tick that hid it also stopped the waiting";
    pointAtSecond();
    host.advance(0.09);
    EXPECT_FALSE(visible());
    host.advance(0.02);
    EXPECT_TRUE(visible());
    EXPECT_EQ(text(), L"a longer second");
    EXPECT_EQ(manager.getTooltip()->getSize(), manager.getTooltip()->calcSize());

    pointAtNothing();
    host.advance(0.01);
    EXPECT_FALSE(visible());
    host.advance(0.6);
    pointAtFirst();
    host.advance(0.2);
    EXPECT_FALSE(visible()) << "long after, the whole time counts again";
    host.advance(0.35);
    EXPECT_TRUE(visible());
}

TEST_F(Tooltips, ShortlyAfterTheStartTheyComeFastToo) {
    host.app().time = 1.3;
    pointAtFirst();
    host.advance(0.11);
    EXPECT_TRUE(visible());
}

TEST_F(Tooltips, APressHidesThemUntilTheMouseMovesOn) {
    pointAtFirst();
    host.advance(0.6);
    ASSERT_TRUE(visible());
    host.pressMouse();
    EXPECT_FALSE(visible());
    pointAtFirst();
    host.advance(1.0);
    EXPECT_FALSE(visible()) << "quiet while a button is held";
    host.releaseMouse();
    pointAtFirst();
    host.advance(1.0);
    EXPECT_FALSE(visible()) << "the first move after the click is skipped";
    pointAtFirst();
    host.advance(0.6);
    EXPECT_TRUE(visible());
}

TEST_F(Tooltips, GoWhenTheirWidgetOrWindowGoes) {
    pointAtFirst();
    host.advance(0.6);
    ASSERT_TRUE(visible());
    gui::Widget::destroy(first);
    host.advance(0.1);
    EXPECT_FALSE(visible());
    pointAtSecond();
    host.advance(0.6);
    ASSERT_TRUE(visible());
    gui::Widget::destroy(window);
    host.advance(0.1);
    EXPECT_FALSE(visible());
}

TEST_F(Tooltips, MayEndAsTheyAreSizedForTheirText) {
    gui::Tooltip* const tooltip = manager.getTooltip();
    support::onEvent(*tooltip, gui::Widget::sizeCallbackName, [tooltip] { gui::Widget::destroy(tooltip); });
    pointAtFirst();
    host.advance(0.6);
    EXPECT_EQ(manager.getTooltip(), nullptr);
    pointAtSecond();
    host.advance(0.6);
}

TEST_F(Tooltips, AForcedTextReplacesThemAndStaysThroughPresses) {
    gui::skin::TooltipSkin forced(nullptr);
    forced.getTooltipData()->setStartTime(0.1);
    manager.forceTooltipText(L"dragging", &forced, 0);
    EXPECT_EQ(manager.getTooltipText(), L"dragging");
    host.advance(1.0);
    EXPECT_FALSE(visible()) << "forcing starts no clock";
    pointAtNothing();
    host.advance(0.6);
    ASSERT_TRUE(visible());
    EXPECT_EQ(text(), L"dragging");
    host.pressMouse();
    EXPECT_TRUE(visible());
    host.releaseMouse();
    manager.forceTooltipText(L"changed", nullptr, 1);
    EXPECT_EQ(text(), L"changed");
    host.advance(3.0);
    manager.forceTooltipText(L"changed", nullptr, 2);
    host.advance(3.0);
    EXPECT_TRUE(visible()) << "its time began again";
    manager.forceTooltipText(L"", nullptr, 0);
    host.advance(0.1);
    EXPECT_FALSE(visible());
}

TEST_F(Tooltips, TakeTheSkinOfTheWidgetOrTheDefaultOne) {
    gui::skin::TooltipSkin slow(nullptr);
    slow.getTooltipData()->setInsets({50, 1, 50, 1});
    first->setTooltipSkin(&slow);
    gui::skin::TooltipSkin common(nullptr);
    common.getTooltipData()->setInsets({20, 1, 20, 1});
    common.getTooltipData()->setDuration(9.0);
    manager.setDefaultTooltipSkin(&common);
    pointAtFirst();
    host.advance(0.6);
    ASSERT_TRUE(visible());
    EXPECT_EQ(manager.getTooltip()->getTooltipData()->getInsets().left, 50);
    EXPECT_EQ(manager.getTooltip()->getTooltipData()->getDuration(), 4.0) << "a plain skin's times do not come along";
    pointAtSecond();
    host.advance(0.01);
    pointAtSecond();
    host.advance(0.2);
    ASSERT_TRUE(visible());
    EXPECT_EQ(manager.getTooltip()->getTooltipData()->getInsets().left, 20);
    EXPECT_EQ(manager.getTooltip()->getTooltipData()->getDuration(), 9.0);
}

TEST_F(Tooltips, AreDrawnLastAndLieBelowThePointerOrWhereTheyFit) {
    gui::Tooltip& tooltip = *manager.getTooltip();
    tooltip.setText(L"some words");
    Vec2i const size = tooltip.getSize();
    ASSERT_GT(size.x(), 40);
    auto const placed = [&](int x, int y) {
        host.moveMouse(x, y);
        return tooltip.calcScreenPosition();
    };
    EXPECT_EQ(placed(30, 40), Vec2i(30, 60));
    EXPECT_EQ(placed(790, 40), Vec2i(800 - size.x(), 60));
    EXPECT_EQ(placed(30, 590), Vec2i(30, 590 - size.y()));
    EXPECT_EQ(placed(30, 580 - size.y()), Vec2i(30, 600 - size.y())) << "as far down as it fits";
    host.app().cursorSize = Vec2i(64, 64);
    EXPECT_EQ(placed(30, 40), Vec2i(30, 80));
    host.app().cursorSize = Vec2i(0, 0);
    EXPECT_EQ(placed(31, 40), Vec2i(31, 60));
    host.app().setWindowSize(Vec2i(30, 600));
    EXPECT_EQ(placed(20, 40), Vec2i(0, 60));
    // The screen's place counts when looking for room, and nowhere else.
    host.app().setWindowSize(Vec2i(800, 600));
    gui::GUI::get()->setViewportPosition(Vec2i(100, 100));
    host.moveMouse(800, 650);
    EXPECT_EQ(gui::GUI::get()->getMousePosition(0), Vec2i(700, 550));
    EXPECT_EQ(tooltip.calcScreenPosition(), Vec2i(700 - size.x(), 550 - size.y()));
}

TEST_F(Tooltips, WrapAtTheScreensWidth) {
    gui::Tooltip& tooltip = *manager.getTooltip();
    tooltip.setText(L"word");
    int const lineHeight = tooltip.getSize().y() - 10;
    qor::basic_string<wchar_t> longText;
    for (int i = 0; i < 60; ++i)
        longText += L"several words ";
    tooltip.setText(longText);
    EXPECT_GE(tooltip.getSize().y(), 10 + 3 * lineHeight);
    EXPECT_LE(tooltip.getSize().x(), 800 + 10);
}

}  // namespace
