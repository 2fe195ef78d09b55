#pragma once

#include "gui_lib/widget/Widget.h"

namespace gui {

/// Places a call in the `doRedraw` pass: after each mark the function runs once there, in place of a widget's usual
/// body.
class VORLEX_API RedrawHelper : public Widget {
public:
    explicit RedrawHelper(std::function<void()> newFunction);

    // Widget:
    char const* getWidgetType() const override;
    /// An empty function raises the standard error.
    void doRedraw() override;

private:
    std::shared_ptr<std::function<void()>> function;
};

}  // namespace gui
