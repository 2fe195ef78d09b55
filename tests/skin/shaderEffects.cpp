#include <gtest/gtest.h>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/effects/ShaderEffect.h"
#include "gui_lib/effects/ShaderEffectManager.h"
#include "gui_lib/effects/ShaderEffectParams.h"
#include "gui_lib/frame/GUI.h"
#include "platform/trace/vtxTraceLog.h"
#include "platform/vtx/vtxEffectShader.h"
#include "platform/vtx/vtxRenderer.h"
#include "tests/skin/SkinBox.h"
#include "tests/support/LogCapture.h"
#include "tests/support/SkinText.h"
#include "tests/support/TestHost.h"

namespace {

using gui::skin::ShaderEffect;
using gui::skin::ShaderEffectManager;
using gui::skin::ShaderEffectParams;
using support::TestHost;

std::string const skins = "Skin = {plain = " + support::skinFunction("", "bkg = {center_center = '0000ffff'}") + "}";

char const* const effectFile = R"([parameters]
float strength = 1.0
[vertex]
void effectVertex() { gl_Position = projection * modelView * vec4(position.xy, 0.0, 1.0); }
[fragment]
vec4 effectFragment() { return vec4(strength); }
)";

int liveEffects = 0;

class TestEffect final : public ShaderEffect {
public:
    TestEffect() { ++liveEffects; }
    ~TestEffect() override { --liveEffects; }
    void destroy() override { ShaderEffectManager::get().destroyEffect(this); }
    void setCurrTime(float time) override {
        ShaderEffect::setCurrTime(time);
        value = getEasingFunc_(1)(time - startTime, 0.0f, 10.0f, duration);
    }
    void useShader(vtxEffectShader* newShader) { shader = newShader; }

    float value = 0.0f;
};

/// A host with the effect kind "test", and a widget that draws to a target.
class ShaderEffects : public testing::Test {
protected:
    ShaderEffects() : host(skins) {
        manager().addKind("test", [] { return new TestEffect; });
        box = new SkinBox("plain");
        box->setSize(osg::Vec2i(40, 30));
    }

    static ShaderEffectManager& manager() { return ShaderEffectManager::get(); }
    TestEffect* start(float duration) {
        ShaderEffectParams params;
        params["duration"] = duration;
        box->setShaderEffect("test", &params);
        return static_cast<TestEffect*>(box->look().getShaderEffect());
    }

    TestHost host;
    SkinBox* box;
};

TEST_F(ShaderEffects, ArePooledAndStartAnewEachTime) {
    ShaderEffect* const first = manager().getEffect("test");
    ShaderEffect* const second = manager().getEffect("test");
    EXPECT_NE(first, second);
    host.advance(5.0);
    EXPECT_EQ(first->getStartTime(), 0.0f);
    first->destroy();
    first->destroy();
    EXPECT_FALSE(manager().getInUse(first));
    EXPECT_EQ(manager().getEffect("test"), first);
    EXPECT_FLOAT_EQ(first->getStartTime(), float(gui::UpdateManager::get().getTime()));
    EXPECT_EQ(liveEffects, 2);
    host.destroyGui();
    EXPECT_EQ(liveEffects, 0);
}

TEST_F(ShaderEffects, UnknownNamesAreLoggedAndGiveNone) {
    support::LogCapture log;
    EXPECT_EQ(manager().getEffect("Test"), nullptr);
    EXPECT_EQ(log.count("Invalid GUI effect name[Test]!"), 1u);
    box->setShaderEffect("nothing", nullptr);
    EXPECT_EQ(box->look().getShaderEffect(), nullptr);
    EXPECT_FALSE(box->getDrawToTarget());
}

TEST_F(ShaderEffects, RunForTheirDurationAndThenLeaveTheWidget) {
    TestEffect* const effect = start(2.0f);
    EXPECT_TRUE(box->getDrawToTarget());
    host.advance(1.0);
    EXPECT_FLOAT_EQ(effect->value, 5.0f);
    EXPECT_EQ(box->look().getShaderEffect(), effect);
    host.advance(1.0);
    EXPECT_EQ(box->look().getShaderEffect(), nullptr);
    EXPECT_FALSE(manager().getInUse(effect));
    host.frame();
    EXPECT_FALSE(box->look().target);
}

TEST_F(ShaderEffects, WithoutADurationRunOneSecondAndWithNoneForEver) {
    box->setShaderEffect("test", nullptr);
    EXPECT_EQ(box->look().getShaderEffect()->getDuration(), 1.0f);
    ShaderEffectParams const none;
    box->look().getShaderEffect()->setParams(none);
    EXPECT_EQ(box->look().getShaderEffect()->getDuration(), 1.0f);
    TestEffect* const endless = start(0.0f);
    host.advance(1000.0);
    EXPECT_EQ(box->look().getShaderEffect(), endless);
}

TEST_F(ShaderEffects, EndWhenTheirOwnerDiesOrIsAnotherSkinsWidget) {
    TestEffect* const orphan = start(2.0f);
    gui::Widget::destroy(box);
    host.advance(1.0);
    EXPECT_TRUE(manager().getInUse(orphan));
    host.advance(1.0);
    EXPECT_FALSE(manager().getInUse(orphan));

    box = new SkinBox("plain");
    SkinBox::BoxSkin lent(box);
    ShaderEffectParams params;
    params["duration"] = 1.0f;
    lent.setShaderEffect("test", &params);
    EXPECT_EQ(lent.getShaderEffect(), orphan);
    host.advance(1.0);
    EXPECT_FALSE(manager().getInUse(orphan));
    EXPECT_EQ(lent.getShaderEffect(), nullptr) << "or it would go on to show what the next one does";
    {
        SkinBox::BoxSkin dying(box);
        dying.setShaderEffect("test", &params);
        EXPECT_EQ(dying.getShaderEffect(), orphan);
    }
    host.advance(1.0);
    EXPECT_FALSE(manager().getInUse(orphan));
    lent.setShaderEffect("test", &params);
    host.destroyGui();
    EXPECT_EQ(lent.getShaderEffect(), nullptr);
}

TEST_F(ShaderEffects, ReplacingOneInsideItsEndKeepsTheNewOne) {
    class Restarting : public SkinBox {
    public:
        using SkinBox::SkinBox;
        void setShaderEffect(char const* name, ShaderEffectParams const* params) override {
            SkinBox::setShaderEffect(name, params);
            if (!name)
                SkinBox::setShaderEffect("test", params);
        }
    };
    box = new Restarting("plain");
    TestEffect* const first = start(1.0f);
    host.advance(1.0);
    EXPECT_EQ(box->look().getShaderEffect(), first) << "the pool gives the idle one back";
    EXPECT_TRUE(manager().getInUse(first));
}

TEST_F(ShaderEffects, DrawTheTargetsPictureWithTheirShaderInBothWays) {
    support::SkinText const file(effectFile);
    TestEffect* const effect = start(0.0f);
    host.frame();
    host.trace().takeFrame();
    host.traceDraw(*box);
    EXPECT_EQ(host.trace().takeFrame().geometryDraws, 0u) << "without a shader nothing is drawn";
    vtxEffectShader* const shader = vtxRenderer::get()->createEffectShader(file.getPath().c_str());
    ASSERT_NE(shader, nullptr);
    effect->useShader(shader);
    std::string const drawn = host.traceDraw(*box);
    EXPECT_EQ(host.trace().takeFrame().geometryDraws, 1u);
    ASSERT_NE(drawn.find("drawEffect"), std::string::npos) << drawn;
    // A list brings the geometry up to date each time that it is prepared.
    std::string const made = host.traceMake(*box);
    EXPECT_EQ(made.substr(made.find("drawEffect")), drawn.substr(drawn.find("drawEffect")));
}

TEST_F(ShaderEffects, ThatStillRunDieQuietlyWithGui) {
    start(0.0f);
    host.destroyGui();
    EXPECT_EQ(liveEffects, 0);
    EXPECT_FALSE(ShaderEffectManager::exists());
}

}  // namespace
