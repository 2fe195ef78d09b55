#include "gui_lib/base/easing/Expo.h"

#include <cmath>

namespace gui {

float Expo::easeIn(float t, float b, float c, float d) {
    if (t == 0.0f)
        return b;
    return std::pow(2.0f, 10.0f * (t / d - 1.0f)) * c + b;
}

float Expo::easeOut(float t, float b, float c, float d) {
    if (t == d)
        return b + c;
    return (1.0f - std::pow(2.0f, -10.0f * t / d)) * c + b;
}

float Expo::easeInOut(float t, float b, float c, float d) {
    if (t == 0.0f)
        return b;
    if (t == d)
        return b + c;
    float const h = t / (d * 0.5f);
    if (h < 1.0f)
        return std::pow(2.0f, 10.0f * (h - 1.0f)) * (c * 0.5f) + b;
    return (2.0f - std::pow(2.0f, -10.0f * (h - 1.0f))) * (c * 0.5f) + b;
}

}  // namespace gui
