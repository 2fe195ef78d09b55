#include "gui_lib/base/easing/Quart.h"

namespace gui {

float Quart::easeIn(float t, float b, float c, float d) {
    float const u = t / d;
    return u * c * u * u * u + b;
}

float Quart::easeOut(float t, float b, float c, float d) {
    float const k = t / d - 1.0f;
    return b - (k * k * k * k - 1.0f) * c;
}

float Quart::easeInOut(float t, float b, float c, float d) {
    float const h = t / (d * 0.5f);
    if (h < 1.0f)
        return c * 0.5f * h * h * h * h + b;
    float const k = h - 2.0f;
    return b - (k * k * k * k - 2.0f) * (c * 0.5f);
}

}  // namespace gui
