#pragma once

#include "gui_lib/widget/Widget.h"

namespace gui {

class WindowsManager;

namespace skin {
class TooltipData;
}

/// The floating hint of one surface. It always fits its text; when and where it shows is decided by its WindowsManager.
/// Lifetime: owned by the manager.
class VORLEX_API Tooltip : public Widget {
public:
    explicit Tooltip(WindowsManager* owner);

    /// Below the pointer; above it where the window's bottom is too near, and moved left at the right edge. Screen
    /// coordinates.
    osg::Vec2i calcScreenPosition() const;
    skin::TooltipData const* getTooltipData() const;

    // Widget:
    int getRootSurfaceId() const override;
    char const* getWidgetType() const override;

protected:
    // Widget:
    void onTextChanged_(std::basic_string_view<wchar_t> newText) override;

private:
    WindowsManager* owner;
};

}  // namespace gui
