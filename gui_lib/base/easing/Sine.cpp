#include "gui_lib/base/easing/Sine.h"

#include <cmath>

namespace gui {

float Sine::easeIn(float t, float b, float c, float d) {
    float const u = t / d;
    return c - std::cos(u * 1.570796325f) * c + b;
}

float Sine::easeOut(float t, float b, float c, float d) {
    float const u = t / d;
    return std::sin(u * 1.570796325f) * c + b;
}

float Sine::easeInOut(float t, float b, float c, float d) {
    return b - (std::cos(t * 3.14159265f / d) - 1.0f) * (c * 0.5f);
}

}  // namespace gui
