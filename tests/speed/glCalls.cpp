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

/// The calls of a frame of the gallery as it starts, without its scene.
void countIdleFrame(HeadlessApplication::BackEnd backEnd, bool stateSaved, int most) {
    host::addToolkitAssets();
    auto* const application = new HeadlessApplication(backEnd);
    application->setGLStateSaved(stateSaved);
    host::HostOptions options;
    options.size = {1280, 800};
    ASSERT_TRUE(application->start(options));
    {
        Gallery const gallery(*application, Options());
        application->runFrames(10);
        application->setDrawScene({});
        application->setDrawSurfaces({});
        application->setTime(application->getTime() + application->getFrameTime());
        GLCalls const calls;
        gui::GUI& gui = *gui::GUI::get();
        gui.processMessages();
        gui::UpdateManager::get().updateTargets();
        gui.redraw(false);
        gui.doRedraw();
        gui.parse();
        gui.draw();
        std::printf("%d GL calls in an idle frame, state %s\n", calls.getTotal(), stateSaved ? "saved" : "not saved");
        EXPECT_LE(calls.getTotal(), most) << calls.describe();
        EXPECT_GE(calls.getCounts().count("glDrawArraysInstanced") +
                      calls.getCounts().count("glDrawArraysInstancedBaseInstance"),
                  1u);
    }
    gui::Application::destroy();
}

}  // namespace

TEST(GLCalls, FewInAnIdleFrame) {
    countIdleFrame(HeadlessApplication::BackEnd::GL, false, 59);
    countIdleFrame(HeadlessApplication::BackEnd::GL, true, 259);
    countIdleFrame(HeadlessApplication::BackEnd::ES, false, 259);
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
