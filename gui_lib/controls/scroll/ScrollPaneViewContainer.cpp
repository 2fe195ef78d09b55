#include "gui_lib/controls/scroll/ScrollPaneViewContainer.h"

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/widget/OriginScope.h"
#include "gui_lib/widget/VirtualTarget.h"
#include "gui_lib/widget/WidgetHandler.h"

#include <algorithm>

namespace gui {

namespace {

/// Fewer are faster asked one by one.
constexpr std::size_t fewestIndexed = 64;

}  // namespace

ScrollPaneViewContainer::ScrollPaneViewContainer() { skin = new skin::Skin(this, true); }

ScrollPaneViewContainer::~ScrollPaneViewContainer() {
    beginDestruction_();
    deleteWidgets_();
}

char const* ScrollPaneViewContainer::getWidgetType() const { return "ScrollPaneViewContainer"; }

Widget* ScrollPaneViewContainer::getWidgetAtScreenPoint(osg::Vec2i const& point) {
    if (widgets.size() < fewestIndexed || !updateIndex_())
        return Container::getWidgetAtScreenPoint(point);
    if (!Widget::getWidgetAtScreenPoint(point))
        return nullptr;
    OriginScope const origin(OriginScope::Screen, handler, widgetToScreen(osg::Vec2i(0, 0)));
    int const found = index_.findLast(screenToWidget(point), [&](int place) {
        Widget const* const child = getWidget_(place);
        return child && child->getVisible(false) && child->getScreenPointInside(point);
    });
    return found < 0 ? this : getWidget_(found);
}

bool ScrollPaneViewContainer::updateIndex_() {
    if (indexedChanges_ != getChildPlaceChanges_() || indexedCount_ != widgets.size()) {
        // Children on the move would have it built for each question: it waits for a second one at rest.
        indexedChanges_ = getChildPlaceChanges_();
        indexedCount_ = widgets.size();
        indexed_ = Indexed::Waiting;
        return false;
    }
    if (indexed_ == Indexed::Waiting) {
        indexed_ = Indexed::Impossible;
        if (areHitsByPlace_()) {
            qor::vector<RectIndex::Rect> rects;
            rects.reserve(widgets.size());
            for (WidgetHandler const* const handle : widgets) {
                Widget const* const child = WidgetHandler::get(handle);
                osg::Vec2i const corner = child->getPosition();
                rects.emplace_back(corner, saturatingAdd(corner, child->getSize()));
            }
            index_.build(rects);
            indexed_ = Indexed::Ready;
        }
    }
    return indexed_ == Indexed::Ready;
}

bool ScrollPaneViewContainer::areHitsByPlace_() const {
    // This class leaves these as they are.
    auto const isPlain = [this](Widget const* child) {
        return child && child->getParent() == handler &&
               callSameFunction(&Widget::getScreenPointInside, *child, *this) &&
               callSameFunction(&Widget::screenToWidget, *child, *this) &&
               callSameFunction(&Widget::getPosition, *child, *this) &&
               callSameFunction(&Widget::getSize, *child, *this);
    };
    return std::all_of(widgets.begin(), widgets.end(),
                       [&](WidgetHandler const* handle) { return isPlain(WidgetHandler::get(handle)); });
}

}  // namespace gui
