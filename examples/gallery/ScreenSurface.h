#pragma once

#include <osg/Vec2i>

#include "examples/gallery/PictureTarget.h"

namespace gui {
class Window;
}  // namespace gui

/// A surface of the toolkit inside the scene: its windows are drawn into a target that the turning screen shows, and
/// the mouse is carried onto the screen's plane.
class ScreenSurface {
public:
    ScreenSurface();
    ~ScreenSurface();
    ScreenSurface(ScreenSurface const&) = delete;
    ScreenSurface& operator=(ScreenSurface const&) = delete;

    /// Between doRedraw and the scene.
    void draw();
    void setAngle(double radians) { angle_ = radians; }
    /// Size of the main window, pixels.
    void setViewSize(osg::Vec2i const& pixels) { viewSize_ = pixels; }

    PictureTarget const& getPicture() const { return picture_; }
    int getSurfaceId() const { return surfaceId_; }
    /// Where a point of the surface (its units) shows in the main window, raw pixels.
    osg::Vec2i project(osg::Vec2i const& point) const;
    /// To standard output: where the surface's corners show in the main window, raw pixels, row by row.
    void printCorners() const;

private:
    osg::Vec2i map_(int x, int y) const;

    int surfaceId_ = 0;
    PictureTarget picture_;
    gui::Window* window_ = nullptr;
    double angle_ = 0.0;
    osg::Vec2i viewSize_{1, 1};
};
