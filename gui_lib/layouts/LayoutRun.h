#pragma once

#include "gui_lib/base/SizeLimits.h"
#include "gui_lib/layouts/Layout.h"
#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/layouts/MeasurePass.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/WidgetHandler.h"

#include <osg/Vec2i>

#include <iterator>

namespace gui {

/// Calls `visit(index, child)` for each living child; answers how many places there are, 0 without a container.
template <class Visit>
int visitChildren(Container const* container, Visit const& visit) {
    int const count = container ? container->getWidgetCount() : 0;
    for (int i = 0; i < count; ++i)
        if (Widget* const child = container->getWidget(i))
            visit(i, *child);
    return count;
}

/// Of the client rectangle.
osg::Vec2i getClientSize(Container const& container);

/// One walk of a layout over the children of its container. Each size and place that is given to a child may call the
/// host, which may do anything; the walk then ends if layout or container has died, the layout has gone to another
/// container, or it has run anew in between, for that one has seen the newer state.
/// Coordinates: GUI units of the container.
class LayoutRun {
public:
    explicit LayoutRun(Layout& layout);

    /// Null without a container that lives: there is nothing to do.
    Container* getContainer() const { return Widget::asContainer_(WidgetHandler::get(container_)); }
    /// The container's client rectangle as it was at the beginning.
    osg::Vec2i const& getOrigin() const { return origin_; }
    osg::Vec2i const& getRoom() const { return room_; }
    Widget* getChild(int index) const {
        Container const* const owner = getContainer();
        if (!owner || !readsChildren_)
            return owner ? owner->getWidget(index) : nullptr;
        bool const exists = index >= 0 && index < std::ssize(owner->widgets);
        return exists ? WidgetHandler::get(owner->widgets[index]) : nullptr;
    }

    // --- False: the walk ends, and nothing of the layout may be touched ---
    bool resize(Widget* child, osg::Vec2i const& size) const {
        if (child)
            child->setSize(size);
        return goesOn_();
    }
    bool move(Widget* child, osg::Vec2i const& position) const {
        if (child)
            child->setPosition(position);
        return goesOn_();
    }
    bool resizeAndMove(Widget* child, osg::Vec2i const& size, osg::Vec2i const& position) const;
    bool moveAndResize(Widget* child, osg::Vec2i const& position, osg::Vec2i const& size) const;
    /// As `resizeAndMove` of a child that is placed plainly and whose limits are known: it is called only if size or
    /// place are others.
    bool place(Widget& child, SizeLimits const& limits, osg::Vec2i const& size, osg::Vec2i const& position) const {
        osg::Vec2i const valid = limits.makeValid(size);
        return (child.size == valid && child.position == position) || change_(child, valid, position);
    }

    static osg::Vec2i const& getPlainSize(Widget const& child) { return child.size; }

private:
    bool change_(Widget& child, osg::Vec2i const& validSize, osg::Vec2i const& position) const;
    bool goesOn_() const {
        Layout const* const layout = LayoutHandler::get(layout_);
        // A container that dies takes its layout along, or is taken from it.
        return layout && layout->runCount_ == number_ && layout->getContainer() == container_;
    }

    MeasurePass pass_;
    LayoutHandler* layout_;
    WidgetHandler* container_;
    unsigned number_;
    /// The container's children are read without asking it.
    bool readsChildren_ = false;
    osg::Vec2i origin_;
    osg::Vec2i room_;
};

inline bool Layout::knowsLasting_() const { return lastingStamp_ == MeasurePass::getLastingStamp(); }

}  // namespace gui
