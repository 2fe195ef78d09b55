#pragma once

namespace gui {
class Window;
}

/// Every control, to be used: buttons, check boxes, a radio group, switches, tabs, with tooltips and a tab order.
gui::Window* makeControlsWindow();
