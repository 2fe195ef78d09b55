#pragma once

#include <functional>
#include <utility>

#include "gui_lib/base/UpdateTarget.h"

namespace gui {

/// Calls a function at every tick. The function must not be empty.
class ColorUpdater final : public UpdateTarget {
public:
    explicit ColorUpdater(std::function<void()> function) : function_(std::move(function)) {}

    // UpdateTarget:
    void update(double) override { function_(); }

private:
    std::function<void()> function_;
};

}  // namespace gui
