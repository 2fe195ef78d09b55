#pragma once

#include "platform/qor/Api.h"

namespace gui {

/// Easing curve: follows a quarter of a circle; past the duration it is not a number.
/// Arguments: elapsed time, start value, total change and duration, which must not be 0.
class VORLEX_API Circ {
public:
    static float easeIn(float t, float b, float c, float d);
    static float easeOut(float t, float b, float c, float d);
    static float easeInOut(float t, float b, float c, float d);
};

}  // namespace gui
