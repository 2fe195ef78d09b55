#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "gui_lib/graphics/GraphicCommandGuards.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/graphics/ScratchGraphicCommands.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawShapes.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawToTarget.h"
#include "gui_lib/graphics/commands/GraphicCommandModelViewMatrix.h"
#include "gui_lib/graphics/commands/GraphicCommandParse.h"
#include "gui_lib/graphics/commands/GraphicCommandRects.h"
#include "gui_lib/graphics/commands/GraphicCommandStates.h"
#include "host/CommandPlayer.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "tests/support/HeapScope.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace gui;

struct Stat {
    int all = -1;
    int free = -1;
};

template <typename Command>
Stat stat() {
    support::LogCapture log;
    Command::stat();
    Stat result;
    auto const lines = log.getLines();
    if (lines.size() == 1 && lines[0].tag == "VORLEX" && lines[0].level == 64) {
        char name[41] = {};
        std::sscanf(lines[0].text.c_str(), "~~~ %40s all:%d free:%d", name, &result.all, &result.free);
    }
    return result;
}

TEST(CommandPools, aReleasedCommandIsFetchedNext) {
    Stat const before = stat<GraphicCommandDrawCircle>();
    ASSERT_GE(before.free, 0);
    GraphicCommand* const first = GraphicCommandDrawCircle::fetch();
    GraphicCommand* const second = GraphicCommandDrawCircle::fetch();
    EXPECT_NE(first, second);
    first->release();
    second->release();
    Stat const after = stat<GraphicCommandDrawCircle>();
    EXPECT_EQ(after.all, after.free);
    EXPECT_GE(after.all, 2);
    EXPECT_EQ(static_cast<GraphicCommand*>(GraphicCommandDrawCircle::fetch()), second);
    EXPECT_EQ(stat<GraphicCommandDrawCircle>().free, after.free - 1);
    second->release();
}

TEST(CommandPools, clearReleasesNothing) {
    GraphicCommands list;
    list.popClipRect();
    list.parse({});
    Stat const before = stat<GraphicCommandPopClipRect>();
    GraphicCommand* const clip = list.getCommands().front();
    GraphicCommand* const parse = list.getParseCommands().front();
    list.clear();
    EXPECT_TRUE(list.getCommands().empty());
    EXPECT_TRUE(list.getParseCommands().empty());
    EXPECT_EQ(stat<GraphicCommandPopClipRect>().free, before.free);
    clip->release();
    parse->release();
}

TEST(CommandPools, aDrawToTargetGivesItsInnerCommandsBack) {
    GraphicCommands list;
    {
        ScratchGraphicCommands inner;
        for (int i = 0; i < 3; ++i)
            inner->popViewport();
        list.drawToTarget(nullptr, osg::Vec2i(1, 1), inner->getCommands());
    }
    EXPECT_EQ(list.getCommands().size(), 1u);
    Stat const before = stat<GraphicCommandPopViewport>();
    host::CommandPlayer::play(list);
    EXPECT_EQ(stat<GraphicCommandPopViewport>().free, before.free);
    host::CommandPlayer::release(list);
    EXPECT_TRUE(list.getCommands().empty());
    EXPECT_EQ(stat<GraphicCommandPopViewport>().free, before.free + 3);
}

TEST(CommandPools, nestedScratchListsAreEmptyAndApart) {
    GraphicCommands* reused = nullptr;
    {
        ScratchGraphicCommands outer;
        outer->popClipRect();
        ScratchGraphicCommands inner;
        EXPECT_NE(outer.get(), inner.get());
        EXPECT_TRUE(inner->getCommands().empty());
        reused = outer.get();
        outer->getCommands().front()->release();
    }
    ScratchGraphicCommands again;
    EXPECT_EQ(again.get(), reused);
    EXPECT_TRUE(again->getCommands().empty());
}

TEST(CommandPools, guardsRecordPairsAndThrowOpenChainsAway) {
    Stat const before = stat<GraphicCommandModelViewMatrix>();
    GraphicCommands list;
    {
        GraphicCommandModelViewMatrixGuard guard(&list);
        guard.makeTranslate(1, 2, 0).makeRotate(1, 0, 0, 1).setTranslate(3, 4, 0);
        guard.makeIdentity().makeTranslate(5, 6, 0);
    }
    EXPECT_EQ(list.getCommands().size(), 3u);
    list.setProjectionMatrix(osg::Matrixf());
    EXPECT_EQ(list.getCommands().size(), 3u) << "outside a guard no projection is recorded";
    host::CommandPlayer::release(list);
    Stat const after = stat<GraphicCommandModelViewMatrix>();
    EXPECT_EQ(after.all - after.free, before.all - before.free);
}

}  // namespace
