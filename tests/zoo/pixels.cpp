#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/widget/Widget.h"
#include "gui_lib/widget/WidgetHandler.h"
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

int getLargestDifference(Pixels const& first, Pixels const& second) {
    int largest = 0;
    for (std::size_t i = 0; i < first.size(); ++i)
        largest = std::max(largest, std::abs(int(first[i]) - int(second[i])));
    return largest;
}

/// What a child is drawn on may be opaque: its parent then fills the whole of its own target.
void lay(Widget& parent, bool opaque) {
    gui::Bkg::Info ground;
    ground.cellColors.assign(gui::Bkg::CellCount, osg::Vec4f(0.2f, 0.3f, 0.1f, opaque ? 1.0f : 0.4f));
    gui::skin::Data& data = *parent.getWidgetSkin()->getSkinData();
    for (int state = 0; state < 4; ++state)
        for (int inner = 1; inner <= 3; ++inner)
            data.setBkg(&ground, gui::skin::InteractiveState(state), inner);
    parent.setDirty(Widget::DirtySelf);
}

TEST(ZooPixels, ThroughATargetEveryClassShowsThePixelsThatItShowsWithout) {
    Looks looks;
    for (float const scale : {1.0f, 2.0f}) {
        support::ZooHost host("skins/dark.lua", {.size = screenSize, .scale = scale, .makeDevice = makeGLDevice});
        for (support::ZooAnimal const& animal : support::getZoo()) {
            Widget* const widget = host.show(animal);
            Widget* const root = widget->getRoot() ? widget->getRoot() : widget;
            // In the left top corner, so that it is seen at any scale.
            root->setPosition(osg::Vec2i(3, 2));
            auto const compare = [&](Widget& target, int tolerance, char const* what) {
                host.settle();
                Pixels const without = looks.take(host, *widget, false);
                target.setDrawToTarget(true);
                host.settle();
                EXPECT_LE(getLargestDifference(looks.take(host, *widget, false), without), tolerance)
                    << animal.name << ' ' << what << " at " << scale;
                target.setDrawToTarget(false);
            };
            // Turned labels reach beyond themselves, which a target does not.
            if (std::string_view(animal.name) != "StaticTurned")
                compare(*widget, 2, "itself");
            Widget* const parent = gui::WidgetHandler::get(widget->getParent());
            if (parent && parent->getWidgetSkin()) {
                lay(*parent, false);
                compare(*parent, 2, "on a faint parent");
                lay(*parent, true);
                compare(*parent, 0, "on an opaque parent");
            }
            Widget::destroy(root);
        }
    }
    EXPECT_EQ(looks.context().getErrorCount(), 0u);
}

}  // namespace
