#pragma once

#include "platform/qor/Api.h"

namespace gui {

/// A curve: elapsed time, start value, total change and duration give the value.
using EasingFunction = float (*)(float t, float b, float c, float d);

/// Number of a curve as skins and effects name it: 1 is Linear::easeIn, then easeIn, easeOut and easeInOut of Back,
/// Bounce, Circ, Cubic, Elastic, Expo, Quad, Quart, Quint and Sine, up to 31.
using EasingType = int;

/// Never null: 0 and unknown numbers give a curve that holds the start value.
VORLEX_API EasingFunction getEasingFunction(EasingType type);

}  // namespace gui
