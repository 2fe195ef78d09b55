#pragma once

#include <memory>
#include <typeinfo>

#include "gui_lib/Skin/Data.h"

struct lua_State;

namespace gui::skin {

/// The looks read from "states" tables that never change, by the table's identity and the class of the data.
/// A skin file that returns the same tables each time says so by setting the global "SkinTablesConstant" to true; many
/// widgets then share one reading.
/// Lifetime: lives in the Lua state and ends with it; the tables it knows are kept alive meanwhile.
class SkinTableCache {
public:
    /// While one lives, tables come from the functions of the skin file, so they may be kept.
    class SkinFileScope {
    public:
        SkinFileScope() { ++depth_; }
        ~SkinFileScope() { --depth_; }
        SkinFileScope(SkinFileScope const&) = delete;
        SkinFileScope& operator=(SkinFileScope const&) = delete;
    };

    /// Whether the table on the top of the stack may be kept.
    static bool getUsable(lua_State* L);
    /// What was read from the table on the top of the stack, or null.
    static std::shared_ptr<Data::StateTable> find(lua_State* L, std::type_info const& type);
    static void keep(lua_State* L, std::type_info const& type, std::shared_ptr<Data::StateTable> states);

private:
    static int depth_;
};

}  // namespace gui::skin
