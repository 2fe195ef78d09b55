#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

struct lua_State;

/// Windows that are described in files: the program's side of `GUI::createWindowFromResource` and
/// `GUI::loadWindowFromResource`. docs/resources.md tells what such a file holds.
namespace host {

/// Lets the loader script find the bindings in the program itself, so that it loads no module. Every HostApplication
/// calls it; a host without one may, or leaves the module "vorlexgui" beside the loader script. May be called twice.
VORLEX_API void registerWindowResources();

/// What was wrong in window files and in their functions since the last call, oldest first, each as "file:line: what is
/// wrong and what to do". Every text has been logged too. Empty without GUI; at most 100 are kept.
VORLEX_API qor::vector<qor::string> takeResourceErrors();

/// What `require "vorlexgui"` runs: leaves the table of the loader script's functions. For the module of that name.
VORLEX_API int openWindowResources(lua_State* L);

}  // namespace host
