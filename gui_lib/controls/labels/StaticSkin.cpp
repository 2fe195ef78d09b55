#include "gui_lib/controls/labels/StaticSkin.h"

#include "gui_lib/controls/labels/Static.h"
#include "platform/vtx/vtxFrameBuffer.h"

namespace gui::skin {

StaticSkin::StaticSkin(Static* newWidget, bool makeData) : Skin(newWidget, makeData) {}

vtxTexture* StaticSkin::getTargetTexture() const { return target ? target->getTexture() : nullptr; }

}  // namespace gui::skin
