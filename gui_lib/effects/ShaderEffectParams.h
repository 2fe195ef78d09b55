#pragma once

#include <string_view>

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

namespace gui::skin {

/// The numbers that a host gives to a shader effect, by name: `params["duration"] = 0.3f;`.
class VORLEX_API ShaderEffectParams : public qor::hash_map<qor::basic_string<char>, float> {
public:
    using Base = qor::hash_map<qor::basic_string<char>, float>;
    using Base::Base;

    float getParam(std::string_view name, float defaultValue) const;
};

}  // namespace gui::skin
