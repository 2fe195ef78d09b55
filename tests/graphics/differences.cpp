// Where drawing directly and playing a recording are meant to differ on the renderer's contract, and nowhere else.

#include "gui_lib/Skin/FocusRect.h"
#include "gui_lib/Skin/Image.h"
#include "gui_lib/Skin/Text.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "tests/graphics/TraceFixture.h"
#include "tests/support/SkinText.h"

namespace {

using gui::GraphicCommands;

class Differences : public TraceFixture {
protected:
    template <class Drawable>
    void expect(Drawable& drawable, char const* direct, char const* recorded) {
        EXPECT_EQ(operations([&] { drawable.draw(); }), direct);
        EXPECT_EQ(operationsRecorded([&](GraphicCommands& list) { drawable.make(&list); }), recorded);
    }
};

TEST_F(Differences, ARecordedPictureSwitchesTheModeAndPassesAnySamplerOn) {
    auto const target = makeTarget(10, 8);
    gui::Image image;
    image.setTexture(target->getTexture(), false);
    image.redraw(osg::Vec2i(10, 8));
    image.doRedraw();
    struct Case {
        int sampler;
        char const* direct;
        char const* recorded;
    };
    constexpr Case cases[] = {
        {0, "setUserTextureFiltering 0", "turnOnDrawQuads; setUserTextureFiltering 0"},
        {1, "setUserTextureFiltering 1; resetTextureSampler",
         "turnOnDrawQuads; setUserTextureFiltering 1; resetTextureSampler"},
        {2, "setUserTextureFiltering 2; resetTextureSampler",
         "turnOnDrawQuads; setUserTextureFiltering 2; resetTextureSampler"},
        {3, "setUserTextureFiltering 0; resetTextureSampler",
         "turnOnDrawQuads; setUserTextureFiltering 3; resetTextureSampler"},
        {7, "setUserTextureFiltering 0; resetTextureSampler", "turnOnDrawQuads; resetTextureSampler"},
        {-1, "setUserTextureFiltering 0", "turnOnDrawQuads"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.sampler);
        image.setUserTexSampler(c.sampler);
        expect(image, c.direct, c.recorded);
    }
}

TEST_F(Differences, ARecordedTextSwitchesTheMode) {
    gui::Text text;
    gui::Text::Info info;
    info.font = support::fontFile;
    info.fontSize = 12;
    text.set(info);
    text.redraw(L"Text", osg::Vec2i(100, 20), true);
    text.doRedraw();
    expect(text, "turnOnDrawQuads", "turnOnDrawQuads; turnOnDrawQuads");
}

TEST_F(Differences, AFocusFrameDrawnDirectlySwitchesTheModeBack) {
    gui::FocusRect frame;
    frame.setBounds(osg::RectImpl<osg::Vec2i>(0, 0, 20, 10));
    frame.setColor(osg::Vec4f(1, 1, 1, 1));
    frame.redraw();
    frame.doRedraw();
    std::string const recorded = operationsRecorded([&](GraphicCommands& list) { frame.make(&list); });
    EXPECT_EQ(recorded.find("turnOffDrawQuads"), 0u);
    EXPECT_EQ(operations([&] { frame.draw(); }), recorded + "; turnOnDrawQuads");
}

}  // namespace
