#include "gui_lib/base/easing/Quad.h"

namespace gui {

float Quad::easeIn(float t, float b, float c, float d) {
    float const u = t / d;
    return u * c * u + b;
}

float Quad::easeOut(float t, float b, float c, float d) {
    float const u = t / d;
    return b - u * c * (u - 2.0f);
}

float Quad::easeInOut(float t, float b, float c, float d) {
    float const h = t / (d * 0.5f);
    if (h < 1.0f)
        return h * h * (c * 0.5f) + b;
    float const k = h - 1.0f;
    return b - ((k - 2.0f) * k - 1.0f) * (c * 0.5f);
}

}  // namespace gui
