#include "gui_lib/base/easing/EasingType.h"

#include "gui_lib/base/easing/Back.h"
#include "gui_lib/base/easing/Bounce.h"
#include "gui_lib/base/easing/Circ.h"
#include "gui_lib/base/easing/Cubic.h"
#include "gui_lib/base/easing/Elastic.h"
#include "gui_lib/base/easing/Expo.h"
#include "gui_lib/base/easing/Linear.h"
#include "gui_lib/base/easing/Quad.h"
#include "gui_lib/base/easing/Quart.h"
#include "gui_lib/base/easing/Quint.h"
#include "gui_lib/base/easing/Sine.h"

namespace gui {

namespace {

float holdStart(float, float b, float, float) { return b; }

constexpr EasingFunction functions[] = {
    holdStart,       Linear::easeIn,    Back::easeIn,    Back::easeOut,    Back::easeInOut,    Bounce::easeIn,
    Bounce::easeOut, Bounce::easeInOut, Circ::easeIn,    Circ::easeOut,    Circ::easeInOut,    Cubic::easeIn,
    Cubic::easeOut,  Cubic::easeInOut,  Elastic::easeIn, Elastic::easeOut, Elastic::easeInOut, Expo::easeIn,
    Expo::easeOut,   Expo::easeInOut,   Quad::easeIn,    Quad::easeOut,    Quad::easeInOut,    Quart::easeIn,
    Quart::easeOut,  Quart::easeInOut,  Quint::easeIn,   Quint::easeOut,   Quint::easeInOut,   Sine::easeIn,
    Sine::easeOut,   Sine::easeInOut,
};
constexpr int functionCount = sizeof(functions) / sizeof(functions[0]);
static_assert(functionCount == 32);

}  // namespace

EasingFunction getEasingFunction(EasingType type) {
    return type >= 0 && type < functionCount ? functions[type] : holdStart;
}

}  // namespace gui
