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
    /// there is none. Not all that hold the point are asked; a point that comes again is answered from memory as long
    /// as that rectangle is accepted.
    template <class Accept>
    int findLast(osg::Vec2i const& point, Accept const& accept) {
        // A copy: whoever is asked may ask again.
        Answer const known = last_;
        if (known.certain && known.point == point && (known.place < 0 || accept(known.place)))
            return known.place;
        last_ = search_(point, accept);
        return last_.place;
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
    struct Answer {
        osg::Vec2i point;
        int place;
        /// No rectangle that holds the point was declined, so that no other can take the place of the one that was not.
        bool certain;
    };

    static bool holds_(Rect const& rect, osg::Vec2i const& point) {
        return point.x() >= rect.x1 && point.x() <= rect.x2 && point.y() >= rect.y1 && point.y() <= rect.y2;
    }

    template <class Accept>
    Answer search_(osg::Vec2i const& point, Accept const& accept) const {
        Answer answer{point, -1, true};
        // Counts are halved from level to level.
        int open[32] = {0};
        for (int openCount = nodes_.empty() ? 0 : 1; openCount > 0;) {
            int const index = open[--openCount];
            Node const& node = nodes_[static_cast<std::size_t>(index)];
            if (!holds_(node.box, point) || node.lastPlace <= answer.place)
                continue;
            if (node.second != 0) {
                open[openCount++] = node.second;
                open[openCount++] = index + 1;
            } else {
                searchLeaf_(node, accept, answer);
            }
        }
        return answer;
    }

    template <class Accept>
    void searchLeaf_(Node const& node, Accept const& accept, Answer& answer) const {
        for (int i = node.first; i < node.first + node.count; ++i) {
            Item const& item = items_[static_cast<std::size_t>(i)];
            if (!holds_(item.rect, answer.point) || item.place <= answer.place)
                continue;
            if (accept(item.place))
                answer.place = item.place;
            else
                answer.certain = false;
        }
    }

    void buildNode_(int first, int count);

    qor::vector<Item> items_;
    qor::vector<Node> nodes_;
    Answer last_ = {osg::Vec2i(), -1, false};
};

}  // namespace gui
