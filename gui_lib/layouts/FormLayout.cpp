#include "gui_lib/layouts/FormLayout.h"

#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/layouts/LayoutRun.h"

#include <algorithm>

namespace gui {

FormLayout::FormLayout(int newHorzGap, int newVertGap) : horzGap(newHorzGap), vertGap(newVertGap) {}

Layout* FormLayout::clone() const {
    auto* const copy = new FormLayout(horzGap, vertGap);
    copy->captionsAlign = captionsAlign;
    copy->fieldsAlign = fieldsAlign;
    return copy;
}

char const* FormLayout::getType() const { return "form"; }

// --- Settings ---

void FormLayout::setHorzGap(int gap) {
    horzGap = gap;
    changed_();
}

void FormLayout::setVertGap(int gap) {
    vertGap = gap;
    changed_();
}

void FormLayout::setCaptionsAlign(Align const& horz, Align const& vert) {
    captionsAlign = Align2(horz, vert);
    changed_();
}

void FormLayout::setFieldsAlign(Align const& horz, Align const& vert) {
    fieldsAlign = Align2(horz, vert);
    changed_();
}

// --- Size questions ---

int FormLayout::countRows_() const {
    Container const* const owner = getLiveContainer_();
    int const count = owner ? owner->getWidgetCount() : 0;
    return count / 2 + count % 2;
}

osg::Vec2i FormLayout::measureRow_(int row, osg::Vec2i (Widget::*question)() const, GapUse gapUse) const {
    auto const measure = [this, question](int index) {
        Container const* const owner = getLiveContainer_();
        Widget const* const child = owner ? owner->getWidget(index) : nullptr;
        return child ? (child->*question)() : osg::Vec2i(0, 0);
    };
    osg::Vec2i const caption = measure(2 * row);
    osg::Vec2i const field = measure(2 * row + 1);
    int const gap = gapUse == GapAlways || caption.x() > 0 ? horzGap : 0;
    return {saturatingAdd(saturatingAdd(caption.x(), gap), field.x()), std::max(caption.y(), field.y())};
}

void FormLayout::addGaps_(osg::Vec2i& size, int rows) const {
    if (size.y() >= 1)
        size.y() = saturatingAdd(size.y(), saturatingMultiply(rows - 1, vertGap));
}

osg::Vec2i FormLayout::getMinSize() const {
    int const rows = countRows_();
    osg::Vec2i result(0, 0);
    for (int row = 0; row < rows; ++row) {
        osg::Vec2i const least = measureRow_(row, &Widget::getMinSize, GapBehindCaption);
        result.set(std::max(result.x(), least.x()), saturatingAdd(result.y(), least.y()));
    }
    addGaps_(result, rows);
    return result;
}

osg::Vec2i FormLayout::getPrefSize() const {
    int const rows = countRows_();
    osg::Vec2i result(0, 0);
    for (int row = 0; row < rows; ++row) {
        osg::Vec2i const wanted = measureRow_(row, &Widget::getPrefSize, GapAlways);
        result.set(std::max(result.x(), wanted.x()), saturatingAdd(result.y(), wanted.y()));
    }
    if (rows > 0)
        result.y() = saturatingAdd(result.y(), saturatingMultiply(rows - 1, vertGap));
    return result;
}

osg::Vec2i FormLayout::getMaxSize() const {
    int const rows = countRows_();
    osg::Vec2i result(0, 0);
    bool wide = false;
    bool high = false;
    for (int row = 0; row < rows && !(wide && high); ++row) {
        osg::Vec2i const most = measureRow_(row, &Widget::getMaxSize, GapBehindCaption);
        wide = wide || most.x() == 0;
        high = high || most.y() == 0;
        result.set(wide ? 0 : std::max(result.x(), most.x()), high ? 0 : saturatingAdd(result.y(), most.y()));
    }
    addGaps_(result, rows);
    return result;
}

// --- Placing ---

void FormLayout::updateSize() {
    LayoutRun const run(*this);
    if (!run.getContainer())
        return;
    updatePrefSizes_();
    int const count = static_cast<int>(prefSizes.size());
    int widths[2] = {0, 0};
    for (int i = 0; i < count; ++i)
        widths[i % 2] = std::max(widths[i % 2], prefSizes[i].x());
    osg::Vec2i corner = run.getOrigin();
    int const fieldX = saturatingAdd(corner.x(), saturatingAdd(widths[0], horzGap));
    for (int i = 0; i < count; i += 2) {
        int const height = i + 1 < count ? std::max(prefSizes[i].y(), prefSizes[i + 1].y()) : prefSizes[i].y();
        if (!place_(run, i, captionsAlign, corner, osg::Vec2i(widths[0], height)))
            return;
        if (i + 1 < count && !place_(run, i + 1, fieldsAlign, osg::Vec2i(fieldX, corner.y()), {widths[1], height}))
            return;
        corner.y() = saturatingAdd(corner.y(), saturatingAdd(vertGap, height));
    }
}

bool FormLayout::place_(LayoutRun const& run, int index, Align2 const& align, osg::Vec2i const& corner,
                        osg::Vec2i const& cell) const {
    Widget* const child = run.getChild(index);
    if (!child)
        return true;
    osg::RectImpl<osg::Vec2i> const box = align.calc(prefSizes[index], cell);
    osg::Vec2i const size(saturatingSubtract(box.x2, box.x1), saturatingSubtract(box.y2, box.y1));
    return run.resizeAndMove(child, size, saturatingAdd(corner, osg::Vec2i(box.x1, box.y1)));
}

}  // namespace gui
