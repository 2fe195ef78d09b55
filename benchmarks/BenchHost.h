#pragma once

#include "gui_lib/base/Application.h"

/// Application, renderer over a back end that draws nothing, and GUI with the dark skin, all ended with the object.
/// One lives at a time.
class BenchHost {
public:
    /// Pixels, which are GUI units here.
    explicit BenchHost(osg::Vec2i const& size);
    ~BenchHost();
    BenchHost(BenchHost const&) = delete;
    BenchHost& operator=(BenchHost const&) = delete;

    /// One frame as a host runs it, a sixtieth of a second after the one before.
    void frame();
    /// Enough frames for everything to have come to rest.
    void settle();

    void moveMouse(osg::Vec2i const& point);
    void pressMouse();
    void releaseMouse();

private:
    class App;
    App* app_;
};
