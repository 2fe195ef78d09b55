#pragma once

#include "platform/qor/Api.h"

namespace gui {
class GraphicCommands;
}

namespace host {

/// Plays recorded lists of graphic commands and gives their commands back.
class VORLEX_API CommandPlayer {
public:
    /// Runs the parse functions, prepares every command, then draws every command. With the renderer's context current
    /// and, for what draws to the screen, a pass open. May be repeated.
    static void play(gui::GraphicCommands const& list);
    /// The three steps of `play`. All of a list is prepared before its first command is drawn.
    static void parse(gui::GraphicCommands const& list);
    static void doRedraw(gui::GraphicCommands const& list);
    static void draw(gui::GraphicCommands const& list);
    /// Releases every command of both lists and empties them. On the recording thread, while nobody plays the list.
    static void release(gui::GraphicCommands& list);
};

}  // namespace host
