// The driver's mouse, keyboard and clock, and the dump of the tree.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "gui_lib/base/HotKey.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/windows/ModalWindow.h"
#include "testkit/Keys.h"
#include "testkit/TreeDump.h"
#include "tests/support/Soak.h"
#include "tests/testkit/DriverGround.h"

namespace {

bool contains(std::string const& text, std::string_view part) { return text.find(part) != std::string::npos; }

/// Writes down the keys it hears.
class KeyPad final : public gui::Button {
public:
    // Widget:
    bool onKeyDown(gui::KeyboardButton key, int modifiers) override { return note_("+", key, modifiers); }
    bool onKeyUp(gui::KeyboardButton key, int modifiers) override { return note_("-", key, modifiers); }
    bool onChar(gui::KeyboardButton key, int character) override { return note_("c", key, character); }

    std::string heard;

private:
    bool note_(char const* what, int key, int value) {
        heard += what + std::to_string(key) + ":" + std::to_string(value) + " ";
        return true;
    }
};

TEST(DriverKeyboard, KeysAndCharactersArriveAsFromAHost) {
    DriverGround ground;
    auto& window = ground.addWindow(L"window", {50, 50}, {300, 200});
    auto* const pad = new KeyPad;
    pad->setName(L"pad");
    pad->setSize({100, 50});
    window.insertWidget(pad, -1);
    window.setVisible(true);
    ground.driver->click("pad");
    auto const hear = [&](auto const& action) {
        pad->heard.clear();
        action();
        return pad->heard;
    };
    EXPECT_EQ(hear([&] { ground.driver->typeText("aB!"); }),
              "+97:0 c97:97 -97:0 +304:1 +98:1 c98:66 -98:1 -304:0 +304:1 +49:1 c49:33 -49:1 -304:0 ");
    EXPECT_EQ(hear([&] { ground.driver->typeText("éÉЖ\n"); }),
              "+233:0 c233:233 -233:0 +304:1 +233:1 c233:201 -233:1 -304:0 c0:1046 +13:0 -13:0 ");
    EXPECT_EQ(hear([&] { ground.driver->pressKeys("Ctrl+Shift+s"); }),
              "+306:64 +304:65 +115:65 c115:19 -115:65 -304:64 -306:0 ");
    EXPECT_EQ(hear([&] { ground.driver->pressKeys("alt++"); }), "+308:256 +43:256 -43:256 -308:0 ");
    EXPECT_EQ(hear([&] { ground.driver->pressKeys("page up"); }), "+280:0 -280:0 ");
    for (char const* const wrong : {"", "ctrl+", "strg+s", "s+ctrl", "f99"})
        EXPECT_TRUE(contains(ground.reasonOf([&] { ground.driver->pressKeys(wrong); }), "names no key")) << wrong;
    EXPECT_FALSE(testkit::getKeysOfCharacter(1).has_value());
}

TEST(DriverKeyboard, HotKeysAndHeldKeysAreSeenByWhoAsksTheHost) {
    DriverGround ground;
    auto& window = ground.addWindow(L"window", {50, 50}, {300, 200});
    gui::Button& button = ground.addButton(window, L"ok", {10, 10});
    bool held = false;
    onClick(button,
            [&] { held = ground.app.getKeyDown(gui::KeyLeftCtrl) && ground.app.getKeyDown(gui::KeyLeftShift); });
    gui::HotKey hotKey;
    hotKey.button = static_cast<gui::KeyboardButton>('s');
    hotKey.ctrlPressed = true;
    int saved = 0;
    window.addHotKeyCallback(hotKey, std::make_shared<std::function<void()>>([&] { ++saved; }));
    window.setVisible(true);
    ground.driver->click("ok", {.held = "ctrl+shift"});
    EXPECT_TRUE(held);
    ground.driver->pressKeys("ctrl+s");
    ground.driver->pressKeys("ctrl+shift+s");
    ground.driver->pressKeys("s");
    EXPECT_EQ(saved, 1);
    EXPECT_FALSE(ground.app.getKeyDown(gui::KeyLeftCtrl));
    EXPECT_TRUE(contains(ground.reasonOf([&] { ground.driver->click("ok", {.held = "s"}); }), "cannot be held"));
}

TEST(DriverMouse, ADragGoesStepByStepAndTheWheelNotchByNotch) {
    DriverGround ground;
    auto& window = ground.addWindow(L"window", {50, 50}, {300, 200});
    window.setText(L"Title");
    gui::Button& button = ground.addButton(window, L"ok", {10, 10});
    std::vector<osg::Vec2i> way;
    button.addMouseCallback(gui::MouseCallbackMove,
                            std::make_shared<std::function<void(int, int, int)>>([&](int x, int y, int) {
                                way.push_back({x, y});
                            }));
    int turned = 0;
    button.addMouseWheelCallback(std::make_shared<std::function<bool(int, int, int)>>([&](int, int, int delta) {
        turned = turned * 10 + delta;
        return true;
    }));
    window.setVisible(true);
    ground.driver->dragBy(testkit::byText("WindowHeader", "Title"), {120, 77});
    EXPECT_EQ(window.getPosition(), osg::Vec2i(170, 127));
    ground.driver->turnWheel("ok", 3);
    ground.driver->turnWheel("ok", -1);
    EXPECT_EQ(turned, 1109);
    way.clear();
    ground.driver->drag("ok", osg::Vec2i(-40, 300), {.button = gui::MouseButtonMain});
    ASSERT_GE(way.size(), 8u);
    EXPECT_EQ(way.back(), osg::Vec2i(-40, 300));
    EXPECT_EQ(way[way.size() - 5].x() < way[way.size() - 8].x(), true);
}

TEST(DriverClock, WaitingTakesVirtualTimeAndEndsAfterTenSeconds) {
    DriverGround ground;
    double const start = ground.app.getTime();
    ground.driver->waitFor([&] { return ground.app.getTime() > start + 5.0; });
    EXPECT_LT(ground.app.getTime(), start + 5.1);
    std::string const late = ground.reasonOf([&] { ground.driver->waitFor([] { return false; }, "rain", 60.0); });
    EXPECT_TRUE(contains(late, "Cannot wait for rain: it has not come in 10 seconds")) << late;
    EXPECT_NEAR(ground.app.getTime(), start + 15.0, 0.2);
    ground.app.setFrameTime(0.0);
    EXPECT_TRUE(contains(ground.reasonOf([&] { ground.driver->wait(1.0); }), "clock stands still"));
    ground.app.quit();
    EXPECT_TRUE(contains(ground.reasonOf([&] { ground.driver->runFrames(1); }), "the application has ended"));
}

TEST(DriverClock, AWindowThatBlocksIsAnsweredFromInsideOrEndsTheAction) {
    DriverGround ground;
    auto& window = ground.addWindow(L"window", {50, 50}, {300, 200});
    auto& modal = ground.addWindow<gui::ModalWindow>(L"question", {100, 100}, {200, 100}, false);
    onClick(ground.addButton(modal, L"yes", {10, 10}), [&] { modal.setVisible(false); });
    bool asked = false;
    onClick(ground.addButton(window, L"ask", {10, 10}), [&] {
        modal.setVisible(true);
        asked = true;
    });
    window.setVisible(true);
    ground.driver->answerModal([&] {
        EXPECT_FALSE(asked);
        ground.driver->click("question/yes");
    });
    ground.driver->click("ask");
    EXPECT_TRUE(asked);
    EXPECT_TRUE(contains(ground.reasonOf([&] { ground.driver->click("ask"); }), "answerModal"));
    modal.setVisible(false);
}

TEST(TreeDump, MarksWhatHasFocusMouseAndCaptureAndLeavesHiddenWindowsOut) {
    DriverGround ground;
    auto& window = ground.addWindow(L"window", {50, 50}, {300, 200});
    gui::Button& button = ground.addButton(window, L"ok", {10, 10});
    button.setText(L"a \"b\"\n\t\x20ac");
    button.setTooltipText(L"hint");
    auto* const overlay = new gui::Static;
    window.insertOverlayWidget(overlay, -1);
    window.setVisible(true);
    ground.addWindow(L"unseen", {0, 0}, {10, 10});
    ground.driver->moveTo("ok");
    ground.driver->wait(2.0);
    EXPECT_TRUE(contains(testkit::dumpTree(), "\n  Tooltip \"hint\" ")) << testkit::dumpTree();
    ground.driver->pressButton();
    osg::Vec2i const place = button.widgetToScreen({0, 0});
    std::string const line = "      Button name \"ok\" \"a \\\"b\\\"\\n\\x09€\" " + std::to_string(place.x()) + "," +
                             std::to_string(place.y()) +
                             " 80x24 focused pressed mouse capture tooltip \"hint\"\n    overlay Static ";
    std::string const dump = testkit::dumpTree();
    EXPECT_TRUE(contains(dump, line)) << dump << "\nis to hold\n" << line;
    EXPECT_TRUE(contains(dump, "  Window name \"window\" 50,50 300x200 focused active inner 2\n")) << dump;
    EXPECT_FALSE(contains(dump, "unseen"));
    EXPECT_EQ(dump, testkit::dumpTree());
    ground.driver->releaseButton();
}

TEST(TreeDump, ATreeOfManyLevelsIsWalkedWithoutRecursion) {
    DriverGround ground;
    auto& window = ground.addWindow(L"window", {50, 50}, {300, 200});
    window.setVisible(true);
    // Each level is asked for its place, which climbs the tree.
    int const levels = support::byEffort(2000, 10000, 10000);
    std::vector<gui::Panel*> panels(static_cast<std::size_t>(levels));
    for (gui::Panel*& panel : panels)
        panel = new gui::Panel;
    window.insertWidget(panels[0], -1);
    for (int i = 1; i < levels; ++i)
        panels[static_cast<std::size_t>(i - 1)]->insertWidget(panels[static_cast<std::size_t>(i)], -1);
    EXPECT_EQ(testkit::listTree(0).size(), panels.size() + 5);
    EXPECT_TRUE(contains(testkit::dumpTree(), "[" + std::to_string(levels + 1) + "] Panel "));
    // From the inside out: the toolkit itself ends trees by recursion.
    for (int i = levels; i-- > 0;)
        gui::Widget::destroy(panels[static_cast<std::size_t>(i)]);
}

}  // namespace
