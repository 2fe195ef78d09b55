#include "gui_lib/controls/buttons/ButtonSkin.h"
#include "gui_lib/controls/scroll/ScrollBarData.h"
#include "gui_lib/controls/scroll/ScrollBarSkin.h"
#include "tests/scroll/ScrollGround.h"

namespace scrolltest {

namespace {

using gui::ScrollBar;

/// A bar 232 long and 20 broad with buttons of 20: the track is 192 long, the thumb 64, it travels 128 for a span of
/// 64, so 2 units for each of the value. Both orientations answer in lengths along and across the bar.
class Bars : public Ground, public testing::WithParamInterface<bool> {
protected:
    Bars() {
        if (GetParam())
            bar = new gui::VertScrollBar;
        else
            bar = new gui::HorzScrollBar;
        bar->setPosition(at(50, 60));
        bar->setSize(at(232, 20));
        bar->setRange(0, 96);
        bar->setThumbValue(32);
        window->insertWidget(bar, -1);
        host.frame();
        for (char const* name :
             {Widget::changeCallbackName, ScrollBar::thumbPressedCallbackName, ScrollBar::thumbReleasedCallbackName})
            count(*bar, name);
    }

    Vec2i at(int along, int across) const { return GetParam() ? Vec2i(across, along) : Vec2i(along, across); }
    int getThumbPlace() const { return bar->getThumb()->getPosition()[GetParam()]; }
    int getThumbLength() const { return bar->getThumb()->getSize()[GetParam()]; }
    void drag(int distance) {
        Vec2i const point = host.app().cursorPosition + at(distance, 0);
        host.moveMouse(point.x(), point.y());
    }
    void pressThumb() { press(*bar, at(getThumbPlace() + 5, 10)); }
    gui::skin::ScrollBarData& data() { return *bar->getSkin()->getSkinData(); }

    ScrollBar* bar;
};

INSTANTIATE_TEST_SUITE_P(Orientations, Bars, testing::Bool(),
                         [](auto const& info) { return info.param ? "Vertical" : "Horizontal"; });

TEST_P(Bars, ThumbAndButtonsLieAsTheNumbersSay) {
    EXPECT_EQ(bar->getDecreaseButton()->getPosition(), at(0, 0));
    EXPECT_EQ(bar->getDecreaseButton()->getSize(), at(20, 20));
    EXPECT_EQ(bar->getIncreaseButton()->getPosition(), at(212, 0));
    EXPECT_EQ(bar->getThumb()->getSize(), at(64, 20));
    EXPECT_EQ(bar->findWidgetAtScreenPoint(bar->widgetToScreen(at(40, 10))), bar) << "searches end at the bar";
    struct Row {
        double from, to, thumb, value;
        int place, length;
    };
    Row const rows[] = {
        {0, 96, 32, 0, 20, 64},          {0, 96, 32, 17, 54, 64},   {0, 96, 32, 1000, 148, 64},
        {-48, 48, 32, 0, 116, 64},       {0, 1000, 100, 7, 21, 19},  // 173 * 7 / 900 = 1.3
        {0, 10000, 100, 9900, 202, 10},                              // its least length
        {0, 50, 50, 9, 20, 192},                                     // no way to go
        {5, 5, 30, 9, 20, 192},                                      // all of nothing
        {0, 1e-300, 1e-300, 1, 20, 192},
    };
    for (Row const& row : rows) {
        bar->setRange(row.from, row.to);
        bar->setThumbValue(row.thumb);
        bar->setValue(row.value);
        EXPECT_EQ(getThumbPlace(), row.place) << row.value << " of " << row.from << " to " << row.to;
        EXPECT_EQ(getThumbLength(), row.length) << row.from << " to " << row.to;
        host.frame();
    }
    bar->setRange(0, 96);
    bar->setThumbValue(32);
    bar->setValue(17);
    bar->setThumbValue(64);
    EXPECT_EQ(getThumbPlace(), 54) << "a longer thumb, and less to travel for less";
    bar->setRange(0, 192);
    EXPECT_EQ(getThumbPlace(), 20 + 17);
    // The thumb keeps its value though the range has become narrower, far narrower.
    bar->setRange(0, 96);
    bar->setThumbValue(96);
    bar->setRange(0, 1e-300);
    EXPECT_EQ(getThumbPlace(), 20);
    host.frame();
    bar->setSize(at(30, 20));
    EXPECT_EQ(getThumbLength(), 10) << "no room between the buttons";
    host.frame();
}

TEST_P(Bars, InsetsAndAlignsPlaceThePartsAcross) {
    data().setInsets({3, 3, 3, 3});
    data().setDecreaseButtonAlign({gui::Align::Min, 2});
    data().setIncreaseButtonAlign({gui::Align::Max, 0});
    data().setThumbAlign({gui::Align::Center, 1});
    host.frame();
    EXPECT_EQ(bar->getDecreaseButton()->getSize(), at(14, 14));
    EXPECT_EQ(bar->getDecreaseButton()->getPosition(), at(3, 5));
    EXPECT_EQ(bar->getIncreaseButton()->getPosition(), at(232 - 3 - 14, 3));
    EXPECT_EQ(bar->getThumb()->getPosition(), at(17, 4));
}

TEST_P(Bars, APressBesideTheThumbMovesByAPage) {
    bar->setValue(20);  // the thumb lies from 60 to 124
    click(*bar, at(125, 10));
    EXPECT_EQ(bar->getValue(), 30);
    click(*bar, at(30, 10));
    EXPECT_EQ(bar->getValue(), 20);
    EXPECT_EQ(take(), "widget change; widget change; ");
    click(*bar, at(200, 10), gui::MouseButtonSecondary);
    EXPECT_EQ(bar->getValue(), 20) << "another button does nothing";
    click(*bar, at(60, 10));
    click(*bar, at(124, 10));
    EXPECT_EQ(bar->getValue(), 20) << "the edges are the thumb's";
    EXPECT_EQ(take(), "thumb pressed; thumb released; thumb pressed; thumb released; ");
    press(*bar, at(200, 10));
    host.advance(5.0);
    EXPECT_EQ(bar->getValue(), 30) << "a held button does not repeat";
    host.releaseMouse();
    host.pressMouse();
    host.releaseMouse();
    host.pressMouse();
    host.releaseMouse();
    EXPECT_EQ(bar->getValue(), 50) << "a double click is a second press";
    bar->setValue(64);
    take();
    click(*bar, at(211, 10));
    EXPECT_EQ(take(), "thumb pressed; thumb released; ") << "the thumb has come to the end";
    bar->setValue(60);
    click(*bar, at(211, 10));
    EXPECT_EQ(bar->getValue(), 64);
    click(*bar, at(30, 10));
    EXPECT_EQ(bar->getValue(), 54);
}

TEST_P(Bars, StepButtonsActWhenTheyAreLetGo) {
    press(*bar, at(222, 10));
    EXPECT_EQ(bar->getValue(), 0);
    host.releaseMouse();
    EXPECT_EQ(bar->getValue(), 1);
    press(*bar, at(222, 10));
    drag(-100);
    host.releaseMouse();
    EXPECT_EQ(bar->getValue(), 1) << "taken back";
    drag(-1);
    bar->setStep(5);
    click(*bar, at(222, 10));
    EXPECT_EQ(bar->getValue(), 5) << "1 and a step, to the next multiple";
    click(*bar, at(10, 10));
    click(*bar, at(10, 10));
    EXPECT_EQ(bar->getValue(), 0);
    EXPECT_EQ(take(), "widget change; widget change; widget change; ") << "the last had nothing to change";
}

TEST_P(Bars, ADragFollowsTheMouseAndTheValueKeepsToItsSteps) {
    bar->setStep(8);
    pressThumb();
    EXPECT_EQ(take(), "thumb pressed; ");
    for (int i = 1; i <= 7; ++i) {
        drag(1);
        EXPECT_EQ(getThumbPlace(), 20 + i);
        EXPECT_EQ(bar->getThumb()->getValue(), 0.5 * i) << "the fraction stays with the thumb";
        EXPECT_EQ(bar->getValue(), 0);
    }
    EXPECT_EQ(take(), "");
    drag(1);
    EXPECT_EQ(bar->getValue(), 8);
    EXPECT_EQ(getThumbPlace(), 28);
    host.frame();
    drag(9);
    EXPECT_EQ(getThumbPlace(), 37);
    EXPECT_EQ(take(), "widget change; ");
    host.releaseMouse();
    EXPECT_EQ(getThumbPlace(), 36) << "it jumps to the value";
    EXPECT_EQ(take(), "thumb released; ");
}

TEST_P(Bars, ASurplusBeyondTheEndIsUndoneFirst) {
    pressThumb();
    drag(200);
    EXPECT_EQ(bar->getValue(), 64);
    EXPECT_EQ(getThumbPlace(), 148);
    EXPECT_EQ(bar->getThumb()->getValue(), 100);
    drag(-60);
    EXPECT_EQ(getThumbPlace(), 148);
    drag(-20);
    EXPECT_EQ(getThumbPlace(), 140);
    EXPECT_EQ(bar->getValue(), 60);
    drag(200);
    host.releaseMouse();
    pressThumb();
    drag(-20);
    EXPECT_EQ(bar->getValue(), 54) << "a press begins with the bar's value";
    drag(-500);
    EXPECT_EQ(getThumbPlace(), 20);
    EXPECT_EQ(bar->getValue(), 0);
}

TEST_P(Bars, WhereThereIsNoWayADragChangesNothing) {
    auto const tryDrag = [this] {
        pressThumb();
        drag(7);
        host.releaseMouse();
        EXPECT_EQ(getThumbPlace(), 20);
        EXPECT_EQ(take(), "thumb pressed; thumb released; ");
    };
    bar->setThumbValue(96);
    take();
    tryDrag();
    bar->setRange(3, 3);
    tryDrag();
    bar->setRange(0, 96);
    bar->setThumbValue(32);
    data().setMinSize(Vec2i());
    bar->getSkin()->getThumbSkin()->getSkinData()->setMinSize(at(192, 10));
    bar->setSize(at(231, 20));
    bar->setValue(30);
    take();
    tryDrag();
    EXPECT_EQ(bar->getValue(), 30);
}

TEST_P(Bars, TheThumbShowsPressedUntilItIsLetGo) {
    using namespace gui::skin;
    auto const state = [this] { return bar->getThumb()->getInteractiveState(); };
    EXPECT_EQ(state(), InteractiveStateReleased);
    moveTo(*bar, at(40, 10));
    EXPECT_EQ(state(), InteractiveStateHover);
    pressThumb();
    drag(500);
    EXPECT_EQ(state(), InteractiveStatePressed) << "wherever the mouse is";
    bar->setEnabled(false);
    EXPECT_EQ(state(), InteractiveStateDisabled);
    bar->setEnabled(true);
    host.releaseMouse();
    EXPECT_EQ(state(), InteractiveStateReleased);
    pressThumb();
    drag(-3);
    take();
    gui::WindowsManager::get(0)->releaseMouse(nullptr);
    EXPECT_EQ(take(), "thumb released; ") << "whoever takes the mouse away ends the drag";
    drag(-20);
    EXPECT_EQ(take(), "");
    EXPECT_EQ(state(), InteractiveStateReleased);
}

TEST_P(Bars, ButtonsComeAndGoWithTheSkin) {
    bar->setValue(64);
    data().setHasButtons(false);
    EXPECT_NE(bar->getDecreaseButton(), nullptr);
    host.frame();
    EXPECT_EQ(bar->getDecreaseButton(), nullptr);
    EXPECT_EQ(bar->getIncreaseButton(), nullptr);
    EXPECT_EQ(getThumbLength(), 77) << "232 / 3";
    EXPECT_EQ(getThumbPlace(), 232 - 77);
    EXPECT_EQ(bar->getWidgetCount(), 1);
    data().setHasButtons(true);
    bar->setSize(at(231, 20));
    ASSERT_NE(bar->getIncreaseButton(), nullptr);
    EXPECT_EQ(bar->getIncreaseButton()->getPosition(), at(211, 0));
    EXPECT_TRUE(bar->getIncreaseButton()->getWidgetSkin() == bar->getSkin()->getIncreaseButtonSkin());
}

TEST_P(Bars, TheProgramIsNotTheUser) {
    bar->setValue(40);
    bar->setRange(0, 60);
    EXPECT_EQ(bar->getValue(), 28);
    EXPECT_EQ(take(), "");
    bar->setThumbValue(50);
    EXPECT_EQ(bar->getValue(), 10);
    EXPECT_EQ(take(), "widget change; ") << "but for the thumb's share";
}

TEST_P(Bars, ACopyIsCutToTheRangeThatANewBarHas) {
    data().setThumbAlign({gui::Align::Max, 0});
    bar->getSkin()->getThumbSkin()->getSkinData()->setMinSize(Vec2i(11, 11));
    bar->setRange(0, 1000);
    bar->setThumbValue(200);
    bar->setStep(3);
    bar->setPageStep(400);
    bar->setValue(600);
    auto* const copy = static_cast<ScrollBar*>(bar->clone());
    EXPECT_STREQ(copy->getWidgetType(), GetParam() ? "VertScrollBar" : "HorzScrollBar");
    double from, to;
    copy->getRange(from, to);
    EXPECT_EQ(to, 1000);
    // 70 is the most that a value can be in 0 to 100 with a thumb of 30; the thumb of 100 leaves it 0.
    EXPECT_EQ(copy->getValue(), 0);
    EXPECT_EQ(copy->getThumbValue(), 100);
    EXPECT_EQ(copy->getStep(), 3);
    EXPECT_EQ(copy->getPageStep(), 100);
    EXPECT_EQ(copy->getSize(), bar->getSize());
    EXPECT_EQ(copy->getThumb()->getMinSize(), Vec2i(11, 11));
    EXPECT_EQ(copy->getSkin()->getSkinData()->getThumbAlign().type, gui::Align::Max);
    data().setHasButtons(false);
    host.frame();
    auto* const bare = static_cast<ScrollBar*>(bar->clone());
    EXPECT_EQ(bare->getDecreaseButton(), nullptr);
    Widget::destroy(copy);
    Widget::destroy(bare);
}

TEST_P(Bars, PartsMayGoTheirOwnWay) {
    auto* const box = new gui::Window;
    gui::ScrollBarThumb* const thumb = bar->getThumb();
    box->insertWidget(thumb, -1);
    EXPECT_EQ(bar->getThumb(), nullptr);
    EXPECT_EQ(thumb->getWidgetSkin(), nullptr) << "the skin stays with the bar";
    Widget::destroy(bar->getDecreaseButton());
    EXPECT_EQ(bar->getDecreaseButton(), nullptr);
    bar->setValue(9);
    bar->setThumbValue(1);
    bar->setSize(at(100, 30));
    click(*bar, at(50, 10));
    host.frame();
    EXPECT_EQ(bar->getValue(), 9) << "a track without a thumb has no two sides";
    Widget::destroy(bar);
    thumb->onMouseDown(Vec2i(), gui::MouseButtonMain);
    thumb->onMouseUp(Vec2i(), gui::MouseButtonMain);
    host.frame();
    Widget::destroy(box);
}

TEST_P(Bars, ItMayDieWhereverItCallsOut) {
    bar->setValue(30);
    auto const make = [this] {
        auto* const each = static_cast<ScrollBar*>(bar->clone());
        each->setRange(0, 96);
        each->setThumbValue(32);
        each->setValue(0);
        each->setPosition(at(50, 200));
        return each;
    };
    dieEverywhere<ScrollBar>(
        make,
        {
            {Widget::positionCallbackName, [](ScrollBar& each) -> Widget* { return each.getThumb(); }},
            {Widget::sizeCallbackName, [](ScrollBar& each) -> Widget* { return each.getThumb(); }},
            {Widget::positionCallbackName, [](ScrollBar& each) -> Widget* { return each.getIncreaseButton(); }},
            {Widget::sizeCallbackName, [](ScrollBar& each) -> Widget* { return each.getDecreaseButton(); }},
            {Widget::changeCallbackName, [](ScrollBar& each) -> Widget* { return each.getIncreaseButton(); }},
            {Widget::changeCallbackName, [](ScrollBar& each) -> Widget* { return &each; }},
            {Widget::sizeCallbackName, [](ScrollBar& each) -> Widget* { return &each; }},
            {ScrollBar::thumbPressedCallbackName, [](ScrollBar& each) -> Widget* { return &each; }},
            {ScrollBar::thumbReleasedCallbackName, [](ScrollBar& each) -> Widget* { return &each; }},
        },
        {
            [](ScrollBar& each) { each.setValue(50); },
            [](ScrollBar& each) { each.setRange(10, 40); },
            [](ScrollBar& each) { each.setThumbValue(70); },
            [this](ScrollBar& each) { each.setSize(at(300, 40)); },
            [this](ScrollBar& each) { click(each, at(222, 10)); },
            [this](ScrollBar& each) { click(each, at(200, 10)); },
            [this](ScrollBar& each) { press(each, at(30, 10)), drag(30), host.releaseMouse(); },
            [this](ScrollBar& each) { each.getSkin()->getSkinData()->setHasButtons(false), host.frame(); },
            [this](ScrollBar& each) { bar->copyParams(&each); },
        });
}

}  // namespace

}  // namespace scrolltest
