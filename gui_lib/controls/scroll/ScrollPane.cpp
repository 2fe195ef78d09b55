#include "gui_lib/controls/scroll/ScrollPane.h"

#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/controls/scroll/ScrollPaneBars.h"
#include "gui_lib/controls/scroll/ScrollPaneData.h"
#include "gui_lib/controls/scroll/ScrollPaneSkin.h"
#include "gui_lib/controls/scroll/ScrollPaneView.h"
#include "gui_lib/controls/scroll/ScrollPaneViewContainer.h"
#include "gui_lib/layouts/Layout.h"
#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/widget/AliveGuard.h"
#include "platform/qor/Truncate.h"

#include <algorithm>

namespace gui {

namespace {

double getValueOf(ScrollBar const* bar) { return bar && bar->getVisible(false) ? bar->getValue() : 0.0; }

/// Range and steps of a bar; null and a bar that is not needed get none. The bar tells the pane if its value changes.
struct BarNumbers {
    bool needed;
    int from;
    int to;
    int inView;
    double step;
    double pageStep;

    void give(ScrollBar* bar) const {
        if (!bar)
            return;
        AliveGuard const guard(bar);
        auto const set = [&guard](auto change) {
            if (guard.alive())
                change();
        };
        if (!needed) {
            set([&] { bar->setValue(0.0); });
            set([&] { bar->setRange(0.0, 0.0); });
            return;
        }
        set([&] { bar->setRange(from, to); });
        set([&] { bar->setThumbValue(inView); });
        set([&] { bar->setStep(step); });
        set([&] { bar->setPageStep(pageStep > 0.0 ? pageStep : inView); });
    }
};

}  // namespace

// --- Life ---

ScrollPane::ScrollPane() {
    view = new ScrollPaneView(*this);
    insertWidget_(view, -1);
    vertScrollBar = new ScrollPaneVertScrollBar(*this);
    insertWidget_(vertScrollBar, -1);
    horzScrollBar = new ScrollPaneHorzScrollBar(*this);
    insertWidget_(horzScrollBar, -1);
    skin = new skin::ScrollPaneSkin(this);
    skin->load("scrollPaneSkin");
}

ScrollPane::~ScrollPane() {
    beginDestruction_();
    view = nullptr;
    vertScrollBar = nullptr;
    horzScrollBar = nullptr;
    deleteWidgets_();
}

Widget* ScrollPane::clone() const {
    auto* const copy = new ScrollPane;
    skin->copyTo(copy->skin);
    copyParams(copy);
    return copy;
}

void ScrollPane::copyParams(ScrollPane* target) const {
    if (!target)
        return;
    AliveGuard const self(this);
    AliveGuard const other(target);
    Container::copyParams(target);
    auto const set = [&](auto change) {
        if (self.alive() && other.alive())
            change();
    };
    set([&] { target->setVertMouseWheel(vertMouseWheel); });
    set([&] { target->setHorzMouseWheel(horzMouseWheel); });
    set([&] { target->setVertScrollBarStep(vertStep); });
    set([&] { target->setVertScrollBarPageStep(vertPageStep); });
    set([&] { target->setHorzScrollBarStep(horzStep); });
    set([&] { target->setHorzScrollBarPageStep(horzPageStep); });
    for (int i = 0; self.alive() && other.alive() && i < getWidgetCount(); ++i)
        if (Widget const* const widget = getWidget(i))
            target->insertWidget(widget->clone(), -1);
    set([&] { target->setVertScrollValue(getVertScrollValue()); });
    set([&] { target->setHorzScrollValue(getHorzScrollValue()); });
    set([&] {
        Layout const* const source = LayoutHandler::get(getLayout());
        if (Layout* const copy = source ? source->clone() : nullptr)
            target->setLayout(copy->handler());
    });
}

char const* ScrollPane::getWidgetType() const { return "ScrollPane"; }

skin::ScrollPaneSkin* ScrollPane::getSkin() const { return dynamic_cast<skin::ScrollPaneSkin*>(skin); }

skin::ScrollPaneData const* ScrollPane::getPaneData_() const {
    skin::ScrollPaneSkin const* const own = getSkin();
    return own ? own->getSkinData() : nullptr;
}

ScrollPaneViewContainer* ScrollPane::getContainer_() const { return view ? view->getContainer() : nullptr; }

void ScrollPane::onWidgetDestroy(WidgetHandler* child) {
    forgetChild_(child);
    Container::onWidgetDestroy(child);
}

void ScrollPane::removeWidget_(Widget* widget) {
    if (widget && getWidgetIndex_(widget) >= 0)
        forgetChild_(widget->getHandler());
    Container::removeWidget_(widget);
}

void ScrollPane::forgetChild_(WidgetHandler const* child) {
    auto const forget = [child](auto*& part) {
        if (part && part->getHandler() == child)
            part = nullptr;
    };
    forget(view);
    forget(vertScrollBar);
    forget(horzScrollBar);
}

// --- Widgets ---

void ScrollPane::updateWidgetsBounds() {
    boundsNeedUpdate = true;
    setDirty(DirtySelf);
}

void ScrollPane::insertWidget(Widget* widget, int index) {
    AliveGuard const self(this);
    if (view)
        view->insertWidget(widget, index);
    if (self.alive())
        updateWidgetsBounds();
}

void ScrollPane::removeWidget(Widget* widget) {
    AliveGuard const self(this);
    if (view)
        view->removeWidget(widget);
    if (self.alive())
        updateWidgetsBounds();
}

void ScrollPane::removeAllWidgets() {
    if (view)
        view->removeAllWidgets();
    updateWidgetsBounds();
}

void ScrollPane::clear() {
    AliveGuard const self(this);
    if (view)
        view->clear();
    if (self.alive())
        updateWidgetsBounds();
}

int ScrollPane::getWidgetIndex(Widget* widget) const { return view ? view->getWidgetIndex(widget) : -1; }

void ScrollPane::setLayout(LayoutHandler* newLayout) {
    AliveGuard const self(this);
    if (view)
        view->setLayout(newLayout);
    if (self.alive())
        updateWidgetsBounds();
}

LayoutHandler* ScrollPane::getLayout() const { return view ? view->getLayout() : nullptr; }

int ScrollPane::getWidgetCount() const { return view ? view->getWidgetCount() : 0; }

Widget* ScrollPane::getWidget(int index) const { return view ? view->getWidget(index) : nullptr; }

// --- Bounds ---

void ScrollPane::onSizeChanged_(osg::Vec2i const& newSize) {
    AliveGuard const self(this);
    Container::onSizeChanged_(newSize);
    if (self.alive())
        updateWidgetsBounds();
}

void ScrollPane::redraw_() {
    AliveGuard const self(this);
    Container::redraw_();
    if (self.dead() || !boundsNeedUpdate)
        return;
    updateWidgetBounds_();
    if (self.alive())
        boundsNeedUpdate = false;
}

osg::RectImpl<osg::Vec2i> ScrollPane::measureWidgets_() const {
    osg::RectImpl<osg::Vec2i> box;
    for (int i = 0; i < getWidgetCount(); ++i) {
        Widget const* const widget = getWidget(i);
        if (!widget || !widget->getVisible(false))
            continue;
        osg::Vec2i const corner = widget->getPosition();
        box = box.united(osg::RectImpl<osg::Vec2i>(corner, saturatingAdd(corner, widget->getSize())));
    }
    osg::Vec2i const client = getClientRect_().size();
    return osg::RectImpl<osg::Vec2i>(std::min(box.x1, 0), std::min(box.y1, 0), std::max(box.x2, client.x()),
                                     std::max(box.y2, client.y()));
}

void ScrollPane::updateWidgetBounds_() {
    // Whatever is sized, moved or scrolled here may call back, and end the pane.
    AliveGuard const self(this);
    if (Layout* const layoutOfWidgets = LayoutHandler::get(getLayout()))
        layoutOfWidgets->updateSize();
    if (self.dead())
        return;
    osg::RectImpl<osg::Vec2i> const box = measureWidgets_();
    osg::Vec2i const client = getClientRect_().size();
    bool const horizontal = client.x() < box.width();
    bool const vertical = client.y() < box.height();
    updateWidgetsSizes_(horizontal, vertical);
    if (self.dead())
        return;
    osg::Vec2i const shown = view ? view->getSize() : osg::Vec2i();
    BarNumbers{horizontal, box.x1, box.x2, shown.x(), horzStep, horzPageStep}.give(horzScrollBar);
    if (self.dead())
        return;
    BarNumbers{vertical, box.y1, box.y2, shown.y(), vertStep, vertPageStep}.give(vertScrollBar);
    if (self.alive() && getContainer_())
        getContainer_()->setSize(box.size());
    if (self.alive() && (box.x1 < 0 || box.y1 < 0))
        moveWidgets_(osg::Vec2i(saturatingSubtract(0, box.x1), saturatingSubtract(0, box.y1)));
    if (self.alive())
        setViewOffset_();
}

void ScrollPane::moveWidgets_(osg::Vec2i const& distance) {
    AliveGuard const self(this);
    for (int i = 0; self.alive() && i < getWidgetCount(); ++i)
        if (Widget* const widget = getWidget(i))
            widget->setPosition(saturatingAdd(widget->getPosition(), distance));
}

void ScrollPane::updateWidgetsSizes_(bool horizontal, bool vertical) {
    AliveGuard const self(this);
    osg::RectImpl<osg::Vec2i> const rect = getClientRect_();
    skin::ScrollPaneData const* const data = getPaneData_();
    int const width = data ? data->getVertScrollBarWidth() : 0;
    int const height = data ? data->getHorzScrollBarHeight() : 0;
    osg::Vec2i const taken(vertical ? width : 0, horizontal ? height : 0);
    osg::Vec2i const left = saturatingSubtract(rect.size(), taken);
    // Bars stand with their far edge at the rectangle's.
    auto const place = [&](Widget* bar, bool needed, osg::Vec2i const& size, int axis) {
        if (!bar || self.dead())
            return;
        AliveGuard const guard(bar);
        bar->setVisible(needed);
        if (guard.dead() || !needed)
            return;
        bar->setSize(size);
        if (guard.dead())
            return;
        osg::Vec2i corner = rect.leftTop();
        corner[axis] = saturatingSubtract(rect.rightBottom()[axis], bar->getSize()[axis]);
        bar->setPosition(corner);
    };
    place(horzScrollBar, horizontal, osg::Vec2i(left.x(), height), 1);
    if (self.alive())
        place(vertScrollBar, vertical, osg::Vec2i(width, left.y()), 0);
    if (self.alive() && view)
        view->setSize(left);
    if (self.alive() && view)
        view->setPosition(rect.leftTop());
}

// --- Scrolling ---

void ScrollPane::setViewOffset_() {
    auto const getOffset = [](ScrollBar const* bar) {
        return saturatingSubtract(0, qor::truncateToInt(getValueOf(bar)));
    };
    if (ScrollPaneViewContainer* const inner = getContainer_())
        inner->setPosition(osg::Vec2i(getOffset(horzScrollBar), getOffset(vertScrollBar)));
}

void ScrollPane::onScrolled_() {
    static int const type = getWidgetCallbackType(changeScrollPaneCallbackName);
    AliveGuard const self(this);
    setViewOffset_();
    if (self.alive())
        callWidgetCallbacks_(type);
}

void ScrollPane::onVertScrollBarChange_() { onScrolled_(); }

void ScrollPane::onHorzScrollBarChange_() { onScrolled_(); }

double ScrollPane::getVertScrollValue() const { return getValueOf(vertScrollBar); }

void ScrollPane::setVertScrollValue(double newValue) {
    AliveGuard const self(this);
    if (vertScrollBar)
        vertScrollBar->setValue(newValue);
    if (self.alive())
        setViewOffset_();
}

double ScrollPane::getHorzScrollValue() const { return getValueOf(horzScrollBar); }

void ScrollPane::setHorzScrollValue(double newValue) {
    AliveGuard const self(this);
    if (horzScrollBar)
        horzScrollBar->setValue(newValue);
    if (self.alive())
        setViewOffset_();
}

void ScrollPane::getVertScrollRange(double& minimum, double& maximum) const {
    if (vertScrollBar)
        vertScrollBar->getRange(minimum, maximum);
}

void ScrollPane::getHorzScrollRange(double& minimum, double& maximum) const {
    if (horzScrollBar)
        horzScrollBar->getRange(minimum, maximum);
}

void ScrollPane::setVertScrollBarStep(double newStep) {
    vertStep = newStep;
    if (vertScrollBar)
        vertScrollBar->setStep(newStep);
}

void ScrollPane::setHorzScrollBarStep(double newStep) {
    horzStep = newStep;
    if (horzScrollBar)
        horzScrollBar->setStep(newStep);
}

void ScrollPane::setVertScrollBarPageStep(double newPageStep) {
    vertPageStep = newPageStep;
    if (vertScrollBar && view)
        vertScrollBar->setPageStep(newPageStep > 0.0 ? newPageStep : view->getSize().y());
}

void ScrollPane::setHorzScrollBarPageStep(double newPageStep) {
    horzPageStep = newPageStep;
    if (horzScrollBar && view)
        horzScrollBar->setPageStep(newPageStep > 0.0 ? newPageStep : view->getSize().x());
}

// --- Mouse ---

bool ScrollPane::turnBar_(ScrollBar* bar, int delta) {
    if (!bar)
        return false;
    AliveGuard const guard(bar);
    skin::ScrollPaneData const* const data = getPaneData_();
    int const old = qor::truncateToInt(bar->getValue());
    double const least = data ? data->getPixelsPerWheelClick() : 0;
    bar->setValue(old - delta * std::max(bar->getStep(), least));
    return guard.alive() && bar->getVisible(false) && bar->getValue() != old;
}

bool ScrollPane::onMouseWheel(osg::Vec2i const& point, int delta) {
    AliveGuard const self(this);
    if (Container::onMouseWheel(point, delta))
        return true;
    bool moved = self.alive() && vertMouseWheel && turnBar_(vertScrollBar, delta);
    if (self.alive() && !moved && horzMouseWheel)
        moved = turnBar_(horzScrollBar, delta);
    if (self.alive() && moved)
        onScrolled_();
    return moved;
}

bool ScrollPane::getGenerateMouseMoveCallbacks(osg::Vec2i const& point) {
    return view && view->getScreenPointInside(point);
}

Widget* ScrollPane::findWidgetAtScreenPoint(osg::Vec2i const& point) {
    Widget* const found = Container::findWidgetAtScreenPoint(point);
    return found && found == view ? this : found;
}

bool ScrollPane::getHasMouseInputAtScreenPoint(osg::Vec2i const& point) const {
    Widget const* const found = const_cast<ScrollPane*>(this)->findWidgetAtScreenPoint(point);
    if (found == this)
        return Widget::getHasMouseInputAtScreenPoint(point);
    return found && found->getHasMouseInputAtScreenPoint(point);
}

}  // namespace gui
