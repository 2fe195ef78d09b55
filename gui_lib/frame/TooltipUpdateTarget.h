#pragma once

#include "gui_lib/base/UpdateTarget.h"

namespace gui {

class WindowsManager;

/// The clock of a manager's tooltip: shows it after its start time, moves it with the pointer, ends it after its
/// duration.
class TooltipUpdateTarget final : public UpdateTarget {
public:
    explicit TooltipUpdateTarget(WindowsManager& manager) : manager_(manager) {}

    /// The pointer moved: the waiting begins again, and is short right after another tooltip.
    void restart();
    /// Hides the tooltip and stops waiting.
    void stop();
    /// Lets a shown tooltip stand for its whole time again.
    void resetStartTime();

    // UpdateTarget:
    void update(double time) override;

private:
    WindowsManager& manager_;
    double startTime = 0.0;
    double lastHideTime = 0.0;
};

}  // namespace gui
