#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "gui_lib/Skin/Skin.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/Widget.h"
#include "host/headless/EglContext.h"
#include "platform/gl/vtxGLDevice.h"
#include "tests/support/WidgetZoo.h"

namespace {

using gui::Widget;
using Pixels = qor::vector<unsigned char>;

/// Enough to show every animal where ZooHost shows it.
osg::Vec2i const screenSize(420, 320);

std::unique_ptr<vtxDevice> makeGLDevice() { return vtxCreateGLDevice(); }

/// What the widget's whole window looks like on plain ground, drawn directly or recorded and played.
class Looks {
public:
    Looks() {
        qor::string error;
        context_ = EglContext::create(EglContext::Api::GL33, screenSize, error);
        EXPECT_TRUE(context_) << error.c_str();
    }
    EglContext& context() { return *context_; }

    Pixels take(support::ZooHost& host, Widget& widget, bool recorded) {
        Widget& root = widget.getRoot() ? *widget.getRoot() : widget;
        context_->bindFramebuffer();
        context_->clear(0.3f, 0.5f, 0.4f, 1.0f);
        if (recorded)
            host.playWidget(root);
        else
            host.drawWidget(root);
        return context_->readPixels();
    }

private:
    std::unique_ptr<EglContext> context_;
};

TEST(ZooPixels, RecordedAndPlayedEveryClassShowsThePixelsThatItShowsDirectly) {
    Looks looks;
    support::ZooHost host("skins/dark.lua", {.size = screenSize, .makeDevice = makeGLDevice});
    for (support::ZooAnimal const& animal : support::getZoo()) {
        Widget* const widget = host.show(animal);
        Widget* const root = widget->getRoot() ? widget->getRoot() : widget;
        Pixels const resting = looks.take(host, *widget, false);
        auto const compare = [&](char const* state) {
            host.settle();
            Pixels const direct = looks.take(host, *widget, false);
            EXPECT_TRUE(looks.take(host, *widget, true) == direct) << animal.name << ", " << state;
            return direct;
        };
        compare("resting");
        widget->setTabOrder(1);
        host.moveMouse(200, 200);
        compare("hovered");
        host.pressMouse();
        compare("pressed");
        host.releaseMouse();
        host.moveMouse(1, 1);
        compare("focused");
        widget->setOpacity(0.5f);
        compare("half transparent");
        widget->setOpacity(1.0f);
        widget->setEnabled(false);
        compare("disabled");
        widget->setEnabled(true);
        widget->setVisible(false);
        Pixels const hidden = compare("hidden");
        EXPECT_TRUE(hidden != resting || (root != widget && !widget->getWidgetSkin()))
            << animal.name << " shows nothing, so nothing was compared";
        Widget::destroy(root);
    }
    EXPECT_EQ(looks.context().getErrorCount(), 0u);
}

}  // namespace
