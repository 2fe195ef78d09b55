#include "gui_lib/widget/ChildIndex.h"

#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/OriginScope.h"
#include "gui_lib/widget/VirtualTarget.h"
#include "gui_lib/widget/WidgetHandler.h"

#include <algorithm>

namespace gui {

namespace {

/// Fewer are faster asked one by one.
constexpr std::size_t fewestIndexed = 64;

/// Whether all children are hit where they lie. The owner's class leaves these functions as they are.
bool areHitsByPlace(ChildIndex::Children const& children) {
    auto const isPlain = [&owner = children.owner](Widget const* child) {
        return child && child->getParent() == owner.getHandler() &&
               callSameFunction(&Widget::getScreenPointInside, *child, owner) &&
               callSameFunction(&Widget::screenToWidget, *child, owner) &&
               callSameFunction(&Widget::getPosition, *child, owner) &&
               callSameFunction(&Widget::getSize, *child, owner);
    };
    return std::all_of(children.handlers.begin(), children.handlers.end(),
                       [&](WidgetHandler const* handler) { return isPlain(WidgetHandler::get(handler)); });
}

}  // namespace

bool ChildIndex::find(Children const& children, osg::Vec2i const& point, Widget*& found) {
    if (children.handlers.size() < fewestIndexed || !update_(children))
        return false;
    Container& owner = children.owner;
    if (!owner.Widget::getWidgetAtScreenPoint(point)) {
        found = nullptr;
        return true;
    }
    OriginScope const origin(OriginScope::Screen, owner.getHandler(), owner.widgetToScreen(osg::Vec2i(0, 0)));
    auto const getChild = [&](int place) { return WidgetHandler::get(children.handlers[std::size_t(place)]); };
    int const place = index_.findLast(owner.screenToWidget(point), [&](int candidate) {
        Widget const* const child = getChild(candidate);
        return child && child->getVisible(false) && child->getScreenPointInside(point);
    });
    found = place < 0 ? &owner : getChild(place);
    return true;
}

bool ChildIndex::update_(Children const& children) {
    if (placeChanges_ != children.placeChanges || count_ != children.handlers.size()) {
        // Children on the move would have it built for each question: it waits for a second one at rest.
        placeChanges_ = children.placeChanges;
        count_ = children.handlers.size();
        state_ = State::Waiting;
        return false;
    }
    if (state_ == State::Waiting) {
        bool const possible = areHitsByPlace(children);
        state_ = possible ? State::Ready : State::Impossible;
        if (possible)
            build_(children);
    }
    return state_ == State::Ready;
}

void ChildIndex::build_(Children const& children) {
    qor::vector<RectIndex::Rect> rects;
    rects.reserve(children.handlers.size());
    for (WidgetHandler const* const handler : children.handlers) {
        Widget const* const child = WidgetHandler::get(handler);
        osg::Vec2i const corner = child->getPosition();
        rects.emplace_back(corner, saturatingAdd(corner, child->getSize()));
    }
    index_.build(rects);
}

}  // namespace gui
