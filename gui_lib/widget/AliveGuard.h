#pragma once

#include "gui_lib/widget/Widget.h"
#include "gui_lib/widget/WidgetHandler.h"

namespace gui {

/// Tells after a call out whether the widget still lives. Every callback may destroy any widget, so a function that
/// calls out makes one of these first and returns when it answers false. Copying is cheap: it is one pointer.
class AliveGuard {
public:
    explicit AliveGuard(Widget const* widget) : handler_(widget->getHandler()) {}

    bool alive() const { return WidgetHandler::get(handler_) != nullptr; }
    bool dead() const { return !alive(); }

private:
    WidgetHandler const* handler_;
};

}  // namespace gui
