// The gallery: every widget in windows over a live 3D scene, and one surface inside the scene.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "examples/gallery/Gallery.h"
#include "examples/gallery/Options.h"
#include "examples/gallery/Tour.h"
#include "host/Assets.h"
#include "host/headless/HeadlessApplication.h"
#include "host/sdl/SdlApplication.h"

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

int runWindowed(Options const& options) {
    auto* const application = new host::SdlApplication;
    bool const started = application->start(getHostOptions(options));
    if (started) {
        Gallery gallery(*application, options);
        application->run();
    }
    gui::Application::destroy();
    return started ? EXIT_SUCCESS : EXIT_FAILURE;
}

int runHeadless(Options const& options) {
    using host::HeadlessApplication;
    auto const backEnd = options.backEnd == "trace" ? HeadlessApplication::BackEnd::Trace
                         : options.backEnd == "es"  ? HeadlessApplication::BackEnd::ES
                                                    : HeadlessApplication::BackEnd::GL;
    auto* const application = new HeadlessApplication(backEnd);
    bool passed = application->start(getHostOptions(options));
    if (passed) {
        Gallery gallery(*application, options);
        passed = playTour(*application, gallery, options);
    }
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
    if (options.headless || options.backEnd != "gl")
        return runHeadless(options);
    if (!haveDisplay()) {
        std::printf("No display: playing the tour headless.\n");
        return runHeadless(options);
    }
    return runWindowed(options);
}
