#include "examples/gallery/Tour.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "examples/gallery/Gallery.h"
#include "gui_lib/controls/buttons/ToggleButton.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/trace/vtxTraceDevice.h"
#include "testkit/Driver.h"
#include "testkit/TreeDump.h"

namespace {

using testkit::byText;

/// Of the tour, seconds: what lies between the stops is drawn too, so few frames make a quick tour.
constexpr double frameTime = 1.0 / 15.0;

/// Goes from stop to stop and leaves a picture, or a frame of the trace, at each.
class Album {
public:
    Album(host::HeadlessApplication& application, Options const& options)
        : application_(application), options_(options) {}

    void add(char const* name) {
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

void visitControls(testkit::Driver& driver, Album& album) {
    for (char const* text : {"Press me", "Toggle", "Shadows", "High", "Turn", "Camera"})
        driver.click(byText("", text).in("controls"));
    album.add("controls-used");
    testkit::Target const button = byText("Button", "Press me");
    driver.moveTo(button);
    driver.wait(0.2);
    driver.moveTo(button.at({20, 10}));
    driver.wait(1.0);
    album.add("tooltip");
    driver.pressButton();
    album.add("pressed");
    driver.releaseButton();
    for (int i = 0; i < 3; ++i)
        driver.pressKeys("tab");
    album.add("tab-focus");
}

void visitWindows(testkit::Driver& driver, Album& album, Gallery& gallery) {
    testkit::Target const header = byText("WindowHeader", "States");
    driver.dragBy(header.at({60, 10}), {100, 120});
    album.add("window-dragged");
    driver.dragBy(header.at({60, 10}), {-100, -120});
    driver.click(byText("Button", "Flash"));
    driver.wait(1.0);
    album.add("label-flashed");
    driver.dragBy(testkit::Target("labels").at(gallery.getLabels()->getSize() - osg::Vec2i(2, 2)), {0, 60});
    album.add("window-resized");
    driver.click(byText("Button", "Ask..."));
    driver.wait(0.5);
    album.add("modal-window");
    driver.click(byText("Button", "Yes"));
}

void visitModals(testkit::Driver& driver, Album& album) {
    driver.answerModal([&] {
        driver.answerModal([&] {
            album.add("modal-over-modal");
            driver.click(byText("Button", "Hint"));
            album.add("popup-over-modal");
            driver.click(byText("Button", "Back"));
        });
        driver.click(byText("Button", "More..."));
        driver.click(byText("Button", "Save"));
    });
    driver.click(byText("Button", "Ask and wait..."));
}

void visitWindowsPage(testkit::Driver& driver, Album& album) {
    testkit::Target const opener = byText("ToggleButton", "Windows");
    driver.click(opener);
    driver.click(byText("ToggleButton", "Overlays"));
    driver.click(byText("Button", "Count"));
    album.add("windows-page");
    visitModals(driver, album);
    driver.click(byText("Button", "Swap"));
    driver.click(byText("Button", "Popup"));
    album.add("popup");
    driver.click(byText("Button", "Type..."));
    driver.typeText("nirth");
    album.add("keys-passed-on");
    driver.click(byText("Button", "north"));
    driver.click(byText("ToggleButton", "Overlays"));
    driver.click(opener);
}

void visitEffectsPage(testkit::Driver& driver, Album& album) {
    testkit::Target const opener = byText("ToggleButton", "Effects");
    driver.click(opener);
    driver.click(byText("Button", "Appear"));
    driver.wait(0.6);
    album.add("effects-page");
    driver.click(byText("Button", "Pop in"));
    driver.click(byText("Button", "Show or hide"));
    driver.wait(0.4);
    album.add("window-pops-in");
    driver.wait(0.7);
    driver.click(byText("Button", "Show or hide"));
    driver.wait(1.1);
    driver.click(opener);
}

/// Every page that is made from a file, one after the other.
void visitFiles(testkit::Driver& driver, Album& album, Gallery& gallery) {
    for (GalleryPages::Page const& page : gallery.getPages().getPages()) {
        if (page.file.empty())
            continue;
        driver.click(*page.button.get());
        album.add(("page-" + std::filesystem::path(page.file).stem().string()).c_str());
        driver.click(*page.button.get());
    }
}

void visitScreen(testkit::Driver& driver, Album& album, Gallery& gallery) {
    gallery.setTurning(false);
    gallery.setAngle(-0.45);
    driver.wait(0.1);
    driver.moveTo("screen/screen button");
    album.add("screen-hovered");
    driver.click("screen/screen button");
    driver.click("screen/screen button");
    album.add("screen-clicked");
}

/// The way through all stops; throws testkit::DriverError where it is barred.
bool visitAll(testkit::Driver& driver, Album& album, Gallery& gallery, Options const& options) {
    driver.wait(0.5);
    album.add("start");
    visitControls(driver, album);
    visitWindows(driver, album, gallery);
    visitWindowsPage(driver, album);
    visitEffectsPage(driver, album);
    visitFiles(driver, album, gallery);
    // What follows is not done by input alone, which is all that a recording holds.
    if (!options.record.empty())
        return true;
    visitScreen(driver, album, gallery);
    gallery.getDebugView().toggle();
    driver.wait(0.2);
    album.add("debug");
    bool const written = writeText(options, "tree.txt", testkit::dumpTree());
    gallery.getDebugView().toggle();
    driver.wait(0.2);
    return written;
}

}  // namespace

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

bool playTour(host::HeadlessApplication& application, Gallery& gallery, Options const& options) {
    application.setFrameTime(frameTime);
    if (application.getTraceLog())
        application.getTraceLog()->setRecording(false);
    testkit::Driver driver(application);
    driver.setPictureFolder(options.out);
    ScreenSurface const& screen = gallery.getScreen();
    driver.setSurfacePlace(screen.getSurfaceId(), [&screen](osg::Vec2i const& point) {
        osg::Vec2i const raw = screen.project(point);
        return gui::GUI::get()->convertFromRawScreenPosition(raw.x(), raw.y());
    });
    Album album(application, options);
    bool written = false;
    try {
        written = visitAll(driver, album, gallery, options);
    } catch (testkit::DriverError const& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }

    if (std::shared_ptr<vtxTraceLog> const trace = application.getTraceLog())
        written = writeText(options, "trace.txt", trace->getText()) && written;
    if (application.getGLErrorCount() > 0)
        std::fprintf(stderr, "GL reported %u errors during the tour; they stand above.\n",
                     application.getGLErrorCount());
    return written && !album.getFailed() && application.getGLErrorCount() == 0;
}
