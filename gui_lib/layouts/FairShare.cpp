#include "gui_lib/layouts/FairShare.h"

#include <algorithm>
#include <cstdint>

namespace gui {

namespace {

constexpr int roundCount = 4;

using HeldFlag = bool FairShareItem::*;

void takeShare(FairShareItem& item, int share) {
    item.size = share;
    if (item.min > 0) {
        item.size = std::max(item.size, item.min);
        item.atMin = item.size > share;
    }
    if (item.max > 0) {
        item.size = std::min(item.max, item.size);
        item.atMax = item.size < share;
    }
}

std::int64_t sumSizes(qor::span<FairShareItem const> items) {
    std::int64_t sum = 0;
    for (FairShareItem const& item : items)
        sum += item.size;
    return sum;
}

/// Shares what those that `held` marks leave among the others. False if there are no others; `share` is what each of
/// them was offered.
bool shareRest(qor::span<FairShareItem> items, int total, HeldFlag held, int& share) {
    std::int64_t fixed = 0;
    int freeCount = 0;
    for (FairShareItem const& item : items) {
        if (item.*held)
            fixed += item.size;
        else
            ++freeCount;
    }
    if (freeCount == 0)
        return false;
    int const rest = static_cast<int>(std::max<std::int64_t>(total - fixed, 0));
    share = rest / freeCount;
    int extra = rest - share * freeCount;
    for (FairShareItem& item : items) {
        if (item.*held)
            continue;
        int const target = extra > 0 ? share + 1 : share;
        takeShare(item, target);
        if (extra > 0 && item.size == target)
            --extra;
    }
    return true;
}

}  // namespace

void shareFairly(qor::span<FairShareItem> items, int total) {
    if (items.empty())
        return;
    int share = std::max(total / static_cast<int>(items.size()), 0);
    for (FairShareItem& item : items)
        takeShare(item, share);
    for (int round = 0; round < roundCount; ++round) {
        std::int64_t const sum = sumSizes(items);
        if (sum == total)
            return;
        bool const shrinks = sum > total;
        HeldFlag const held = shrinks ? &FairShareItem::atMin : &FairShareItem::atMax;
        if (!shareRest(items, total, held, share) || (shrinks && share == 0))
            return;
    }
}

}  // namespace gui
