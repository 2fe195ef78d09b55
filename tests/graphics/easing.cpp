#include <algorithm>
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

/// Progress from 0 to 1 over a share of the time, as the families are published, in double.
using Curve = std::function<double(double)>;

double const pi = std::acos(-1.0);

Curve makePower(int power) {
    return [power](double u) { return std::pow(u, power); };
}

Curve makeBack(double overshoot) {
    return [overshoot](double u) { return u * u * ((overshoot + 1.0) * u - overshoot); };
}

/// A swing of a period in shares of the time, which grows by 2 to the tenth.
Curve makeElastic(double period) {
    return [period](double u) {
        if (u == 0.0 || u == 1.0)
            return u;
        return -std::pow(2.0, 10.0 * (u - 1.0)) * std::sin((u - 1.0 - period / 4.0) * 2.0 * pi / period);
    };
}

/// Four arcs that touch the ground at 1, read from the end of the time.
double bounce(double u) {
    double const left = 1.0 - u;
    if (left < 1.0 / 2.75)
        return 1.0 - 7.5625 * left * left;
    double const arcs[][3] = {{2.0, 1.5, 0.75}, {2.5, 2.25, 0.9375}, {2.75, 2.625, 0.984375}};
    for (auto const& [end, middle, least] : arcs)
        if (left < end / 2.75 || end == 2.75)
            return 1.0 - 7.5625 * (left - middle / 2.75) * (left - middle / 2.75) - least;
    return 0.0;
}

struct Family {
    char const* name;
    Curve in;
    /// The same in the halves of `easeInOut`, where it differs.
    Curve half = in;
};

/// In the order of their numbers, from 2 on, three each.
Family const families[] = {
    {"Back", makeBack(1.70158), makeBack(1.70158 * 1.525)},
    {"Bounce", bounce},
    {"Circ", [](double u) { return 1.0 - std::sqrt(1.0 - u * u); }},
    {"Cubic", makePower(3)},
    {"Elastic", makeElastic(0.3), makeElastic(0.45)},
    {"Expo", [](double u) { return u == 0.0 ? 0.0 : std::pow(2.0, 10.0 * (u - 1.0)); }},
    {"Quad", makePower(2)},
    {"Quart", makePower(4)},
    {"Quint", makePower(5)},
    {"Sine", [](double u) { return 1.0 - std::cos(u * pi / 2.0); }},
};

/// `easeOut` is `easeIn` from the other end, `easeInOut` one after the other at half their size.
double getReference(int type, double u) {
    if (type == 1)
        return u;
    Family const& family = families[(type - 2) / 3];
    switch ((type - 2) % 3) {
        case 0:
            return family.in(u);
        case 1:
            // The exponential curve jumps to its end only.
            return family.name[1] == 'x' ? (u == 1.0 ? 1.0 : 1.0 - std::pow(2.0, -10.0 * u)) : 1.0 - family.in(1.0 - u);
        default:
            return u < 0.5 ? family.half(2.0 * u) / 2.0 : 1.0 - family.half(2.0 - 2.0 * u) / 2.0;
    }
}

TEST(Easing, EveryTypeFollowsItsPublishedCurveToFloatPrecision) {
    struct Use {
        float b, c, d;
    };
    constexpr int steps = 997;
    for (Use const& use : {Use{0, 1, 1}, {3, 40, 2}, {1, -1, 0.25f}, {-250, 1000, 60}}) {
        double const unit = std::max(std::abs(double(use.b)), std::abs(double(use.c)));
        for (int type = 1; type <= 31; ++type) {
            for (int step = 0; step <= steps; ++step) {
                float const t = step == steps ? use.d : use.d * (float(step) / float(steps));
                double const u = double(t) / double(use.d);
                // Half a millionth, about eight units in the last place; more where a root or a swing is steep.
                double const steep = (type >= 8 && type <= 10) || (type >= 14 && type <= 16) ? 8.0 : 1.0;
                double const expected = use.b + use.c * getReference(type, u);
                ASSERT_NEAR(getEasingFunction(type)(t, use.b, use.c, use.d), expected, 5e-7 * steep * unit)
                    << "type " << type << " after " << u << " of " << use.d;
            }
        }
    }
}

TEST(Easing, ZeroAndUnknownTypesHoldTheStart) {
    for (int type : {0, 32, 33, 99, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        for (float const t : {0.0f, 0.7f, 1.0f, 9.0f})
            EXPECT_EQ(getEasingFunction(type)(t, 3.0f, 40.0f, 1.0f), 3.0f) << type;
}

TEST(Easing, EndsThatTheFormulasMissAreExact) {
    EXPECT_EQ(gui::Expo::easeIn(0.0f, 5.0f, 2.0f, 1.0f), 5.0f);
    EXPECT_EQ(gui::Expo::easeOut(1.0f, 5.0f, 2.0f, 1.0f), 7.0f);
    EXPECT_EQ(gui::Expo::easeInOut(0.0f, 5.0f, 2.0f, 3.0f), 5.0f);
    EXPECT_EQ(gui::Expo::easeInOut(3.0f, 5.0f, 2.0f, 3.0f), 7.0f);
    for (auto const function : {gui::Elastic::easeIn, gui::Elastic::easeOut, gui::Elastic::easeInOut}) {
        EXPECT_EQ(function(0.0f, 5.0f, 2.0f, 3.0f), 5.0f);
        EXPECT_EQ(function(3.0f, 5.0f, 2.0f, 3.0f), 7.0f);
    }
    EXPECT_FLOAT_EQ(gui::Bounce::easeOut(1.0f, 5.0f, 2.0f, 1.0f), 7.0f);
}

}  // namespace
