#pragma once

#include "platform/qor/String.h"

struct lua_State;

namespace gui::skin {

/// One run of a skin file in GUI's Lua state. What the run before has made, its globals and modules, is hidden
/// meanwhile, so that the file finds the state as at the first start. Unless the run is kept, all of that comes back.
/// Lifetime: a scope; it keeps its values on the Lua stack. At its end it leaves there what the file has returned, if
/// the run is kept, and nothing otherwise.
class SkinFile {
public:
    explicit SkinFile(lua_State* L);
    ~SkinFile();
    SkinFile(SkinFile const&) = delete;
    SkinFile& operator=(SkinFile const&) = delete;

    /// False, with the cause in `error`, if the file cannot be read or fails. At most once.
    bool run(qor::string const& file, qor::string& error);
    void keep();

    /// Calls the function `name` of the global "Skin" and pushes the table that it returns, or nil where there is none.
    /// False, with the cause in `error` and nil pushed, if it fails.
    static bool callFunction(lua_State* L, qor::string const& name, qor::string& error);

private:
    lua_State* state_;
    int base_;
    int results_ = 0;
    bool kept_ = false;
};

}  // namespace gui::skin
