#include <gtest/gtest.h>

#include "gui_lib/effects/ShaderEffectParams.h"
#include "gui_lib/widget/Widget.h"
#include "platform/qor/RandomObject.h"
#include "tests/golden/ContactSheet.h"
#include "tests/golden/Stage.h"

namespace {

using osg::Vec2i;

TEST(GoldenEffects, EachEffectLooksAsItDidAtFiveMoments) {
    golden::Stage stage("skins/dark.lua", Vec2i(190, 126), 1.0f);
    golden::ContactSheet sheet("effects_dark_1x", stage.getPixels(), 5);
    // The noise of the quads is the same in each run.
    RandomObject::setProgramSeed(1);
    gui::skin::ShaderEffectParams params;
    params["duration"] = 1.0f;
    params["quadSize"] = 24.0f;
    params["easing"] = 21.0f;
    for (char const* name : {"alpha", "showMsg", "appearQuads", "flickerQuads"}) {
        gui::Widget& widget = stage.place(*support::findAnimal("Panel"));
        widget.setSize(Vec2i(178, 114));
        stage.getHost().settle();
        widget.setShaderEffect(name, &params);
        for (int moment = 0; moment < 5; ++moment) {
            sheet.add(std::string(name) + ", moment " + std::to_string(moment), stage.takePicture(widget));
            // The last moment is one just before the end.
            stage.getHost().advance(moment == 3 ? 0.2499 : 0.25);
        }
        stage.clear();
    }
    sheet.finish();
}

}  // namespace
