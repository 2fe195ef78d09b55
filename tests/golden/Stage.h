#pragma once

#include <memory>

#include "host/headless/EglContext.h"
#include "testkit/ImageCompare.h"
#include "tests/support/WidgetZoo.h"

namespace golden {

/// A zoo over GL with a small screen, of which one takes pictures.
class Stage {
public:
    /// `size` in units.
    Stage(char const* skinFile, osg::Vec2i const& size, float scale);
    ~Stage();

    osg::Vec2i getPixels() const { return pixels_; }
    support::ZooHost& getHost() { return *host_; }

    /// Puts the mouse on a point; units.
    void moveMouse(osg::Vec2i const& point);
    /// A new animal in the left top corner; one that is no window lies on a window that covers the screen.
    gui::Widget& place(support::ZooAnimal const& animal);
    /// Frames until nothing changes, then a picture of the widget's window.
    testkit::Image takePicture(gui::Widget& widget);
    /// Ends the windows and lets go of mouse buttons.
    void clear();

private:
    osg::Vec2i size_;
    osg::Vec2i pixels_;
    float scale_;
    std::unique_ptr<EglContext> context_;
    std::unique_ptr<support::ZooHost> host_;
};

}  // namespace golden
