#include "gui_lib/base/UpdateTarget.h"

namespace gui {

UpdateTarget::~UpdateTarget() = default;

}  // namespace gui
