#include "gui_lib/base/easing/Elastic.h"

#include <cmath>

namespace gui {

namespace {

/// Sine of the swing after `time`; the first quarter of the period is left out.
float swing(float time, float period) {
    float const start = period * 0.25f;
    double const angle = static_cast<double>(time - start) * 6.2831853 / static_cast<double>(period);
    return std::sin(static_cast<float>(angle));
}

}  // namespace

float Elastic::easeIn(float t, float b, float c, float d) {
    if (t == 0.0f)
        return b;
    float const u = t / d;
    if (u == 1.0f)
        return b + c;
    float const k = u - 1.0f;
    return b - swing(k * d, d * 0.3f) * (std::pow(2.0f, 10.0f * k) * c);
}

float Elastic::easeOut(float t, float b, float c, float d) {
    if (t == 0.0f)
        return b;
    float const u = t / d;
    if (u == 1.0f)
        return b + c;
    return swing(u * d, d * 0.3f) * (std::pow(2.0f, -10.0f * u) * c) + c + b;
}

float Elastic::easeInOut(float t, float b, float c, float d) {
    if (t == 0.0f)
        return b;
    float const h = t / (d * 0.5f);
    if (h == 2.0f)
        return b + c;
    float const period = d * 0.45000002f;
    float const k = h - 1.0f;
    if (h < 1.0f)
        return b - swing(k * d, period) * (std::pow(2.0f, 10.0f * k) * c) * 0.5f;
    return swing(k * d, period) * (std::pow(2.0f, -10.0f * k) * c) * 0.5f + c + b;
}

}  // namespace gui
