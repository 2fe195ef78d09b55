#pragma once

namespace gui {

/// One raw key event as the host saw it; the toolkit only carries it to RawKeyListeners.
struct RawKeyInfo {
    int scanCode = 0;
    int key = 0;
    int modifiers = 0;
    bool down = false;
    bool repeated = false;
};

/// One raw mouse event as the host saw it. The toolkit turns x, y from raw pixels into GUI units and carries the rest.
struct RawMouseInfo {
    int x = 0;
    int y = 0;
    int deltaX = 0;
    int deltaY = 0;
    int button = 0;
    bool down = false;
    int wheel = 0;
};

}  // namespace gui
