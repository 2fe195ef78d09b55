#include "platform/vtx/vtxFontManager.h"

#include "platform/vtx/vtxFontLibrary.h"
#include "platform/vtx/vtxRendererCore.h"

vtxFontManager::~vtxFontManager() = default;

std::unique_ptr<vtxFontManager> vtxCreateFontManager(vtxRendererCore& core) {
    return std::make_unique<vtxFontLibrary>(core.getTextureStore(), [&core] { return core.getScaleEpoch(); });
}
