#include "examples/gallery/Tour.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "examples/gallery/Gallery.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/widget/Container.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowHeader.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/qor/Log.h"
#include "platform/trace/vtxTraceDevice.h"
#include "testkit/TreeDump.h"

namespace {

/// Of the tour, seconds.
constexpr double frameTime = 1.0 / 30.0;

/// A person's hand: everything goes through the host's input, and a frame runs after each step.
class Visitor {
public:
    Visitor(host::HeadlessApplication& application, Options const& options)
        : application_(application), options_(options) {}

    /// Point in raw pixels of a place within a widget, units.
    osg::Vec2i at(gui::Widget& widget, osg::Vec2i const& place) const {
        osg::Vec2i const point = widget.widgetToScreen(place);
        float const scale = application_.getScale();
        return {static_cast<int>(static_cast<float>(point.x()) * scale),
                static_cast<int>(static_cast<float>(point.y()) * scale)};
    }
    osg::Vec2i centre(gui::Widget& widget) const {
        return at(widget, {widget.getSize().x() / 2, widget.getSize().y() / 2});
    }

    void moveTo(osg::Vec2i const& point) {
        application_.pushMouseMove(point.x(), point.y());
        application_.runFrames(2);
    }
    void press() {
        application_.pushMouseButton(1, true);
        application_.runFrames(2);
    }
    void release() {
        application_.pushMouseButton(1, false);
        application_.runFrames(2);
    }
    /// Late enough not to be a double click.
    void click(osg::Vec2i const& point) {
        moveTo(point);
        wait(0.4);
        press();
        release();
    }
    void drag(osg::Vec2i const& from, osg::Vec2i const& to) {
        moveTo(from);
        wait(0.4);
        press();
        moveTo(to);
        release();
    }
    void key(gui::KeyboardButton button) {
        application_.pushKey(button, 0, true);
        application_.runFrames(2);
        application_.pushKey(button, 0, false);
        application_.runFrames(2);
    }
    void wait(double seconds) { application_.runFrames(static_cast<int>(seconds / frameTime + 0.5)); }

    void picture(char const* name) {
        std::shared_ptr<vtxTraceLog> const trace = application_.getTraceLog();
        // A trace of every frame would fill the disk; what is between the stops shows in their frames.
        if (trace)
            trace->setRecording(true);
        application_.runFrames(1);
        if (trace) {
            trace->setRecording(false);
            return;
        }
        std::string const path = options_.out + "/" + std::to_string(++count_) + "-" + name + ".png";
        if (application_.saveScreenshot(path.c_str()))
            std::printf("%s\n", path.c_str());
        else
            failed_ = true;
    }

    bool getFailed() const { return failed_; }

private:
    host::HeadlessApplication& application_;
    Options const& options_;
    int count_ = 0;
    bool failed_ = false;
};

/// The descendant that shows a text.
gui::Widget* findByText(gui::Widget* root, wchar_t const* text) {
    auto* const container = dynamic_cast<gui::Container*>(root);
    if (!container)
        return nullptr;
    for (int i = 0; i < container->getWidgetCount(); ++i) {
        gui::Widget* const child = container->getWidget(i);
        if (!child)
            continue;
        if (child->getText() == text)
            return child;
        if (gui::Widget* const found = findByText(child, text))
            return found;
    }
    return nullptr;
}

void visitControls(Visitor& visitor, Gallery& gallery) {
    gui::Window* const controls = gallery.getControls();
    for (wchar_t const* text : {L"Press me", L"Toggle", L"Shadows", L"High", L"Turn", L"Camera"})
        if (gui::Widget* const widget = findByText(controls, text))
            visitor.click(visitor.centre(*widget));
    visitor.picture("controls-used");
    if (gui::Widget* const widget = findByText(controls, L"Press me")) {
        visitor.moveTo(visitor.centre(*widget));
        visitor.wait(0.2);
        visitor.moveTo(visitor.at(*widget, {20, 10}));
        visitor.wait(1.0);
        visitor.picture("tooltip");
        visitor.press();
        visitor.picture("pressed");
        visitor.release();
    }
    for (int i = 0; i < 3; ++i)
        visitor.key(gui::KeyTab);
    visitor.picture("tab-focus");
}

void visitWindows(Visitor& visitor, Gallery& gallery) {
    gui::Window* const states = gallery.getStates();
    osg::Vec2i const home = visitor.at(*states->getHeader(), {60, 10});
    osg::Vec2i const away = visitor.at(*states->getHeader(), {160, 130});
    visitor.drag(home, away);
    visitor.picture("window-dragged");
    visitor.drag(away, home);
    gui::Window* const labels = gallery.getLabels();
    if (gui::Widget* const flash = findByText(labels, L"Flash"))
        visitor.click(visitor.centre(*flash));
    visitor.wait(2.5);
    visitor.picture("label-flashed");
    osg::Vec2i const corner = visitor.at(*labels, labels->getSize() - osg::Vec2i(2, 2));
    visitor.drag(corner, corner + osg::Vec2i(0, 60));
    visitor.picture("window-resized");
    if (gui::Widget* const ask = findByText(labels, L"Ask..."))
        visitor.click(visitor.centre(*ask));
    visitor.wait(0.5);
    visitor.picture("modal-window");
    if (gui::WindowBase* const question = gui::WindowsManager::get(0)->getActiveWindow())
        if (gui::Widget* const yes = findByText(question, L"Yes"))
            visitor.click(visitor.centre(*yes));
}

void visitScreen(Visitor& visitor, Gallery& gallery) {
    gallery.setTurning(false);
    gallery.setAngle(-0.45);
    visitor.wait(0.1);
    osg::Vec2i const button = gallery.getScreen().getButtonPoint();
    visitor.moveTo(button);
    visitor.picture("screen-hovered");
    visitor.click(button);
    visitor.click(button);
    visitor.picture("screen-clicked");
}

bool writeText(Options const& options, char const* name, std::string_view text) {
    std::error_code error;
    std::filesystem::create_directories(options.out, error);
    std::string const path = options.out + "/" + name;
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file) {
        std::fprintf(stderr, "Cannot write %s: check that the folder may be written to.\n", path.c_str());
        return false;
    }
    std::printf("%s\n", path.c_str());
    return true;
}

}  // namespace

bool playTour(host::HeadlessApplication& application, Gallery& gallery, Options const& options) {
    application.setFrameTime(frameTime);
    if (application.getTraceLog())
        application.getTraceLog()->setRecording(false);
    Visitor visitor(application, options);
    visitor.wait(0.5);
    visitor.picture("start");
    visitControls(visitor, gallery);
    visitWindows(visitor, gallery);
    visitScreen(visitor, gallery);
    gallery.getDebugView().toggle();
    visitor.wait(0.2);
    visitor.picture("debug");
    bool written = writeText(options, "tree.txt", testkit::dumpTree());
    gallery.getDebugView().toggle();
    visitor.wait(0.2);

    if (std::shared_ptr<vtxTraceLog> const trace = application.getTraceLog())
        written = writeText(options, "trace.txt", trace->getText()) && written;
    if (application.getGLErrorCount() > 0)
        std::fprintf(stderr, "GL reported %u errors during the tour; they stand above.\n",
                     application.getGLErrorCount());
    return written && !visitor.getFailed() && application.getGLErrorCount() == 0;
}
