#include "gui_lib/layouts/LayoutRun.h"

#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/widget/AliveGuard.h"

namespace gui {

osg::Vec2i getClientSize(Container const& container) {
    osg::RectImpl<osg::Vec2i> const client = container.getClientRect();
    return {saturatingSubtract(client.x2, client.x1), saturatingSubtract(client.y2, client.y1)};
}

LayoutRun::LayoutRun(Layout& layout)
    : layout_(layout.handler()), container_(layout.getContainer()), number_(++layout.runCount_) {
    Container const* const owner = getContainer();
    if (!owner)
        return;
    // Lasting answers build on that, too.
    readsChildren_ = layout.knowsLasting_() || owner->showsAllChildren_();
    osg::RectImpl<osg::Vec2i> const client = owner->getClientRect();
    origin_.set(client.x1, client.y1);
    room_.set(saturatingSubtract(client.x2, client.x1), saturatingSubtract(client.y2, client.y1));
}

bool LayoutRun::resizeAndMove(Widget* child, osg::Vec2i const& size, osg::Vec2i const& position) const {
    if (!child)
        return goesOn_();
    AliveGuard const lives(child);
    return resize(child, size) && move(lives.alive() ? child : nullptr, position);
}

bool LayoutRun::change_(Widget& child, osg::Vec2i const& validSize, osg::Vec2i const& position) const {
    AliveGuard const lives(&child);
    if (child.size != validSize) {
        child.onSizeChanged_(validSize);
        if (!goesOn_() || lives.dead())
            return goesOn_();
    }
    if (child.position == position)
        return true;
    child.onPositionChanged_(position);
    return goesOn_();
}

bool LayoutRun::moveAndResize(Widget* child, osg::Vec2i const& position, osg::Vec2i const& size) const {
    if (!child)
        return goesOn_();
    AliveGuard const lives(child);
    return move(child, position) && resize(lives.alive() ? child : nullptr, size);
}

}  // namespace gui
