#pragma once

#include "gui_lib/base/Keyboard.h"
#include "platform/qor/Api.h"

namespace host {

/// The toolkit's key of an SDL key code; KeyNone for keys that it has no number for.
VORLEX_API gui::KeyboardButton getKeyFromSdl(int sdlKeyCode);

}  // namespace host
