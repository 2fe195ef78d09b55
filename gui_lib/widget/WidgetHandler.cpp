#include "gui_lib/widget/WidgetHandler.h"

#include "gui_lib/widget/HandlerArena.h"
#include "gui_lib/widget/Widget.h"

namespace gui {

namespace {

HandlerArena<WidgetHandler>& arena() {
    // Never destroyed: hosts and statics may hold handlers to the end of the program.
    static auto* const instance = new HandlerArena<WidgetHandler>;
    return *instance;
}

}  // namespace

WidgetHandler* WidgetHandler::create(Widget* widget) {
    WidgetHandler* const handler = arena().append();
    handler->index = static_cast<int>(arena().size());
    handler->widget = widget;
    return handler;
}

void WidgetHandler::release(WidgetHandler* handler) {
    if (handler)
        handler->widget = nullptr;
}

void WidgetHandler::shutdown() {
    // By index against the live count, since destructors may end other widgets and make new ones.
    for (std::size_t i = 0; i < arena().size(); ++i)
        delete arena().at(i)->widget;
    arena().clear();
}

int WidgetHandler::getCount() { return static_cast<int>(arena().size()); }

WidgetHandler* WidgetHandler::getAt(int place) { return arena().at(static_cast<std::size_t>(place)); }

}  // namespace gui
