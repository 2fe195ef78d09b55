// How many GL functions a frame of the gallery calls when nothing changes.

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

#include "examples/gallery/Gallery.h"
#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/frame/GUI.h"
#include "host/Assets.h"
#include "host/headless/HeadlessApplication.h"
#include "tests/speed/GLCalls.h"

namespace {

using host::HeadlessApplication;
using speed_test::GLCalls;

}  // namespace

TEST(GLCalls, AreFewInAnIdleFrameOfTheGallery) {
    host::addToolkitAssets();
    auto* const application = new HeadlessApplication(HeadlessApplication::BackEnd::GL);
    application->setGLStateSaved(false);
    host::HostOptions options;
    options.size = {1280, 800};
    ASSERT_TRUE(application->start(options));
    {
        Gallery const gallery(*application, Options());
        application->setDrawScene({});
        application->setDrawSurfaces({});
        application->runFrames(4);
        application->setTime(application->getTime() + application->getFrameTime());
        GLCalls const calls;
        gui::GUI& gui = *gui::GUI::get();
        gui.processMessages();
        gui::UpdateManager::get().updateTargets();
        gui.redraw(false);
        gui.doRedraw();
        gui.parse();
        gui.draw();
        // Where a driver has no glBindTextures, each unit takes three calls.
        EXPECT_LT(calls.getTotal(), calls.getCounts().count("glBindTextures") ? 60 : 140) << calls.describe();
        EXPECT_EQ(calls.getCounts().count("glDrawArraysInstancedBaseInstance") +
                      calls.getCounts().count("glDrawArraysInstanced"),
                  1u);
        std::printf("%d GL calls\n", calls.getTotal());
    }
    gui::Application::destroy();
}

TEST(GLCalls, TheCounterSeesWhateverTheBackEndCalls) {
    std::regex const call("\\b(gl[A-Z]\\w*)\\(");
    for (auto const& file : std::filesystem::directory_iterator("platform/gl")) {
        std::stringstream text;
        text << std::ifstream(file.path()).rdbuf();
        std::string const code = text.str();
        for (std::sregex_iterator at(code.begin(), code.end(), call), end; at != end; ++at)
            EXPECT_TRUE(GLCalls::getCounted((*at)[1])) << (*at)[1] << " in " << file.path();
    }
}
