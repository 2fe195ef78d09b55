#pragma once

#include "gui_lib/frame/GUI.h"

namespace gui::skin {

/// Makes a widget the top of the target that is drawn or recorded, for a scope; targets nest.
class TargetWidgetScope {
public:
    explicit TargetWidgetScope(Widget* widget) : saved_(GUI::get() ? GUI::get()->getTargetWidget() : nullptr) {
        set_(widget);
    }
    ~TargetWidgetScope() { set_(saved_); }
    TargetWidgetScope(TargetWidgetScope const&) = delete;
    TargetWidgetScope& operator=(TargetWidgetScope const&) = delete;

private:
    static void set_(Widget* widget) {
        if (GUI::get())
            GUI::get()->setTargetWidget(widget);
    }

    Widget* saved_;
};

}  // namespace gui::skin
