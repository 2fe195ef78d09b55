#include "gui_lib/graphics/GraphicCommand.h"

#include <cxxabi.h>
#include <cstdlib>
#include <span>

#include "platform/qor/Log.h"

namespace gui {

namespace {

unsigned lastSerial = 0;

}  // namespace

GraphicCommand::GraphicCommand() : serial(++lastSerial) { allCommands().push_back(this); }

GraphicCommand::~GraphicCommand() = default;

void GraphicCommand::doRedrawAll(qor::vector<GraphicCommand*> const& commands) {
    for (GraphicCommand* command : commands)
        command->doRedraw();
}

void GraphicCommand::drawAll(qor::vector<GraphicCommand*> const& commands) {
    for (GraphicCommand* command : commands)
        command->draw();
}

void GraphicCommand::releaseAll(qor::vector<GraphicCommand*> const& commands) {
    for (GraphicCommand* command : commands)
        command->release();
}

void GraphicCommand::releaseAllBackwards(qor::vector<GraphicCommand*> const& commands) {
    std::span const list(commands);
    for (std::size_t left = list.size(); left > 0; --left)
        list[left - 1]->release();
}

qor::vector<GraphicCommand*>& GraphicCommand::allCommands() {
    static auto* const commands = new qor::vector<GraphicCommand*>;
    return *commands;
}

void GraphicCommand::logStat_(char const* typeName, int all, int free) {
    int status = 0;
    char* const readable = abi::__cxa_demangle(typeName, nullptr, nullptr, &status);
    qor_logf("VORLEX", 64, "~~~ %-40s  all:%d free:%d", status == 0 ? readable : typeName, all, free);
    std::free(readable);
}

}  // namespace gui
