#pragma once

#include "gui_lib/Skin/Bkg.h"
#include "gui_lib/Skin/Image.h"
#include "gui_lib/Skin/Text.h"
#include "gui_lib/Skin/luautil.h"
#include "platform/qor/Api.h"

namespace gui::skin {

/// The look of one interactive state and inner state: which background, picture and text style it shows, if any.
/// Lifetime: kept by `Data`, which may share one object among many widgets; write only through `Data`.
class VORLEX_API StateInfo {
public:
    StateInfo() = default;
    StateInfo(StateInfo const&) = default;
    StateInfo& operator=(StateInfo const&) = default;
    virtual ~StateInfo();

    /// Reads the table on the top of the stack. All flags are set afresh; keys of a wrong type are skipped.
    virtual void load(lua_State* L);
    /// Fills the table on the top of the stack with what is shown.
    virtual void unload(lua_State* L) const;

    bool hasBkg = false;
    bool hasImage = false;
    bool hasText = false;
    Bkg::Info bkg;
    Image::Info image;
    Text::Info text;
};

}  // namespace gui::skin

namespace luautil {

/// Makes a new object from a table, owned by the caller; leaves `value` alone if there is none.
template <>
VORLEX_API bool getValue<gui::skin::StateInfo*>(lua_State* L, int index, gui::skin::StateInfo*& value);
/// Pushes a table, or nil if the state shows nothing.
template <>
VORLEX_API void setValue<gui::skin::StateInfo>(lua_State* L, gui::skin::StateInfo const& value);

}  // namespace luautil
