#pragma once

#include <functional>
#include <memory>

#include <cstddef>

namespace gui {
class Static;
class Window;
}  // namespace gui

/// What F12 shows: the debug skins over every widget, and a window with the counters of the last frame.
class DebugView {
public:
    DebugView();
    ~DebugView();
    DebugView(DebugView const&) = delete;
    DebugView& operator=(DebugView const&) = delete;

    void toggle();
    bool getShown() const { return shown_; }
    /// At the start of each frame: takes the counters of the frame before.
    void update();

private:
    gui::Window* window_ = nullptr;
    gui::Static* values_ = nullptr;
    std::shared_ptr<std::function<void()>> updateCallback_;
    bool shown_ = false;
    std::size_t allocations_ = 0;
    unsigned long redraws_ = 0;
    double frameStart_ = 0.0;
};
