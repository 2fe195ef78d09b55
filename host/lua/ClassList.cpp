#include "host/lua/ClassList.h"

namespace host::lua {

// A new class joins by a file of its own and one line here, after its base.
qor::vector<ClassBinding> const& getClassBindings() {
    static auto const* const bindings = [] {
        auto* const list = new ClassList;
        for (auto* const add :
             {addWidget, addContainer, addButtons, addLabels, addSmall, addScrolling, addWindows, addLayouts})
            add(*list);
        return list;
    }();
    return *bindings;
}

}  // namespace host::lua
