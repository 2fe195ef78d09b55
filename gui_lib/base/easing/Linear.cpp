#include "gui_lib/base/easing/Linear.h"

namespace gui {

float Linear::easeIn(float t, float b, float c, float d) { return t * c / d + b; }

}  // namespace gui
