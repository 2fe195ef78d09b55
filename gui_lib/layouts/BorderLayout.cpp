#include "gui_lib/layouts/BorderLayout.h"

#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/layouts/LayoutRun.h"

#include <algorithm>

namespace gui {

namespace {

/// Wide, so that sums need no care.
struct WideSize {
    std::int64_t w = 0;
    std::int64_t h = 0;
};

osg::Vec2i toSize(std::int64_t width, std::int64_t height) { return {saturate(width), saturate(height)}; }

}  // namespace

/// What the children answered, those in front of the first missing one; `count` is how many.
struct BorderLayout::Answers {
    WideSize north;
    WideSize south;
    WideSize center;
    WideSize west;
    WideSize east;
    int count = 0;

    std::int64_t outerWidth() const { return std::max(north.w, south.w); }
    std::int64_t innerHeight() const { return std::max({center.h, west.h, east.h}); }
};

BorderLayout::BorderLayout(int newHorzGap, int newVertGap) : horzGap(newHorzGap), vertGap(newVertGap) {}

Layout* BorderLayout::clone() const { return new BorderLayout(horzGap, vertGap); }

char const* BorderLayout::getType() const { return "border"; }

void BorderLayout::setHorzGap(int gap) {
    horzGap = gap;
    changed_();
}

void BorderLayout::setVertGap(int gap) {
    vertGap = gap;
    changed_();
}

// --- Size questions: they do not treat gaps alike ---

BorderLayout::Answers BorderLayout::collect_(osg::Vec2i (Widget::*question)() const) const {
    Answers result;
    Container const* const owner = getLiveContainer_();
    for (WideSize* const place : {&result.north, &result.south, &result.center, &result.west, &result.east}) {
        Widget const* const child = owner ? owner->getWidget(result.count) : nullptr;
        if (!child)
            break;
        osg::Vec2i const size = (child->*question)();
        *place = WideSize{size.x(), size.y()};
        ++result.count;
    }
    return result;
}

osg::Vec2i BorderLayout::getMinSize() const {
    Answers const c = collect_(&Widget::getMinSize);
    std::int64_t width = c.outerWidth();
    if (c.center.w > 0)
        width = std::max(c.outerWidth(), c.center.w);
    if (c.west.w > 0)
        width = std::max(c.outerWidth(), c.center.w + horzGap + c.west.w);
    if (c.east.w > 0)
        width = std::max(c.outerWidth(), c.center.w + c.east.w + std::int64_t(2) * horzGap + c.west.w);
    std::int64_t const south = c.south.h > 0 ? vertGap + c.south.h : 0;
    std::int64_t height = c.north.h + south + c.center.h;
    if (c.west.h > 0 || c.east.h > 0)
        height = c.innerHeight() + vertGap + c.north.h + south;
    return toSize(width, height);
}

osg::Vec2i BorderLayout::getPrefSize() const {
    Answers const c = collect_(&Widget::getPrefSize);
    std::int64_t width = c.outerWidth();
    std::int64_t height = c.north.h;
    std::int64_t const gap = vertGap;
    if (c.count > PlaceSouth)
        height += c.south.h + gap;
    if (c.count > PlaceCenter) {
        height += c.center.h + gap;
        width = std::max(width, c.center.w);
    }
    if (c.count > PlaceWest) {
        height = c.south.h + c.innerHeight() + 2 * gap + c.north.h;
        std::int64_t inner = c.center.w + c.west.w + horzGap;
        if (c.count > PlaceEast)
            inner += c.east.w + horzGap;
        width = std::max(c.outerWidth(), inner);
    }
    return toSize(width, height);
}

osg::Vec2i BorderLayout::getMaxSize() const {
    Answers const c = collect_(&Widget::getMaxSize);
    std::int64_t width = c.north.w;
    std::int64_t height = c.north.h;
    // Without limit in the north there is none at all.
    if (width > 0) {
        width = std::max(c.outerWidth(), c.center.w);
        std::int64_t inner = c.center.w + c.west.w + horzGap;
        if (c.count > PlaceEast)
            inner += c.east.w + horzGap;
        if (c.count > PlaceWest)
            width = std::max(c.outerWidth(), inner);
    }
    if (height > 0) {
        std::int64_t const outer = c.north.w + c.south.w;
        height += c.south.h + c.center.h;
        if (c.count > PlaceWest)
            height = std::max({outer, c.center.h, c.west.h}) + outer;
        // None of those may have a limit.
        if (c.count > PlaceEast && height > 0)
            height = std::max(outer, c.innerHeight()) + outer;
    }
    return toSize(width, height);
}

// --- Placing ---

void BorderLayout::updateSize() {
    LayoutRun const run(*this);
    if (!run.getContainer())
        return;
    updatePrefSizes_();
    auto const getPref = [this](Place place) {
        return place < std::ssize(prefSizes) ? prefSizes[place] : osg::Vec2i(0, 0);
    };
    osg::Vec2i const room = run.getRoom();
    int const north = getPref(PlaceNorth).y();
    int const south = getPref(PlaceSouth).y();
    int const west = getPref(PlaceWest).x();
    int const east = getPref(PlaceEast).x();
    int const top = saturatingAdd(vertGap, north);
    int const height =
        saturate(std::max<std::int64_t>(std::int64_t(room.y()) - south - std::int64_t(2) * vertGap - north, 0));
    auto const place = [&run](Place index, int x, int y, int w, int h) {
        return run.moveAndResize(run.getChild(index), osg::Vec2i(x, y), osg::Vec2i(w, h));
    };
    if (!place(PlaceNorth, 0, 0, room.x(), north) ||
        !place(PlaceSouth, 0, saturatingSubtract(room.y(), south), room.x(), south) ||
        !place(PlaceWest, 0, top, west, height) ||
        !place(PlaceEast, saturatingSubtract(room.x(), east), top, east, height))
        return;
    std::int64_t x = horzGap;
    std::int64_t width = room.x() - std::int64_t(2) * horzGap;
    if (run.getChild(PlaceWest)) {
        x += west;
        width -= west;
    }
    if (run.getChild(PlaceEast))
        width -= east;
    place(PlaceCenter, saturate(x), top, saturate(std::max<std::int64_t>(width, 0)), height);
}

}  // namespace gui
