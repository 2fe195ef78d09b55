#include "gui_lib/widget/Widget.h"

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/base/SizeLimits.h"
#include "gui_lib/base/VirtualTable.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/layouts/MeasurePass.h"
#include "gui_lib/widget/AliveGuard.h"
#include "gui_lib/widget/CallbackTables.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/OriginScope.h"
#include "gui_lib/widget/WholeZoom.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/widget/WidgetWorkLists.h"

#include <algorithm>

namespace gui {

namespace {

/// The text that a text beginning with "$" stands for; null if it does not begin so or is unknown.
qor::basic_string<wchar_t> const* findLocalized(Widget::LocalizationMap const& map,
                                                qor::basic_string<wchar_t> const& text) {
    if (text.empty() || text[0] != L'$')
        return nullptr;
    auto const found = map.find(std::basic_string_view<wchar_t>(text).substr(1));
    return found == map.end() ? nullptr : &found->second;
}

/// Of Widget itself; the same whenever a construction begins.
VirtualTable widgetTable;

}  // namespace

// --- Life ---

unsigned Widget::learnOwnWays_(VirtualTable table) {
    unsigned ways = 0;
    if (table.sharesAll(widgetTable, &Widget::getTargetPosition_, &Widget::getPosition, &Widget::getSize,
                        &Widget::drawClipped_, &Widget::beginClip_, &Widget::endClip_, &Widget::getClipRect_,
                        &Widget::draw_, &Widget::drawFocusRect_, &Widget::makeClipped_, &Widget::makeBeginClip_,
                        &Widget::makeEndClip_, &Widget::make_, &Widget::makeFocusRect_))
        ways |= DrawsInOneGo;
    if (table.sharesAll(widgetTable, &Widget::getVisible, &Widget::drawModelView_, &Widget::makeModelView_))
        ways |= EntersDrawing;
    if (table.sharesAll(widgetTable, &Widget::getVisible, &Widget::parse, &Widget::parse_))
        ways |= ParsesNothing;
    return ways;
}

Widget::Widget() : handler(WidgetHandler::create(this)) {
    widgetTable = VirtualTable::of(*this);
    WidgetWorkLists::get().enterDirty(*this);
}

Widget::~Widget() {
    destroying = true;
    MeasurePass::forgetAll();
    WidgetHandler::release(handler);
    WidgetWorkLists::get().remove(*this);
    if (Container* const container = getParentContainer_())
        container->removeWidget_(this);
    delete skin;
    delete tooltipSkin;
    delete debugSkin;
}

void Widget::destroy(Widget* widget) {
    if (widget && !widget->destroying)
        widget->destroy_();
}

void Widget::destroy_() {
    beginDestruction_();
    AliveGuard const self(this);
    if (Container* const container = getParentContainer_())
        container->onWidgetDestroy(handler);
    if (WindowsManager* const manager = WindowsManager::get(getRootSurfaceId()))
        manager->releaseMouse(handler);
    // The "released" callbacks have run.
    if (self.alive())
        delete this;
}

unsigned long Widget::getRedrawCount() { return WidgetWorkLists::get().getRedrawCount(); }

void Widget::redrawAll() {
    // A size callback that blocks keeps its pass open over whole frames: each begins anew.
    MeasurePass::begin();
    WidgetWorkLists::get().redrawAll();
}

void Widget::doRedrawAll() { WidgetWorkLists::get().doRedrawAll(); }

void Widget::copyParams(Widget* target) const {
    if (!target)
        return;
    AliveGuard const self(this);
    AliveGuard const other(target);
    auto const bothLive = [&self, &other] { return self.alive() && other.alive(); };
    target->setName(getName());
    target->setText(getText());
    target->setPosition(getPosition());
    if (!bothLive())
        return;
    target->setSize(getSize());
    if (!bothLive())
        return;
    target->setVisible(visible);
    if (!bothLive())
        return;
    target->setEnabled(enabled);
    if (!bothLive())
        return;
    target->setZoom(getZoom());
    target->setOpacity(getOpacity());
    target->setDrawToTarget(drawToTarget);
    target->setTooltipText(getTooltipText());
    target->setResourceString(getResourceString());
}

Widget* Widget::clone() const {
    auto* const copy = new Widget;
    copyParams(copy);
    return copy;
}

// --- Identity and look ---

char const* Widget::getWidgetType() const { return "Widget"; }

int Widget::getRootSurfaceId() const {
    // A window without a parent answers with its own surface.
    Widget const* const root = getRoot();
    return root ? root->getRootSurfaceId() : 0;
}

skin::InteractiveState Widget::getInteractiveState() const {
    return getEnabled() ? skin::InteractiveStateReleased : skin::InteractiveStateDisabled;
}

skin::InteractiveState Widget::getInteractiveState_(bool hovered, bool pressed) const {
    if (!getEnabled())
        return skin::InteractiveStateDisabled;
    if (hovered)
        return pressed ? skin::InteractiveStatePressed : skin::InteractiveStateHover;
    return pressed ? skin::InteractiveStateHover : skin::InteractiveStateReleased;
}

int Widget::getInnerState() const { return 1; }

skin::Skin* Widget::getWidgetSkin() const { return skin; }

void Widget::setTooltipSkin(skin::Skin const* source) {
    if (source == tooltipSkin)
        return;
    // The copy is a store of parameters for the tooltip: it has no widget to lay out.
    skin::Skin* const copy = source ? new skin::Skin(nullptr, true) : nullptr;
    if (source)
        source->copyTo(copy);
    delete tooltipSkin;
    tooltipSkin = copy;
}

skin::Skin* Widget::getTooltipSkin() const { return tooltipSkin; }

void Widget::setShaderEffect(char const* name, skin::ShaderEffectParams const* params) {
    if (skin)
        skin->setShaderEffect(name, params);
}

// --- Tree ---

Widget* Widget::getParentWidget_() const { return WidgetHandler::get(parent); }

Container* Widget::getParentContainer_() const { return asContainer_(getParentWidget_()); }

void Widget::setParent(WidgetHandler* newParent) {
    if (newParent != parent)
        onParentChanged_(newParent);
}

void Widget::onParentChanged_(WidgetHandler* newParent) {
    onPlaceChanged_();
    parent = newParent;
    heldByStranger = newParent && containerLinks > 0;
    onPlaceChanged_();
    MeasurePass::forgetAll();
}

WidgetHandler* Widget::getParent() const { return parent; }

void Widget::resetParent() {
    onPlaceChanged_();
    parent = nullptr;
    MeasurePass::forgetAll();
}

void Widget::detachFromParent() {
    if (Container* const container = getParentContainer_())
        container->removeWidget_(this);
}

Widget* Widget::getRoot() const {
    Widget* root = nullptr;
    for (Widget* next = WidgetHandler::get(getParent()); next; next = WidgetHandler::get(next->getParent()))
        root = next;
    return root;
}

Widget* Widget::getFocusedWidget() { return focused ? this : nullptr; }

void Widget::setFocusedWidget_(WidgetHandler*) {}

// --- Text ---

void Widget::setText(std::basic_string_view<wchar_t> newText) {
    if (newText != text)
        onTextChanged_(newText);
}

void Widget::onTextChanged_(std::basic_string_view<wchar_t> newText) {
    text = newText;
    forgetSizes_();
    if (skin)
        skin->setTextChanged();
    setDirty(DirtySelf);
}

qor::basic_string<wchar_t> const& Widget::getText() const { return text; }

void Widget::setTooltipText(std::basic_string_view<wchar_t> newText) { tooltipText = newText; }

qor::basic_string<wchar_t> const& Widget::getTooltipText() const { return tooltipText; }

void Widget::setResourceString(std::basic_string_view<char> newString) { resourceString = newString; }

qor::basic_string<char> const& Widget::getResourceString() const { return resourceString; }

void Widget::setName(std::basic_string_view<wchar_t> newName) { name = newName; }

qor::basic_string<wchar_t> const& Widget::getName() const { return name; }

Widget* Widget::findWidgetByName(std::basic_string_view<wchar_t> wantedName) {
    return wantedName == getName() ? this : nullptr;
}

void Widget::localize(LocalizationMap const& map) {
    AliveGuard const self(this);
    if (qor::basic_string<wchar_t> const* const found = findLocalized(map, getText()))
        setText(*found);
    if (self.dead())
        return;
    if (qor::basic_string<wchar_t> const* const found = findLocalized(map, getTooltipText()))
        setTooltipText(*found);
}

// --- Geometry ---

void Widget::onPlaceChanged_() {
    if (Widget* const up = WidgetHandler::get(parent))
        ++up->childPlaceChanges;
    // What was measured with the place.
    if (MeasurePass::hasFleeting())
        forgetMeasures_();
}

inline bool Widget::isUnheard_() const {
    return !callbacks && VirtualTable::of(*this).sharesAll(widgetTable, &Widget::callWidgetCallbacks_);
}

void Widget::setPosition(osg::Vec2i const& newPosition) {
    if (newPosition != position)
        onPositionChanged_(newPosition);
}

void Widget::onPositionChanged_(osg::Vec2i const& newPosition) {
    static int const type = getWidgetCallbackType(positionCallbackName);
    position = newPosition;
    onPlaceChanged_();
    if (!isUnheard_())
        callWidgetCallbacks_(type);
}

osg::Vec2i Widget::getPosition() const { return position; }

void Widget::setSize(osg::Vec2i const& newSize) {
    MeasurePass const pass;
    osg::Vec2i const valid = validateSize_(newSize);
    if (valid != size)
        onSizeChanged_(valid);
}

void Widget::onSizeChanged_(osg::Vec2i const& newSize) {
    static int const type = getWidgetCallbackType(sizeCallbackName);
    size = newSize;
    onPlaceChanged_();
    if (skin)
        skin->setSizeChanged();
    setDirty(DirtySelf);
    setDirtySize(false);
    if (!isUnheard_())
        callWidgetCallbacks_(type);
}

osg::Vec2i Widget::getSize() const { return size; }

void Widget::updateSize() { updateSize_(); }

void Widget::updateSize_() { onSizeChanged_(getSize()); }

void Widget::forgetMeasures_() {
    if (!MeasurePass::isOpen())
        return;
    Widget* top = this;
    for (Widget* up = this; up; up = up->getParentWidget_()) {
        // A container may hold what does not know it as its parent.
        if (up->heldByStranger)
            return MeasurePass::forgetFleeting();
        if (up->keepsMeasures)
            static_cast<Container*>(up)->forgetLayoutAnswers_();
        top = up;
    }
    if (top->containerLinks > 0)
        MeasurePass::forgetFleeting();
}

void Widget::forgetSizes_() {
    MeasurePass::forgetFleeting();
    if (isContainer)
        static_cast<Container*>(this)->forgetLastingAnswers_();
    // Lasting answers build on those of the layouts below: above one that knows none, none are known.
    Container* up = getParentContainer_();
    while (up && up->forgetLastingAnswers_())
        up = up->getParentContainer_();
}

bool Widget::isPlacedPlainly_() const {
    return VirtualTable::of(*this).sharesAll(widgetTable, &Widget::setSize, &Widget::getSize, &Widget::validateSize_,
                                             &Widget::setPosition);
}

bool Widget::limitsLast_() const {
    return VirtualTable::of(*this).sharesAll(widgetTable, &Widget::getZoom, &Widget::setZoom,
                                             &Widget::onZoomChanged_) &&
           (!skin || skin->limitsLast_());
}

bool Widget::sizesLast_() const {
    if (isContainer)
        return static_cast<Container const*>(this)->sizesLast_();
    return VirtualTable::of(*this).sharesAll(widgetTable, &Widget::getMinSize, &Widget::getMaxSize,
                                             &Widget::calcMaxSize, &Widget::getPrefSize, &Widget::calcSize,
                                             &Widget::getText, &Widget::setText, &Widget::onTextChanged_) &&
           limitsLast_() && (!skin || skin->sizeLasts_());
}

osg::Vec2i Widget::validateSize_(osg::Vec2i const& wanted) const {
    osg::Vec2i const least = getMinSize();
    return SizeLimits{least, getMaxSize()}.makeValid(wanted);
}

osg::Vec2i Widget::clampSize_(osg::Vec2i const& wanted) const {
    osg::Vec2i const least = getMinSize();
    return SizeLimits{least, getMaxSize()}.clamp(wanted);
}

osg::Vec2i Widget::getMinSize() const {
    skin::Data const* const data = skin ? skin->getSkinData() : nullptr;
    return data ? scaleByWholeZoom(data->getMinSize(), getZoom()) : osg::Vec2i(0, 0);
}

osg::Vec2i Widget::getMaxSize() const {
    skin::Data const* const data = skin ? skin->getSkinData() : nullptr;
    return data ? scaleByWholeZoom(data->getMaxSize(), getZoom()) : osg::Vec2i(0, 0);
}

osg::Vec2i Widget::calcMaxSize() const { return getMaxSize(); }

osg::Vec2i Widget::calcSize() const { return skin ? skin->calcSize() : osg::Vec2i(0, 0); }

osg::Vec2i Widget::getPrefSize() const { return clampSize_(calcSize()); }

osg::RectImpl<osg::Vec2i> Widget::getClientRect() const { return getClientRect_(); }

osg::RectImpl<osg::Vec2i> Widget::getClientRect_() const {
    osg::Vec2i const own = getSize();
    skin::Data const* const data = skin ? skin->getSkinData() : nullptr;
    if (!data)
        return osg::RectImpl<osg::Vec2i>(osg::Vec2i(0, 0), scaleByWholeZoom(own, getZoom()));
    Insets const& insets = data->getInsets();
    return osg::RectImpl<osg::Vec2i>(insets.left, insets.top, saturatingSubtract(own.x(), insets.right),
                                     saturatingSubtract(own.y(), insets.bottom));
}

void Widget::setZoom(float newZoom) {
    if (newZoom > 0.0f && newZoom != zoom)
        onZoomChanged_(newZoom);
}

void Widget::onZoomChanged_(float newZoom) {
    zoom = newZoom;
    forgetSizes_();
    setDirty(DirtySelf);
}

float Widget::getZoom() const { return zoom; }

void Widget::setOpacity(float newOpacity) {
    if (!(newOpacity >= 0.0f && newOpacity <= 1.0f))
        return;
    // Between two values below 1 the picture already sits in a target, and nothing needs to be made again.
    if ((newOpacity == 1.0f) != (opacity == 1.0f))
        setDirty(DirtySelf);
    opacity = newOpacity;
    MeasurePass::forgetFleeting();
}

float Widget::getOpacity() const { return opacity; }

// --- State ---

void Widget::setTabOrder(int order) {
    if (getFocusable())
        tabOrder = order;
}

int Widget::getTabOrder() const { return tabOrder; }

void Widget::getTabOrderedWidgets(qor::vector<WidgetHandler*>& out) {
    if (getVisible(false) && getEnabled() && getFocusable() && getTabOrder() != 0)
        out.push_back(handler);
}

void Widget::setVisible(bool newVisible) {
    if (newVisible != visible)
        onVisibleChanged_(newVisible);
}

void Widget::onVisibleChanged_(bool newVisible) {
    visible = newVisible;
    MeasurePass::forgetFleeting();
    setDirty(DirtySelf);
}

bool Widget::getVisible(bool recursive) const {
    if (!recursive || !visible)
        return visible;
    Widget const* const up = getParentWidget_();
    return !up || up->getVisible(true);
}

void Widget::setFocused(bool newFocused) {
    if (newFocused != focused)
        onFocusChanged_(newFocused);
}

void Widget::onFocusChanged_(bool newFocused) {
    static int const type = getWidgetCallbackType(focusCallbackName);
    AliveGuard const self(this);
    focused = newFocused;
    MeasurePass::forgetFleeting();
    if (Widget* const up = getParentWidget_())
        up->setFocusedWidget_(newFocused ? handler : nullptr);
    if (self.dead())
        return;
    setDirty(DirtyChildren);
    callWidgetCallbacks_(type);
}

void Widget::setTabFocused() { setFocused(true); }

bool Widget::getFocused() const { return focused; }

bool Widget::getFocusable() const { return false; }

void Widget::setEnabled(bool newEnabled) {
    if (newEnabled != enabled)
        onEnableChanged_(newEnabled);
}

void Widget::onEnableChanged_(bool newEnabled) {
    enabled = newEnabled;
    MeasurePass::forgetFleeting();
    setDirty(DirtyTree);
}

bool Widget::getEnabled() const {
    if (!enabled)
        return false;
    Widget const* const up = getParentWidget_();
    return !up || up->getEnabled();
}

// --- Points ---

osg::Vec2i Widget::screenToWidget(osg::Vec2i const& point) const {
    osg::Vec2i result = saturatingSubtract(point, getPosition());
    if (osg::Vec2i const* const origin = OriginScope::find(OriginScope::Screen, parent))
        return saturatingSubtract(result, *origin);
    for (Widget const* up = getParentWidget_(); up; up = WidgetHandler::get(up->getParent()))
        result = saturatingSubtract(result, up->getPosition());
    return result;
}

osg::Vec2i Widget::widgetToScreen(osg::Vec2i const& point) const {
    osg::Vec2i result = saturatingAdd(point, getPosition());
    if (osg::Vec2i const* const origin = OriginScope::find(OriginScope::Screen, parent))
        return saturatingAdd(result, *origin);
    for (Widget const* up = getParentWidget_(); up; up = WidgetHandler::get(up->getParent()))
        result = saturatingAdd(result, up->getPosition());
    return result;
}

bool Widget::getScreenPointInside(osg::Vec2i const& point) const {
    osg::Vec2i const own = getSize();
    if (own.x() < 0 || own.y() < 0)
        return false;
    osg::Vec2i const inside = screenToWidget(point);
    return inside.x() >= 0 && inside.x() <= own.x() && inside.y() >= 0 && inside.y() <= own.y();
}

Widget* Widget::getWidgetAtScreenPoint(osg::Vec2i const& point) {
    return getVisible(false) && getScreenPointInside(point) ? this : nullptr;
}

Widget* Widget::findWidgetAtScreenPoint(osg::Vec2i const& point) {
    return getVisible(false) && getScreenPointInside(point) ? this : nullptr;
}

Widget* Widget::getTooltipWidget(osg::Vec2i const& point) { return getWidgetAtScreenPoint(point); }

bool Widget::getHasMouseInputAtScreenPoint(osg::Vec2i const&) const {
    return callbacks && !callbacks->mouseCallbacks.empty();
}

// --- Marks ---

void Widget::setDirty(DirtyFlag) {
    if (dirty)
        return;
    WidgetWorkLists::get().enterDirty(*this);
    Widget* const up = WidgetHandler::get(parent);
    bool const settled =
        up && MeasurePass::isOpen() && (up->settledStamp == MeasurePass::getStamp() || up->isSettled_());
    if (up && !settled)
        up->onChildBecomeDirty_(this);
    dirty = true;
}

bool Widget::isSettled_() const {
    std::uint64_t const stamp = MeasurePass::getStamp();
    if (settledStamp == stamp)
        return true;
    if (!VirtualTable::of(*this).sharesAll(widgetTable, &Widget::onChildBecomeDirty_, &Widget::getDrawToTarget,
                                           &Widget::getParent, &Widget::getPosition) ||
        getDrawToTarget())
        return false;
    Widget const* const up = getParentWidget_();
    if (up && !up->isSettled_())
        return false;
    settledStamp = stamp;
    return true;
}

Widget* Widget::getSettledRoot_() const {
    // Children of one parent ask one after the other.
    struct Answer {
        WidgetHandler const* parent = nullptr;
        std::uint64_t stamp = 0;
        Widget* root = nullptr;
    };
    static Answer last;
    std::uint64_t const stamp = MeasurePass::getStamp();
    if (last.parent == parent && last.stamp == stamp)
        return last.root;
    last = {parent, stamp, nullptr};
    for (Widget* up = WidgetHandler::get(parent); up; up = WidgetHandler::get(up->parent))
        last.root = up;
    return last.root;
}

osg::Vec2i Widget::screenToSettledWidget_(osg::Vec2i const& point) const {
    osg::Vec2i result = saturatingSubtract(point, position);
    for (Widget const* up = WidgetHandler::get(parent); up; up = WidgetHandler::get(up->parent))
        result = saturatingSubtract(result, up->position);
    return result;
}

void Widget::onChildBecomeDirty_(Widget* child) {
    if (getDrawToTarget()) {
        // The own redraw, which lays the children out, clears the mark at its end: it marks again then.
        if (inRedraw)
            childDirtiedInRedraw = true;
        else
            setDirty(DirtySelf);
    }
    if (Widget* const up = getParentWidget_())
        up->onChildBecomeDirty_(child);
}

void Widget::setDirtySize(bool newDirtySize) {
    dirtySize = newDirtySize;
    if (dirtySize)
        forgetSizes_();
}

bool Widget::getDirtySize() const { return dirtySize; }

void Widget::setDrawToTarget(bool newDrawToTarget) {
    drawToTarget = newDrawToTarget;
    MeasurePass::forgetFleeting();
    setDirty(DirtySelf);
}

bool Widget::getDrawToTarget() const {
    return (skin && skin->getShaderEffect()) || drawToTarget || opacity != 1.0f || zoom != 1.0f;
}

}  // namespace gui
