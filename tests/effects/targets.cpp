#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "gui_lib/controls/scroll/ScrollPane.h"
#include "platform/trace/vtxTraceLog.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "tests/effects/EffectStage.h"

namespace {

using gui::Widget;
using osg::Vec2i;

/// Boxes in boxes, three deep, the middle one with clip insets; places follow from a number.
struct Nest {
    Nest(SkinBox& box, unsigned number) : outer(box) {
        auto const next = [&number](int range) {
            number = number * 1664525u + 1013904223u;
            return int(number >> 16) % range;
        };
        outer.place(7 + next(20), 5 + next(20), 110, 80);
        middle = outer.add(new SkinBox("cut"));
        middle->place(4 + next(20), 3 + next(20), 70, 60);
        inner = middle->add(new SkinBox("faint"));
        inner->place(next(12), next(12), 55, 50);
        for (int i = 0; i < 4; ++i)
            inner->add(new SkinBox(i % 2 ? "faint" : "green"))->place(next(40), next(40), 5 + next(20), 5 + next(20));
        outer.add(new SkinBox("faint"))->place(50 + next(50), 40 + next(30), 40, 30);
    }

    SkinBox& outer;
    SkinBox* middle;
    SkinBox* inner;
};

class TargetPixels : public testing::TestWithParam<float> {};

INSTANTIATE_TEST_SUITE_P(Scales, TargetPixels, testing::Values(1.0f, 2.0f, 3.0f));

TEST_P(TargetPixels, NestedAndClippedTargetsShowWhatIsSeenWithoutThem) {
    for (unsigned number = 1; number <= 3; ++number) {
        EffectStage stage(EglContext::Api::GL33, Vec2i(480, 360), GetParam());
        Nest nest(*stage.host->box, number);
        SkinBox* const boxes[] = {&nest.outer, nest.middle, nest.inner};
        stage.host->frame();
        Picture const plain = stage.take();
        for (int chosen = 1; chosen < 8; ++chosen) {
            for (int i = 0; i < 3; ++i)
                boxes[i]->setDrawToTarget(chosen >> i & 1);
            for (int frame = 0; frame < 3; ++frame)
                stage.host->frame();
            Picture const picture = stage.take();
            // The outer one is opaque: nothing at all may differ. In the others each blending may round anew.
            EXPECT_LE(getLargestDifference(picture, plain), chosen == 1 ? 0 : 2) << number << " targets " << chosen;
            EXPECT_TRUE(stage.take(true).pixels == picture.pixels) << "recorded, targets " << chosen;
        }
    }
}

TEST_P(TargetPixels, SamplesMipsAndALargerTargetChangeNothingWhereEdgesLieOnPixels) {
    EffectStage stage(EglContext::Api::GL33, Vec2i(480, 360), GetParam());
    Nest nest(*stage.host->box, 5);
    nest.outer.setDrawToTarget(true);
    stage.host->frame();
    Picture const plain = stage.take();
    struct Setting {
        int msaa, mips;
        Vec2i size;
    };
    for (Setting const& each : {Setting{4, 1, Vec2i()},
                                {0, 4, Vec2i()},
                                {2, 3, Vec2i()},
                                {0, 1, Vec2i(150, 100)},
                                {4, 30, Vec2i(113, 97)},
                                {0, 1, Vec2i(110, 0)}}) {
        nest.outer.look().setTargetMsaa(each.msaa);
        nest.outer.look().setTargetMips(each.mips);
        nest.outer.look().setTargetSize(each.size);
        stage.host->frame();
        EXPECT_TRUE(stage.take().pixels == plain.pixels) << each.msaa << ' ' << each.mips << ' ' << each.size.x();
        EXPECT_TRUE(stage.take(true).pixels == plain.pixels) << each.msaa << ' ' << each.mips;
    }
}

TEST(TargetPixels, ATargetWhoseSizeIsSetKeepsShowingWhatItWasMadeFor) {
    EffectStage stage(EglContext::Api::GL33, Vec2i(200, 150));
    SkinBox& box = *stage.host->box;
    box.place(10, 20, 40, 30);
    box.setDrawToTarget(true);
    box.look().setTargetSize(Vec2i(60, 50));
    stage.host->frame();
    auto const target = box.look().target;
    box.setSize(Vec2i(60, 50));
    stage.host->frame();
    EXPECT_EQ(box.look().target, target);
    EXPECT_EQ(stage.take().at(49, 49), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(stage.take().at(50, 30), (Pixel{0, 0, 0, 255}));
    EXPECT_EQ(stage.take().at(30, 50), (Pixel{0, 0, 0, 255}));
}

/// A pane of 120 by 80 over boxes that reach far beyond it, some of them in one another.
struct Scrolled {
    Scrolled() {
        pane.setPosition(Vec2i(20, 10));
        pane.setSize(Vec2i(120, 80));
        for (int i = 0; i < 4; ++i) {
            boxes.push_back(new SkinBox(i % 2 ? "green" : "red"));
            boxes.back()->place(10 + 70 * i, 5 + 50 * i, 60, 45);
            boxes.back()->add(new SkinBox("cut"))->place(5, 5, 50, 30);
            pane.insertWidget(boxes.back(), -1);
        }
    }

    gui::ScrollPane& pane = *new gui::ScrollPane;
    std::vector<SkinBox*> boxes;
};

TEST_P(TargetPixels, WhatIsScrolledIsCutByThePaneAlsoAsATarget) {
    EffectStage stage(EglContext::Api::GL33, Vec2i(480, 360), GetParam());
    Scrolled scrolled;
    gui::ScrollPane& pane = scrolled.pane;
    auto const settle = [&] {
        for (int frame = 0; frame < 3; ++frame)
            stage.host->frame();
    };
    settle();
    for (Vec2i const& place : {Vec2i(0, 0), Vec2i(30, 22), Vec2i(131, 80)}) {
        auto const show = [&](bool inner, bool outer) {
            for (SkinBox* const box : scrolled.boxes)
                box->setDrawToTarget(inner);
            pane.setDrawToTarget(outer);
            settle();
            Picture const picture = stage.take(pane);
            EXPECT_TRUE(stage.take(pane, true).pixels == picture.pixels) << "recorded " << inner << outer;
            return picture;
        };
        pane.setHorzScrollValue(place.x());
        pane.setVertScrollValue(place.y());
        settle();
        Picture const plain = show(false, false);
        // The third box, which the last place shows whole and the first one not at all.
        Pixel const shown = plain.at(int((30 + 150 - 131) * GetParam()), int((12 + 105 - 80) * GetParam()));
        EXPECT_EQ(shown, (place.x() == 131 ? Pixel{255, 0, 0, 255} : shown));
        EXPECT_EQ(getLargestDifference(show(true, false), plain), 0) << "opaque boxes at " << place.x();
        EXPECT_LE(getLargestDifference(show(false, true), plain), 2) << "the pane at " << place.x();
        EXPECT_LE(getLargestDifference(show(true, true), plain), 2) << "both at " << place.x();
        // An effect at rest is cut likewise.
        gui::skin::ShaderEffectParams params;
        params["duration"] = 0.0f;
        for (SkinBox* const box : scrolled.boxes)
            box->setShaderEffect("flickerQuads", &params);
        EXPECT_LE(getLargestDifference(show(true, false), plain), 1) << "with effects at " << place.x();
        for (SkinBox* const box : scrolled.boxes)
            box->setShaderEffect(nullptr, nullptr);
    }
}

TEST(TargetPixels, AZoomedSubtreeIsItsPictureAtAnotherSize) {
    EffectStage stage(EglContext::Api::GL33, Vec2i(200, 150));
    SkinBox& box = *stage.host->box;
    box.place(10, 20, 40, 30);
    box.add(new SkinBox("green"))->place(20, 0, 20, 30);
    box.setDrawToTarget(true);
    stage.host->frame();
    auto const check = [&](float zoom) {
        Picture const picture = stage.take();
        EXPECT_EQ(picture.at(10 + int(15 * zoom), 20 + int(29 * zoom)), (Pixel{255, 0, 0, 255})) << zoom;
        EXPECT_EQ(picture.at(10 + int(39 * zoom), 20 + int(29 * zoom)), (Pixel{0, 255, 0, 255})) << zoom;
        EXPECT_EQ(picture.at(11 + int(40 * zoom), 25), (Pixel{0, 0, 0, 255})) << zoom;
        EXPECT_TRUE(stage.take(true).pixels == picture.pixels) << zoom;
    };
    check(1.0f);
    auto const first = box.look().target;
    // As in an animation: the size at zoom 1 stays, and with it the target.
    for (float const zoom : {1.5f, 2.0f, 3.5f, 0.5f}) {
        box.setZoom(zoom);
        box.setSize(Vec2i(int(40 * zoom), int(30 * zoom)));
        for (int frame = 0; frame < 3; ++frame)
            stage.host->frame();
        check(zoom);
    }
    EXPECT_EQ(box.look().target, first);
}

class TargetStorage : public testing::Test {
protected:
    TargetStorage() { host.trace().setRecording(true); }

    int countTargets() {
        int count = 0;
        for (qor::string const& line : host.trace().getLines())
            count += int(line.find("createTarget") == 0) - int(line.find("destroy R") == 0);
        return count;
    }
    void rest(int frames) {
        for (int frame = 0; frame < frames; ++frame) {
            host.frame();
            host.trace().setRecording(true);
        }
    }

    EffectHost host;
};

TEST_F(TargetStorage, AWidgetResizedEachFrameKeepsOneAndAFewThatWaitForAWhile) {
    host.box->setDrawToTarget(true);
    for (int i = 0; i < 200; ++i) {
        host.box->setSize(Vec2i(20 + i, 30));
        host.frame();
        ASSERT_LE(countTargets(), 1 + 8 + 1) << "in use, idle, and to be ended by the next pass";
        ASSERT_EQ(host.box->look().target.use_count(), 1);
    }
    rest(62);
    EXPECT_EQ(countTargets(), 1);
    // Between two sizes storage goes to and fro.
    std::size_t const before = host.trace().getLines().size();
    for (int i = 0; i < 40; ++i) {
        host.box->setSize(Vec2i(50 + i % 2, 30));
        host.frame();
    }
    int made = 0;
    for (std::size_t i = before; i < host.trace().getLines().size(); ++i)
        made += host.trace().getLines()[i].find("createTarget") == 0;
    EXPECT_LE(made, 3);
    host.box->setDrawToTarget(false);
    rest(63);
    EXPECT_EQ(countTargets(), 0);
}

TEST_F(TargetStorage, AtMostEightWaitForTheNextOfTheirSizeSamplesAndMips) {
    std::vector<SkinBox*> boxes;
    for (int i = 0; i < 20; ++i) {
        boxes.push_back(host.box->add(new SkinBox("red")));
        boxes.back()->setSize(Vec2i(10 + i, 10));
        boxes.back()->setDrawToTarget(true);
    }
    rest(2);
    EXPECT_EQ(countTargets(), 20);
    for (SkinBox* const box : boxes)
        box->setDrawToTarget(false);
    rest(3);
    EXPECT_EQ(countTargets(), 8);
    boxes[19]->setDrawToTarget(true);
    rest(1);
    EXPECT_EQ(countTargets(), 8) << "one of those that wait serves";
    boxes[18]->look().setTargetMsaa(4);
    boxes[18]->setDrawToTarget(true);
    rest(1);
    EXPECT_EQ(countTargets(), 9) << "none of those has samples";
    rest(62);
    EXPECT_EQ(countTargets(), 2);
}

}  // namespace
