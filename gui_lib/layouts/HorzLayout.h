#pragma once

#include "gui_lib/layouts/LineLayout.h"

namespace gui {

/// Children in a row from left to right. The horzAlign chooses how the row fills the container.
class VORLEX_API HorzLayout : public LineLayout {
public:
    explicit HorzLayout(int gap = 0);

    // Layout:
    Layout* clone() const override;
    char const* getType() const override;
};

}  // namespace gui
