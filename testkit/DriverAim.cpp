// How a driver finds the point at which a widget takes the mouse.

#include <algorithm>
#include <cmath>

#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/widget/WidgetHandler.h"
#include "gui_lib/windows/WindowBase.h"
#include "gui_lib/windows/WindowHeader.h"
#include "host/HostApplication.h"
#include "platform/osg/RectImpl.h"
#include "testkit/Driver.h"
#include "testkit/TreeDump.h"

namespace testkit {

namespace {

/// Notches after which a list counts as endless, seconds that a list is given to move, and how often an action begins
/// anew because something came in between.
constexpr int mostNotches = 3000;
constexpr double moveTime = 0.1;
constexpr double longestMove = 2.0;
constexpr int mostAttempts = 4;

/// On a surface, units; the right and the bottom edge are outside.
struct Area {
    osg::Vec2i from;
    osg::Vec2i to;

    bool contains(osg::Vec2i const& point) const {
        return point.x() >= from.x() && point.x() < to.x() && point.y() >= from.y() && point.y() < to.y();
    }
    bool getEmpty() const { return from.x() >= to.x() || from.y() >= to.y(); }
    void clip(Area const& other) {
        from.set(std::max(from.x(), other.from.x()), std::max(from.y(), other.from.y()));
        to.set(std::min(to.x(), other.to.x()), std::min(to.y(), other.to.y()));
    }
};

gui::Widget* getParent(gui::Widget const& widget) { return gui::WidgetHandler::get(widget.getParent()); }

Area getArea(gui::Widget const& widget) {
    osg::Vec2i const corner = widget.widgetToScreen({0, 0});
    return {corner, corner + widget.getSize()};
}

/// What its ancestors and, on surface 0, the main window leave of a widget.
Area getVisibleArea(gui::Widget const& widget, host::HostApplication const& application) {
    Area area = getArea(widget);
    for (gui::Widget const* up = getParent(widget); up; up = getParent(*up))
        area.clip(getArea(*up));
    if (widget.getRootSurfaceId() == 0) {
        gui::GUI const& gui = *gui::GUI::get();
        osg::Vec2i const corner = osg::Vec2i(0, 0) - gui.getScreenPosition();
        float const factor = gui.getScaleFactor();
        area.clip({corner, corner + osg::Vec2i(static_cast<int>(std::ceil(application.getWidth() * factor)),
                                               static_cast<int>(std::ceil(application.getHeight() * factor)))});
    }
    return area;
}

/// The nearest ancestor that does not reach as far as the point.
gui::Widget* findClipper(gui::Widget const& widget, osg::Vec2i const& point) {
    gui::Widget* up = getParent(widget);
    while (up && getArea(*up).contains(point))
        up = getParent(*up);
    return up;
}

osg::Vec2i getSpot(gui::Widget const& widget, std::optional<osg::Vec2i> const& place) {
    osg::Vec2i const size = widget.getSize();
    return widget.widgetToScreen(place ? *place : osg::Vec2i(size.x() / 2, size.y() / 2));
}

bool isPartOf(gui::Widget const* part, gui::Widget const& whole) {
    while (part && part != &whole)
        part = getParent(*part);
    return part != nullptr;
}

gui::Widget& getWindow(gui::Widget& widget) { return widget.getRoot() ? *widget.getRoot() : widget; }

/// Nothing happens when this is clicked but that its window comes up: neither it nor what it lies in listens, and it is
/// no control that takes the focus.
bool isCalm(gui::Widget& widget, osg::Vec2i const& point) {
    if (widget.getHasMouseInputAtScreenPoint(point))
        return false;
    if (!dynamic_cast<gui::Container*>(&widget) && widget.getFocusable())
        return false;
    for (gui::Widget const* up = &widget; up; up = getParent(*up))
        if (up->gui::Widget::getHasMouseInputAtScreenPoint(point))
            return false;
    return true;
}

}  // namespace

// --- Finding a point ---

osg::Vec2i Driver::toScreen_(int surface, osg::Vec2i const& point) const {
    if (surface == 0)
        return point;
    auto const index = static_cast<std::size_t>(surface);
    if (index >= surfacePlaces_.size() || !surfacePlaces_[index])
        fail_("it is on surface " + std::to_string(surface) +
              "; give Driver::setSurfacePlace what says where that shows in the main window");
    return surfacePlaces_[index](point);
}

gui::Widget* Driver::getHit_(int surface, osg::Vec2i const& point) const {
    for (int id : {0, surface}) {
        osg::Vec2i const place = id == surface ? point : toScreen_(surface, point);
        gui::WindowsManager const& manager = *gui::WindowsManager::get(id);
        if (gui::Widget* const widget = manager.findWidgetAtScreenPoint(place))
            return widget;
        // A modal window takes what is beside it, too.
        if (gui::WindowBase* const window = manager.findWindowAtPoint(place))
            return window;
    }
    return nullptr;
}

std::optional<osg::Vec2i> Driver::findHit_(gui::Widget& widget, std::optional<osg::Vec2i> const& place,
                                           Accepts const& accepts) const {
    int const surface = widget.getRootSurfaceId();
    Area const area = getVisibleArea(widget, application_);
    osg::Vec2i const size = area.to - area.from;
    auto const takes = [&](osg::Vec2i const& wanted) -> std::optional<osg::Vec2i> {
        osg::Vec2i const point = surface == 0 ? reach_(wanted) : wanted;
        gui::Widget* const hit = area.contains(point) ? getHit_(surface, point) : nullptr;
        return isPartOf(hit, widget) && (!accepts || accepts(*hit, point)) ? std::optional(point) : std::nullopt;
    };
    if (place || area.getEmpty())
        return takes(getSpot(widget, place));
    // The middle, then ever closer places.
    for (int const count : {1, 9, 33})
        for (int y = 0; y < count; ++y)
            for (int x = 0; x < count; ++x)
                if (auto const point = takes(area.from + osg::Vec2i(size.x() * (2 * x + 1) / (2 * count),
                                                                    size.y() * (2 * y + 1) / (2 * count))))
                    return point;
    return std::nullopt;
}

gui::Widget& Driver::getUsable_(gui::WidgetHandler* handler) const {
    gui::Widget* const widget = gui::WidgetHandler::get(handler);
    if (!widget)
        fail_("the widget has died");
    for (gui::Widget const* up = widget; up; up = getParent(*up))
        if (!up->getVisible(false))
            fail_("it is hidden" + (up == widget ? std::string() : " with " + describe(*up)));
    if (widget->getSize().x() <= 0 || widget->getSize().y() <= 0)
        fail_("it has no area: " + describe(*widget));
    return *widget;
}

// --- Aiming ---

osg::Vec2i Driver::aim_(Target const& target) {
    if (target.getPoint())
        return *target.getPoint();
    gui::WidgetHandler* const handler = find(target).getHandler();
    std::optional<osg::Vec2i> const& place = target.getPlace();
    for (int attempt = 0;; ++attempt) {
        getUsable_(handler);
        scrollIntoView_(handler, place);
        gui::Widget& widget = getUsable_(handler);
        int const surface = widget.getRootSurfaceId();
        Area const area = getVisibleArea(widget, application_);
        osg::Vec2i const spot = getSpot(widget, place);
        if (place ? !area.contains(spot) : area.getEmpty()) {
            gui::Widget const* const clipper = findClipper(widget, spot);
            fail_(clipper ? "it is cut off by " + describe(*clipper) + ", and the wheel does not bring it in"
                          : std::string("it is outside of the main window"));
        }
        // While a button is down the mouse belongs to what was pressed.
        if (getButtonDown_())
            return toScreen_(
                surface,
                place ? spot : osg::Vec2i((area.from.x() + area.to.x()) / 2, (area.from.y() + area.to.y()) / 2));
        bool const window = dynamic_cast<gui::WindowBase*>(&widget) != nullptr;
        std::optional<osg::Vec2i> point = window ? findHit_(widget, place, isCalm) : std::nullopt;
        if (!point)
            point = findHit_(widget, place, nullptr);
        if (point)
            return toScreen_(surface, *point);
        if (attempt + 1 < mostAttempts && raiseWindowOf_(widget))
            continue;
        gui::Widget const* const cover = getHit_(surface, place ? spot : area.from + (area.to - area.from) / 2);
        fail_(cover ? "it is covered" : "no window takes the mouse there", cover);
    }
}

osg::Vec2i Driver::aimAndMove_(Target const& target) {
    gui::Widget const* hit = nullptr;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        osg::Vec2i const point = aim_(target);
        moveMouse_(point);
        if (target.getPoint() || getButtonDown_())
            return point;
        // What heard the mouse come may have moved, covered or ended it.
        gui::Widget const& widget = find(target);
        int const surface = widget.getRootSurfaceId();
        hit = getHit_(surface, gui::GUI::get()->getMousePosition(surface));
        if (isPartOf(hit, widget))
            return point;
    }
    fail_("it does not stay under the mouse", hit);
}

osg::Vec2i Driver::look_(Target const& target) const {
    if (target.getPoint())
        return *target.getPoint();
    gui::Widget& widget = find(target);
    if (auto const point = findHit_(widget, target.getPlace(), nullptr))
        return toScreen_(widget.getRootSurfaceId(), *point);
    fail_("the end of the way cannot be reached while its start is in view", &widget);
}

// --- Clearing the way ---

bool Driver::raiseWindowOf_(gui::Widget& widget) {
    gui::Widget& window = getWindow(widget);
    gui::Widget const* const cover = getHit_(widget.getRootSurfaceId(), getSpot(widget, std::nullopt));
    if (isPartOf(cover, window))
        return false;
    auto const* const base = dynamic_cast<gui::WindowBase*>(&window);
    gui::Widget* const header = base ? base->getHeader() : nullptr;
    for (gui::Widget* const part : {header, &window}) {
        std::optional<osg::Vec2i> const point = part ? findHit_(*part, std::nullopt, isCalm) : std::nullopt;
        if (!point)
            continue;
        int const surface = window.getRootSurfaceId();
        notes_ += "\n  on the way: clicked " + describe(*getHit_(surface, *point)) + " to raise its window";
        moveMouse_(toScreen_(surface, *point));
        clickHere_(gui::MouseButtonMain);
        return true;
    }
    return false;
}

void Driver::scrollIntoView_(gui::WidgetHandler* handler, std::optional<osg::Vec2i> const& place) {
    int turns = 0;
    int direction = 0;
    for (int notches = 0; notches < mostNotches && turns < 3; ++notches) {
        gui::Widget& widget = getUsable_(handler);
        osg::Vec2i const spot = getSpot(widget, place);
        Area const area = getVisibleArea(widget, application_);
        // What is partly in view from the start is near enough.
        if (notches == 0 && (place ? area.contains(spot) : !area.getEmpty()))
            return;
        gui::Widget* const clipper = findClipper(widget, spot);
        if (!clipper)
            return;
        osg::Vec2i const corner = getArea(*clipper).from;
        int const next = spot.x() < corner.x() || spot.y() < corner.y() ? 1 : -1;
        turns += next == -direction ? 1 : 0;
        direction = next;
        if (notches == 0)
            notes_ += "\n  on the way: turned the wheel over " + describe(*clipper);
        if (!turnWheelOver_(*clipper, handler, next))
            return;
    }
}

bool Driver::turnWheelOver_(gui::Widget& clipper, gui::WidgetHandler* moved, int notches) {
    gui::WidgetHandler* const over = clipper.getHandler();
    scrollIntoView_(over, std::nullopt);
    gui::Widget& area = getUsable_(over);
    // Best is a place where no other container could keep the wheel for itself.
    auto const around = [&](gui::Widget& hit, osg::Vec2i const& point) {
        gui::Widget const* const container = dynamic_cast<gui::Container*>(&hit) ? &hit : getParent(hit);
        return isPartOf(&getUsable_(moved), *container) && isCalm(hit, point);
    };
    std::optional<osg::Vec2i> point = findHit_(area, std::nullopt, around);
    if (!point)
        point = findHit_(area, std::nullopt, isCalm);
    if (!point)
        point = findHit_(area, std::nullopt, nullptr);
    if (!point && raiseWindowOf_(area))
        point = findHit_(getUsable_(over), std::nullopt, nullptr);
    if (!point)
        return false;
    osg::Vec2i const screen = toScreen_(getUsable_(over).getRootSurfaceId(), *point);
    if (screen != gui::GUI::get()->getMousePosition(0))
        moveMouse_(screen);
    auto const getPlace = [&] { return getSpot(getUsable_(moved), std::nullopt); };
    osg::Vec2i const before = getPlace();
    osg::Vec2i last = before;
    double rested = application_.getTime();
    pushWheel_(notches);
    // It may glide: until it rests.
    runUntil_(
        [&] {
            if (getPlace() != last)
                rested = application_.getTime();
            last = getPlace();
            return application_.getTime() - rested >= moveTime;
        },
        longestMove);
    return last != before;
}

}  // namespace testkit
