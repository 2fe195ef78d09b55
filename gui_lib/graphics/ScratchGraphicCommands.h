#pragma once

#include "platform/qor/Api.h"

namespace gui {

class GraphicCommands;

/// An empty list for a scope, borrowed from a pool so that its buffers survive. For recording what then goes into
/// GraphicCommands::drawToTarget; whatever is left in the list at the end is not released.
class VORLEX_API ScratchGraphicCommands {
public:
    ScratchGraphicCommands();
    ~ScratchGraphicCommands();
    ScratchGraphicCommands(ScratchGraphicCommands const&) = delete;
    ScratchGraphicCommands& operator=(ScratchGraphicCommands const&) = delete;

    GraphicCommands* get() const { return commands_; }
    GraphicCommands* operator->() const { return commands_; }

private:
    GraphicCommands* commands_;
};

}  // namespace gui
