// The driver as a user of it sees it: finding, aiming, and what it says when it cannot.

#include "testkit/Driver.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "examples/gallery/Gallery.h"
#include "gui_lib/controls/buttons/CheckBox.h"
#include "gui_lib/controls/buttons/ToggleButton.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/controls/scroll/ScrollPane.h"
#include "gui_lib/windows/CloseButton.h"
#include "gui_lib/windows/ModalWindow.h"
#include "gui_lib/windows/WindowHeader.h"
#include "gui_lib/windows/WindowView.h"
#include "tests/testkit/DriverGround.h"

namespace {

using testkit::byText;

bool contains(std::string const& text, std::string_view part) { return text.find(part) != std::string::npos; }

class GalleryGround : public DriverGround {
public:
    GalleryGround() : DriverGround(1.0f, BackEnd::Trace, {1440, 900}), gallery(app, Options()) { app.runFrames(2); }

    Gallery gallery;
};

TEST(Driver, ATestOfTheGalleryReadsAsAPersonWouldSayIt) {
    GalleryGround ground;
    testkit::Driver& driver = *ground.driver;
    driver.click(byText("CheckBox", "Shadows"));
    EXPECT_EQ(driver.find("controls/status").getText(), L"Shadows are off.");
    EXPECT_EQ(driver.find<gui::CheckBox>(byText("CheckBox", "Shadows")).getState(), 0);
    driver.click(byText("Button", "Press me"));
    driver.click(byText("Button", "Press me"));
    driver.waitFor([&] { return driver.find("status").getText() == L"Pressed 2 times."; });
    driver.click(byText("", "Ask..."));
    driver.click(byText("", "Yes"));
    EXPECT_FALSE(driver.has(byText("ModalWindow", "A question")));

    // The surface in the scene is seen, and touched only by who knows where it is.
    EXPECT_TRUE(contains(ground.reasonOf([&] { driver.click("screen button"); }), "setSurfacePlace"));
    ScreenSurface const& screen = ground.gallery.getScreen();
    driver.setSurfacePlace(screen.getSurfaceId(), [&](osg::Vec2i const& point) { return screen.project(point); });
    ground.gallery.setTurning(false);
    driver.click("screen button");
    EXPECT_EQ(driver.find("screen status").getText(), L"Clicked 1 time.");
    osg::Vec2i const place = screen.project(driver.find("screen button").widgetToScreen({0, 0}));
    ground.addWindow(L"lid", place - osg::Vec2i(40, 60), {300, 200}).setVisible(true);
    EXPECT_TRUE(contains(ground.reasonOf([&] { driver.click("screen button"); }), "it is covered"));
}

TEST(GalleryIndex, OpensPagesByMouseAndKeyboardAndRaisesTheCoveredOnes) {
    GalleryGround ground;
    testkit::Driver& driver = *ground.driver;
    auto const shown = [&](char const* caption) {
        return driver.find<gui::ToggleButton>(byText("ToggleButton", caption).in("pages")).getState() > 0;
    };
    EXPECT_TRUE(shown("States") && !shown("Windows"));
    driver.click(byText("ToggleButton", "Windows").in("pages"));
    EXPECT_TRUE(driver.has("windows") && shown("Windows"));
    driver.click(byText("ToggleButton", "States").in("pages"));
    EXPECT_TRUE(driver.has("states") && shown("States")) << "it was covered, so it comes to the front";
    driver.click(byText("ToggleButton", "States").in("pages"));
    EXPECT_FALSE(driver.has("states") || shown("States"));
    driver.click(*driver.find<gui::Window>("windows").getHeader()->getCloseButton());
    EXPECT_FALSE(shown("Windows")) << "closed by its own button";

    driver.pressKeys("f1");
    driver.pressKeys("tab");
    driver.pressKeys("space");
    EXPECT_TRUE(driver.has("states") && driver.find("states").getFocused()) << "the second of the index";
    // Each file makes a window the first time.
    for (GalleryPages::Page const& page : ground.gallery.getPages().getPages()) {
        if (page.file.empty())
            continue;
        driver.click(*page.button.get());
        EXPECT_TRUE(page.window.get() && page.window.get()->getVisible(false)) << page.file;
        driver.click(*page.button.get());
        EXPECT_FALSE(page.window.get()->getVisible(false)) << page.file;
    }
}

TEST(Driver, APathSkipsLevelsAndWhatFitsTwiceOrNotAtAllIsToldWithItsNeighbours) {
    DriverGround ground;
    testkit::Driver& driver = *ground.driver;
    auto& first = ground.addWindow(L"first", {10, 10}, {300, 200});
    auto& second = ground.addWindow(L"second", {400, 10}, {300, 200});
    gui::Button& ok = ground.addButton(first, L"ok", {10, 10});
    ground.addButton(second, L"ok", {10, 10});
    gui::Button& hidden = ground.addButton(second, L"ok", {10, 50});
    hidden.setVisible(false);
    first.setVisible(true);
    second.setVisible(true);
    EXPECT_EQ(&driver.find("first/ok"), &ok);
    EXPECT_NE(&driver.find("second/ok"), &hidden) << "one that is visible counts more than hidden ones";
    EXPECT_EQ(&driver.find(osg::Vec2i(ok.widgetToScreen({5, 5}))), &ok);
    EXPECT_EQ(&driver.find(byText("Button", "ok").in("first")), &ok);

    std::string const twice = ground.reasonOf([&] { driver.click("ok"); });
    EXPECT_TRUE(contains(twice, "2 widgets are that") && contains(twice, "first/ok")) << twice;
    std::string const none = ground.reasonOf([&] { driver.click("first/okay"); });
    EXPECT_TRUE(contains(none, "Cannot click \"first/okay\"") && contains(none, "there is \"ok\"")) << none;
    EXPECT_TRUE(contains(none, "none, the trace back end has no pixels") && contains(none, "surface 0")) << none;
    EXPECT_TRUE(contains(ground.reasonOf([&] { driver.find("ok/first"); }), "\"first\""));
    EXPECT_TRUE(contains(ground.reasonOf([&] { driver.click(hidden); }), "it is hidden"));
    second.setVisible(false);
    EXPECT_FALSE(driver.has("second")) << "a hidden window is not in the tree";
}

TEST(Driver, ClicksHitTheUnitAskedForAtEveryScale) {
    for (float const scale : {1.0f, 1.5f, 2.0f, 3.0f}) {
        DriverGround ground(scale);
        auto& window = ground.addWindow(L"window", {33, 31}, {300, 200});
        gui::Button& button = ground.addButton(window, L"ok", {11, 13});
        window.setVisible(true);
        std::vector<osg::Vec2i> points;
        button.addMouseCallback(gui::MouseCallbackDown,
                                std::make_shared<std::function<void(int, int, int)>>([&](int x, int y, int) {
                                    points.push_back({x, y});
                                }));
        ground.driver->click("ok");
        ground.driver->click(testkit::Target("ok").at({7, 3}));
        ASSERT_EQ(points.size(), 2u) << scale;
        EXPECT_EQ(points[0], button.widgetToScreen({40, 12})) << scale;
        EXPECT_EQ(points[1], button.widgetToScreen({7, 3})) << scale;
    }
}

TEST(Driver, TwoClicksAreNeverADoubleClickAndADoubleClickAlwaysIs) {
    for (double const frameTime : {1.0 / 60.0, 0.2}) {
        DriverGround ground;
        ground.app.setFrameTime(frameTime);
        auto& window = ground.addWindow(L"window", {30, 30}, {300, 200});
        gui::Widget& target = ground.addButton<gui::Static>(window, L"ok", {10, 10});
        window.setVisible(true);
        std::string heard;
        auto const note = [&](gui::MouseCallbackType type, char const* letter) {
            target.addMouseCallback(type, std::make_shared<std::function<void(int, int, int)>>(
                                              [&heard, letter](int, int, int) { heard += letter; }));
        };
        note(gui::MouseCallbackDown, "d");
        note(gui::MouseCallbackDoubleDown, "D");
        ground.driver->click("ok");
        ground.driver->click("ok");
        ground.driver->doubleClick("ok");
        ground.driver->click("ok", {.button = gui::MouseButtonSecondary});
        ground.driver->click("ok");
        EXPECT_EQ(heard, "dddDdd") << frameTime;
    }
}

TEST(Driver, ACoveredWindowIsRaisedByAClickOnItsHeaderOrAQuietPlace) {
    DriverGround ground;
    auto& below = ground.addWindow(L"below", {50, 50}, {300, 200});
    auto& above = ground.addWindow(L"above", {80, 100}, {320, 200});
    int clicks = 0;
    onClick(ground.addButton(below, L"ok", {100, 20}), [&] { ++clicks; });
    int trapped = 0;
    onClick(ground.addButton(below, L"trap", {0, 70}), [&] { ++trapped; });
    below.setVisible(true);
    above.setVisible(true);
    ground.driver->click("ok");
    EXPECT_EQ(clicks, 1);
    // Now only the lower part is free, and the trap lies in it.
    above.setPosition({50, 40});
    above.setSize({320, 120});
    ground.driver->click("above");
    EXPECT_TRUE(above.getFocused());
    ground.driver->click("ok");
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(trapped, 0);

    above.setZOrder(1);
    std::string const reason = ground.reasonOf([&] { ground.driver->click("ok"); });
    EXPECT_TRUE(contains(reason, "it is covered.\n  covered by: WindowView")) << reason;
    EXPECT_TRUE(contains(reason, "on the way: clicked WindowView")) << reason;
    above.setVisible(false);

    // A neighbour in the same window is no reason to click around; a free corner is enough.
    gui::Button& lid = ground.addButton(below, L"lid", {100, 20});
    std::string const lidded = ground.reasonOf([&] { ground.driver->click("ok"); });
    EXPECT_TRUE(contains(lidded, "covered by: Button name \"lid\"") && !contains(lidded, "on the way")) << lidded;
    lid.setPosition({110, 30});
    ground.driver->click("ok");
    EXPECT_EQ(clicks, 3);

    auto& modal = ground.addWindow<gui::ModalWindow>(L"modal", {500, 400}, {100, 100}, false);
    modal.setLockFlow(false);
    modal.setVisible(true);
    EXPECT_TRUE(contains(ground.reasonOf([&] { ground.driver->click("ok"); }), "covered by: ModalWindow"));
    EXPECT_EQ(clicks, 3);
}

TEST(Driver, ReachesWhatPanesInPanesHaveScrolledAway) {
    DriverGround ground;
    auto& window = ground.addWindow(L"window", {50, 50}, {300, 300});
    auto* const outer = new gui::ScrollPane;
    outer->setSize({220, 160});
    window.insertWidget(outer, -1);
    auto* const inner = new gui::ScrollPane;
    inner->setPosition({10, 700});
    inner->setSize({180, 100});
    inner->setHorzMouseWheel(true);
    outer->insertWidget(inner, -1);
    int clicks = 0;
    for (wchar_t const* name : {L"first", L"last"}) {
        osg::Vec2i const place = *name == L'f' ? osg::Vec2i(0, 0) : osg::Vec2i(400, 900);
        onClick(ground.addButton(*inner, name, place), [&] { ++clicks; });
    }
    window.setVisible(true);
    ground.driver->runFrames(2);
    ground.driver->click("last");
    EXPECT_GT(outer->getVertScrollValue(), 0.0);
    EXPECT_GT(inner->getHorzScrollValue(), 0.0);
    ground.driver->click("first");
    EXPECT_EQ(clicks, 2);
}

TEST(Driver, TheWheelBringsWhatIsCutOffIntoView) {
    DriverGround ground;
    auto& window = ground.addWindow(L"window", {50, 50}, {300, 300});
    auto const add = [](auto& parent, gui::Widget* child, osg::Vec2i const& size) {
        child->setSize(size);
        parent.insertWidget(child, -1);
    };
    auto* const outer = new ScrollBox(30);
    auto* const page = new gui::Panel;
    auto* const inner = new ScrollBox(20);
    auto* const list = new gui::Panel;
    add(window, outer, {200, 100});
    add(*outer, page, {200, 2000});
    add(*page, inner, {150, 60});
    inner->setPosition({10, 900});
    add(*inner, list, {150, 1000});
    int clicks = 0;
    gui::Button& last = ground.addButton(*list, L"last", {10, 950});
    onClick(last, [&] { ++clicks; });
    onClick(ground.addButton(*page, L"top", {10, 10}), [&] { ++clicks; });
    window.setVisible(true);
    ground.driver->runFrames(2);
    ground.driver->click("last");
    EXPECT_EQ(clicks, 1);
    ground.driver->click("top");
    EXPECT_EQ(clicks, 2);

    last.setPosition({10, 1100});
    std::string const reason = ground.reasonOf([&] { ground.driver->click("last"); });
    EXPECT_TRUE(contains(reason, "it is cut off by Panel") && contains(reason, "turned the wheel")) << reason;
    window.setPosition({790, 50});
    EXPECT_TRUE(contains(ground.reasonOf([&] { ground.driver->click("top"); }), "outside of the main window"));
}

TEST(Driver, AWidgetMayDieOrRunAwayUnderTheMouse) {
    DriverGround ground;
    testkit::Driver& driver = *ground.driver;
    auto& window = ground.addWindow(L"window", {50, 50}, {300, 300});
    gui::Button& shy = ground.addButton(window, L"shy", {10, 10});
    shy.addMouseCallback(gui::MouseCallbackEnter, std::make_shared<std::function<void(int, int, int)>>(
                                                      [&](int, int, int) { gui::Widget::destroy(&shy); }));
    gui::Button& brief = ground.addButton(window, L"brief", {10, 50});
    onClick(brief, [&] { gui::Widget::destroy(&brief); });
    onClick(ground.addButton(window, L"close", {10, 100}), [&] { window.kill(); });
    window.setVisible(true);
    testkit::Target const held(shy);
    EXPECT_TRUE(contains(ground.reasonOf([&] { driver.click(held); }), "the widget has died"));
    driver.click("brief");
    EXPECT_FALSE(driver.has("brief"));
    gui::Button& flighty = ground.addButton(window, L"flighty", {100, 50});
    int jumps = 1;
    int clicks = 0;
    onClick(flighty, [&] { ++clicks; });
    flighty.addMouseCallback(gui::MouseCallbackMove,
                             std::make_shared<std::function<void(int, int, int)>>([&](int, int, int) {
                                 if (jumps-- > 0)
                                     flighty.setPosition({100, 130 - flighty.getPosition().y()});
                             }));
    driver.click("flighty");
    EXPECT_EQ(clicks, 1);
    jumps = 10;
    driver.moveTo(osg::Vec2i(10, 10));
    EXPECT_TRUE(contains(ground.reasonOf([&] { driver.click("flighty"); }), "does not stay under the mouse"));
    EXPECT_EQ(clicks, 1);
    // After a drag nothing has heard yet that the mouse has left the button.
    driver.drag("close", "window");
    driver.click("close");
    EXPECT_FALSE(driver.has("window"));
    EXPECT_FALSE(ground.app.getMouseButtonDown(gui::MouseButtonMain));
}

TEST(Driver, AFailureSavesANumberedPictureAndHoldsTheTree) {
    DriverGround ground(1.0f, DriverGround::BackEnd::GL, {200, 100});
    ASSERT_TRUE(ground.started);
    std::string const folder = testing::TempDir() + "vorlex-driver-pictures";
    std::filesystem::remove_all(folder);
    ground.driver->setPictureFolder(folder);
    ground.app.runFrames(1);
    for (char const* number : {"1", "2"}) {
        try {
            ground.driver->click("nothing");
            FAIL();
        } catch (testkit::DriverError const& error) {
            EXPECT_EQ(error.getPicture(), folder + "/driver-" + number + ".png");
            EXPECT_TRUE(std::filesystem::exists(error.getPicture()));
            EXPECT_TRUE(contains(error.what(), error.getPicture()));
        }
    }
    std::filesystem::remove_all(folder);
}

}  // namespace
