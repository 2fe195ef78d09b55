#include "host/CommandPlayer.h"

#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/graphics/commands/GraphicCommandParse.h"

namespace host {

void CommandPlayer::play(gui::GraphicCommands const& list) {
    parse(list);
    doRedraw(list);
    draw(list);
}

void CommandPlayer::parse(gui::GraphicCommands const& list) {
    for (gui::GraphicCommandParse* command : list.getParseCommands())
        command->draw();
}

void CommandPlayer::doRedraw(gui::GraphicCommands const& list) {
    gui::GraphicCommand::doRedrawAll(list.getCommandsToPrepare());
}

void CommandPlayer::draw(gui::GraphicCommands const& list) { gui::GraphicCommand::drawAll(list.getCommands()); }

void CommandPlayer::release(gui::GraphicCommands& list) {
    for (gui::GraphicCommandParse* command : list.getParseCommands())
        command->release();
    gui::GraphicCommand::releaseAllBackwards(list.getCommands());
    list.clear();
}

}  // namespace host
