#include "gui_lib/base/easing/Cubic.h"

namespace gui {

float Cubic::easeIn(float t, float b, float c, float d) {
    float const u = t / d;
    return u * c * u * u + b;
}

float Cubic::easeOut(float t, float b, float c, float d) {
    float const k = t / d - 1.0f;
    return (k * k * k + 1.0f) * c + b;
}

float Cubic::easeInOut(float t, float b, float c, float d) {
    float const h = t / (d * 0.5f);
    if (h < 1.0f)
        return c * 0.5f * h * h * h + b;
    float const k = h - 2.0f;
    return (k * k * k + 2.0f) * (c * 0.5f) + b;
}

}  // namespace gui
