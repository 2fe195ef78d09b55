#include "platform/vtx/vtxFont.h"

vtxFont::~vtxFont() = default;
