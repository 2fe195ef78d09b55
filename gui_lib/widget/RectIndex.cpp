#include "gui_lib/widget/RectIndex.h"

#include <algorithm>
#include <cstdint>

namespace gui {

namespace {

/// So few are faster asked one by one.
constexpr int leafCount = 8;

}  // namespace

void RectIndex::build(qor::span<Rect const> rects) {
    items_.clear();
    nodes_.clear();
    last_.certain = false;
    for (Rect const& rect : rects)
        items_.push_back({rect, static_cast<int>(items_.size())});
    if (!items_.empty())
        buildNode_(0, static_cast<int>(items_.size()));
}

void RectIndex::buildNode_(int first, int count) {
    Node node{items_[static_cast<std::size_t>(first)].rect, 0, first, count, 0};
    auto const begin = items_.begin() + first;
    auto const end = begin + count;
    for (auto item = begin; item != end; ++item) {
        node.box = node.box.united(item->rect);
        node.lastPlace = std::max(node.lastPlace, item->place);
    }
    std::size_t const index = nodes_.size();
    nodes_.push_back(node);
    if (count <= leafCount)
        return;
    bool const wide = node.box.width() > node.box.height();
    auto const middle = [wide](Item const& item) {
        return wide ? std::int64_t(item.rect.x1) + item.rect.x2 : std::int64_t(item.rect.y1) + item.rect.y2;
    };
    int const half = count / 2;
    std::nth_element(begin, begin + half, end, [&](Item const& a, Item const& b) { return middle(a) < middle(b); });
    buildNode_(first, half);
    nodes_[index].second = static_cast<int>(nodes_.size());
    buildNode_(first + half, count - half);
}

}  // namespace gui
