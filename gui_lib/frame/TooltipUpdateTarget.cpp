#include "gui_lib/frame/TooltipUpdateTarget.h"

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/controls/small/Tooltip.h"
#include "gui_lib/controls/small/TooltipData.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/AliveGuard.h"

namespace gui {

namespace {

/// How long a tooltip waits when another one has just been hidden, seconds.
constexpr double shortWait = 0.1;

struct Times {
    double start = 0.5;
    double duration = 4.0;
};

Times getTimes(Tooltip const& tooltip) {
    skin::TooltipData const* data = tooltip.getTooltipData();
    return data ? Times{data->getStartTime(), data->getDuration()} : Times{};
}

}  // namespace

void TooltipUpdateTarget::restart() {
    Tooltip* const tooltip = manager_.getTooltip();
    if (!tooltip)
        return;
    UpdateManager& updates = UpdateManager::get();
    double const wait = getTimes(*tooltip).start;
    double const now = updates.getTime();
    startTime = wait > now - lastHideTime ? now - (wait - shortWait) : now;
    updates.addTarget(this);
}

void TooltipUpdateTarget::stop() {
    if (Tooltip* const tooltip = manager_.getTooltip()) {
        if (tooltip->getVisible(false))
            lastHideTime = UpdateManager::get().getTime();
        tooltip->setVisible(false);
    }
    UpdateManager::get().removeTarget(this);
}

void TooltipUpdateTarget::resetStartTime() { startTime = UpdateManager::get().getTime(); }

void TooltipUpdateTarget::update(double time) {
    if (!manager_.getTooltip())
        return;
    double const elapsed = time - startTime;
    // The surface's mouse function is the host's, and may end the tooltip.
    qor::basic_string<wchar_t> const& text = manager_.getTooltipText();
    Tooltip* const tooltip = manager_.getTooltip();
    if (!tooltip)
        return;
    Times const times = text.empty() ? Times{} : getTimes(*tooltip);
    if (text.empty() || elapsed > times.duration) {
        stop();
        return;
    }
    if (elapsed < times.start) {
        if (tooltip->getVisible(false) && tooltip->getText() != text)
            stop();
        return;
    }
    if (!tooltip->getVisible(false)) {
        // Its new size calls out, which may end it.
        AliveGuard const guard(tooltip);
        bool const ready = manager_.prepareTooltip();
        if (guard.dead())
            return;
        if (ready)
            tooltip->setVisible(true);
        else
            stop();
    }
    tooltip->setPosition(tooltip->calcScreenPosition());
}

}  // namespace gui
