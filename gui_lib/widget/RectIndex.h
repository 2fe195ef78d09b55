#pragma once

#include "platform/osg/RectImpl.h"
#include "platform/qor/Containers.h"

namespace gui {

/// Finds which of many rectangles hold a point without asking all: a tree of boxes around boxes. All four edges of a
/// rectangle count as inside.
class RectIndex {
public:
    using Rect = osg::RectImpl<osg::Vec2i>;

    /// Takes the rectangles, which are known by their places from then on; an inverted one holds no point.
    void build(qor::span<Rect const> rects);

    /// The last rectangle that holds the point and that `accept`, a function of its place, answers true for; -1 if
    /// there is none. Not all that hold the point are asked.
    template <class Accept>
    int findLast(osg::Vec2i const& point, Accept const& accept) const {
        int best = -1;
        if (!nodes_.empty())
            find_(0, point, accept, best);
        return best;
    }

private:
    struct Item {
        Rect rect;
        int place;
    };
    /// A box around the items from `first` on; it has two nodes below unless `second` is 0, the first one right after
    /// itself.
    struct Node {
        Rect box;
        int lastPlace;
        int first;
        int count;
        int second;
    };

    static bool holds_(Rect const& rect, osg::Vec2i const& point) {
        return point.x() >= rect.x1 && point.x() <= rect.x2 && point.y() >= rect.y1 && point.y() <= rect.y2;
    }

    template <class Accept>
    void find_(int index, osg::Vec2i const& point, Accept const& accept, int& best) const {
        Node const& node = nodes_[static_cast<std::size_t>(index)];
        if (node.lastPlace <= best || !holds_(node.box, point))
            return;
        if (node.second != 0) {
            find_(index + 1, point, accept, best);
            find_(node.second, point, accept, best);
            return;
        }
        for (int i = node.first; i < node.first + node.count; ++i) {
            Item const& item = items_[static_cast<std::size_t>(i)];
            if (item.place > best && holds_(item.rect, point) && accept(item.place))
                best = item.place;
        }
    }

    void buildNode_(int first, int count);

    qor::vector<Item> items_;
    qor::vector<Node> nodes_;
};

}  // namespace gui
