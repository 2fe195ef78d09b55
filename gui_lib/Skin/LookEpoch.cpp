#include "gui_lib/Skin/LookEpoch.h"

#include "platform/vtx/vtxTextureManager.h"

namespace gui::skin {

// Both only grow, so an equal sum means that neither has changed.
unsigned LookEpoch::now() { return changes_ + vtxTextureManager::getChangeCount(); }

}  // namespace gui::skin
