#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/String.h"

namespace gui {
class WidgetHandler;
}

namespace host {

/// A panel with an error text over everything else, as a reload of broken files needs it. It takes no input, and its
/// look depends on no skin. Order: `draw` after GUI::draw, with the same framebuffer bound. Lifetime: between
/// GUI::create and GUI::destroy.
class VORLEX_API ErrorOverlay {
public:
    ErrorOverlay();
    ~ErrorOverlay();
    ErrorOverlay(ErrorOverlay const&) = delete;
    ErrorOverlay& operator=(ErrorOverlay const&) = delete;

    /// UTF-8; an empty text hides the panel. Seen from the next GUI::doRedraw on.
    void show(qor::string const& text);
    bool getShown() const { return shown_; }
    void draw();

private:
    void arrange_();

    gui::WidgetHandler* window_;
    gui::WidgetHandler* label_;
    bool shown_ = false;
};

}  // namespace host
