#include "gui_lib/graphics/commands/GraphicCommandDrawText.h"

#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTextString.h"

namespace gui {

qor::vector<vtxTextString*>& GraphicCommandDrawText::textStringPool() {
    static auto* const pool = new qor::vector<vtxTextString*>;
    return *pool;
}

GraphicCommandDrawText* GraphicCommandDrawText::set(osg::Vec4f const* newColor) {
    hasColor = newColor != nullptr;
    if (newColor)
        color = *newColor;
    return this;
}

vtxTextString* GraphicCommandDrawText::addString(float scale) {
    auto& pool = textStringPool();
    vtxTextString* string = nullptr;
    if (pool.empty()) {
        string = new vtxTextString;
    } else {
        string = pool.back();
        pool.pop_back();
    }
    entries.push_back(Entry{string, scale});
    return string;
}

void GraphicCommandDrawText::draw() {
    vtxShader* const shader = vtxRenderer::get()->getShader();
    shader->turnOnDrawQuads();
    for (Entry const& entry : entries) {
        if (hasColor)
            entry.string->draw(shader, color, entry.scale);
        else
            entry.string->draw(shader, entry.scale);
    }
}

void GraphicCommandDrawText::release() {
    SimpleGraphicCommand::release();
    auto& pool = textStringPool();
    for (Entry const& entry : entries)
        pool.push_back(entry.string);
    entries.clear();
}

void GraphicCommandDrawText::destroyTextStrings() {
    auto& pool = textStringPool();
    for (vtxTextString* string : pool)
        delete string;
    pool.clear();
}

}  // namespace gui
