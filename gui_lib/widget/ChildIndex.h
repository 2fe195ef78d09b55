#pragma once

#include "gui_lib/widget/RectIndex.h"
#include "platform/qor/Span.h"

#include <cstddef>

namespace gui {

class Container;
class Widget;
class WidgetHandler;

/// Finds a container's child under a point by an index of the children's places, where many of them rest. Children on
/// the move, and such as decide on hits themselves, are asked one by one, which is the caller's.
class ChildIndex {
public:
    struct Children {
        Container& owner;
        qor::span<WidgetHandler* const> handlers;
        /// Differs from the last time if one came, went, moved or was resized.
        unsigned placeChanges;
    };

    /// Answers as `Container::getWidgetAtScreenPoint`; false, with `found` as it was, if it cannot.
    bool find(Children const& children, osg::Vec2i const& point, Widget*& found);

private:
    enum class State { Nothing, Waiting, Ready, Impossible };

    bool update_(Children const& children);
    void build_(Children const& children);

    RectIndex index_;
    State state_ = State::Nothing;
    unsigned placeChanges_ = 0;
    std::size_t count_ = 0;
};

}  // namespace gui
