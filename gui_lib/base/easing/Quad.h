#pragma once

#include "platform/qor/Api.h"

namespace gui {

/// Easing curve: the square of time.
/// Arguments: elapsed time, start value, total change and duration, which must not be 0.
class VORLEX_API Quad {
public:
    static float easeIn(float t, float b, float c, float d);
    static float easeOut(float t, float b, float c, float d);
    static float easeInOut(float t, float b, float c, float d);
};

}  // namespace gui
