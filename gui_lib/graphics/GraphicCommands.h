#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include <osg/Matrixf>
#include <osg/Vec2i>
#include <osg/Vec4f>

#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/Append.h"
#include "platform/qor/Containers.h"

class vtxFont;
class vtxFrameBuffer;
class vtxShaderBkgQuads;
class vtxShaderQuads;
class vtxTextString;

namespace gui {

class GraphicCommand;
class GraphicCommandParse;

/// A recording of drawing: what `draw` would send to the renderer, as a list of pooled commands.
/// To play it: `draw` of each parse command, then `doRedraw` of every command, then `draw` of every command, as often
/// as wanted; at the end `release` of every command of both lists on the recording thread, and `clear`. Lifetime: the
/// list does not own its commands; neither `clear` nor the destructor releases them. Cost: recording what was recorded
/// before allocates nothing. Functions of at most 16 trivially copyable bytes stay inside their std::function.
class VORLEX_API GraphicCommands {
public:
    GraphicCommands();
    ~GraphicCommands();
    GraphicCommands(GraphicCommands const&) = delete;
    GraphicCommands& operator=(GraphicCommands const&) = delete;

    void add(GraphicCommand* command) {
        qor::append(commands, command);
        qor::append(commandsToPrepare_, command);
    }
    /// The same for a command that was fetched as one of this very class.
    template <typename Command>
    void addFetched(Command* command) {
        qor::append(commands, command);
        if constexpr (Command::preparesSomething())
            qor::append(commandsToPrepare_, command);
    }
    /// Empties both lists and releases nothing.
    void clear();
    qor::vector<GraphicCommand*> const& getCommands() const { return commands; }
    qor::vector<GraphicCommandParse*> const& getParseCommands() const { return parseCommands; }
    /// Those of the commands whose `doRedraw` may do something, in their order.
    qor::vector<GraphicCommand*> const& getCommandsToPrepare() const { return commandsToPrepare_; }

    // --- Quads, text, functions ---
    /// `colors` are nine RGBA colours, whatever the number of quads.
    void drawBkg(vtxShaderBkgQuads const& quads, float const* colors);
    /// Sampler 0 to 3 sets the filtering, anything else leaves it alone; batch -1 draws all batches.
    void drawQuads(vtxShaderQuads const& quads, osg::Vec4f const& color, int sampler, int batch);
    /// Copies the strings as they are built. A null colour leaves each its own; a scale not above 0 is the renderer's.
    void drawText(qor::vector<vtxTextString*> const& strings, osg::Vec4f const* color, float scale);
    void drawText(vtxTextString* string, osg::Vec4f const* color, float scale);
    /// Builds one string a line, from baseline 0 downwards. A null font draws nothing.
    void drawText(std::basic_string_view<wchar_t> text, std::shared_ptr<vtxFont> font, osg::Vec4f const& color,
                  float scale);
    void drawFunc(std::function<void()> draw, osg::Vec2i const& size, std::function<void(osg::Vec2i const&)> redraw);
    /// Draws `commands` into the target, clipped to `size` (GUI units), when this list is prepared. The commands belong
    /// to the new command from now on.
    void drawToTarget(std::shared_ptr<vtxFrameBuffer> target, osg::Vec2i const& size,
                      qor::vector<GraphicCommand*> const& commands);
    /// A function that runs before anything of the list is prepared.
    void parse(std::function<void()> function);

    // --- State ---
    /// GUI units.
    void pushClipRect(osg::RectImpl<osg::Vec2i> const& rect);
    void popClipRect();
    /// Raw pixels.
    void pushViewport(osg::RectImpl<osg::Vec2i> const& rect);
    void popViewport();
    void setModelViewMatrix(osg::Matrixf const& matrix);
    /// The new matrix stands on the left of the one in force.
    void preMultModelViewMatrix(osg::Matrixf const& matrix);
    /// Records nothing.
    void setProjectionMatrix(osg::Matrixf const& matrix);
    /// Replaces the opacity, it does not multiply.
    void setOpacity(float opacity);
    /// A scale not above 0 is the renderer's of this moment.
    void shiftPosition(float x, float y, float scale);

private:
    qor::vector<GraphicCommand*> commands;
    qor::vector<GraphicCommandParse*> parseCommands;
    qor::vector<GraphicCommand*> commandsToPrepare_;
};

}  // namespace gui
