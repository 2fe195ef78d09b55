#pragma once

#include <osg/Vec2i>

#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

namespace gui {
class Container;
class Widget;
class WidgetHandler;
class WindowBase;
}  // namespace gui

namespace host {

/// What the user has done to a window, noted before it is filled anew and put back afterwards: focus and scroll
/// positions by name path, place and size where they differ from those given, and visibility.
class KeptWindow {
public:
    /// `position` and `size` are what the window had before the user came. GUI units.
    KeptWindow(gui::WindowBase& window, osg::Vec2i const& position, osg::Vec2i const& size);

    /// To the window of the handler, while it lives: callbacks run.
    void restore(gui::WidgetHandler const* window) const;

private:
    /// By path: the names from the window down, or places where there are no names.
    struct Scroll {
        qor::wstring path;
        double horz = 0.0;
        double vert = 0.0;
    };

    void note_(gui::Container& container, qor::wstring const& path);

    osg::Vec2i position_;
    osg::Vec2i size_;
    bool moved_;
    bool resized_;
    bool visible_;
    qor::wstring focusPath_;
    qor::vector<Scroll> scrolls_;
};

}  // namespace host
