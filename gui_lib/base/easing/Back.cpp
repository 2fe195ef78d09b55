#include "gui_lib/base/easing/Back.h"

namespace gui {

float Back::easeIn(float t, float b, float c, float d) {
    float const u = t / d;
    return u * c * u * (u * 2.70158f - 1.70158f) + b;
}

float Back::easeOut(float t, float b, float c, float d) {
    float const k = t / d - 1.0f;
    return (k * k * (k * 2.70158f + 1.70158f) + 1.0f) * c + b;
}

float Back::easeInOut(float t, float b, float c, float d) {
    float const h = t / (d * 0.5f);
    if (h < 1.0f)
        return (h * 3.5949094f - 2.5949094f) * (h * h) * (c * 0.5f) + b;
    float const k = h - 2.0f;
    return ((k * 3.5949094f + 2.5949094f) * (k * k) + 2.0f) * (c * 0.5f) + b;
}

}  // namespace gui
