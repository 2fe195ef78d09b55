#include "gui_lib/base/easing/Bounce.h"

namespace gui {

float Bounce::easeIn(float t, float b, float c, float d) { return c - easeOut(d - t, 0.0f, c, d) + b; }

float Bounce::easeOut(float t, float b, float c, float d) {
    float const u = t / d;
    if (u < 0.36363637f)
        return u * 7.5625f * u * c + b;
    if (u < 0.72727275f) {
        float const k = u - 0.54545456f;
        return (k * 7.5625f * k + 0.75f) * c + b;
    }
    if (static_cast<double>(u) < 0.9090909090909091) {
        float const k = u - 0.8181818f;
        return (k * 7.5625f * k + 0.9375f) * c + b;
    }
    float const k = u - 0.95454544f;
    return (k * 7.5625f * k + 0.984375f) * c + b;
}

float Bounce::easeInOut(float t, float b, float c, float d) {
    if (t < d * 0.5f)
        return (c - easeOut(d - 2.0f * t, 0.0f, c, d)) * 0.5f + b;
    return easeOut(2.0f * t - d, 0.0f, c, d) * 0.5f + c * 0.5f + b;
}

}  // namespace gui
