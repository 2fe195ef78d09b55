#include "platform/vtx/vtxTextureManager.h"

#include "platform/vtx/vtxPictureLibrary.h"
#include "platform/vtx/vtxRendererCore.h"

vtxTextureManager::~vtxTextureManager() = default;

unsigned vtxTextureManager::getChangeCount() { return vtxPictureLibrary::getChangeCount(); }

std::unique_ptr<vtxTextureManager> vtxCreateTextureManager(vtxRendererCore& core) {
    vtxPictureLibrary::Hooks hooks;
    hooks.getScale = [&core] { return core.getScale(); };
    hooks.flushTargets = [&core] { core.flushReleasedTargets(); };
    return std::make_unique<vtxPictureLibrary>(core.getTextureStore(), std::move(hooks));
}
