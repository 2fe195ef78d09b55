#include <gtest/gtest.h>

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/windows/WindowBase.h"
#include "host/headless/EglContext.h"
#include "platform/gl/vtxGLDevice.h"
#include "tests/support/GLState.h"
#include "tests/support/WidgetZoo.h"

namespace {

using gui::Widget;
using osg::Vec2i;
using Pixels = qor::vector<unsigned char>;

vtxGLDevice* device = nullptr;

std::unique_ptr<vtxDevice> makeDevice() {
    std::unique_ptr<vtxGLDevice> made = vtxCreateGLDevice();
    device = made.get();
    return made;
}

Pixels readScreen() {
    Pixels pixels(800 * 600 * 4);
    device->readPixels(0, {0, 0, 800, 600}, pixels.data());
    return pixels;
}

/// A window with every class in it, some of them in targets, and every window.
std::vector<Widget*> makeEverything() {
    std::vector<Widget*> made;
    Widget* const ground = support::findAnimal("Window")->make();
    ground->setSize(Vec2i(780, 580));
    ground->setVisible(true);
    for (support::ZooAnimal const& animal : support::getZoo()) {
        int const place = int(made.size());
        made.push_back(animal.make());
        made.back()->setPosition(Vec2i(place % 5 * 145, place / 5 * 70));
        if (animal.window)
            made.back()->setVisible(true);
        else
            static_cast<gui::WindowBase*>(ground)->insertWidget(made.back(), -1);
        made.back()->setOpacity(place % 3 == 0 ? 0.5f : 1.0f);
        made.back()->setZoom(place % 4 == 0 ? 1.5f : 1.0f);
        if (gui::skin::Skin* const skin = made.back()->getWidgetSkin(); skin && place % 2 == 0) {
            skin->setTargetMsaa(4);
            skin->setTargetMips(2);
        }
    }
    return made;
}

class HostState : public testing::TestWithParam<EglContext::Api> {};

INSTANTIATE_TEST_SUITE_P(Contexts, HostState, testing::Values(EglContext::Api::GL33, EglContext::Api::ES30),
                         [](auto const& info) { return info.param == EglContext::Api::GL33 ? "GL33" : "ES30"; });

TEST_P(HostState, AFrameLeavesGLAsItWasAndDrawsTheSameWhateverTheHostHasSet) {
    bool const es = GetParam() == EglContext::Api::ES30;
    std::vector<Pixels> screens[2];
    for (bool disturbed : {false, true}) {
        qor::string error;
        std::unique_ptr<EglContext> const context = EglContext::create(GetParam(), Vec2i(800, 600), error);
        ASSERT_TRUE(context) << error;
        support::ZooHost host("skins/dark.lua", {.makeDevice = makeDevice});
        std::vector<Widget*> const widgets = makeEverything();
        context->clear(0.3f, 0.5f, 0.4f, 1.0f);
        if (disturbed)
            support::disturbGLState(*context, es);
        auto const frame = [&](char const* what) {
            support::GLState const before = support::readGLState(es);
            host.frame();
            support::GLState const after = support::readGLState(es);
            for (auto const& [name, values] : before)
                EXPECT_EQ(after.at(name), values) << name << ", " << what;
            screens[disturbed].push_back(readScreen());
        };
        frame("the first frame, with all uploads");
        frame("a steady frame");
        for (Widget* widget : widgets)
            widget->setText(L"Other letters: \u0416 \u03a9 \u2713");
        host.moveMouse(400, 200);
        frame("new letters");
        for (Widget* widget : widgets)
            Widget::destroy(widget);
        frame("after the end of targets and textures");
        EXPECT_EQ(context->getErrorCount(), 0u);
    }
    EXPECT_TRUE(screens[0] == screens[1]);
    EXPECT_NE(screens[0][2], screens[0][1]) << "new letters show";
}

}  // namespace
