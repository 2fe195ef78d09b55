#include "gui_lib/graphics/GraphicCommands.h"

#include <utility>

#include "gui_lib/graphics/commands/GraphicCommandDrawBkg.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawFunc.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawQuads.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawText.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawToTarget.h"
#include "gui_lib/graphics/commands/GraphicCommandMatrices.h"
#include "gui_lib/graphics/commands/GraphicCommandParse.h"
#include "gui_lib/graphics/commands/GraphicCommandRects.h"
#include "gui_lib/graphics/commands/GraphicCommandStates.h"
#include "platform/vtx/vtxFont.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxTextString.h"

namespace gui {

namespace {

float resolveScale(float scale) { return scale > 0.0f ? scale : vtxRenderer::get()->getScale(); }

/// A pooled string still has the decoration of its last use.
void resetStyle(vtxTextString& string) {
    osg::Vec4f const none;
    string.bkgColor = none;
    string.shadowColor = none;
    string.shadowOffset.set(0, 0);
    string.blurColor = none;
    string.lineThroughColor = none;
}

}  // namespace

GraphicCommands::GraphicCommands() = default;

GraphicCommands::~GraphicCommands() = default;

void GraphicCommands::clear() {
    commands.clear();
    parseCommands.clear();
    commandsToPrepare_.clear();
}

// --- Quads, text, functions ---

void GraphicCommands::drawBkg(vtxShaderBkgQuads const& quads, float const* colors) {
    addFetched(GraphicCommandDrawBkg::fetch()->set(quads, colors));
}

void GraphicCommands::drawQuads(vtxShaderQuads const& quads, osg::Vec4f const& color, int sampler, int batch) {
    addFetched(GraphicCommandDrawQuads::fetch()->set(quads, color, sampler, batch));
}

void GraphicCommands::drawText(qor::vector<vtxTextString*> const& strings, osg::Vec4f const* color, float scale) {
    scale = resolveScale(scale);
    GraphicCommandDrawText* const command = GraphicCommandDrawText::fetch()->set(color);
    for (vtxTextString const* string : strings)
        *command->addString(scale) = *string;
    addFetched(command);
}

void GraphicCommands::drawText(vtxTextString* string, osg::Vec4f const* color, float scale) {
    scale = resolveScale(scale);
    GraphicCommandDrawText* const command = GraphicCommandDrawText::fetch()->set(color);
    *command->addString(scale) = *string;
    addFetched(command);
}

void GraphicCommands::drawText(std::basic_string_view<wchar_t> text, std::shared_ptr<vtxFont> font,
                               osg::Vec4f const& color, float scale) {
    scale = resolveScale(scale);
    GraphicCommandDrawText* const command = GraphicCommandDrawText::fetch()->set(&color);
    int y = 0;
    while (font) {
        std::size_t const end = text.find(L'\n');
        vtxTextString* const string = command->addString(scale);
        resetStyle(*string);
        string->position.set(0, y);
        string->text.assign(text.substr(0, end));
        string->textLength = static_cast<int>(string->text.size());
        string->font = font;
        string->color = color;
        string->redraw(scale);
        y += font->getLineHeight();
        if (end == text.npos)
            break;
        text.remove_prefix(end + 1);
    }
    addFetched(command);
}

void GraphicCommands::drawFunc(std::function<void()> draw, osg::Vec2i const& size,
                               std::function<void(osg::Vec2i const&)> redraw) {
    addFetched(GraphicCommandDrawFunc::fetch()->set(std::move(draw), size, std::move(redraw)));
}

void GraphicCommands::drawToTarget(std::shared_ptr<vtxFrameBuffer> target, osg::Vec2i const& size,
                                   qor::vector<GraphicCommand*> const& inner) {
    addFetched(GraphicCommandDrawToTarget::fetch()->set(std::move(target), size, inner));
}

void GraphicCommands::parse(std::function<void()> function) {
    parseCommands.push_back(GraphicCommandParse::fetch()->set(std::move(function)));
}

// --- State ---

void GraphicCommands::pushClipRect(osg::RectImpl<osg::Vec2i> const& rect) {
    addFetched(GraphicCommandPushClipRect::fetch()->set(rect));
}

void GraphicCommands::popClipRect() { addFetched(GraphicCommandPopClipRect::fetch()); }

void GraphicCommands::pushViewport(osg::RectImpl<osg::Vec2i> const& rect) {
    addFetched(GraphicCommandPushViewport::fetch()->set(rect));
}

void GraphicCommands::popViewport() { addFetched(GraphicCommandPopViewport::fetch()); }

void GraphicCommands::setModelViewMatrix(osg::Matrixf const& matrix) {
    addFetched(GraphicCommandSetModelViewMatrix::fetch()->set(matrix));
}

void GraphicCommands::preMultModelViewMatrix(osg::Matrixf const& matrix) {
    addFetched(GraphicCommandPreMultModelViewMatrix::fetch()->set(matrix));
}

void GraphicCommands::setProjectionMatrix(osg::Matrixf const&) {}

void GraphicCommands::setOpacity(float opacity) { addFetched(GraphicCommandSetOpacity::fetch()->set(opacity)); }

void GraphicCommands::shiftPosition(float x, float y, float scale) {
    addFetched(GraphicCommandShiftPosition::fetch()->set(x, y, resolveScale(scale)));
}

}  // namespace gui
