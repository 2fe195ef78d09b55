#include <cmath>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "gui_lib/base/easing/Bounce.h"
#include "gui_lib/base/easing/EasingType.h"
#include "gui_lib/base/easing/Elastic.h"
#include "gui_lib/base/easing/Expo.h"

namespace {

using gui::getEasingFunction;

/// Progress 0 to 1 of a curve after the given share of its time.
double progress(int type, double share) {
    float const b = 3.0f;
    float const c = 40.0f;
    float const d = 2.0f;
    return (getEasingFunction(type)(static_cast<float>(share) * d, b, c, d) - b) / c;
}

TEST(Easing, everyCurveBeginsAtTheStartAndEndsAtTheChange) {
    for (int type = 1; type <= 31; ++type) {
        EXPECT_NEAR(progress(type, 0.0), 0.0, 1e-3) << type;
        EXPECT_NEAR(progress(type, 1.0), 1.0, 1e-3) << type;
    }
    EXPECT_EQ(gui::Expo::easeIn(0.0f, 5.0f, 2.0f, 1.0f), 5.0f);
    EXPECT_EQ(gui::Expo::easeOut(1.0f, 5.0f, 2.0f, 1.0f), 7.0f);
    EXPECT_EQ(gui::Elastic::easeInOut(3.0f, 5.0f, 2.0f, 3.0f), 7.0f);
    EXPECT_FLOAT_EQ(gui::Bounce::easeOut(1.0f, 5.0f, 2.0f, 1.0f), 7.0f);
}

TEST(Easing, unknownTypesHoldTheStart) {
    for (int type : {0, 32, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        EXPECT_EQ(getEasingFunction(type)(0.7f, 3.0f, 40.0f, 1.0f), 3.0f) << type;
}

TEST(Easing, easeInFollowsTheCurveOfItsFamily) {
    double const pi = std::acos(-1.0);
    struct Family {
        int type;
        std::function<double(double)> curve;
    };
    Family const families[] = {
        {1, [](double u) { return u; }},
        {2, [](double u) { return u * u * (2.70158 * u - 1.70158); }},
        {8, [](double u) { return 1.0 - std::sqrt(1.0 - u * u); }},
        {11, [](double u) { return std::pow(u, 3); }},
        {14,
         [pi](double u) { return -std::pow(2.0, 10.0 * (u - 1.0)) * std::sin((u - 1.0 - 0.075) * 2.0 * pi / 0.3); }},
        {17, [](double u) { return std::pow(2.0, 10.0 * (u - 1.0)); }},
        {20, [](double u) { return u * u; }},
        {23, [](double u) { return std::pow(u, 4); }},
        {26, [](double u) { return std::pow(u, 5); }},
        {29, [pi](double u) { return 1.0 - std::cos(u * pi / 2.0); }},
    };
    for (Family const& family : families) {
        for (double u : {0.1, 0.25, 0.5, 0.6, 0.9})
            EXPECT_NEAR(progress(family.type, u), family.curve(u), 1e-5) << family.type << " at " << u;
    }
    EXPECT_LT(progress(2, 0.2), 0.0);
}

TEST(Easing, easeOutAndEaseInOutMirrorEaseIn) {
    for (int in = 2; in <= 29; in += 3) {
        for (double u = 0.05; u < 1.0; u += 0.05)
            EXPECT_NEAR(progress(in + 1, u), 1.0 - progress(in, 1.0 - u), 1e-4) << in << " at " << u;
        for (double u = 0.05; u < 0.5; u += 0.05)
            EXPECT_NEAR(progress(in + 2, u), 1.0 - progress(in + 2, 1.0 - u), 1e-4) << in << " at " << u;
        EXPECT_NEAR(progress(in + 2, 0.5), 0.5, in == 14 ? 0.5 : 1e-4) << in;
        // Back and Elastic have a factor of their own in the halves.
        if (in != 2 && in != 14) {
            for (double u = 0.05; u < 0.5; u += 0.05)
                EXPECT_NEAR(progress(in + 2, u), progress(in, 2.0 * u) / 2.0, 1e-4) << in << " at " << u;
        }
    }
}

TEST(Easing, bounceTouchesTheGroundFourTimesWithoutAJump) {
    for (double touch : {1.0 / 2.75, 2.0 / 2.75, 2.5 / 2.75, 1.0}) {
        EXPECT_NEAR(progress(6, touch), 1.0, 1e-4) << touch;
        EXPECT_NEAR(progress(6, touch - 1e-4), 1.0, 2e-3) << touch;
    }
    EXPECT_NEAR(progress(6, 1.5 / 2.75), 0.75, 1e-4);
    EXPECT_NEAR(progress(6, 2.25 / 2.75), 0.9375, 1e-4);
}

}  // namespace
