#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <osg/Vec2d>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/base/UpdateTarget.h"
#include "gui_lib/controls/labels/AnimatedColorStatic.h"
#include "gui_lib/controls/labels/AnimatedColorStaticData.h"
#include "gui_lib/controls/labels/AnimatedColorStaticSkin.h"
#include "gui_lib/controls/labels/StaticSkin.h"
#include "gui_lib/controls/small/Panel.h"
#include "gui_lib/controls/small/TextureView.h"
#include "gui_lib/frame/GUI.h"
#include "platform/trace/vtxTraceLog.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTexture.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/support/SkinText.h"
#include "tests/support/TestHost.h"

namespace {

using gui::Widget;
using osg::Vec2i;

std::string skins(std::string const& times) {
    std::string const state = std::string("bkg = {center_center = '0xff0000ff'}, text = {font = '") +
                              support::fontFile +
                              "', fontSize = 14, color = '0x000000ff'}, picture = {file = "
                              "'tests/graphics/picture.png'}";
    return "Skin = {staticSkin = " + support::skinFunction("", "bkg = {center_center = '0xff0000ff'}") +
           ", animatedColorStaticSkin = " + support::skinFunction(times, state) + "}";
}

/// The numbers behind `word` in the first line of a trace that has it.
std::vector<double> numbersBehind(std::string const& trace, std::string const& word, size_t from = 0) {
    std::vector<double> numbers;
    size_t const at = trace.find(word, from);
    if (at == std::string::npos)
        return numbers;
    char const* next = trace.c_str() + at + word.size();
    for (char* end = nullptr;; next = end) {
        double const number = std::strtod(next, &end);
        if (end == next)
            return numbers;
        numbers.push_back(number);
    }
}

void expectNear(std::vector<double> const& actual, std::vector<double> const& expected, std::string const& where) {
    ASSERT_EQ(actual.size(), expected.size()) << where;
    for (size_t i = 0; i < actual.size(); ++i)
        EXPECT_NEAR(actual[i], expected[i], 1e-3) << where << " at " << i;
}

// --- Turning ---

constexpr double pi = 3.14159265358979;

/// Corner and edges of a rectangle after a turn about a pivot, counter-clockwise on a screen whose y points down.
/// Corners lie on steps of 1/256 pixel.
std::vector<double> turned(double degrees, osg::Vec2d pivot, osg::Vec2d place, osg::Vec2d corner, osg::Vec2d size) {
    double const c = std::cos(degrees / 180.0 * pi);
    double const s = std::sin(degrees / 180.0 * pi);
    auto const turn = [=](osg::Vec2d const& v) { return osg::Vec2d(v.x() * c + v.y() * s, -v.x() * s + v.y() * c); };
    auto const toCorner = [&](osg::Vec2d const& unturned) {
        osg::Vec2d const at = (place + pivot + turn(unturned - pivot)) * 256.0;
        return osg::Vec2d(std::round(at.x()), std::round(at.y())) / 256.0;
    };
    osg::Vec2d const at = toCorner(corner);
    osg::Vec2d const u = toCorner(corner + osg::Vec2d(size.x(), 0)) - at;
    osg::Vec2d const v = toCorner(corner + osg::Vec2d(0, size.y())) - at;
    return {at.x(), at.y(), u.x(), u.y(), v.x(), v.y()};
}

/// The last quad of a trace: its corner and edges.
std::vector<double> lastQuad(std::string const& trace) {
    size_t const line = trace.rfind("  quad at ");
    if (line == std::string::npos)
        return {};
    std::vector<double> numbers = numbersBehind(trace, "quad at ", line);
    size_t const end = trace.find('\n', line);
    std::vector<double> const edges = numbersBehind(trace, "edges ", line);
    std::vector<double> const size = numbersBehind(trace, "size ", line);
    if (trace.find("edges ", line) < end)
        numbers.insert(numbers.end(), edges.begin(), edges.end());
    else
        numbers.insert(numbers.end(), {size[0], 0.0, 0.0, size[1]});
    return numbers;
}

TEST(TurnedLabels, TurnAboutTheirPivotInBothWaysOnTheScreenAndInATarget) {
    support::TestHost host(skins(""));
    auto* const panel = new gui::Panel;
    panel->setPosition(Vec2i(100, 50));
    panel->setSize(Vec2i(200, 200));
    auto* const label = new gui::Static;
    panel->insertWidget(label, -1);
    label->setPosition(Vec2i(70, 60));
    label->setSize(Vec2i(40, 20));
    label->setPivotPoint(Vec2i(10, 5));
    host.frame();
    std::string const unturned = host.traceDraw(*panel);
    for (double angle : {30.0, -90.0, 135.0}) {
        label->setAngle(angle);
        std::string const drawn = host.traceDraw(*panel);
        expectNear(lastQuad(drawn), turned(angle, {10, 5}, {170, 110}, {0, 0}, {40, 20}), std::to_string(angle));
        EXPECT_EQ(host.traceMake(*panel), drawn) << angle;
    }
    gui::GUI::get()->setViewportPosition(Vec2i(3, 4));
    expectNear(lastQuad(host.traceDraw(*panel)), turned(135.0, {10, 5}, {173, 114}, {0, 0}, {40, 20}), "screen");
    panel->setDrawToTarget(true);
    host.update();
    std::string const frame = [&] {
        panel->setDirty(Widget::DirtyTree);
        gui::GUI::get()->redraw(false);
        host.trace().setRecording(true);
        gui::GUI::get()->doRedraw();
        host.trace().setRecording(false);
        return std::string(host.trace().getText().c_str());
    }();
    expectNear(lastQuad(frame), turned(135.0, {10, 5}, {70, 60}, {0, 0}, {40, 20}), "target");
    panel->setDrawToTarget(false);
    label->setAngle(0.0);
    gui::GUI::get()->setViewportPosition(Vec2i(0, 0));
    host.frame();
    EXPECT_EQ(host.traceDraw(*panel), unturned);
    auto const* const skin = static_cast<gui::skin::StaticSkin*>(label->getWidgetSkin());
    EXPECT_EQ(skin->getTargetTexture(), nullptr);
    label->setDrawToTarget(true);
    host.frame();
    ASSERT_NE(skin->getTargetTexture(), nullptr);
    EXPECT_EQ(skin->getTargetTexture()->width, 40);
    label->setAngle(45.0);
    auto* const copy = static_cast<gui::Static*>(label->clone());
    EXPECT_EQ(copy->getAngle(), 45.0);
    EXPECT_EQ(copy->getPivotPoint(), Vec2i(10, 5));
}

TEST(TextureViews, ShowTheHostsPictureTurnedAndFollowTheirSize) {
    support::TestHost host(skins(""));
    vtxTextureManager& textures = *vtxRenderer::get()->getTextureManager();
    vtxTexture* const texture = textures.getTexture("tests/graphics/picture.png", {}, nullptr);
    auto* const view = new gui::TextureView;
    view->setPosition(Vec2i(100, 50));
    view->setSize(Vec2i(40, 20));
    host.frame();
    EXPECT_TRUE(lastQuad(host.traceDraw(*view)).empty());
    view->setTexture(texture);
    host.frame();
    expectNear(lastQuad(host.traceDraw(*view)), {100, 56, 16, 0, 0, 8}, "own size");
    gui::Image::Info info;
    info.align = gui::Align2(gui::Align(gui::Align::Stretch, 0), gui::Align(gui::Align::Stretch, 0));
    view->setImageInfo(info);
    view->setPivotPoint(Vec2i(20, 10));
    view->setAngle(30.0);
    host.frame();
    expectNear(lastQuad(host.traceDraw(*view)), turned(30.0, {20, 10}, {100, 50}, {0, 0}, {40, 20}), "stretched");
    view->setSize(Vec2i(80, 20));
    host.frame();
    std::string const drawn = host.traceDraw(*view);
    expectNear(lastQuad(drawn), turned(30.0, {20, 10}, {100, 50}, {0, 0}, {80, 20}), "resized");
    EXPECT_EQ(host.traceMake(*view), drawn);
    auto* const copy = static_cast<gui::TextureView*>(view->clone());
    host.frame();
    EXPECT_EQ(host.traceDraw(*copy), drawn);
    view->setTexture(nullptr);
    host.frame();
    EXPECT_TRUE(lastQuad(host.traceDraw(*view)).empty());
    Widget::destroy(view);
    Widget::destroy(copy);
    // The reference was the test's alone.
    EXPECT_EQ(textures.getTexture("tests/graphics/picture.png", {}, texture), texture);
    textures.releaseTexture(texture);
}

// --- Fading ---

/// A label in the colour (0, 0, 0, 1), fading in 1 s to what is asked, for 2 s, and back in 4 s.
class Fading : public testing::Test {
protected:
    explicit Fading(char const* times =
                        "textColorAppearDuration = 1, textColorShowDuration = 2, "
                        "textColorDisappearDuration = 4")
        : host(skins(times)) {
        label->setText(L"text");
        label->setSize(Vec2i(100, 30));
        host.advance(1.0);
    }

    void expectColor(osg::Vec4f const& expected, char const* where) {
        std::string const trace = host.traceDraw(*label);
        size_t const last = trace.rfind("color ");
        expectNear(numbersBehind(trace, "color ", last), {expected.x(), expected.y(), expected.z(), expected.w()},
                   where);
        EXPECT_EQ(host.traceMake(*label), trace) << where;
    }
    static osg::Vec4f mix(osg::Vec4f const& from, osg::Vec4f const& to, double part) {
        return from + (to - from) * float(part);
    }

    support::TestHost host;
    gui::AnimatedColorStatic* label = new gui::AnimatedColorStatic;
    osg::Vec4f const black{0, 0, 0, 1};
    osg::Vec4f const orange{1, 0.5f, 0, 1};
    osg::Vec4f const blue{0, 0, 1, 1};
    double const quarterIn = 1.0 - std::pow(0.75, 4);
};

TEST_F(Fading, AppearsHoldsAndGoesBackWithoutLayingAnythingOut) {
    expectColor(black, "idle");
    host.advance(0.0);
    unsigned long const redraws = Widget::getRedrawCount();
    label->setTextColor(orange);
    expectColor(black, "start");
    host.advance(0.25);
    expectColor(mix(black, orange, quarterIn), "appear");
    host.advance(0.75);
    expectColor(orange, "show");
    host.advance(2.0);
    expectColor(orange, "end of show");
    host.advance(2.0);
    expectColor(mix(orange, black, std::sin(pi / 4)), "disappear");
    host.advance(2.01);
    expectColor(black, "idle again");
    EXPECT_EQ(Widget::getRedrawCount(), redraws);
}

TEST_F(Fading, BeginsAgainFromTheColourOfTheMomentAlsoInsideATick) {
    struct Again : gui::UpdateTarget {
        void update(double) override { label->setTextColor(color); }
        gui::AnimatedColorStatic* label;
        osg::Vec4f color;
    };
    label->setTextColor(orange);
    host.advance(5.0);
    osg::Vec4f const moment = mix(orange, black, std::sin(pi / 4));
    label->setTextColor(blue);
    expectColor(moment, "restart");
    host.advance(0.25);
    expectColor(mix(moment, blue, quarterIn), "from the moment");
    host.advance(1.0);

    Again again;
    again.label = label;
    again.color = orange;
    gui::UpdateManager::get().addTarget(&again);
    host.advance(0.5);
    gui::UpdateManager::get().removeTarget(&again);
    host.advance(0.25);
    expectColor(mix(blue, orange, quarterIn), "restarted inside a tick it goes on");
    host.advance(10.0);
    expectColor(black, "and ends");
}

TEST_F(Fading, MayEndWithTheLabelInsideATick) {
    struct Killer : gui::UpdateTarget {
        void update(double) override { Widget::destroy(std::exchange(label, nullptr)); }
        Widget* label = nullptr;
    };
    Killer first;
    first.label = label;
    gui::UpdateManager::get().addTarget(&first);
    label->setTextColor(orange);
    label->setImageColor(orange);
    host.advance(0.1);
    Killer second;
    auto* const other = new gui::AnimatedColorStatic;
    other->setText(L"text");
    other->setTextColor(orange);
    second.label = other;
    gui::UpdateManager::get().addTarget(&second);
    host.advance(0.1);
    host.advance(0.1);
    for (gui::UpdateTarget* target :
         {static_cast<gui::UpdateTarget*>(&first), static_cast<gui::UpdateTarget*>(&second)})
        gui::UpdateManager::get().removeTarget(target);
}

TEST_F(Fading, FollowsTheHostsModelClock) {
    double model = 50.0;
    gui::UpdateManager::get().setModelTimeFunc([&] { return model; });
    label->setTextColor(orange);
    host.advance(100.0);
    expectColor(black, "the model stands still");
    model += 0.25;
    host.advance(0.0);
    expectColor(mix(black, orange, quarterIn), "appear");
}

TEST_F(Fading, APictureKeepsItsColour) {
    std::string const before = host.traceDraw(*label);
    label->setImageColor(blue);
    for (int i = 0; i < 5; ++i) {
        host.advance(3.0);
        EXPECT_EQ(host.traceDraw(*label), before);
    }
}

class SuddenFading : public Fading {
protected:
    SuddenFading()
        : Fading("textColorAppearDuration = -3, textColorShowDuration = 2, textColorDisappearDuration = 0 / 0") {}
};

TEST_F(SuddenFading, StartsWithTheColourAndBadTimesCountAsNone) {
    auto const& data = *static_cast<gui::skin::AnimatedColorStaticSkin*>(label->getWidgetSkin())->getAnimatedData();
    EXPECT_EQ(data.getTextColorAppearDuration(), 0.0f);
    EXPECT_EQ(data.getTextColorDisappearDuration(), 0.0f);
    label->setTextColor(orange);
    host.advance(0.0);
    expectColor(orange, "show");
    host.advance(2.5);
    expectColor(black, "idle");
}

}  // namespace
