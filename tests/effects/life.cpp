#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>

#include <gtest/gtest.h>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/frame/GUI.h"
#include "platform/qor/Memory.h"
#include "platform/qor/Paths.h"
#include "platform/trace/vtxTraceLog.h"
#include "tests/effects/EffectHost.h"
#include "tests/support/HeapScope.h"
#include "tests/support/LogCapture.h"

namespace {

namespace fs = std::filesystem;

using gui::skin::ShaderEffect;
using gui::skin::ShaderEffectManager;

class EffectLife : public testing::Test {
protected:
    static ShaderEffectManager& manager() { return ShaderEffectManager::get(); }
    EffectHost host;
};

class EachEffect : public EffectLife, public testing::WithParamInterface<char const*> {};

INSTANTIATE_TEST_SUITE_P(All, EachEffect, testing::ValuesIn(effectNames),
                         [](auto const& info) { return std::string(info.param); });

TEST_P(EachEffect, TimeReplacementDeathAndGuiEndIt) {
    ShaderEffect* const first = host.start(GetParam(), {{"duration", 2}});
    host.advance(1.9375);
    EXPECT_TRUE(host.drawBox().effect);
    host.advance(0.0625);
    EXPECT_FALSE(manager().getInUse(first)) << "by time";
    EXPECT_FALSE(host.box->getDrawToTarget());
    EXPECT_FALSE(host.drawBox().effect);

    ASSERT_EQ(host.start(GetParam(), {{"duration", 9}}), first) << "the idle one serves again";
    EXPECT_FLOAT_EQ(first->getStartTime(), float(gui::UpdateManager::get().getTime()));
    host.frame();
    ShaderEffect* const other = host.start(GetParam()[0] == 'a' ? "showMsg" : "alpha", {});
    EXPECT_NE(other, first);
    EXPECT_FALSE(manager().getInUse(first)) << "by replacement";
    host.start(nullptr, {});
    EXPECT_FALSE(manager().getInUse(other)) << "by nothing";

    host.start(GetParam(), {{"duration", 2}});
    host.frame();
    gui::Widget::destroy(host.box);
    host.advance(1.0);
    EXPECT_TRUE(manager().getInUse(first)) << "its time runs on";
    host.advance(1.0);
    EXPECT_FALSE(manager().getInUse(first)) << "by the death of its owner";

    host.box = new SkinBox("red");
    host.box->setSize(osg::Vec2i(40, 40));
    host.start(GetParam(), {{"duration", 0}});
    host.advance(1000.0);
    EXPECT_TRUE(host.drawBox().effect);
    host.destroyGui();
    EXPECT_FALSE(ShaderEffectManager::exists());
    host.createGui(EffectHost::skins());
    EXPECT_EQ(manager().getInUse(manager().getEffect(GetParam())), true) << "a new pool serves a new GUI";
}

TEST_P(EachEffect, RecordedAndPlayedItIsDrawnAsItIsDirectly) {
    host.box->add(new SkinBox("green"))->place(10, 10, 50, 50);
    host.start(GetParam(), {{"duration", 1}, {"alphaEnd", 0.9f}, {"quadSize", 32}});
    host.frame();
    std::set<std::string> looks;
    for (int moment = 0; moment < 5; ++moment) {
        std::string const drawn = host.traceDraw(*host.box), made = host.traceMake(*host.box);
        ASSERT_NE(drawn.find("drawEffect"), std::string::npos);
        // A list brings the geometry up to date each time that it is prepared.
        EXPECT_EQ(made.substr(made.find("drawEffect")), drawn.substr(drawn.find("drawEffect"))) << moment;
        looks.insert(drawn.substr(drawn.find("drawEffect")));
        host.advance(0.2);
    }
    EXPECT_EQ(looks.size(), 5u);
}

TEST_F(EffectLife, AThousandLeaveThePoolsAtTheirGreatestNeedAndNothingElse) {
    constexpr int atOnce = 40;
    std::set<ShaderEffect*> effects;
    std::vector<SkinBox*> boxes;
    for (int i = 0; i < atOnce; ++i)
        boxes.push_back(host.box->add(new SkinBox(i % 2 ? "red" : "green")));
    gui::skin::ShaderEffectParams params;
    params["duration"] = 0.5f;
    auto const run = [&](int round) {
        for (int i = 0; i < atOnce; ++i) {
            boxes[i]->place(i, 0, 30 + i % 3, 20);
            boxes[i]->setShaderEffect(effectNames[std::size_t(i + round / 4) % 4], &params);
            effects.insert(boxes[i]->look().getShaderEffect());
        }
        for (int frame = 0; frame < 4; ++frame) {
            host.advance(0.25);
            host.drawWidget(*host.box);
        }
        for (SkinBox* const box : boxes)
            ASSERT_EQ(box->look().getShaderEffect(), nullptr);
    };
    auto const countLive = [] {
        qor::AllocationCounts const counts = qor::getAllocationCounts();
        return counts.allocations - counts.frees;
    };
    for (int round = 0; round < 17; ++round)
        run(round);
    std::size_t const effectCount = effects.size(), live = countLive();
    std::size_t const heap = mallinfo2().uordblks;
    int const objects = host.trace().getLiveObjects();
    EXPECT_EQ(effectCount, std::size_t(atOnce)) << "ten of each kind at once";
    for (int round = 0; round < 25; ++round)
        run(round);
    EXPECT_EQ(effects.size(), effectCount);
    EXPECT_EQ(countLive(), live);
    EXPECT_EQ(host.trace().getLiveObjects(), objects);
    EXPECT_LT(mallinfo2().uordblks, heap + 4096) << "beside the counted ones";
    // Taking one and giving it back is free of allocations.
    support::HeapScope const scope;
    for (int i = 0; i < 1000; ++i) {
        ShaderEffect* const effect = manager().getEffect(effectNames[std::size_t(i) % 4]);
        effect->setOwner(host.box->getHandler());
        effect->setParams(params);
        effect->setCurrTime(float(i));
        effect->destroy();
    }
    EXPECT_EQ(scope.getAllocations(), 0u);
}

TEST_F(EffectLife, ARunningEffectAllocatesNothing) {
    for (char const* name : effectNames) {
        host.start(name, {{"duration", 100}, {"quadSize", 16}});
        for (int frame = 0; frame < 2; ++frame) {
            host.advance(0.25);
            host.drawWidget(*host.box);
        }
        support::HeapScope const scope;
        host.advance(0.25);
        host.drawWidget(*host.box);
        EXPECT_EQ(scope.getAllocations(), 0u) << name;
    }
}

/// Effect files of one's own in front of the toolkit's.
class BrokenEffects : public EffectLife {
protected:
    BrokenEffects() : folder(fs::temp_directory_path() / ("vorlex_effects_" + std::to_string(::getpid()))) {
        fs::create_directories(folder / "ScenarioDesk");
        qor::setAssetRoots({folder.string().c_str(), "assets"});
    }
    ~BrokenEffects() override { fs::remove_all(folder); }

    fs::path const folder;
};

TEST_F(BrokenEffects, AFileThatCannotBeReadIsNamedWithItsCauseAndTheWidgetIsDrawnWithout) {
    std::pair<char const*, char const*> const kinds[] = {{"alpha", "Unable to create ShaderEffectAlpha!"},
                                                         {"showMsg", "Unable to create ShaderEffectShowMsg!"},
                                                         {"flickerQuads", "Unable to create ShaderEffectFlickerQuads!"},
                                                         {"appearQuads", "Unable to create ShaderEffectShowMsg!"}};
    for (char const* file : {"guiAlpha", "guiShowMsg", "guiFlickerQuads", "guiAppearQuads"})
        std::ofstream(folder / "ScenarioDesk" / (std::string(file) + ".fx")) << "\n[parameters]\nvec9 x\n";
    for (auto const& [name, message] : kinds) {
        support::LogCapture log;
        ShaderEffect* const effect = host.start(name, {{"duration", 1}});
        ASSERT_NE(effect, nullptr);
        host.frame();
        host.frame();
        ASSERT_EQ(log.getLines().size(), 2u) << log.dump();
        EXPECT_EQ(log.getLines()[0].text, message);
        EXPECT_EQ(log.getLines()[0].level, 64);
        EXPECT_EQ(log.getLines()[0].tag, "VORLEX");
        EXPECT_NE(log.getLines()[1].text.find(".fx:3: "), std::string::npos) << log.dump();
        EXPECT_FALSE(host.drawBox().effect);
        EXPECT_EQ(host.traceDraw(*host.box), host.traceMake(*host.box));
        EXPECT_NE(host.traceDraw(*host.box).find("drawQuads"), std::string::npos) << "shown without effect";
        host.advance(1.0);
        EXPECT_EQ(host.box->look().getShaderEffect(), nullptr);
        // The idle one serves again and says nothing more; another one says it again.
        EXPECT_EQ(host.start(name, {}), effect);
        EXPECT_EQ(log.getLines().size(), 2u);
        EXPECT_NE(manager().getEffect(name), effect);
        EXPECT_EQ(log.count(message), 2u);
        host.start(nullptr, {});
    }
}

TEST_F(BrokenEffects, AMissingFileIsToldLikewise) {
    qor::setAssetRoots({folder.string().c_str()});
    support::LogCapture const log;
    host.start("alpha", {});
    EXPECT_EQ(log.count("Unable to create ShaderEffectAlpha!"), 1u);
    EXPECT_TRUE(log.contains("guiAlpha.fx")) << log.dump();
}

}  // namespace
