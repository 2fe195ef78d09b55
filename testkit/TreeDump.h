#pragma once

#include <string>
#include <vector>

#include "platform/qor/Api.h"

namespace gui {
class Widget;
}

namespace testkit {

/// A widget of the live tree, and where it hangs.
struct TreeEntry {
    gui::Widget* widget;
    /// Place of the parent in the list, -1 for a window.
    int parent;
    int depth;
    /// An overlay widget of its window: drawn over it, out of reach of the mouse.
    bool overlay;
};

/// Every live widget in the shown windows of a surface, parents before their children, from the bottom to the top.
/// Empty for a surface that does not exist. The pointers are good until the next call into the toolkit.
VORLEX_API std::vector<TreeEntry> listTree(int surface);

/// One line on a widget, as in the dump: type, name, text, place on its surface in GUI units, size, and what sets it
/// apart: "hidden", "disabled", "focused", "hover" and "pressed" (its look), "mouse" (it is the deepest widget under
/// the mouse), "capture" (it holds the mouse), "inner" (its inner state, if not 1).
VORLEX_API std::string describe(gui::Widget const& widget);

/// The windows that are shown, with their widgets, as text: a line for each surface, each widget, and a tooltip that
/// shows. The same tree gives the same text in every run.
VORLEX_API std::string dumpTree();

}  // namespace testkit
