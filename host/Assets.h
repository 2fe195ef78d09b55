#pragma once

#include "platform/qor/Api.h"

namespace host {

/// Adds the folder of the toolkit's assets (skins, fonts, pictures) to the asset roots, found from where the program
/// and the toolkit's library lie: the "assets" of a source tree, or "share/vorlex/assets" of an installed one; and
/// after it the folder that holds "vorlex/loader", the loader script of window files. False, with one log line, if
/// there are no assets; a host may then call qor::addAssetRoot itself.
VORLEX_API bool addToolkitAssets();

}  // namespace host
