#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <osg/Vec2i>

#include "gui_lib/base/Keyboard.h"
#include "tests/support/TestApplication.h"

class vtxDevice;
class vtxTraceLog;

namespace gui {
class Widget;
}

namespace support {

/// A whole host for a test: application with a virtual clock, renderer over the trace back end, and GUI with a skin
/// file that the test gives as text. All is ended with the object. Misuse of the renderer fails the test. Coordinates:
/// raw pixels.
class TestHost {
public:
    struct Settings {
        osg::Vec2i size{800, 600};
        float scale = 1.0f;
        /// Another back end than the trace; there is no trace then.
        std::unique_ptr<vtxDevice> (*makeDevice)() = nullptr;
    };

    explicit TestHost(std::string_view skinText = "Skin = {}");
    TestHost(std::string_view skinText, Settings const& settings);
    ~TestHost();
    TestHost(TestHost const&) = delete;
    TestHost& operator=(TestHost const&) = delete;

    TestApplication& app() { return *app_; }
    vtxTraceLog& trace() { return *trace_; }

    /// Without GUI until `createGui`.
    void destroyGui();
    void createGui(std::string_view skinText);

    // --- Frames ---
    /// Drains the messages, ticks, and draws.
    void frame();
    /// The same without drawing.
    void update();
    /// Moves the clock on, in seconds, and runs a frame.
    void advance(double seconds);
    /// What a frame makes the device do, as text.
    std::string traceFrame();
    /// Draws `widget` in a pass of its own, directly, or recorded and played.
    void drawWidget(gui::Widget& widget);
    void playWidget(gui::Widget& widget);
    /// What `widget` makes the device do in a pass of its own, drawn directly, or recorded and played.
    std::string traceDraw(gui::Widget& widget);
    std::string traceMake(gui::Widget& widget);

    // --- Input: delivered at once ---
    void moveMouse(int x, int y);
    void pressMouse(gui::MouseButton button = gui::MouseButtonMain);
    void releaseMouse(gui::MouseButton button = gui::MouseButtonMain);
    void click(int x, int y);
    void pressKey(gui::KeyboardButton key, int modifiers = 0);
    void releaseKey(gui::KeyboardButton key, int modifiers = 0);
    void typeKey(gui::KeyboardButton key, int modifiers = 0);

private:
    template <class Function>
    std::string traceOf_(Function function);
    template <class Function>
    void drawPass_(Function function);

    TestApplication* app_;
    std::shared_ptr<vtxTraceLog> trace_;
    Settings settings_;
};

}  // namespace support
