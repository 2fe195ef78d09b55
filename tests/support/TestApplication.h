#pragma once

#include <functional>
#include <set>

#include "gui_lib/base/Application.h"

namespace support {

/// The toolkit's host in a test: everything that it answers is a field that the test sets.
class TestApplication final : public gui::Application {
public:
    explicit TestApplication(osg::Vec2i const& size);

    /// Changes what the main window is, without telling GUI.
    void setWindowSize(osg::Vec2i const& size);

    // Application:
    /// Calls `modalFrame`.
    void processModal() override;
    double getTime() const override { return time; }
    bool getMouseButtonDown(int button) const override { return buttons.count(button) > 0; }
    bool getKeyDown(gui::KeyboardButton button) const override { return keys.count(button) > 0; }
    void setClipboardText(qor::basic_string<wchar_t> const& text) override { clipboard = text; }
    qor::basic_string<wchar_t> getClipboardText() const override { return clipboard; }
    void getCursorSize(osg::Vec2i& size) const override { size = cursorSize; }
    void getCursorScreenPosition(osg::Vec2i& position) const override { position = cursorPosition; }

    /// Seconds.
    double time = 1.0;
    std::set<int> buttons;
    std::set<int> keys;
    qor::basic_string<wchar_t> clipboard;
    osg::Vec2i cursorSize{32, 32};
    /// Raw pixels.
    osg::Vec2i cursorPosition;
    std::function<void()> modalFrame;

protected:
    void createWindow_(int width, int height, bool fullScreen) override;
};

}  // namespace support
