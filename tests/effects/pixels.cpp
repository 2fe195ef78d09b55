#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>
#include <tuple>

#include <gtest/gtest.h>

#include "gui_lib/frame/GUI.h"
#include "platform/qor/Paths.h"
#include "tests/effects/EffectHost.h"
#include "tests/effects/EffectStage.h"
#include "tests/support/LogCapture.h"

namespace {

namespace fs = std::filesystem;

using support::LogCapture;

/// On a black screen of 160 x 120: a red box of 64 x 48 at (48, 36), whose right half is covered by a green one.
class EffectPixels : public testing::TestWithParam<EglContext::Api> {
protected:
    EffectPixels() : stage(GetParam(), osg::Vec2i(160, 120)) {
        stage.host->box->place(48, 36, 64, 48);
        stage.host->box->add(new SkinBox("green"))->place(32, 0, 32, 48);
    }

    /// Starts the effect and shows it after shares of its second.
    template <class Check>
    void play(char const* name, Params const& values, Check check) {
        stage.host->start(name, values);
        stage.host->frame();
        for (int moment = 0; moment < 5; ++moment) {
            Picture const picture = stage.take();
            check(picture, float(moment) / 4, "moment " + std::to_string(moment));
            EXPECT_TRUE(stage.take(true).pixels == picture.pixels) << "recorded and played, moment " << moment;
            // Just before its end it still runs.
            stage.host->app().time += moment == 3 ? 0.2499 : 0.25;
            stage.host->frame();
        }
        EXPECT_EQ(stage.host->box->look().getShaderEffect(), nullptr);
        EXPECT_EQ(stage.take().at(50, 60), red) << "afterwards all is as it was";
    }

    Pixel const red{255, 0, 0, 255}, green{0, 255, 0, 255}, black{0, 0, 0, 255};
    EffectStage stage;
};

INSTANTIATE_TEST_SUITE_P(Contexts, EffectPixels, testing::Values(EglContext::Api::GL33, EglContext::Api::ES30),
                         [](auto const& info) { return info.param == EglContext::Api::GL33 ? "GL33" : "ES30"; });

TEST_P(EffectPixels, AlphaFadesThePictureEvenly) {
    play("alpha", {{"duration", 1}}, [&](Picture const& picture, float t, std::string const& moment) {
        int const level = int(std::lround(255 * t));
        EXPECT_TRUE(isNear(picture.at(48, 36), {level, 0, 0, 255}, 1)) << moment;
        EXPECT_TRUE(isNear(picture.at(79, 83), {level, 0, 0, 255}, 1)) << moment;
        EXPECT_TRUE(isNear(picture.at(80, 83), {0, level, 0, 255}, 1)) << moment;
        EXPECT_EQ(picture.at(47, 36), black);
        EXPECT_EQ(picture.at(112, 60), black);
        EXPECT_EQ(picture.at(80, 84), black);
    });
    // Beyond 1 the picture is not brighter than it is, what is faint does become denser, and below 0 there is none.
    for (auto const& [alpha, grey, blue] : {std::tuple(1.5f, 128, 192), {4.0f, 128, 255}, {-1.0f, 0, 0}}) {
        for (char const* ground : {"grey", "faint"}) {
            stage.host->box->look().load(ground);
            stage.host->start("alpha", {{"alphaBegin", alpha}, {"alphaEnd", alpha}});
            stage.host->frame();
            Pixel const expected = ground[0] == 'g' ? Pixel{grey, grey, grey, 255} : Pixel{0, 0, blue, 255};
            EXPECT_TRUE(isNear(stage.take().at(50, 60), expected, 2)) << ground << alpha;
        }
    }
}

TEST_P(EffectPixels, ShowMsgGrowsFromTheMiddle) {
    play("showMsg", {{"alphaBegin", 1}}, [&](Picture const& picture, float t, std::string const& moment) {
        float const halfWidth = 32 * t, halfHeight = 24 * t;
        for (int x = 0; x < 160; x += 3) {
            float const aside = std::abs(float(x) + 0.5f - 80);
            if (std::abs(aside - halfWidth) < 1 || aside < 2)
                continue;  // on an edge
            Pixel const expected = aside > halfWidth ? black : x < 80 ? red : green;
            EXPECT_EQ(picture.at(x, 60), expected) << moment << " at " << x;
        }
        for (int y = 0; y < 120; y += 3) {
            float const aside = std::abs(float(y) + 0.5f - 60);
            if (std::abs(aside - halfHeight) >= 1 && halfWidth > 12) {
                EXPECT_EQ(picture.at(70, y), aside > halfHeight ? black : red) << moment << " at " << y;
            }
        }
    });
    play("showMsg", {{"easingSize", 0}, {"alphaBegin", 1}}, [&](Picture const& picture, float, std::string const&) {
        EXPECT_EQ(picture.at(80, 60), black) << "it holds its first size, which is none";
    });
}

TEST_P(EffectPixels, QuadsAppearTooLargeAndShrinkIntoTheirPlaces) {
    // What hides the part beyond the widget is its own clip.
    gui::GUI::DisableClippingGuard const unclipped;
    play("appearQuads", {{"quadSize", 16}, {"alphaBegin", 1}},
         [&](Picture const& picture, float t, std::string const& moment) {
             float const beyond = 8 * (1 - t);
             for (int x = 0; x < 160; ++x) {
                 float const left = 48 - beyond, right = 112 + beyond, at = float(x) + 0.5f;
                 if (std::abs(at - left) < 1 || std::abs(at - right) < 1)
                     continue;
                 Pixel const pixel = picture.at(x, 44);
                 if (at < left || at > right)
                     EXPECT_EQ(pixel, black) << moment << " at " << x;
                 else  // quads that overlap add to each other
                     EXPECT_TRUE(pixel[0] + pixel[1] >= 245 && pixel[2] == 0) << moment << " at " << x;
             }
             EXPECT_GT(picture.at(79 - int(beyond) - 1, 44)[0], 240) << moment;
             EXPECT_GT(picture.at(80 + int(beyond) + 1, 44)[1], 240) << moment;
             if (beyond > 1) {
                 EXPECT_GT(picture.at(80 - int(beyond) + 1, 44)[1], 240) << "the later quad lies above, " << moment;
             }
         });
    stage.host->start("appearQuads", {{"quadSize", 16}, {"alphaBegin", 0.5f}, {"alphaEnd", 0.5f}});
    stage.host->advance(0.9999);
    Picture const last = stage.take();
    std::set<int> levels;
    for (int quad = 0; quad < 12; ++quad) {
        Pixel const pixel = last.at(56 + quad % 4 * 16, 44 + quad / 4 * 16);
        levels.insert(pixel[0] + pixel[1]);
        EXPECT_NEAR(pixel[0] + pixel[1], 128, 12);
    }
    EXPECT_GT(levels.size(), 4u) << "each with its own noise";
}

TEST_P(EffectPixels, QuadsFlickerEachByItself) {
    play("flickerQuads", {{"quadSize", 16}}, [&](Picture const& picture, float t, std::string const& moment) {
        std::set<int> levels;
        for (int quad = 0; quad < 12; ++quad) {
            int const x = 48 + quad % 4 * 16, y = 36 + quad / 4 * 16, channel = quad % 4 < 2 ? 0 : 1;
            int const level = picture.at(x, y)[std::size_t(channel)];
            EXPECT_NEAR(level, 255 * t, 11) << moment;
            for (int corner : {15, 15 * 160, 15 * 161})
                EXPECT_EQ(picture.at(x + corner % 160, y + corner / 160), picture.at(x, y)) << moment;
            levels.insert(level);
        }
        // Below 0 and above 1 there are no others.
        EXPECT_GT(levels.size(), t == 0 || t == 1 ? 2u : 4u) << moment;
        EXPECT_EQ(picture.at(47, 40), black);
        EXPECT_EQ(picture.at(112, 40), black);
    });
}

/// For stages of the tests' own.
class EffectScales : public testing::TestWithParam<EglContext::Api> {};

INSTANTIATE_TEST_SUITE_P(Contexts, EffectScales, testing::Values(EglContext::Api::GL33, EglContext::Api::ES30),
                         [](auto const& info) { return info.param == EglContext::Api::GL33 ? "GL33" : "ES30"; });

TEST_P(EffectScales, AGridAtRestShowsTheWidgetPixelByPixelAtAnyScale) {
    for (float const scale : {1.0f, 1.5f, 2.0f}) {
        EffectStage scaled(GetParam(), osg::Vec2i(320, 240), scale);
        SkinBox& box = *scaled.host->box;
        box.place(24, 16, 100, 64);
        for (int i = 0; i < 20; ++i)
            box.add(new SkinBox(i % 3 ? "green" : "faint"))->place(2 + i * 4, 1 + i * 3, 7, 2 + i % 5);
        box.setDrawToTarget(true);
        scaled.host->frame();
        Picture const plain = scaled.take();
        for (float const quadSize : {32.0f, 15.0f, 7.0f, 500.0f}) {
            scaled.host->start("flickerQuads", {{"duration", 0}, {"quadSize", quadSize}});
            scaled.host->frame();
            ASSERT_NE(box.look().getShaderEffect(), nullptr);
            EXPECT_TRUE(scaled.take().pixels == plain.pixels) << scale << " in quads of " << quadSize;
        }
    }
}

/// Whether all within a rectangle is the same in both.
bool agree(Picture const& first, Picture const& second, osg::RectImpl<osg::Vec2i> const& rect) {
    for (int y = rect.y1; y < rect.y2; ++y)
        for (int x = rect.x1; x < rect.x2; ++x)
            if (first.at(x, y) != second.at(x, y))
                return false;
    return true;
}

TEST_P(EffectScales, AGridOfAPictureThatEndsWithinAPixelOrIsZoomedKeepsItsPlace) {
    EffectStage stage(GetParam(), osg::Vec2i(320, 240), 1.5f);
    SkinBox& box = *stage.host->box;
    // 151.5 by 94.5 pixels: of the last column and row only a half is in use.
    box.place(20, 10, 101, 63);
    box.add(new SkinBox("green"))->place(60, 20, 30, 30);
    box.add(new SkinBox("faint"))->place(90, 20, 11, 40);
    box.setDrawToTarget(true);
    stage.host->frame();
    Picture const plain = stage.take();
    Params const still = {{"duration", 0}, {"quadSize", 10}};
    stage.host->start("flickerQuads", still);
    stage.host->frame();
    EXPECT_TRUE(agree(stage.take(), plain, {0, 0, 30 + 151, 15 + 94}));
    // Zoomed: the picture as it is, and nothing beside it.
    box.setZoom(1.5f);
    box.setSize(osg::Vec2i(151, 94));
    for (int frame = 0; frame < 3; ++frame)
        stage.host->frame();
    EXPECT_TRUE(agree(stage.take(), plain, {0, 0, 30 + 150, 15 + 93}));
    EXPECT_EQ(stage.take().at(30 + 154, 60), (Pixel{0, 0, 0, 255}));
    EXPECT_EQ(stage.take().at(60, 15 + 97), (Pixel{0, 0, 0, 255}));
}

TEST_P(EffectPixels, OpacityClipAndAnOuterTargetHoldForAnEffectToo) {
    SkinBox& box = *stage.host->box;
    auto* const outer = new SkinBox("faint");
    outer->place(40, 30, 50, 60);
    outer->add(&box);
    box.place(8, 6, 64, 48);  // at (48, 36) still; cut at x = 90
    for (bool const target : {false, true}) {
        outer->setDrawToTarget(target);
        for (char const* name : effectNames) {
            box.setOpacity(0.5f);
            stage.host->start(name, {{"duration", 8}, {"alphaBegin", 1}, {"easingSize", 0}, {"quadSize", 64}});
            stage.host->advance(name[0] == 's' ? 7.999 : 0.001);
            Picture const picture = stage.take(*outer);
            int const noise = std::string_view(name).ends_with("Quads") ? 12 : 2;
            if (name[0] != 's') {
                EXPECT_TRUE(isNear(picture.at(50, 50), {128, 0, 64, 255}, noise)) << name << target;
                EXPECT_TRUE(isNear(picture.at(89, 50), {0, 128, 64, 255}, noise)) << name << target;
            }
            EXPECT_TRUE(isNear(picture.at(44, 50), {0, 0, 128, 255}, noise)) << name << target;
            EXPECT_EQ(picture.at(90, 50), black) << name << target;
            EXPECT_TRUE(stage.take(*outer, true).pixels == picture.pixels) << name << target;
        }
    }
}

TEST_P(EffectPixels, WithinAnotherTargetItMovesOnWithTime) {
    SkinBox& box = *stage.host->box;
    auto* const outer = new SkinBox("faint");
    outer->place(0, 0, 160, 120);
    auto* const between = outer->add(new SkinBox("faint"));
    between->place(0, 0, 160, 120);
    between->add(&box);
    outer->setDrawToTarget(true);
    stage.host->start("alpha", {{"duration", 4}});
    stage.host->frame();
    for (int second = 1; second < 4; ++second) {
        stage.host->advance(1.0);
        Picture const picture = stage.take(*outer);
        EXPECT_NEAR(picture.at(50, 60)[0], 255 * second / 4, 2);
        EXPECT_TRUE(stage.take(*outer, true).pixels == picture.pixels) << second;
    }
    box.setVisible(false);
    stage.host->advance(0.1);
    int redraws = 0;
    outer->setRedrawCallback([&redraws] { ++redraws; });
    stage.host->advance(0.1);
    EXPECT_EQ(redraws, 0) << "out of sight";
}

TEST_P(EffectPixels, ATargetOfAnotherSizeShowsThePictureAsItIs) {
    SkinBox& box = *stage.host->box;
    box.setDrawToTarget(true);
    stage.host->frame();
    Picture const plain = stage.take();
    for (osg::Vec2i const& size : {osg::Vec2i(100, 48), osg::Vec2i(70, 90)}) {
        box.look().setTargetSize(size);
        for (char const* name : {"alpha", "showMsg", "flickerQuads"}) {
            stage.host->start(name, {{"duration", name[0] == 'f' ? 0.0f : 1.0f}, {"alphaBegin", 1}, {"quadSize", 10}});
            stage.host->advance(0.99999);
            ASSERT_NE(box.look().getShaderEffect(), nullptr);
            EXPECT_LE(getLargestDifference(stage.take(), plain), 1) << name << size.x();
            EXPECT_LE(getLargestDifference(stage.take(true), plain), 1) << name << size.x();
        }
    }
}

TEST_P(EffectPixels, AFileThatDoesNotCompileIsToldWithTheCompilersMessageAndTheWidgetIsDrawnWithout) {
    stage.host->frame();
    Picture const plain = stage.take();
    fs::path const folder = fs::temp_directory_path() / ("vorlex_shader_" + std::to_string(::getpid()));
    fs::create_directories(folder / "ScenarioDesk");
    std::ofstream(folder / "ScenarioDesk" / "guiAlpha.fx")
        << "[parameters]\nfloat timeCoeff = 1\n[vertex]\nvoid effectVertex() { gl_Position = vec4(0.0); }\n"
           "[fragment]\nvoid effectFragment()\n{\n    result = unheardOf;\n}\n";
    qor::setAssetRoots({folder.string().c_str(), "assets"});
    LogCapture const log;
    stage.host->start("alpha", {{"duration", 1}});
    for (int i = 0; i < 3; ++i) {
        stage.host->frame();
        EXPECT_TRUE(stage.take().pixels == plain.pixels);
        EXPECT_TRUE(stage.take(true).pixels == plain.pixels);
    }
    ASSERT_EQ(log.getLines().size(), 2u) << log.dump();
    EXPECT_EQ(log.getLines()[0].text, "Unable to create ShaderEffectAlpha!");
    EXPECT_NE(log.getLines()[1].text.find("guiAlpha.fx:8: "), std::string::npos) << log.dump();
    EXPECT_NE(log.getLines()[1].text.find("unheardOf"), std::string::npos) << log.dump();
    stage.host->advance(1.0);
    EXPECT_EQ(stage.host->box->look().getShaderEffect(), nullptr);
    fs::remove_all(folder);
}

}  // namespace
