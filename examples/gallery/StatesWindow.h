#pragma once

namespace gui {
class Window;
}

/// Every control in every state at once: rows are controls with their inner state, columns are released, hover, pressed
/// and disabled.
gui::Window* makeStatesWindow();
