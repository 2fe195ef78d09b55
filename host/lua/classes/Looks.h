#pragma once

#include "host/lua/ClassBinding.h"

namespace host::lua {

/// Properties of every widget that change its own copy of its skin. A widget without a skin ignores them.
qor::vector<Property> getLookProperties();
/// The same for the check mark of a check box.
Property getCheckLookProperty();

}  // namespace host::lua
