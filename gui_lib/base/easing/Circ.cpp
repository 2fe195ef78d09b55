#include "gui_lib/base/easing/Circ.h"

#include <cmath>

namespace gui {

float Circ::easeIn(float t, float b, float c, float d) {
    float const u = t / d;
    return b - (std::sqrt(1.0f - u * u) - 1.0f) * c;
}

float Circ::easeOut(float t, float b, float c, float d) {
    float const k = t / d - 1.0f;
    return std::sqrt(1.0f - k * k) * c + b;
}

float Circ::easeInOut(float t, float b, float c, float d) {
    float const h = t / (d * 0.5f);
    if (h < 1.0f)
        return b - (std::sqrt(1.0f - h * h) - 1.0f) * (c * 0.5f);
    float const k = h - 2.0f;
    return (std::sqrt(1.0f - k * k) + 1.0f) * (c * 0.5f) + b;
}

}  // namespace gui
