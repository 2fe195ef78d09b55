#include "gui_lib/layouts/LayoutHandler.h"

#include "gui_lib/layouts/Layout.h"
#include "gui_lib/widget/HandlerArena.h"

namespace gui {

namespace {

HandlerArena<LayoutHandler>& arena() {
    // Never destroyed: containers held by statics may die late.
    static auto* const instance = new HandlerArena<LayoutHandler>;
    return *instance;
}

}  // namespace

LayoutHandler* LayoutHandler::create(Layout* layout) {
    LayoutHandler* const handler = arena().append();
    handler->index = static_cast<int>(arena().size());
    handler->layout = layout;
    return handler;
}

void LayoutHandler::release(LayoutHandler* handler) {
    if (handler)
        handler->layout = nullptr;
}

void LayoutHandler::shutdown() {
    for (std::size_t i = 0; i < arena().size(); ++i)
        delete arena().at(i)->layout;
    arena().clear();
}

}  // namespace gui
