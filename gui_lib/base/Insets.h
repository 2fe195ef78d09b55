#pragma once

namespace gui {

/// Margins on the four sides of a rectangle, in GUI units.
struct Insets {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool operator==(Insets const&) const = default;
};

}  // namespace gui
