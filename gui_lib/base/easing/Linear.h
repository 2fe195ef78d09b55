#pragma once

#include "platform/qor/Api.h"

namespace gui {

/// Easing curve: a straight line.
/// Arguments: elapsed time, start value, total change and duration, which must not be 0.
class VORLEX_API Linear {
public:
    static float easeIn(float t, float b, float c, float d);
};

}  // namespace gui
