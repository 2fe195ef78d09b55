#pragma once

#include "gui_lib/layouts/LineLayout.h"

namespace gui {

/// Children in a column from top to bottom. The vertAlign chooses how the column fills the container.
class VORLEX_API VertLayout : public LineLayout {
public:
    explicit VertLayout(int gap = 0);

    // Layout:
    Layout* clone() const override;
    char const* getType() const override;
};

}  // namespace gui
