#pragma once

#include <string_view>

#include "examples/gallery/Options.h"

class Gallery;

namespace host {
class HeadlessApplication;
}

/// Writes a file into the folder of --out. False, with a line for the user, if that fails.
bool writeText(Options const& options, char const* name, std::string_view text);

/// Plays a scripted visit of the gallery without a display: moves, clicks, drags, and writes a picture at each stop, or
/// the trace of the whole with the trace back end. True if all files were written and GL reported no error.
bool playTour(host::HeadlessApplication& application, Gallery& gallery, Options const& options);
