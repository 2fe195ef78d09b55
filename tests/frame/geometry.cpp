#include <string>

#include <gtest/gtest.h>

#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/layouts/MeasurePass.h"
#include "gui_lib/windows/OffscreenWindow.h"
#include "gui_lib/windows/Window.h"
#include "platform/trace/vtxTraceLog.h"
#include "platform/vtx/vtxRenderer.h"
#include "tests/support/SkinText.h"
#include "tests/support/TestHost.h"

namespace {

using gui::GUI;
using osg::Vec2i;
using Rect = osg::RectImpl<Vec2i>;

std::string skin(char const* name) {
    return std::string("Skin = {") + name + " = " +
           support::skinFunction("insets = {}", "bkg = {center_center = '0x336699ff'}") + "}";
}

size_t countOf(std::string const& text, std::string const& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

gui::Window* showWindow(Vec2i const& position, Vec2i const& size, int surface = 0) {
    auto* const window = new gui::Window;
    window->setSurfaceId(surface);
    window->setPosition(position);
    window->setSize(size);
    window->setVisible(true);
    return window;
}

// --- Coordinates ---

TEST(Coordinates, FollowScaleMouseAndViewport) {
    support::TestHost host("Skin = {}", {.size = Vec2i(801, 601), .scale = 1.5f});
    GUI& gui = *GUI::get();
    EXPECT_EQ(gui.getScreenSize(), Vec2i(534, 400));
    EXPECT_FLOAT_EQ(gui.getScaleFactor(), 1.0f / 1.5f);
    gui.setViewportPosition(Vec2i(-20, 31));
    EXPECT_EQ(gui.getScreenPosition(), Vec2i(-13, 20));
    gui.setMouseOffset(Vec2i(4, -7));
    gui.setMouseScale(osg::Vec2f(2.0f, 0.5f));

    // (x * scale + offset) / 1.5 - screen, towards zero; and back.
    EXPECT_EQ(gui.convertFromRawScreenPosition(100, 100), Vec2i(149, 8));
    EXPECT_EQ(gui.convertFromRawScreenPosition(-50, 0), Vec2i(-51, -24));
    EXPECT_EQ(gui.convertToRawScreenPosition(149, 8), Vec2i(100, 98));
    EXPECT_EQ(gui.convertToRawScreenPosition(-100, -100), Vec2i(-86, -226));

    // The screen's place is added unscaled one way and taken off unscaled the other.
    EXPECT_TRUE(gui.screenToViewport({10, 10, 21, 12}) == Rect(2, 35, 18, 38));
    EXPECT_TRUE(gui.viewportToScreen({10, 10, 21, 12}) == Rect(19, -13, 26, -12));
    EXPECT_TRUE(gui.screenToViewport({10, 10, 5, 5}) == Rect(2, 35, -5, 28));
    Rect const nothing = gui.screenToViewport(Rect());
    EXPECT_GT(nothing.x1, nothing.x2);
    EXPECT_EQ(gui.convertFromRawScreenPosition(2147483647, 0).x(), 2147483647);
    gui.setMouseScale(osg::Vec2f(0.0f, 0.0f));
    gui.setMouseOffset(Vec2i(20, -31));
    EXPECT_EQ(gui.convertToRawScreenPosition(0, 0).x(), -2147483647 - 1);
}

TEST(Coordinates, TheViewportsSizeTakesItsPlaceAlongAtTheScaleOfTheMoment) {
    support::TestHost host;
    GUI& gui = *GUI::get();
    gui.setViewportPosition(Vec2i(30, 50));
    vtxRenderer::get()->setScale(2.0f);
    EXPECT_EQ(gui.getScreenPosition(), Vec2i(30, 50));
    gui.setViewportSize(Vec2i(101, 99));
    EXPECT_EQ(gui.getScreenSize(), Vec2i(50, 49));
    EXPECT_EQ(gui.getScreenPosition(), Vec2i(15, 25));
}

// --- Surfaces ---

TEST(Surfaces, HaveAMouseOfTheirOwn) {
    support::TestHost host;
    GUI& gui = *GUI::get();
    int const id = gui.createSurface();
    gui.setSurfaceMouseFunc(id, [](int x, int y) { return Vec2i(x - 400, y * 2); });
    gui.setSurfaceMouseFunc(7, [](int, int) { return Vec2i(); });
    host.moveMouse(450, 30);
    EXPECT_EQ(gui.getMousePosition(id), Vec2i(50, 60));
    for (int bad : {-1, 7})
        EXPECT_EQ(gui.getMousePosition(bad), Vec2i(450, 30));
    showWindow(Vec2i(0, 0), Vec2i(300, 100), id);
    EXPECT_FALSE(gui.getHasMouseInputAtScreenPoint(450, 30)) << "only surface 0 answers for the host's scene";
    gui.setSurfaceMouseFunc(id, {});
    EXPECT_EQ(gui.getMousePosition(id), Vec2i(450, 30));
}

TEST(Surfaces, AreAskedForTheirMouseByWhatMovesOnThemInOnePass) {
    int asked = 0;
    support::TestHost host;
    GUI& gui = *GUI::get();
    int const id = gui.createSurface();
    gui.setSurfaceMouseFunc(id, [&asked](int x, int y) { return ++asked, Vec2i(x, y); });
    gui::Panel* panels[2];
    for (int i = 0; i < 2; ++i) {
        panels[i] = new gui::Panel;
        showWindow(Vec2i(0, 0), Vec2i(100, 100), i == 0 ? 0 : id)->insertWidget(panels[i], -1);
    }
    asked = 0;
    gui::MeasurePass const pass;
    for (int step = 1; step < 4; ++step) {
        panels[0]->setPosition(Vec2i(step, 0));
        EXPECT_EQ(asked, step - 1);
        panels[1]->setPosition(Vec2i(step, 0));
        EXPECT_EQ(asked, step);
    }
}

TEST(Surfaces, AreDrawnIntoTheirTargetWithoutTheScreensPlace) {
    support::TestHost host(skin("windowSkin"), {.size = Vec2i(800, 600), .scale = 2.0f});
    GUI& gui = *GUI::get();
    int const id = gui.createSurface();
    showWindow(Vec2i(5, 5), Vec2i(20, 20), id);
    gui.setViewportPosition(Vec2i(100, 60));
    std::string const frame = host.traceFrame();
    EXPECT_EQ(countOf(frame, "  quad "), 0u) << "a frame shows surface 0 only";

    host.trace().setRecording(true);
    gui.drawToSurface(id, Vec2i(64, 64), osg::Vec2f(1.0f, 1.0f), 2.2f, 0.5f);
    std::string const text(host.trace().getText().c_str());
    EXPECT_EQ(countOf(text, "viewport 0 0 64 64"), 1u) << text;
    EXPECT_EQ(countOf(text, "gamma 2.2 0.5"), 1u) << text;
    EXPECT_EQ(countOf(text, "  quad "), 1u) << text;
    host.trace().clearLines();
    for (int bad : {-1, 2})
        gui.drawToSurface(bad, Vec2i(64, 64), osg::Vec2f(1.0f, 1.0f), 1.0f, 1.0f);
    EXPECT_EQ(std::string(host.trace().getText().c_str()), "");
    host.trace().setRecording(false);
    EXPECT_EQ(gui.getScreenPosition(), Vec2i(50, 30));
    EXPECT_EQ(gui.getOffscreenScaleFactor(), osg::Vec2f(1.0f, 1.0f));
}

TEST(Surfaces, WhileOneIsDrawnTheWidgetsSeeItsScaleAndNoOffset) {
    support::TestHost host(skin("windowSkin"), {.size = Vec2i(800, 600), .scale = 2.0f});
    class Watcher : public gui::OffscreenWindow {
    public:
        void draw() override {
            seen += std::to_string(GUI::get()->getScreenPosition().x()) + " " +
                    std::to_string(GUI::get()->getOffscreenScaleFactor().x()) + " ";
            OffscreenWindow::draw();
        }
        std::string seen;
    };
    GUI::get()->setViewportPosition(Vec2i(100, 60));
    auto* const window = new Watcher;
    window->setSize(Vec2i(20, 20));
    window->setVisible(true);
    host.frame();
    GUI::get()->drawOffscreenWindow(window, Vec2i(64, 64), osg::Vec2f(3.0f, 3.0f), 1.0f, 1.0f);
    EXPECT_EQ(window->seen, "0 1.500000 ");
    EXPECT_EQ(GUI::get()->getScreenPosition(), Vec2i(50, 30));
}

// --- Settings ---

TEST(FrameSettings, ClippingIsOnAfterTheGuardWhateverItWasBefore) {
    support::TestHost host(skin("panelSkin"));
    GUI& gui = *GUI::get();
    auto* const outer = new gui::Panel;
    auto* const inner = new gui::Panel;
    outer->setSize(Vec2i(50, 50));
    outer->insertWidget(inner, -1);
    inner->setPosition(Vec2i(40, 0));
    inner->setSize(Vec2i(30, 30));
    host.frame();
    std::string const clipped = host.traceDraw(*outer);
    gui.enableClipping(false);
    {
        GUI::DisableClippingGuard const guard;
        std::string const whole = host.traceDraw(*outer);
        EXPECT_EQ(countOf(whole, "at 40 0 size 30 30"), 1u) << whole;
        EXPECT_EQ(whole, host.traceMake(*outer));
    }
    EXPECT_TRUE(gui.getClippingEnabled());
    EXPECT_EQ(host.traceDraw(*outer), clipped);
    EXPECT_EQ(countOf(clipped, "at 40 0 size 10 30"), 1u) << clipped;
}

TEST(FrameSettings, DebugSkinsComeAndGoWithEveryShownWindow) {
    support::TestHost host(skin("debugSkin"));
    GUI& gui = *GUI::get();
    showWindow(Vec2i(0, 0), Vec2i(60, 60));
    std::string const plain = host.traceFrame();
    gui.setDebugDraw(true);
    host.frame();
    std::string const outlined = host.traceFrame();
    EXPECT_GT(countOf(outlined, "  quad "), countOf(plain, "  quad "));
    gui.setDebugDraw(false);
    host.frame();
    EXPECT_EQ(host.traceFrame(), plain);
}

TEST(FrameSettings, TheBackgroundPictureFillsTheScreenOnRequest) {
    support::TestHost host(skin("windowSkin"));
    GUI& gui = *GUI::get();
    showWindow(Vec2i(10, 10), Vec2i(60, 60));
    host.frame();
    auto const firstQuad = [&] {
        host.frame();
        std::string const text = host.traceFrame();
        size_t const at = text.find("  quad at ");
        return at == std::string::npos ? text : text.substr(at, text.find(" color", at) - at);
    };
    gui.setBkgPicture("tests/graphics/picture.png", true);
    EXPECT_EQ(firstQuad(), "  quad at 0 0 size 800 600");
    gui.setBkgPicture("tests/graphics/picture.png", false);
    EXPECT_EQ(firstQuad(), "  quad at 392 296 size 16 8");
}

}  // namespace
