#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <osg/Vec2i>

#include "platform/qor/Api.h"

namespace gui {
class Widget;
class WidgetHandler;
}  // namespace gui

namespace testkit {

class Target;
struct TreeEntry;

/// A widget by the class word of `Widget::getWidgetType` (empty: any but a window's header, which shows the window's
/// text) and its text, UTF-8.
VORLEX_API Target byText(std::string_view type, std::string_view text);

/// What an action is about: a widget by its name path, by class and text, or itself; or a place on the screen. Made
/// from a path where one is expected: `driver.click("settings/ok")`.
/// Finding sees every live widget in the shown windows of all surfaces. Of several that fit, those that are visible
/// count; if that leaves more than one, or none fits, it fails and tells what there is.
/// Coordinates: GUI units.
class VORLEX_API Target {
public:
    /// Names from the outside in, separated by "/": the last one is the widget's, the others are those of ancestors,
    /// with any others in between.
    Target(char const* path);
    Target(std::string_view path);
    Target(std::string const& path);
    /// The widget may die before it is used; that is found out then.
    Target(gui::Widget& widget);
    /// Whatever is at this point of surface 0.
    Target(osg::Vec2i const& point);

    /// The same, only below ancestors of these names.
    Target in(std::string_view path) const;
    /// The same, to be hit at this very point, from the widget's left top corner.
    Target at(osg::Vec2i const& place) const;

    /// In words, for messages.
    std::string describe() const;

    /// The one widget that fits, or null with the reason in `error`. Null without an error for a point where nothing
    /// takes the mouse.
    gui::Widget* find(std::string& error) const;
    /// Where the widget must be hit; nothing leaves it open.
    std::optional<osg::Vec2i> const& getPlace() const { return place_; }
    /// The point of surface 0; nothing for a widget.
    std::optional<osg::Vec2i> const& getPoint() const { return point_; }

private:
    friend Target byText(std::string_view type, std::string_view text);
    Target() = default;

    struct Found;
    /// Adds the widget to what fits, or its name or text to what there is.
    void match_(std::vector<TreeEntry> const& tree, int index, std::vector<Found>& found,
                std::set<std::string>& known) const;

    /// Of ancestors, and with `byName_` the widget's at the end.
    std::vector<std::string> names_;
    bool byName_ = false;
    std::string type_;
    std::string text_;
    gui::WidgetHandler* handler_ = nullptr;
    std::optional<osg::Vec2i> point_;
    std::optional<osg::Vec2i> place_;
};

}  // namespace testkit
