#include <gtest/gtest.h>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/CloseButton.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowBaseSkin.h"
#include "gui_lib/windows/WindowData.h"
#include "gui_lib/windows/WindowHeader.h"
#include "gui_lib/windows/WindowHeaderData.h"
#include "gui_lib/windows/WindowHeaderSkin.h"
#include "gui_lib/windows/WindowView.h"
#include "tests/support/Attach.h"
#include "tests/support/TestHost.h"
#include "tests/widget/Probe.h"

namespace widget_test {
namespace {

using gui::GUI;
using gui::Widget;
using gui::WidgetHandler;
using gui::Window;
using gui::WindowBase;
using gui::WindowsManager;

char const* const skinText = R"(
local params = {headerHeight = 30, insets = {left = 4, top = 5, right = 6, bottom = 7}}
Skin = {windowSkin = function()
    return {skinData = {params = params, skins = {
        header = {skinData = {
            params = {insets = {left = 2, top = 3, right = 2, bottom = 3}, closeButtonText = "\195\151"},
            skins = {closeButton = {skinData = {params = {maxSize = {horz = 16, vert = 16}}}}}}},
        view = {skinData = {params = {minSize = {horz = 50, vert = 40}}}}}}}
end}
)";

class Windows : public testing::Test {
protected:
    Windows() {
        window->setPosition(at(100, 100));
        window->setSize(at(200, 150));
        window->setVisible(true);
    }

    /// Without the child operations, which `Box` shows.
    WidgetProbe* add(Window* owner, std::string label, int x, int y) {
        auto* const child = new WidgetProbe(std::move(label));
        child->setPosition(at(x, y));
        child->setSize(at(20, 20));
        child->setFocusableFlag(true);
        owner->insertWidget(child, -1);
        return child;
    }
    void drag(int fromX, int fromY, int toX, int toY) {
        host.moveMouse(fromX, fromY);
        host.pressMouse();
        host.moveMouse(toX, toY);
        host.releaseMouse();
    }

    support::TestHost host{skinText};
    Probe<Window>* window = new Probe<Window>("window");
};

// --- Parts ---

TEST_F(Windows, HeaderAndViewLieInsideTheInsetsOfTheSkin) {
    EXPECT_EQ(window->getHeader()->getPosition(), at(4, 5));
    EXPECT_EQ(window->getHeader()->getSize(), at(190, 30));
    EXPECT_EQ(window->getView()->getPosition(), at(4, 35));
    EXPECT_EQ(window->getView()->getSize(), at(190, 108));
    EXPECT_EQ(window->getClientRect(), (osg::RectImpl<osg::Vec2i>(4, 5, 194, 113)));
    add(window, "", 0, 0);
    EXPECT_EQ(window->calcSize(), at(200, 108 + 30 + 12)) << "a view without natural size keeps the one it has";
}

TEST_F(Windows, TheCloseButtonIsSquareAtTheRightAndHidesTheWindow) {
    gui::CloseButton* const button = window->getHeader()->getCloseButton();
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->getText(), L"\u00d7");
    EXPECT_EQ(button->getSize(), at(16, 16)) << "24 high, but the skin allows 16";
    EXPECT_EQ(button->getPosition(), at(2 + 186 - 16 - 5, 3 + 4));
    int closes = 0;
    support::onEvent(*window, WindowBase::closeCallbackName, [&closes] { ++closes; });
    osg::Vec2i const middle = button->widgetToScreen(at(8, 8));
    host.click(middle.x(), middle.y());
    EXPECT_FALSE(window->getVisible(false));
    EXPECT_EQ(closes, 1);
}

TEST_F(Windows, TheSkinDecidesAboutTheCloseButtonAtEachChangeOfSize) {
    window->getHeader()->setHasCloseButton(false);
    EXPECT_EQ(window->getHeader()->getCloseButton(), nullptr);
    window->setSize(at(210, 150));
    EXPECT_NE(window->getHeader()->getCloseButton(), nullptr);
    window->getHeader()->getSkin()->getHeaderData()->setHasCloseButton(false);
    window->setSize(at(220, 150));
    EXPECT_EQ(window->getHeader()->getCloseButton(), nullptr);
}

TEST_F(Windows, ACopyHasTheSkinTheTextAndCopiesOfTheWidgets) {
    window->setText(L"title");
    window->getSkin()->getWindowData()->setHeaderHeight(44);
    window->getHeader()->getSkin()->getHeaderData()->setCloseButtonText("x");
    window->setLayout((new WideLayout)->handler());
    add(window, "", 3, 4)->setName(L"child");
    auto* const copy = static_cast<Window*>(window->clone());
    EXPECT_EQ(copy->getHeader()->getText(), L"title");
    EXPECT_EQ(copy->getSkin()->getWindowData()->getHeaderHeight(), 44);
    EXPECT_EQ(copy->getHeader()->getSkin()->getHeaderData()->getCloseButtonText(), "x");
    EXPECT_NE(copy->getLayout(), nullptr);
    ASSERT_EQ(copy->getWidgetCount(), 1);
    EXPECT_EQ(copy->getWidget(0)->getName(), L"child");
    EXPECT_NE(copy->getWidget(0), window->getWidget(0));
    EXPECT_TRUE(copy->getVisible(false));
}

TEST_F(Windows, OverlayWidgetsAreDrawnLastAndTakeNoInput) {
    auto* const child = add(window, "child", 10, 10);
    auto* const overlay = new WidgetProbe("overlay");
    overlay->setPosition(child->widgetToScreen(at(0, 0)) - window->getPosition());
    overlay->setSize(at(20, 20));
    window->insertWidget(overlay, 0);
    window->insertOverlayWidget(overlay, 0);
    window->insertOverlayWidget(overlay, 0);
    EXPECT_EQ(window->getOverlayWidgetCount(), 1);
    EXPECT_EQ(window->getWidgetCount(), 1) << "it has left the view";
    osg::Vec2i const point = child->widgetToScreen(at(5, 5));
    takeEvents();
    host.moveMouse(point.x(), point.y());
    EXPECT_EQ(takeEvents(), (std::vector<std::string>{"window enter", "child enter", "window move", "child move"}));

    auto* const other = new Probe<Window>;
    other->insertOverlayWidget(overlay, 5);
    EXPECT_EQ(window->getOverlayWidgetCount(), 0);
    other->insertWidget(overlay, 0);
    EXPECT_EQ(other->getOverlayWidgetCount(), 0);
    EXPECT_EQ(other->getWidget(0), overlay);
    other->insertOverlayWidget(overlay, 0);
    WidgetHandler* const handler = overlay->getHandler();
    Widget::destroy(other);
    EXPECT_EQ(WidgetHandler::get(handler), nullptr);
}

TEST_F(Windows, AnOverlayWidgetThatGoesTakesNoKeysAlong) {
    auto* const overlay = new WidgetProbe;
    overlay->setFocusableFlag(true);
    window->insertOverlayWidget(overlay, -1);
    overlay->setFocused(true);
    EXPECT_EQ(window->getFocusedWidget(), overlay);
    window->removeOverlayWidget(overlay);
    EXPECT_EQ(window->getFocusedWidget(), nullptr);
    Widget::destroy(overlay);
}

// --- Dragging ---

TEST_F(Windows, TheHeaderDragsTheWindowAndADropOutsideBringsItBack) {
    drag(150, 120, 170, 150);
    EXPECT_EQ(window->getPosition(), at(120, 130));
    host.moveMouse(150, 150);
    host.pressMouse();
    host.moveMouse(-500, -500);
    EXPECT_EQ(window->getPosition(), at(-530, -520)) << "no limit applies during the drag";
    host.releaseMouse();
    osg::Vec2i const dragArea = window->getHeader()->getSize() - at(4, 6);
    EXPECT_EQ(window->getPosition(), at(20 - dragArea.x(), 20 - dragArea.y()));
    window->setPosition(at(100, 100));
    drag(150, 120, 2000, 2000);
    EXPECT_EQ(window->getPosition(), at(780, 580));
}

TEST_F(Windows, ADoubleClickDragsAndAnUndraggableHeaderOnlyCaptures) {
    host.click(150, 120);
    drag(150, 120, 160, 120);
    EXPECT_EQ(window->getPosition(), at(110, 100));
    window->setDraggable(false);
    host.pressMouse();
    EXPECT_NE(WidgetHandler::get(WindowsManager::get(0)->getCapture()), nullptr);
    host.moveMouse(300, 300);
    EXPECT_EQ(window->getPosition(), at(110, 100));
    host.releaseMouse();
    EXPECT_EQ(WidgetHandler::get(WindowsManager::get(0)->getCapture()), nullptr);
}

// --- Resizing and cursors ---

TEST_F(Windows, EachBorderResizesAndShowsItsCursor) {
    struct Border {
        int x, y, cursor;
        osg::Vec2i position, size;
    };
    Border const borders[] = {
        {100, 180, 41, at(110, 100), at(190, 150)}, {300, 180, 41, at(100, 100), at(210, 150)},
        {200, 105, 39, at(100, 120), at(200, 130)}, {200, 245, 39, at(100, 100), at(200, 170)},
        {103, 103, 40, at(110, 120), at(190, 130)}, {298, 248, 40, at(100, 100), at(210, 170)},
        {103, 248, 38, at(110, 100), at(190, 170)}, {298, 103, 38, at(100, 120), at(210, 130)},
    };
    window->setResizable(true);
    for (Border const& border : borders) {
        SCOPED_TRACE(testing::Message() << border.x << ", " << border.y);
        window->setPosition(at(100, 100));
        window->setSize(at(200, 150));
        host.moveMouse(200, 180);
        host.advance(1.0);
        EXPECT_EQ(window->getMouseCursor(), 0);
        host.moveMouse(border.x, border.y);
        EXPECT_EQ(window->getMouseCursor(), border.cursor);
        host.pressMouse();
        host.moveMouse(border.x + 10, border.y + 20);
        host.releaseMouse();
        EXPECT_EQ(window->getPosition(), border.position);
        EXPECT_EQ(window->getSize(), border.size);
        EXPECT_EQ(WidgetHandler::get(WindowsManager::get(0)->getCapture()), nullptr);
    }
    host.moveMouse(50, 50);
    EXPECT_EQ(window->getMouseCursor(), 0);
}

TEST_F(Windows, AMinimumStopsTheSizeButNotTheMovingEdge) {
    window->setResizable(true);
    window->getSkin()->getSkinData()->setMinSize(at(180, 0));
    drag(101, 180, 151, 180);
    EXPECT_EQ(window->getSize(), at(180, 150));
    EXPECT_EQ(window->getPosition(), at(150, 100));
}

TEST_F(Windows, AResizeStopsAtTheEdgeOfTheScreenOnRequestAndWhenTheMouseIsTaken) {
    window->setResizable(true);
    window->setClipResizeCursor(true);
    host.moveMouse(299, 180);
    host.pressMouse();
    host.moveMouse(900, 180);
    EXPECT_EQ(window->getSize(), at(200, 150));
    host.moveMouse(790, 200);
    EXPECT_EQ(window->getSize(), at(90, 150)) << "the resize goes on from where the cursor was";
    WindowsManager::get(0)->releaseMouse(nullptr);
    host.moveMouse(150, 200);
    EXPECT_EQ(window->getSize(), at(90, 150));
}

TEST_F(Windows, TheHostHearsOfEachCursorOfTheStack) {
    std::vector<int> heard;
    GUI::get()->setSurfaceMouseCursorCallback(
        0, [&heard](bool shown, int cursor, WindowBase*) { heard.push_back(shown ? cursor : -1); });
    window->pushMouseCursor(36);
    window->pushMouseCursor(7);
    window->popMouseCursor();
    window->popMouseCursor();
    window->popMouseCursor();
    EXPECT_EQ(heard, (std::vector<int>{36, 7, 36, 0, 0})) << "an empty stack still tells";
    window->pushMouseCursor(36);
    window->setHasCursor(false);
    EXPECT_EQ(window->getMouseCursor(), -1);
    EXPECT_EQ(heard.back(), -1);
}

TEST_F(Windows, APushedCursorReplacesTheResizeCursorBelowIt) {
    window->setResizable(true);
    host.moveMouse(101, 180);
    EXPECT_EQ(window->getMouseCursor(), 41);
    window->pushMouseCursor(36);
    host.moveMouse(200, 180);
    EXPECT_EQ(window->getMouseCursor(), 36);
    window->popMouseCursor();
    EXPECT_EQ(window->getMouseCursor(), 0);
}

// --- Keys ---

TEST_F(Windows, HotKeysMatchExactlyInOrderOfTheirModifiers) {
    std::vector<std::string> ran;
    auto const make = [&ran](std::string name) {
        return std::make_shared<std::function<void()>>([&ran, name] { ran.push_back(name); });
    };
    auto const plain = make("plain");
    auto const later = make("later");
    window->addHotKeyCallback({gui::KeyF1}, std::make_shared<std::function<void()>>([&] {
                                  ran.push_back("first");
                                  EXPECT_TRUE(window->removeHotKeyCallback({gui::KeyF1}, later));
                              }));
    window->addHotKeyCallback({gui::KeyF1}, plain);
    window->addHotKeyCallback({gui::KeyF1}, later);
    window->addHotKeyCallback({gui::KeyF1, false, true, false}, make("ctrl"));
    window->setFocused(true);
    host.typeKey(gui::KeyF1);
    EXPECT_EQ(ran, (std::vector<std::string>{"first", "plain"}));
    EXPECT_FALSE(window->removeHotKeyCallback({gui::KeyF1}, later));
    ran.clear();
    host.app().keys.insert(gui::KeyRightCtrl);
    host.typeKey(gui::KeyF1);
    EXPECT_EQ(ran, (std::vector<std::string>{"ctrl"}));
    host.app().keys.insert(gui::KeyLeftShift);
    ran.clear();
    host.typeKey(gui::KeyF1);
    EXPECT_TRUE(ran.empty());
}

TEST_F(Windows, AWindowWithoutFocusHearsNoKeys) {
    int keys = 0;
    support::onKey(*window, gui::KeyboardCallbackDown, [&keys] { return ++keys > 0; });
    window->onKeyDown(gui::KeySpace, 0);
    EXPECT_EQ(keys, 0);
    host.click(200, 200);
    EXPECT_FALSE(window->onKeyDown(gui::KeySpace, 0));
    EXPECT_EQ(keys, 1);
    EXPECT_EQ(window->getInnerState(), 2);
    EXPECT_EQ(window->getHeader()->getInnerState(), 2);
}

// --- Surface and screen ---

TEST_F(Windows, AWindowBelongsToTheSurfaceItWasShownOn) {
    int const surface = GUI::get()->createSurface();
    auto* const child = add(window, "", 0, 0);
    window->setSurfaceId(surface);
    window->setVisible(true);
    EXPECT_EQ(child->getRootSurfaceId(), surface);
    EXPECT_EQ(window->getRootSurfaceId(), surface);
    window->setSurfaceId(99);
    window->setVisible(true);
    window->pushMouseCursor(36);
    EXPECT_TRUE(window->getVisible(false)) << "without a manager the window keeps its state";
}

TEST_F(Windows, AWindowAsAWidgetIsAChildLikeAnyOther) {
    auto* const inner = new Probe<Window>;
    inner->setAsWidget(true);
    inner->setSize(at(50, 50));
    inner->setVisible(true);
    window->insertWidget(inner, -1);
    auto* const child = add(inner, "", 0, 0);
    EXPECT_EQ(WindowsManager::get(0)->findWindowAtPoint(at(120, 150)), window);
    EXPECT_EQ(child->getRoot(), window);
    EXPECT_EQ(window->getRoot(), nullptr);
}

TEST_F(Windows, APositionIsMovedInsideTheScreenWithTheLeftTopCornerFirst) {
    EXPECT_EQ(WindowBase::calcWindowPositionInsideScreen(at(790, 590), at(100, 100)), at(700, 500));
    EXPECT_EQ(WindowBase::calcWindowPositionInsideScreen(at(-50, 10), at(100, 100)), at(0, 10));
    EXPECT_EQ(WindowBase::calcWindowPositionInsideScreen(at(10, 10), at(1000, 1000)), at(0, 0));
    window->centerWindow();
    EXPECT_EQ(window->getPosition(), at(300, 225));
}

// --- Frames ---

TEST_F(Windows, AClipLiesOnTheScreenOrInTheTargetThatIsDrawn) {
    using Rect = osg::RectImpl<osg::Vec2i>;
    auto* const outer = new Box;
    auto* const inner = new Box;
    outer->setPosition(at(10, 20));
    outer->setSize(at(100, 80));
    inner->setPosition(at(1, 2));
    inner->setSize(at(60, 60));
    window->insertWidget(outer, -1);
    outer->insert(inner);
    auto* const child = inner->add("", 5, 6, 30, 30);
    for (Box* box : {outer, inner})
        box->setOwnSkin(new gui::skin::Skin(box, true));
    GUI::get()->setViewportPosition(at(7, 9));
    host.frame();
    osg::Vec2i const origin = at(7 + 100 + 4 + 10 + 1 + 5, 9 + 100 + 35 + 20 + 2 + 6);
    EXPECT_EQ(child->drawnClip(), Rect(origin, origin + at(30, 30)));
    outer->setDrawToTarget(true);
    host.frame();
    EXPECT_EQ(child->drawnClip(), Rect(6, 8, 36, 38)) << "from the corner of the target";
    EXPECT_EQ(child->clipRect(), Rect(origin, origin + at(30, 30)));
}

}  // namespace
}  // namespace widget_test
