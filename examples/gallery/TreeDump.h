#pragma once

#include <string>

/// The windows that are alive, with their widgets, as text: type, name, text, place on the screen and state.
std::string dumpTree();
