#pragma once

#include "platform/qor/Span.h"

namespace gui {

/// One of those who share a length: what it gets, between its limits. A limit of 0 is none.
struct FairShareItem {
    int size = 0;
    int min = 0;
    int max = 0;
    /// The size is held up, or down, by the limit.
    bool atMin = false;
    bool atMax = false;
};

/// Shares `total` out among the items: each gets the same, but for its limits, and the units that a division leaves go
/// one each to the first that can take them. At most four rounds of correction, so that extreme limits may leave the
/// sum above or below the total.
void shareFairly(qor::span<FairShareItem> items, int total);

}  // namespace gui
