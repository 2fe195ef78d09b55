#include "gui_lib/layouts/AnchorLayout.h"

#include "gui_lib/Skin/luautil.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/layouts/LayoutRun.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "platform/qor/Truncate.h"

namespace gui {

namespace {

double calcScale(int now, int base) { return base > 0 && base != now ? static_cast<double>(now) / base : 1.0; }

}  // namespace

AnchorLayout::AnchorLayout() = default;

Layout* AnchorLayout::clone() const {
    auto* const copy = new AnchorLayout;
    copy->anchorInfos = anchorInfos;
    return copy;
}

char const* AnchorLayout::getType() const { return "anchor"; }

void AnchorLayout::setContainer(WidgetHandler* newContainer) {
    Layout::setContainer(newContainer);
    if (Container const* const owner = getLiveContainer_())
        baseSize = getClientSize(*owner);
}

// --- Anchors ---

void AnchorLayout::insertAnchorInfo(AnchorInfo const& info, int index) {
    anchorInfos.insert(isValid_(index) ? anchorInfos.begin() + index : anchorInfos.end(), info);
    updateLayoutLater_();
}

void AnchorLayout::removeAnchorInfo(int index) {
    if (isValid_(index))
        anchorInfos.erase(anchorInfos.begin() + index);
    updateLayoutLater_();
}

void AnchorLayout::setAnchorInfo(AnchorInfo const& info, int index) {
    if (isValid_(index)) {
        info.initialized = false;
        anchorInfos[index] = info;
    }
    updateLayoutLater_();
}

AnchorLayout::AnchorInfo* AnchorLayout::getAnchorInfo(int index) {
    return isValid_(index) ? &anchorInfos[index] : nullptr;
}

int AnchorLayout::getAnchorInfoCount() const { return static_cast<int>(anchorInfos.size()); }

void AnchorLayout::updateLayoutLater_() {
    if (Container* const owner = getLiveContainer_())
        owner->updateLayout(false);
}

// --- Placing ---

int AnchorLayout::placeEdge_(Align const& anchor, int edge, int centered, int axis) const {
    switch (anchor.type) {
        case Align::Min:
            return saturatingAdd(edge, anchor.offset);
        case Align::Center:
            return saturatingAdd(centered, anchor.offset);
        case Align::Max:
            return saturate(std::int64_t(edge) + anchor.offset - baseSize[axis] + currentSize[axis]);
        case Align::Stretch:
            return saturatingAdd(qor::truncateToInt(edge * (axis == 0 ? scaleX : scaleY)), anchor.offset);
    }
    return edge;
}

void AnchorLayout::updateSize() {
    LayoutRun const run(*this);
    Container const* const owner = run.getContainer();
    if (!owner)
        return;
    currentSize = run.getRoom();
    if (baseSize == osg::Vec2i(0, 0))
        baseSize = currentSize;
    scaleX = calcScale(currentSize.x(), baseSize.x());
    scaleY = calcScale(currentSize.y(), baseSize.y());
    int const count = owner->getWidgetCount();
    for (int i = 0; i < count; ++i) {
        Widget* const child = run.getChild(i);
        AnchorInfo* const info = child ? getAnchorInfo(i) : nullptr;
        if (!info)
            continue;
        if (!info->initialized) {
            info->size = child->getSize();
            info->position = child->getPosition();
            info->initialized = true;
        }
        osg::Vec2i from;
        osg::Vec2i to;
        for (int axis = 0; axis < 2; ++axis) {
            int const begin = info->position[axis];
            int const end = saturatingAdd(begin, info->size[axis]);
            std::int64_t const room = currentSize[axis];
            Align const& nearAnchor = axis == 0 ? info->left : info->top;
            Align const& farAnchor = axis == 0 ? info->right : info->bottom;
            from[axis] = placeEdge_(nearAnchor, begin, saturate((room - info->size[axis]) / 2), axis);
            to[axis] = placeEdge_(farAnchor, end, saturate((room + info->size[axis]) / 2), axis);
        }
        if (!run.moveAndResize(child, from, saturatingSubtract(to, from)))
            return;
    }
}

}  // namespace gui

namespace luautil {

template <>
bool getValue<gui::AnchorLayout::AnchorInfo>(lua_State* L, int index, gui::AnchorLayout::AnchorInfo& value) {
    TableScope const table(L, index);
    if (!table.onTable())
        return false;
    getValue(L, "left", value.left);
    getValue(L, "top", value.top);
    getValue(L, "right", value.right);
    getValue(L, "bottom", value.bottom);
    return true;
}

template <>
void setValue<gui::AnchorLayout::AnchorInfo>(lua_State* L, gui::AnchorLayout::AnchorInfo const& value) {
    pushTable(L);
    setValue(L, "left", value.left);
    setValue(L, "top", value.top);
    setValue(L, "right", value.right);
    setValue(L, "bottom", value.bottom);
}

}  // namespace luautil
