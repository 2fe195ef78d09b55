#include "gui_lib/graphics/commands/GraphicCommandDrawText.h"

#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTextString.h"

namespace gui {

vtxTextString* GraphicCommandDrawText::makeString_() { return new vtxTextString; }

void GraphicCommandDrawText::addFurtherEntry_(Entry const& entry) { entries.push_back(entry); }

void GraphicCommandDrawText::draw() {
    vtxShader* const shader = vtxRenderer::get()->getShader();
    shader->turnOnDrawQuads();
    for (Entry const& entry : entries)
        entry.string->draw(shader, hasColor ? color : entry.string->color, entry.scale);
}

void GraphicCommandDrawText::release() {
    SimpleGraphicCommand::release();
    auto& pool = textStringPool_.value;
    for (Entry const& entry : entries)
        qor::append(pool, entry.string);
    entries.clear();
}

void GraphicCommandDrawText::destroyTextStrings() {
    auto& pool = textStringPool_.value;
    for (vtxTextString* string : pool)
        delete string;
    pool.clear();
}

}  // namespace gui
