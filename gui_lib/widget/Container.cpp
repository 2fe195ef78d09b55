#include "gui_lib/widget/Container.h"

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/base/VirtualTable.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/layouts/Layout.h"
#include "gui_lib/layouts/LayoutHandler.h"
#include "gui_lib/layouts/MeasurePass.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/widget/WholeZoom.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "platform/qor/Log.h"

#include <algorithm>
#include <utility>

namespace gui {

namespace {

osg::Vec2i greater(osg::Vec2i const& a, osg::Vec2i const& b) {
    return osg::Vec2i(std::max(a.x(), b.x()), std::max(a.y(), b.y()));
}

/// Of Container itself; the same whenever a construction begins.
VirtualTable containerTable;

}  // namespace

// --- Life ---

Container::Container() {
    containerTable = VirtualTable::of(*this);
    isContainer = true;
}

Container::~Container() {
    beginDestruction_();
    if (Layout* const old = LayoutHandler::get(layout)) {
        old->setContainer(nullptr);
        Layout::destroy(old);
    }
    layout = nullptr;
    deleteWidgets_();
    keepsMeasures = false;
    isContainer = false;
}

void Container::copyParams(Container* target) const {
    if (!target)
        return;
    AliveGuard const self(this);
    AliveGuard const other(target);
    Widget::copyParams(target);
    if (self.dead() || other.dead())
        return;
    Layout const* const source = LayoutHandler::get(getLayout());
    if (Layout* const copy = source ? source->clone() : nullptr)
        target->setLayout(copy->handler());
}

Widget* Container::clone() const {
    auto* const copy = new Container;
    copyParams(copy);
    return copy;
}

char const* Container::getWidgetType() const { return "Container"; }

// --- Children ---

int Container::getWidgetCount() const { return getWidgetCount_(); }

int Container::getWidgetCount_() const { return static_cast<int>(widgets.size()); }

Widget* Container::getWidget(int index) const { return getWidget_(index); }

Widget* Container::getWidget_(int index) const {
    return index >= 0 && index < std::ssize(widgets) ? WidgetHandler::get(widgets[index]) : nullptr;
}

int Container::findChild_(Widget const* widget) const {
    if (!widget || widget->containerLinks == 0)
        return -1;
    int const count = static_cast<int>(widgets.size());
    int const hint = widget->childIndexHint;
    if (hint >= 0 && hint < count && widgets[hint] == widget->handler)
        return hint;
    auto const found = std::find(widgets.begin(), widgets.end(), widget->handler);
    return found == widgets.end() ? -1 : static_cast<int>(found - widgets.begin());
}

int Container::getWidgetIndex_(Widget const* widget) const { return findChild_(widget); }

bool Container::refuseAsChild_(Widget const* widget) const {
    for (Widget const* up = this; up; up = WidgetHandler::get(up->getParent())) {
        if (up != widget)
            continue;
        qor_logf("VORLEX", 16, "A widget cannot be inserted into itself or its own child; the call is ignored.\n");
        return true;
    }
    return false;
}

void Container::insertWidget_(Widget* widget, int index) {
    if (!widget || findChild_(widget) >= 0 || refuseAsChild_(widget))
        return;
    widget->detachFromParent();
    widget->setParent(handler);
    if (index < 0 || index >= std::ssize(widgets))
        index = static_cast<int>(widgets.size());
    widgets.insert(widgets.begin() + index, widget->handler);
    widget->childIndexHint = index;
    ++widget->containerLinks;
    updateLayout(false);
}

void Container::removeWidget_(Widget* widget) {
    int const index = findChild_(widget);
    if (index < 0)
        return;
    if (hoveredWidget == widget->handler)
        hoveredWidget = nullptr;
    if (focusedWidget == widget->handler)
        focusedWidget = nullptr;
    if (widget->getParent() == handler)
        widget->setParent(nullptr);
    widgets.erase(widgets.begin() + index);
    --widget->containerLinks;
    updateLayout(false);
}

void Container::onWidgetDestroy(WidgetHandler* child) {
    if (hoveredWidget == child)
        hoveredWidget = nullptr;
    if (focusedWidget == child)
        focusedWidget = nullptr;
}

void Container::resetWidgets_() {
    hoveredWidget = nullptr;
    focusedWidget = nullptr;
    qor::vector<WidgetHandler*> children;
    children.swap(widgets);
    for (WidgetHandler* const child : children) {
        Widget* const widget = WidgetHandler::get(child);
        if (!widget)
            continue;
        --widget->containerLinks;
        widget->resetParent();
    }
}

void Container::removeAllWidgets_() {
    resetWidgets_();
    updateLayout(false);
}

void Container::deleteWidgets_() {
    AliveGuard const self(this);
    // Callbacks of dying children may add some or end this: the walk holds a list of its own.
    while (self.alive() && !widgets.empty()) {
        hoveredWidget = nullptr;
        focusedWidget = nullptr;
        qor::vector<WidgetHandler*> children;
        children.swap(widgets);
        for (WidgetHandler* const child : children)
            if (Widget* const widget = WidgetHandler::get(child))
                --widget->containerLinks;
        for (WidgetHandler* const child : children) {
            if (Widget* const widget = WidgetHandler::get(child))
                widget->setParent(nullptr);
            Widget::destroy(WidgetHandler::get(child));
        }
    }
}

void Container::clear_() {
    AliveGuard const self(this);
    deleteWidgets_();
    if (self.alive())
        updateLayout(false);
}

// --- Layout ---

void Container::setLayout(LayoutHandler* newLayout) {
    if (newLayout == layout)
        return;
    if (Layout* const old = LayoutHandler::get(layout)) {
        old->setContainer(nullptr);
        Layout::destroy(old);
    }
    layout = newLayout;
    MeasurePass::forgetAll();
    Layout* const live = LayoutHandler::get(newLayout);
    if (!live)
        return;
    auto* const owner = dynamic_cast<Container*>(WidgetHandler::get(live->getContainer()));
    if (owner && owner != this && owner->layout == newLayout)
        owner->layout = nullptr;
    live->setContainer(handler);
    runLayout_();
}

LayoutHandler* Container::getLayout() const { return layout; }

void Container::updateLayout(bool now) {
    AliveGuard const self(this);
    MeasurePass::forgetAll();
    if (now)
        runLayout_();
    else
        layoutDirty = true;
    if (self.alive())
        setDirty(DirtySelf);
}

void Container::updateSize() {
    AliveGuard const self(this);
    MeasurePass const pass;
    runLayout_();
    for (std::size_t i = 0; self.alive() && i < widgets.size(); ++i)
        if (Widget* const child = WidgetHandler::get(widgets[i]))
            child->updateSize();
}

void Container::onSizeChanged_(osg::Vec2i const& newSize) {
    AliveGuard const self(this);
    MeasurePass const pass;
    Widget::onSizeChanged_(newSize);
    if (self.alive())
        runLayout_();
}

void Container::runLayout_() {
    MeasurePass const pass;
    if (Layout* const live = LayoutHandler::get(layout))
        live->updateSize();
}

void Container::forgetLayoutAnswers_() {
    if (Layout* const live = LayoutHandler::get(layout))
        live->forgetAnswers_();
}

bool Container::forgetLastingAnswers_() {
    Layout* const live = LayoutHandler::get(layout);
    return live && live->forgetLastingAnswers_();
}

// --- Size questions ---

Layout* Container::getAskedLayout_() const {
    Layout* const live = LayoutHandler::get(layout);
    if (live)
        keepsMeasures = true;
    return live;
}

osg::Vec2i Container::getMinSize() const {
    osg::Vec2i const own = Widget::getMinSize();
    Layout* const live = getAskedLayout_();
    return live ? greater(own, scaleByWholeZoom(live->ask_(Layout::AskMin), getZoom())) : own;
}

osg::Vec2i Container::getMaxSize() const {
    osg::Vec2i result = Widget::getMaxSize();
    Layout* const live = getAskedLayout_();
    if (!live)
        return result;
    osg::Vec2i const most = scaleByWholeZoom(live->ask_(Layout::AskMax), getZoom());
    if (result.x() < 1)
        result.x() = most.x();
    else if (most.x() > 0)
        result.x() = std::min(result.x(), most.x());
    if (result.y() == 0)
        result.y() = most.y();
    else if (most.y() > 0)
        result.y() = std::min(result.y(), most.y());
    return result;
}

osg::Vec2i Container::calcMaxSize() const {
    Layout* const live = getAskedLayout_();
    return live ? live->ask_(Layout::AskCalcMax) : getMaxSize();
}

osg::Vec2i Container::getPrefSize() const {
    // Its limits are asked for too, which ask every child again.
    MeasurePass const pass;
    if (Layout* const live = getAskedLayout_()) {
        osg::Vec2i wanted = live->ask_(Layout::AskPref);
        if (skin::Data const* const data = skin ? skin->getSkinData() : nullptr) {
            Insets const& insets = data->getInsets();
            wanted = saturatingAdd(wanted, getThickness(insets));
        }
        return clampSize_(greater(wanted, osg::Vec2i(0, 0)));
    }
    osg::Vec2i const natural = calcSize();
    return clampSize_(natural == osg::Vec2i(0, 0) ? getSize() : natural);
}

bool Container::showsAllChildren_() const {
    return VirtualTable::of(*this).sharesAll(containerTable, &Container::getWidgetCount, &Container::getWidgetCount_,
                                             &Container::getWidget, &Container::getWidget_);
}

bool Container::hoversPlainly_() const {
    return VirtualTable::of(*this).sharesAll(containerTable, &Container::onMouseCursorMove,
                                             &Container::getWidgetAtScreenPoint, &Container::getScreenPointInside,
                                             &Container::screenToWidget, &Container::getSize, &Container::getPosition,
                                             &Container::getParent, &Container::getRoot, &Container::getRootSurfaceId);
}

bool Container::sizesLast_() const {
    // Without a layout the present size counts.
    Layout* const live = LayoutHandler::get(layout);
    return live && live->answersLast_() && showsAllChildren_() &&
           VirtualTable::of(*this).sharesAll(containerTable, &Container::getMinSize, &Container::getMaxSize,
                                             &Container::calcMaxSize, &Container::getPrefSize) &&
           limitsLast_();
}

// --- Names and texts ---

Widget* Container::findWidgetByName(std::basic_string_view<wchar_t> wantedName) {
    if (wantedName == getName())
        return this;
    // Children win over the deeper namesakes of an earlier child.
    for (WidgetHandler* const handle : widgets) {
        Widget* const child = WidgetHandler::get(handle);
        if (child && child->getName() == wantedName)
            return child;
    }
    for (WidgetHandler* const handle : widgets) {
        Widget* const child = WidgetHandler::get(handle);
        if (Widget* const found = child ? child->findWidgetByName(wantedName) : nullptr)
            return found;
    }
    return nullptr;
}

void Container::localize(LocalizationMap const& map) {
    AliveGuard const self(this);
    Widget::localize(map);
    for (std::size_t i = 0; self.alive() && i < widgets.size(); ++i)
        if (Widget* const child = WidgetHandler::get(widgets[i]))
            child->localize(map);
}

// --- Passes ---

void Container::setDirty(DirtyFlag flag) {
    Widget::setDirty(flag);
    if (flag == DirtySelf)
        return;
    DirtyFlag const forChildren = flag == DirtyTree ? DirtyTree : DirtySelf;
    for (std::size_t i = 0; i < widgets.size(); ++i)
        if (Widget* const child = WidgetHandler::get(widgets[i]))
            child->setDirty(forChildren);
}

void Container::redraw_() {
    AliveGuard const self(this);
    if (layoutDirty) {
        runLayout_();
        if (self.dead())
            return;
        layoutDirty = false;
    }
    Widget::redraw_();
}

void Container::doRedrawChildren() {
    AliveGuard const self(this);
    for (std::size_t i = 0; self.alive() && i < widgets.size(); ++i) {
        WidgetHandler* const child = widgets[i];
        if (Widget* const widget = WidgetHandler::get(child))
            widget->doRedraw();
        if (Widget* const widget = WidgetHandler::get(child))
            widget->doRedrawChildren();
    }
}

void Container::redrawChildren() {
    AliveGuard const self(this);
    for (std::size_t i = 0; self.alive() && i < widgets.size(); ++i)
        if (Widget* const child = WidgetHandler::get(widgets[i]))
            child->redraw();
}

void Container::drawChildren() {
    for (std::size_t i = 0; i < widgets.size(); ++i)
        if (Widget* const child = WidgetHandler::get(widgets[i]))
            child->draw();
}

void Container::makeChildren(GraphicCommands* commands) {
    for (std::size_t i = 0; i < widgets.size(); ++i)
        if (Widget* const child = WidgetHandler::get(widgets[i]))
            child->make(commands);
}

void Container::parse_() { parseChildren_(); }

void Container::parseChildren_() {
    AliveGuard const self(this);
    for (std::size_t i = 0; self.alive() && i < widgets.size(); ++i) {
        Widget* const child = WidgetHandler::get(widgets[i]);
        if (child && !(child->getOwnWays_() & ParsesNothing))
            child->parse();
    }
}

void Container::makeParse_(GraphicCommands* commands) {
    AliveGuard const self(this);
    for (std::size_t i = 0; self.alive() && i < widgets.size(); ++i)
        if (Widget* const child = WidgetHandler::get(widgets[i]))
            child->makeParse(commands);
}

}  // namespace gui
