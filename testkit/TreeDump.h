#pragma once

#include <string>

#include "platform/qor/Api.h"

namespace testkit {

/// The windows that are alive, with their widgets, as text: type, name, text, place on the screen and state.
VORLEX_API std::string dumpTree();

}  // namespace testkit
