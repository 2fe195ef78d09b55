// The gallery: every widget in windows over a live 3D scene, and one surface inside the scene.

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "examples/gallery/Gallery.h"
#include "examples/gallery/Options.h"
#include "examples/gallery/Tour.h"
#include "examples/gallery/Watch.h"
#include "host/Assets.h"
#include "host/headless/HeadlessApplication.h"
#include "host/sdl/SdlApplication.h"
#include "platform/trace/vtxTraceLog.h"
#include "testkit/Recorder.h"
#include "testkit/Replay.h"
#include "testkit/TreeDump.h"

namespace {

bool haveDisplay() {
    for (char const* const name : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        char const* const value = std::getenv(name);
        if (value && *value)
            return true;
    }
    return false;
}

host::HostOptions getHostOptions(Options const& options) {
    host::HostOptions result;
    result.title = "Vorlex GUI gallery";
    bool const isName = options.skin.find_first_of("./\\") == std::string::npos;
    result.skin = isName ? ("skins/" + options.skin + ".lua").c_str() : options.skin.c_str();
    result.size = options.size;
    result.scale = options.scale;
    return result;
}

/// Null if nothing is to be recorded.
std::unique_ptr<testkit::Recorder> makeRecorder(host::HostApplication& application, Options const& options) {
    if (options.record.empty())
        return nullptr;
    return std::make_unique<testkit::Recorder>(application, options.record, options.still ? "--still" : "");
}

int runWindowed(Options const& options) {
    auto* const application = new host::SdlApplication;
    std::unique_ptr<testkit::Recorder> recorder = makeRecorder(*application, options);
    bool passed = application->start(getHostOptions(options));
    if (passed) {
        Gallery gallery(*application, options);
        Watch const watch(*application, gallery.getPages(), true);
        application->run();
        passed = !recorder || recorder->finish();
    }
    recorder.reset();
    gui::Application::destroy();
    return passed ? EXIT_SUCCESS : EXIT_FAILURE;
}

host::HeadlessApplication* makeHeadless(Options const& options) {
    using host::HeadlessApplication;
    auto const backEnd = options.backEnd == "trace" ? HeadlessApplication::BackEnd::Trace
                         : options.backEnd == "es"  ? HeadlessApplication::BackEnd::ES
                                                    : HeadlessApplication::BackEnd::GL;
    return new HeadlessApplication(backEnd);
}

/// A line for each frame of a replay, by which two replays are compared, and the last frame whole.
class FrameTrace {
public:
    explicit FrameTrace(std::shared_ptr<vtxTraceLog> log) : log_(std::move(log)) {}

    void endFrame() {
        last_ = log_->getText();
        log_->clearLines();
        char line[64];
        std::snprintf(line, sizeof(line), "frame %d %016zx\n", ++count_, std::hash<std::string_view>()(last_));
        text_ += line;
    }
    std::string getText() const { return text_ + last_.c_str(); }

private:
    std::shared_ptr<vtxTraceLog> log_;
    int count_ = 0;
    std::string text_;
    qor::string last_;
};

/// Plays all frames; writes the last picture or the trace, and the tree at the end.
bool playRecording(host::HeadlessApplication& application, testkit::Replay& replay, Options const& options) {
    std::shared_ptr<vtxTraceLog> const log = application.getTraceLog();
    FrameTrace trace(log);
    while (replay.runFrame())
        if (log)
            trace.endFrame();
    testkit::Replay::Result const result = replay.compare();
    std::printf("%s\n", replay.getReport().c_str());
    bool written = writeText(options, "tree.txt", testkit::dumpTree());
    if (log)
        written = writeText(options, "trace.txt", trace.getText()) && written;
    else
        written = application.saveScreenshot((options.out + "/replay.png").c_str()) && written;
    return written && result != testkit::Replay::Result::Different;
}

int runReplay(Options options) {
    auto replay = std::make_unique<testkit::Replay>(options.replay);
    if (!replay->getPlayable())
        return EXIT_FAILURE;
    options.still = replay->getHeader().program == "--still";
    host::HeadlessApplication* const application = makeHeadless(options);
    replay->attach(*application);
    bool passed = application->start(replay->getOptions());
    if (passed) {
        Gallery gallery(*application, options);
        Watch const watch(*application, gallery.getPages(), options.watch);
        passed = playRecording(*application, *replay, options);
    }
    replay.reset();
    gui::Application::destroy();
    return passed ? EXIT_SUCCESS : EXIT_FAILURE;
}

int runHeadless(Options const& options) {
    host::HeadlessApplication* const application = makeHeadless(options);
    std::unique_ptr<testkit::Recorder> recorder = makeRecorder(*application, options);
    bool passed = application->start(getHostOptions(options));
    if (passed) {
        Gallery gallery(*application, options);
        Watch const watch(*application, gallery.getPages(), options.watch);
        passed = playTour(*application, gallery, options);
        passed = (!recorder || recorder->finish()) && passed;
    }
    recorder.reset();
    gui::Application::destroy();
    if (passed)
        std::printf("The tour is over: its files are in %s.\n", options.out.c_str());
    return passed ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int count, char** words) {
    Options options;
    std::string error;
    if (!parseOptions(count, words, options, error)) {
        std::fprintf(stderr, "gallery: %s Try --help.\n", error.c_str());
        return 2;
    }
    if (options.help) {
        std::fputs(usage, stdout);
        return EXIT_SUCCESS;
    }
    host::addToolkitAssets();
    if (!options.replay.empty())
        return runReplay(options);
    if (options.headless || options.backEnd != "gl")
        return runHeadless(options);
    if (!haveDisplay()) {
        std::printf("No display: playing the tour headless.\n");
        return runHeadless(options);
    }
    return runWindowed(options);
}
