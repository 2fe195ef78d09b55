#include "gui_lib/graphics/ScratchGraphicCommands.h"

#include "gui_lib/graphics/GraphicCommands.h"
#include "platform/qor/Containers.h"

namespace gui {

namespace {

/// Idle lists; never destroyed, as the pools of the commands.
qor::vector<GraphicCommands*>& idleLists() {
    static auto* const lists = new qor::vector<GraphicCommands*>;
    return *lists;
}

}  // namespace

ScratchGraphicCommands::ScratchGraphicCommands() {
    auto& idle = idleLists();
    if (idle.empty()) {
        commands_ = new GraphicCommands;
    } else {
        commands_ = idle.back();
        idle.pop_back();
    }
}

ScratchGraphicCommands::~ScratchGraphicCommands() {
    commands_->clear();
    idleLists().push_back(commands_);
}

}  // namespace gui
