#include "gui_lib/effects/ShaderEffectParams.h"

namespace gui::skin {

float ShaderEffectParams::getParam(std::string_view name, float defaultValue) const {
    auto const found = find(name);
    return found == end() ? defaultValue : found->second;
}

}  // namespace gui::skin
