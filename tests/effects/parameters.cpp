#include <algorithm>
#include <limits>
#include <set>

#include <gtest/gtest.h>

#include "platform/vtx/vtxEffectFile.h"
#include "tests/effects/EffectHost.h"
#include "tests/support/LogCapture.h"

namespace {

class EffectParameters : public testing::Test {
protected:
    /// What is drawn in the first frame of an effect.
    EffectDraw begin(char const* name, Params const& values) {
        host.start(name, values);
        host.frame();
        return host.drawBox();
    }
    EffectDraw after(double seconds) {
        host.advance(seconds);
        return host.drawBox();
    }

    EffectHost host;
};

TEST_F(EffectParameters, AlphaFollowsItsCurveFromBeginToEnd) {
    EXPECT_FLOAT_EQ(begin("alpha", {{"duration", 2}, {"alphaBegin", 1}, {"alphaEnd", 0}}).value("timeCoeff"), 1);
    EXPECT_FLOAT_EQ(after(0.5).value("timeCoeff"), 0.75f);
    EXPECT_FLOAT_EQ(after(1.0).value("timeCoeff"), 0.25f);
    EXPECT_TRUE(host.drawBox().effect);
    EXPECT_FALSE(after(0.5).effect) << "its time is over";
    EXPECT_EQ(host.box->look().getShaderEffect(), nullptr);

    struct Case {
        float easing;
        float middle;
    };
    float const nan = std::numeric_limits<float>::quiet_NaN();
    for (Case const& each : {Case{1, 0.6f}, {20.9f, 0.4f}, {0, 0.2f}, {99, 0.2f}, {-3, 0.2f}, {nan, 0.2f}}) {
        begin("alpha", {{"duration", 4}, {"easing", each.easing}, {"alphaBegin", 0.2f}, {"alphaEnd", 1}});
        EXPECT_NEAR(after(2.0).value("timeCoeff"), each.middle, 1e-6) << each.easing;
    }
    EXPECT_FLOAT_EQ(begin("alpha", {{"duration", 0}, {"alphaEnd", 0.5f}}).value("timeCoeff"), 1);
    // Nothing but the defaults: from 0 to 1 in a second.
    begin("alpha", {});
    EXPECT_FLOAT_EQ(after(0.25).value("timeCoeff"), 0.25f);
}

TEST_F(EffectParameters, ShowMsgLacksItsShareOfTheScreenAtFirstAndNothingInTheEnd) {
    host.box->setSize(osg::Vec2i(200, 90));
    EffectDraw draw = begin("showMsg", {{"duration", 1}});
    EXPECT_FLOAT_EQ(draw.value("valueX"), 200.0f / 800.0f);
    EXPECT_FLOAT_EQ(draw.value("valueY"), 90.0f / 600.0f);
    EXPECT_FLOAT_EQ(draw.value("alphaCoeff"), 0);
    draw = after(0.5);
    EXPECT_FLOAT_EQ(draw.value("valueX"), 0.125f);
    EXPECT_FLOAT_EQ(draw.value("alphaCoeff"), 0.5f);
    EXPECT_EQ(draw.triangles, 2);
    begin("showMsg", {{"duration", 2}, {"easingSize", 21}, {"easingAlpha", 20}, {"alphaBegin", 1}, {"alphaEnd", 0}});
    draw = after(1.0);
    EXPECT_FLOAT_EQ(draw.value("valueY"), 0.15f * 0.25f) << "decelerating";
    EXPECT_FLOAT_EQ(draw.value("alphaCoeff"), 0.75f) << "accelerating";
    EXPECT_NEAR(after(0.9999).value("valueX"), 0, 1e-3);
}

TEST_F(EffectParameters, QuadsAreDescribedToTheShader) {
    host.box->setSize(osg::Vec2i(100, 64));
    EffectDraw draw = begin("appearQuads", {{"duration", 1}});
    std::pair<char const*, float> const described[] = {
        {"quadSize", 32},  {"columns", 4},   {"rows", 2},       {"quadSizeX", 0.08f},  {"quadSizeY", 64 / 600.f},
        {"texSizeX", 100}, {"texSizeY", 64}, {"valueX", 0.04f}, {"valueY", 32 / 600.f}};
    for (auto const& [name, value] : described)
        EXPECT_NEAR(draw.value(name), value, 1e-4) << name;
    EXPECT_FLOAT_EQ(after(0.75).value("valueX"), 0.01f);
    draw = begin("flickerQuads", {});
    for (auto const& [name, value] :
         {std::pair("quadSize", 20.0f), {"columns", 5.0f}, {"rows", 4.0f}, {"quadSizeX", 0.05f}, {"texSizeY", 64.0f}})
        EXPECT_FLOAT_EQ(draw.value(name), value) << name;
    EXPECT_EQ(draw.triangles, 40);
}

TEST_F(EffectParameters, AWidgetIsCutIntoWholeQuadsAndARest) {
    struct Case {
        int width, height;
        float quadSize;
        int columns, rows;
        float lastWidth, lastHeight;
    };
    // With a size that is not whole the rest follows from whole units, its side from exact ones.
    Case const cases[] = {{100, 64, 32, 4, 2, 4, 32},    {64, 64, 32, 2, 2, 32, 32}, {10, 7, 32, 1, 1, 10, 7},
                          {100, 64, 32.5f, 4, 1, 2, 32}, {1, 40, 20, 1, 2, 1, 20},   {41, 39, 1, 41, 39, 1, 1}};
    for (char const* name : {"appearQuads", "flickerQuads"}) {
        for (Case const& each : cases) {
            host.box->setSize(osg::Vec2i(each.width, each.height));
            EffectDraw const draw = begin(name, {{"quadSize", each.quadSize}, {"duration", 0}});
            std::size_t const quads = std::size_t(each.columns) * each.rows;
            EXPECT_EQ(draw.value("columns"), each.columns);
            EXPECT_EQ(draw.value("rows"), each.rows);
            EXPECT_EQ(draw.triangles, int(quads) * 2);
            ASSERT_EQ(draw.vertices.size(), quads * 4);
            std::array<float, 3> const end = {each.lastWidth, each.lastHeight, float(quads - 1)};
            EXPECT_EQ(draw.vertices[quads * 4 - 2], end) << each.width << " by " << each.height;
            float const whole = each.columns > 1 ? float(int(each.quadSize)) : each.lastWidth;
            EXPECT_EQ(draw.vertices[1][0], whole);
            host.start(nullptr, {});
        }
    }
}

TEST_F(EffectParameters, QuadsBelowAUnitOrBeyondCountAreNotDrawn) {
    float const nan = std::numeric_limits<float>::quiet_NaN();
    for (char const* name : {"appearQuads", "flickerQuads"}) {
        host.box->setSize(osg::Vec2i(30, 20));
        for (float const quadSize : {0.99f, 0.0f, -5.0f, nan})
            EXPECT_FALSE(begin(name, {{"quadSize", quadSize}, {"duration", 0}}).effect) << quadSize;
        EXPECT_TRUE(begin(name, {{"quadSize", 1.0f}, {"duration", 0}}).effect);
        // One that never got parameters has no quads either.
        host.start(nullptr, {});
        host.destroyGui();
        host.createGui(EffectHost::skins());
        host.box = new SkinBox("red");
        host.box->place(0, 0, 200, 150);
        host.box->setShaderEffect(name, nullptr);
        host.frame();
        EXPECT_FALSE(host.drawBox().effect);
    }
    support::LogCapture const log;
    host.box->setSize(osg::Vec2i(2000, 2000));
    EXPECT_FALSE(begin("flickerQuads", {{"quadSize", 1.5f}, {"duration", 0}}).effect);
    EXPECT_EQ(log.count("quads are too many"), 1u) << log.dump();
}

TEST_F(EffectParameters, AHundredAlphasHaveNewNoiseWithEachTick) {
    for (char const* name : {"appearQuads", "flickerQuads"}) {
        begin(name, {{"duration", 4}, {"alphaBegin", 0.2f}, {"alphaEnd", 0.8f}});
        std::set<float> seen;
        for (float const middle : {0.35f, 0.5f, 0.65f}) {
            std::vector<float> const alphas = after(1.0).values["quadsAlpha"];
            ASSERT_EQ(alphas.size(), 100u);
            auto const [least, most] = std::minmax_element(alphas.begin(), alphas.end());
            EXPECT_GE(*least, middle - 10.0f / 255 - 1e-5f);
            EXPECT_LE(*most, middle + 10.0f / 255 + 1e-5f);
            EXPECT_GT(*most - *least, 10.0f / 255) << "over the whole of its range";
            seen.insert(alphas.begin(), alphas.end());
        }
        EXPECT_GT(seen.size(), 250u);
        float const still = name[0] == 'f' ? 1.0f : 0.0f;
        EXPECT_EQ(begin(name, {{"duration", 0}}).values["quadsAlpha"], std::vector<float>(100, still)) << name;
    }
}

TEST(EffectFiles, DeclareTheParametersThatTheyAreGivenAndNoOthers) {
    std::pair<char const*, std::set<std::string>> const files[] = {
        {"guiAlpha", {"timeCoeff"}},
        {"guiShowMsg", {"alphaCoeff", "valueX", "valueY"}},
        {"guiAppearQuads",
         {"valueX", "valueY", "quadSize", "quadSizeX", "quadSizeY", "columns", "rows", "texSizeX", "texSizeY",
          "quadsAlpha"}},
        {"guiFlickerQuads",
         {"quadsAlpha", "quadSize", "quadSizeX", "quadSizeY", "columns", "rows", "texSizeX", "texSizeY"}}};
    for (auto const& [name, expected] : files) {
        vtxEffectFile file;
        qor::string error;
        ASSERT_TRUE(file.read(("assets/ScenarioDesk/" + std::string(name) + ".fx").c_str(), error)) << error;
        std::set<std::string> declared;
        for (vtxEffectFile::Parameter const& parameter : file.parameters) {
            declared.insert(parameter.name.c_str());
            EXPECT_EQ(parameter.count, parameter.name == "quadsAlpha" ? 100 : 1);
        }
        EXPECT_EQ(declared, expected) << name;
    }
}

}  // namespace
