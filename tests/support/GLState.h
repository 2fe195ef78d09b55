#pragma once

#include <map>
#include <string>
#include <vector>

class EglContext;

namespace support {

/// Values by the names of what was asked.
using GLState = std::map<std::string, std::vector<double>>;

/// Everything that drawing might touch, of the current context, without going through the code under test.
GLState readGLState(bool es);
/// Sets what a host could have set, all of it away from the defaults. The framebuffer of `context` stays bound.
void disturbGLState(EglContext& context, bool es);

}  // namespace support
