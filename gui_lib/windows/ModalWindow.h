#pragma once

#include "gui_lib/windows/WindowBase.h"

namespace gui {

/// A window that takes all pointer input but the popups' while it is shown. With `lockFlow` (the default)
/// `setVisible(true)` runs the host's frames (Application::processModal) and returns only when the window is hidden.
class VORLEX_API ModalWindow : public WindowBase {
public:
    /// With `noSkin` a subclass supplies the skin.
    explicit ModalWindow(bool noSkin);
    ~ModalWindow() override;

    void setLockFlow(bool lock) { lockFlow = lock; }
    bool getLockFlow() const { return lockFlow; }
    /// Gives text, position, size, enabled, zoom, tooltip text, resource string, a clone of the layout and clones of
    /// the widgets.
    void copyParams(ModalWindow* target) const;

    // WindowBase:
    Widget* clone() const override;
    char const* getWidgetType() const override;
    /// Hides the window; one that blocks is ended at the next drain, any other stays the caller's.
    void kill() override;

protected:
    virtual void onCloseButton_();
    /// Runs frames until the window is hidden or the application ends.
    virtual void doModal_();

    // Widget:
    void onVisibleChanged_(bool newVisible) override;

    bool killed = false;
    bool lockFlow = true;
};

}  // namespace gui
