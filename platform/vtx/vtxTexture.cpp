#include "platform/vtx/vtxTexture.h"

vtxTexture::~vtxTexture() = default;
