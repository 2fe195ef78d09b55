#include "gui_lib/controls/scroll/ScrollBar.h"

#include "gui_lib/base/Align.h"
#include "gui_lib/base/SaturatingMath.h"
#include "gui_lib/controls/buttons/ButtonSkin.h"
#include "gui_lib/controls/scroll/ScrollBarButton.h"
#include "gui_lib/controls/scroll/ScrollBarData.h"
#include "gui_lib/controls/scroll/ScrollBarSkin.h"
#include "gui_lib/controls/scroll/ScrollBarThumb.h"
#include "gui_lib/widget/AliveGuard.h"
#include "platform/qor/Truncate.h"

#include <algorithm>
#include <utility>

namespace gui {

// --- Life ---

ScrollBar::ScrollBar(Axis newAxis) : axis_(newAxis), across_(newAxis == Horz ? Vert : Horz) {}

ScrollBar::~ScrollBar() {
    beginDestruction_();
    thumb = nullptr;
    decreaseButton = increaseButton = nullptr;
    // While the skin that the parts borrow from is there.
    deleteWidgets_();
}

void ScrollBar::dress_(char const* skinName) {
    skin = new skin::ScrollBarSkin(this);
    if (skinName)
        skin->load(skinName);
    createWidgets_();
}

Widget* ScrollBar::dressCopy_(ScrollBar* copy) const {
    copy->skin = new skin::ScrollBarSkin(copy);
    if (skin)
        skin->copyTo(copy->skin);
    copy->createWidgets_();
    copyParams(copy);
    return copy;
}

void ScrollBar::copyParams(ScrollBar* target) const {
    if (!target)
        return;
    AliveGuard const self(this);
    AliveGuard const other(target);
    Container::copyParams(target);
    auto const set = [&](auto change) {
        if (self.alive() && other.alive())
            change();
    };
    set([&] { target->setValue(value); });
    set([&] { target->setThumbValue(thumbValue); });
    set([&] { target->setStep(step); });
    set([&] { target->setPageStep(pageStep); });
    set([&] { target->setRange(rangeMinimum, rangeMaximum); });
}

skin::ScrollBarSkin* ScrollBar::getSkin() const { return dynamic_cast<skin::ScrollBarSkin*>(skin); }

// --- Parts ---

void ScrollBar::createWidgets_() {
    createThumb_();
    if (hasButtons)
        createButtons_();
}

void ScrollBar::createThumb_() {
    skin::ScrollBarSkin const* const own = getSkin();
    thumb = new ScrollBarThumb(*this, own ? own->getThumbSkin() : nullptr);
    insertWidget_(thumb, -1);
}

void ScrollBar::createButtons_() {
    skin::ScrollBarSkin const* const own = getSkin();
    decreaseButton = new ScrollBarDecreaseButton(*this, own ? own->getDecreaseButtonSkin() : nullptr);
    insertWidget_(decreaseButton, -1);
    increaseButton = new ScrollBarIncreaseButton(*this, own ? own->getIncreaseButtonSkin() : nullptr);
    insertWidget_(increaseButton, -1);
}

void ScrollBar::deleteButtons_() {
    AliveGuard const self(this);
    Widget::destroy(decreaseButton);
    if (self.alive())
        Widget::destroy(increaseButton);
}

void ScrollBar::setHasButtons_(bool newHasButtons) {
    if (newHasButtons == hasButtons)
        return;
    hasButtons = newHasButtons;
    if (newHasButtons)
        createButtons_();
    else
        deleteButtons_();
}

void ScrollBar::onWidgetDestroy(WidgetHandler* child) {
    forgetChild_(child);
    Container::onWidgetDestroy(child);
}

void ScrollBar::removeWidget_(Widget* widget) {
    if (widget && getWidgetIndex_(widget) >= 0)
        forgetChild_(widget->getHandler());
    Container::removeWidget_(widget);
}

void ScrollBar::forgetChild_(WidgetHandler const* child) {
    // One that lives on elsewhere may outlive the skin that it has borrowed.
    auto const forget = [child](auto*& part) {
        if (!part || part->getHandler() != child)
            return;
        if (WidgetHandler::get(child))
            part->returnSkin();
        part = nullptr;
    };
    forget(thumb);
    forget(decreaseButton);
    forget(increaseButton);
}

// --- Numbers: what is placed may call back, and end the bar ---

void ScrollBar::changeValue_(double newValue) {
    AliveGuard const self(this);
    double const valid = validateValue_(newValue);
    if (!differs_(valid, value))
        return;
    onValueChanged_(valid);
    if (self.alive())
        onChange_();
}

void ScrollBar::onValueChanged_(double newValue) {
    ScrollBarBase::onValueChanged_(newValue);
    updateThumbPosition_();
}

void ScrollBar::onRangeChanged_(double newMinimum, double newMaximum) {
    AliveGuard const self(this);
    ScrollBarBase::onRangeChanged_(newMinimum, newMaximum);
    if (self.alive())
        setValue(value);
    if (self.alive())
        updateThumbSize_();
    if (self.alive())
        updateThumbPosition_();
}

void ScrollBar::setThumbValue(double newThumbValue) {
    AliveGuard const self(this);
    double const valid = validateThumbValue_(newThumbValue);
    if (!differs_(valid, thumbValue))
        return;
    onThumbValueChanged_(valid);
    if (self.alive())
        changeValue_(value);
}

void ScrollBar::onThumbValueChanged_(double newThumbValue) {
    AliveGuard const self(this);
    ScrollBarBase::onThumbValueChanged_(newThumbValue);
    updateThumbSize_();
    if (self.alive())
        updateThumbPosition_();
}

// --- Places ---

int ScrollBar::getButtonSize_(ScrollBarButton const* button) const { return button ? button->getSize()[axis_] : 0; }

int ScrollBar::getDecreaseButtonSize_() const { return getButtonSize_(decreaseButton); }

int ScrollBar::getIncreaseButtonSize_() const { return getButtonSize_(increaseButton); }

ScrollBar::Track ScrollBar::getTrack_() const {
    osg::RectImpl<osg::Vec2i> const rect = getClientRect_();
    int const before = getDecreaseButtonSize_();
    Track track;
    track.start = saturatingAdd(rect.leftTop()[axis_], before);
    track.length = saturatingSubtract(saturatingSubtract(rect.size()[axis_], before), getIncreaseButtonSize_());
    track.travel = saturatingSubtract(track.length, thumb ? thumb->getSize()[axis_] : 0);
    track.span = std::max(rangeMaximum - rangeMinimum - thumbValue, 0.0);
    return track;
}

int ScrollBar::getOffset_(Track const& track, double ofValue) const {
    return track.span == 0.0 ? 0 : qor::truncateToInt((ofValue - rangeMinimum) * track.travel / track.span);
}

void ScrollBar::updateThumbSize_() {
    if (!thumb)
        return;
    int const length = getTrack_().length;
    double const range = rangeMaximum - rangeMinimum;
    osg::Vec2i size = getClientRect_().size();
    // A range without width is all in view.
    size[axis_] = range > 0.0 ? qor::truncateToInt(length * thumbValue / range) : length;
    // Raised to the thumb's least size.
    thumb->setSize(size);
}

void ScrollBar::updateThumbPosition_() {
    Track const track = getTrack_();
    placeAlong_(thumb, saturatingAdd(track.start, getOffset_(track, value)));
}

void ScrollBar::placeAlong_(Widget* part, int along) {
    if (!part)
        return;
    osg::Vec2i place = part->getPosition();
    place[axis_] = along;
    part->setPosition(place);
}

void ScrollBar::placeAcross_(Widget* part, Align const& align) {
    if (!part)
        return;
    osg::RectImpl<osg::Vec2i> const rect = getClientRect_();
    osg::Vec2i place = part->getPosition();
    int from = 0;
    int to = 0;
    align.calc(part->getSize()[across_], rect.size()[across_], from, to);
    place[across_] = saturatingAdd(rect.leftTop()[across_], from);
    part->setPosition(place);
}

Align ScrollBar::getAlign_(Align const& (skin::ScrollBarData::*getter)() const) const {
    skin::ScrollBarSkin const* const own = getSkin();
    skin::ScrollBarData const* const data = own ? own->getSkinData() : nullptr;
    return data ? (data->*getter)() : Align(Align::Center, 0);
}

void ScrollBar::alignWidgets_() {
    // Each of these calls back through what it places.
    std::pair<ScrollBarButton * ScrollBar::*, Align const& (skin::ScrollBarData::*)() const> const buttons[] = {
        {&ScrollBar::decreaseButton, &skin::ScrollBarData::getDecreaseButtonAlign},
        {&ScrollBar::increaseButton, &skin::ScrollBarData::getIncreaseButtonAlign}};
    AliveGuard const self(this);
    for (auto const& [button, align] : buttons) {
        int const breadth = getClientRect_().size()[across_];
        if (this->*button)
            (this->*button)->setSize(osg::Vec2i(breadth, breadth));
        if (self.dead())
            return;
        osg::RectImpl<osg::Vec2i> const rect = getClientRect_();
        bool const atEnd = button == &ScrollBar::increaseButton;
        placeAlong_(this->*button, atEnd ? saturatingSubtract(rect.rightBottom()[axis_], getIncreaseButtonSize_())
                                         : rect.leftTop()[axis_]);
        if (self.alive())
            placeAcross_(this->*button, getAlign_(align));
        if (self.dead())
            return;
    }
    updateThumbSize_();
    if (self.alive())
        placeAcross_(thumb, getAlign_(&skin::ScrollBarData::getThumbAlign));
    if (self.alive())
        updateThumbPosition_();
}

void ScrollBar::onSizeChanged_(osg::Vec2i const& newSize) {
    AliveGuard const self(this);
    Container::onSizeChanged_(newSize);
    if (self.dead())
        return;
    skin::ScrollBarSkin const* const own = getSkin();
    if (skin::ScrollBarData const* const data = own ? own->getSkinData() : nullptr)
        setHasButtons_(data->getHasButtons());
    if (self.alive())
        alignWidgets_();
}

// --- Mouse ---

Widget* ScrollBar::getFocusedWidget() { return Widget::getFocusedWidget(); }

Widget* ScrollBar::findWidgetAtScreenPoint(osg::Vec2i const& point) { return Widget::findWidgetAtScreenPoint(point); }

bool ScrollBar::getHasMouseInputAtScreenPoint(osg::Vec2i const&) const { return true; }

bool ScrollBar::getPointInsideWidgets_(osg::Vec2i const& point) const {
    auto const hits = [&point](Widget const* part) { return part && part->getScreenPointInside(point); };
    return hits(thumb) || hits(decreaseButton) || hits(increaseButton);
}

void ScrollBar::onMouseDown(osg::Vec2i const& point, MouseButton button) {
    if (button == MouseButtonMain && thumb && !getPointInsideWidgets_(point)) {
        int const from = widgetToScreen(thumb->getPosition())[axis_];
        if (point[axis_] < from) {
            changeValue_(value - pageStep);
            return;
        }
        if (point[axis_] > saturatingAdd(from, thumb->getSize()[axis_])) {
            changeValue_(pageStep + value);
            return;
        }
    }
    Container::onMouseDown(point, button);
}

void ScrollBar::onMouseDoubleClick(osg::Vec2i const& point, MouseButton button) { onMouseDown(point, button); }

void ScrollBar::dragThumb_(osg::Vec2i const& delta) {
    Track track = getTrack_();
    if (!thumb || track.travel < 1)
        return;
    AliveGuard const self(this);
    double const moved = track.span == 0.0 ? 0.0 : double(delta[axis_]) / track.travel * track.span;
    thumb->setValue(thumb->getValue() + moved);
    changeValue_(thumb->getValue());
    if (self.dead() || !thumb)
        return;
    track = getTrack_();
    int const offset = std::clamp(getOffset_(track, thumb->getValue()), 0, std::max(track.travel, 0));
    placeAlong_(thumb, saturatingAdd(track.start, offset));
}

void ScrollBar::onThumbPressed_() {
    static int const type = getWidgetCallbackType(thumbPressedCallbackName);
    callWidgetCallbacks_(type);
}

void ScrollBar::onThumbReleased_() {
    static int const type = getWidgetCallbackType(thumbReleasedCallbackName);
    callWidgetCallbacks_(type);
}

}  // namespace gui
