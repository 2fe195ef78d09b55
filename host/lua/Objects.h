#pragma once

#include <string_view>

#include "host/lua/ClassBinding.h"
#include "platform/qor/String.h"

/// Widgets and layouts as Lua values: a handle, which does not keep its object alive and raises an error when it is
/// used after the object's death. Each object has one handle at a time, so that handles compare as objects do.
/// `pushObject`, in ClassBinding.h, gives one.
namespace host::lua {

/// Makes what handles need; once for each state.
void openObjects(lua_State* L);

/// The object of a handle; false, and an empty object, for any other value and after its death.
bool readObject(lua_State* L, int index, Object& object);
/// The same; raises an error instead.
Object checkObject(lua_State* L, int index);
gui::Widget& checkWidget(lua_State* L, int index);

/// "'tezt' is unknown to a Button; did you mean 'text'?"
qor::string describeUnknown(ClassBinding const& binding, std::string_view name);
/// "'size' of a Button wants two numbers, as in {320, 240}, not a string"; the value is at `index`.
qor::string describeWrong(lua_State* L, int index, ClassBinding const& binding, std::string_view name,
                          std::string_view wants);

/// Raises an error at the place where Lua called.
[[noreturn]] void raise(lua_State* L, qor::string const& text);

}  // namespace host::lua
