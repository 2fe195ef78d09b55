#include "gui_lib/widget/RedrawHelper.h"

namespace gui {

RedrawHelper::RedrawHelper(std::function<void()> newFunction)
    : function(std::make_shared<std::function<void()>>(std::move(newFunction))) {}

char const* RedrawHelper::getWidgetType() const { return "RedrawHelper"; }

void RedrawHelper::doRedraw() {
    // Held, since the function may end this widget.
    std::shared_ptr<std::function<void()>> const held = function;
    (*held)();
}

}  // namespace gui
