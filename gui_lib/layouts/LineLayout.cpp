#include "gui_lib/layouts/LineLayout.h"

#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/base/VirtualTable.h"
#include "gui_lib/layouts/LayoutRun.h"

#include <algorithm>
#include <iterator>

namespace gui {

namespace {

/// Of LineLayout itself; the same whenever a construction begins.
VirtualTable lineLayoutTable;

}  // namespace

LineLayout::LineLayout(int newGap, Axis mainAxis) : gap(newGap), mainAxis_(mainAxis) {
    lineLayoutTable = VirtualTable::of(*this);
}

void LineLayout::copySettings_(LineLayout& target) const {
    target.gap = gap;
    target.horzAlign = horzAlign;
    target.vertAlign = vertAlign;
}

// --- Settings ---

void LineLayout::setGap(int newGap) {
    gap = newGap;
    changed_();
}

void LineLayout::setHorzAlign(Align const& align) {
    horzAlign = align;
    changed_();
}

void LineLayout::setVertAlign(Align const& align) {
    vertAlign = align;
    changed_();
}

// --- Size questions ---

void LineLayout::addGaps_(osg::Vec2i& sum, int childCount) const {
    int& length = sum[mainAxis_];
    if (length >= 1)
        length = saturatingAdd(length, saturatingMultiply(childCount - 1, gap));
}

osg::Vec2i LineLayout::getMinSize() const {
    int const across = 1 - mainAxis_;
    osg::Vec2i result(0, 0);
    int const count = visitChildren(getLiveContainer_(), [&](int, Widget const& child) {
        osg::Vec2i const least = child.getMinSize();
        result[mainAxis_] = saturatingAdd(result[mainAxis_], least[mainAxis_]);
        result[across] = std::max(result[across], least[across]);
    });
    addGaps_(result, count);
    return result;
}

osg::Vec2i LineLayout::getPrefSize() const {
    int const across = 1 - mainAxis_;
    osg::Vec2i result(0, 0);
    int const count = visitChildren(getLiveContainer_(), [&](int, Widget const& child) {
        osg::Vec2i const wanted = child.getPrefSize();
        result[mainAxis_] = saturatingAdd(result[mainAxis_], wanted[mainAxis_]);
        result[across] = std::max(result[across], wanted[across]);
    });
    if (count > 0)
        result[mainAxis_] = saturatingAdd(result[mainAxis_], saturatingMultiply(count - 1, gap));
    return result;
}

osg::Vec2i LineLayout::getMaxSize() const {
    Container const* const owner = getLiveContainer_();
    int const across = 1 - mainAxis_;
    osg::Vec2i result(0, 0);
    bool limited[2] = {true, true};
    int const count = owner ? owner->getWidgetCount() : 0;
    for (int i = 0; i < count && (limited[0] || limited[1]); ++i) {
        Widget const* const child = owner->getWidget(i);
        if (!child)
            continue;
        osg::Vec2i const most = child->getMaxSize();
        for (int axis = 0; axis < 2; ++axis)
            if (most[axis] == 0)
                limited[axis] = false;
        result[mainAxis_] = limited[mainAxis_] ? saturatingAdd(result[mainAxis_], most[mainAxis_]) : 0;
        result[across] = limited[across] ? std::max(result[across], most[across]) : 0;
    }
    addGaps_(result, count);
    return result;
}

osg::Vec2i LineLayout::calcMaxSize() const {
    osg::Vec2i result = Layout::calcMaxSize();
    Container const* const owner = getLiveContainer_();
    addGaps_(result, owner ? owner->getWidgetCount() : 0);
    return result;
}

bool LineLayout::measureLasting_() {
    Container const* const owner = getLiveContainer_();
    if (!VirtualTable::of(*this).sharesAll(lineLayoutTable, &LineLayout::getMinSize, &LineLayout::getMaxSize,
                                           &LineLayout::getPrefSize, &LineLayout::calcMaxSize,
                                           &LineLayout::updatePrefSizes_, &LineLayout::setContainer,
                                           &LineLayout::getContainer))
        return false;
    int const count = owner->getWidgetCount();
    for (int i = 0; i < count; ++i) {
        Widget const* const child = owner->getWidget(i);
        if (!child || !sizesLast_(*owner, *child))
            return false;
    }
    knownChildren_.clear();
    placesKnownPlainly_ = true;
    knownChildren_.reserve(static_cast<std::size_t>(count));
    visitChildren(owner, [this](int, Widget& child) {
        osg::Vec2i const wanted = child.getPrefSize();
        SizeLimits const limits{child.getMinSize(), child.getMaxSize()};
        knownChildren_.push_back({&child, limits, child.calcMaxSize()[mainAxis_], wanted});
        placesKnownPlainly_ = placesKnownPlainly_ && isPlacedPlainly_(child);
    });
    sharesHold_ = prefSizesHold_ = false;
    return true;
}

// --- Placing ---

void LineLayout::updateSize() {
    LayoutRun const run(*this);
    if (!run.getContainer())
        return;
    // Kept apart: while children are placed, what is known of them may be read anew.
    if (!answersLast_()) {
        prefSizesHold_ = false;
        updatePrefSizes_();
    } else if (!prefSizesHold_) {
        prefSizes.resize(knownChildren_.size());
        for (std::size_t i = 0; i < knownChildren_.size(); ++i)
            prefSizes[i] = knownChildren_[i].wanted;
        prefSizesHold_ = true;
    }
    switch (getAlign_(mainAxis_).type) {
        case Align::Min:
        case Align::Center:
        case Align::Max:
            placeAligned_(run);
            break;
        case Align::Stretch:
            placeStretched_(run);
            break;
    }
}

LineLayout::Box LineLayout::makeBox_(LayoutRun const& run, int index, int begin, int length) const {
    int const across = 1 - mainAxis_;
    int from = 0;
    int to = 0;
    getAlign_(across).calc(prefSizes[index][across], run.getRoom()[across], from, to);
    Box box;
    box.position[mainAxis_] = begin;
    box.position[across] = saturatingAdd(run.getOrigin()[across], from);
    box.size[mainAxis_] = length;
    box.size[across] = saturatingSubtract(to, from);
    return box;
}

int LineLayout::stepOver_(int begin, Widget const* child) const {
    return saturatingAdd(begin, saturatingAdd(gap, child ? child->getSize()[mainAxis_] : 0));
}

void LineLayout::placeAligned_(LayoutRun const& run) {
    int const count = static_cast<int>(prefSizes.size());
    int total = 0;
    for (int i = 0; i < count; ++i) {
        int const length = prefSizes[i][mainAxis_];
        if (Widget* const child = run.getChild(i))
            if (!run.resize(child, makeBox_(run, i, 0, length).size))
                return;
        total = saturatingAdd(total, i > 0 ? saturatingAdd(length, gap) : length);
    }
    int begin = 0;
    int end = 0;
    getAlign_(mainAxis_).calc(total, run.getRoom()[mainAxis_], begin, end);
    begin = saturatingAdd(run.getOrigin()[mainAxis_], begin);
    for (int i = 0; i < count; ++i) {
        if (Widget* const child = run.getChild(i))
            if (!run.move(child, makeBox_(run, i, begin, 0).position))
                return;
        // Its size may be another than it was given.
        begin = stepOver_(begin, run.getChild(i));
    }
}

void LineLayout::placeStretched_(LayoutRun const& run) {
    int const count = static_cast<int>(prefSizes.size());
    int const gaps = saturatingMultiply(count - 1, gap);
    shareOut_(run, std::max(saturatingSubtract(run.getRoom()[mainAxis_], gaps), 0));
    int begin = run.getOrigin()[mainAxis_];
    int const placed = placeKnown_(run, begin);
    if (placed < 0)
        return;
    std::size_t living = static_cast<std::size_t>(placed);
    for (int i = placed; i < count; ++i) {
        Widget* const child = run.getChild(i);
        if (child && living < shares_.size()) {
            Box const box = makeBox_(run, i, begin, shares_[living++].size);
            if (!run.resizeAndMove(child, box.size, box.position))
                return;
        }
        begin = stepOver_(begin, run.getChild(i));
    }
}

int LineLayout::placeKnown_(LayoutRun const& run, int& begin) {
    if (!sharesHold_ || !placesKnownPlainly_ || !knowsLasting_())
        return 0;
    return mainAxis_ == AxisHorz ? placeKnownAlong_<AxisHorz>(run, begin) : placeKnownAlong_<AxisVert>(run, begin);
}

template <LineLayout::Axis along>
int LineLayout::placeKnownAlong_(LayoutRun const& run, int& begin) {
    constexpr int across = 1 - along;
    Align const& align = getAlign_(across);
    std::uint64_t const stamp = MeasurePass::getStamp();
    int const count = static_cast<int>(knownChildren_.size());
    for (int i = 0; i < count; ++i) {
        KnownChild const& known = knownChildren_[static_cast<std::size_t>(i)];
        Widget& child = *known.widget;
        int from = 0;
        int to = 0;
        align.calc(known.wanted[across], run.getRoom()[across], from, to);
        Box box;
        box.position[along] = begin;
        box.position[across] = saturatingAdd(run.getOrigin()[across], from);
        box.size[along] = shares_[static_cast<std::size_t>(i)].size;
        box.size[across] = saturatingSubtract(to, from);
        if (!run.place(child, known.limits, box.size, box.position))
            return -1;
        // Whatever the host's callbacks change, a death included, is told to `MeasurePass`.
        bool const unchanged = stamp == MeasurePass::getStamp();
        if (!unchanged) {
            begin = stepOver_(begin, run.getChild(i));
            return i + 1;
        }
        begin = saturatingAdd(begin, saturatingAdd(gap, run.getPlainSize(child)[along]));
    }
    return count;
}

void LineLayout::shareOut_(LayoutRun const& run, int room) {
    bool const known = answersLast_();
    if (known && sharesHold_ && sharedRoom_ == room)
        return;
    shares_.clear();
    auto const add = [this](int least, int greatest) {
        FairShareItem item;
        item.min = least;
        item.max = greatest;
        shares_.push_back(item);
    };
    if (known) {
        for (KnownChild const& child : knownChildren_)
            add(child.limits.least[mainAxis_], child.greatest);
    } else {
        visitChildren(run.getContainer(), [&](int, Widget const& child) {
            int const least = child.getMinSize()[mainAxis_];
            add(least, child.calcMaxSize()[mainAxis_]);
        });
    }
    shareFairly(shares_, room);
    sharesHold_ = known;
    sharedRoom_ = room;
}

}  // namespace gui
