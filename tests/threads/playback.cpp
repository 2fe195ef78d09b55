#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "gui_lib/graphics/GraphicCommandGuards.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawText.h"
#include "host/CommandPlayer.h"
#include "platform/qor/RenderingThread.h"
#include "platform/trace/vtxTraceDevice.h"
#include "platform/vtx/vtxFont.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShaderQuads.h"
#include "platform/vtx/vtxTextureManager.h"

namespace {

using Rect = osg::RectImpl<osg::Vec2i>;

/// A thread that plays the list it is handed in a pass of its own, while the test records the next one.
class PlayingThread {
public:
    explicit PlayingThread(std::shared_ptr<vtxTraceLog> log) : log_(std::move(log)), thread_([this] { run_(); }) {}
    ~PlayingThread() {
        waitUntilIdle();
        {
            std::lock_guard const guard(lock_);
            stopping_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }

    void hand(gui::GraphicCommands const& list) {
        {
            std::lock_guard const guard(lock_);
            list_ = &list;
        }
        changed_.notify_all();
    }
    void waitUntilIdle() {
        std::unique_lock guard(lock_);
        changed_.wait(guard, [&] { return !list_; });
    }
    /// The quads of the list that was played last. Only while idle.
    unsigned getQuads() const { return quads_; }

private:
    void run_() {
        std::unique_lock guard(lock_);
        while (true) {
            changed_.wait(guard, [&] { return list_ || stopping_; });
            if (!list_)
                return;
            gui::GraphicCommands const& list = *list_;
            guard.unlock();
            play_(list);
            guard.lock();
            list_ = nullptr;
            changed_.notify_all();
        }
    }

    void play_(gui::GraphicCommands const& list) {
        vtxRenderer* const renderer = vtxRenderer::get();
        vtxRenderer::ProjectionMatrixGuard projection;
        projection.makeOrtho2D(0.0f, 800.0f, 600.0f, 0.0f);
        log_->takeFrame();
        renderer->beginDraw(vtxRenderer::TechniqueNormal);
        host::CommandPlayer::draw(list);
        renderer->endDraw();
        quads_ = log_->takeFrame().quads;
    }

    std::shared_ptr<vtxTraceLog> log_;
    std::mutex lock_;
    std::condition_variable changed_;
    gui::GraphicCommands const* list_ = nullptr;
    bool stopping_ = false;
    unsigned quads_ = 0;
    std::thread thread_;
};

/// Records `count` squares under a clip and a line of text whose glyphs differ from frame to frame.
void record(gui::GraphicCommands& list, int count, std::shared_ptr<vtxFont> const& font) {
    gui::GraphicCommandClipRectGuard const clip(&list, Rect(0, 0, 800, 600));
    vtxShaderQuads quads;
    quads.beginBatch(nullptr, 0);
    for (int i = 0; i < count; ++i) {
        quads.addBatchQuad(float(i * 10), 0, 8, 8, -1);
        quads.addBatchTexCoords(0, 0, 0, 0);
    }
    quads.endBatch();
    list.drawQuads(quads, osg::Vec4f(1, 1, 1, 1), 0, -1);
    // Letters alone, so that each element is one quad.
    wchar_t const letters[] = {wchar_t(L'A' + count % 26), wchar_t(L'a' + count * 7 % 26)};
    EXPECT_GT(font->getTextWidth(std::wstring_view(letters, 2), -1.0f), 0);
    gui::GraphicCommandOpacityGuard const opacity(&list, 0.5f);
    list.drawText(std::wstring_view(letters, 2), font, osg::Vec4f(1, 1, 1, 1), -1.0f);
}

TEST(PlaybackOnAnotherThread, showsEachListWholeWhileTheNextIsRecorded) {
    auto device = std::make_unique<vtxTraceDevice>(osg::Vec2i(800, 600));
    std::shared_ptr<vtxTraceLog> const log = device->getLog();
    log->setRecording(false);
    vtxRenderer* const renderer = vtxRenderer::create(std::move(device));
    {
        auto const font = renderer->getFontManager()->getFont("assets/fonts/DejaVuSans.ttf", 16, vtxFont::BlurNone);
        ASSERT_TRUE(font);
        gui::GraphicCommands lists[2];
        PlayingThread player(log);
        for (int frame = 0; frame < 120; ++frame) {
            gui::GraphicCommands& next = lists[frame % 2];
            int const count = 1 + frame % 40;
            record(next, count, font);

            // The hand-over: nobody plays.
            player.waitUntilIdle();
            if (frame > 0) {
                EXPECT_EQ(player.getQuads(), unsigned(1 + (frame - 1) % 40 + 2)) << "frame " << frame - 1;
            }
            host::CommandPlayer::release(lists[(frame + 1) % 2]);
            renderer->getFontManager()->doRedraw();
            host::CommandPlayer::doRedraw(next);
            renderer->getTextureManager()->flushReleased();
            player.hand(next);
        }
        player.waitUntilIdle();
        host::CommandPlayer::release(lists[1]);
    }
    gui::GraphicCommandDrawText::destroyTextStrings();
    vtxRenderer::destroy();
    EXPECT_FALSE(log->hasMisuse()) << (log->hasMisuse() ? log->getMisuses()[0].c_str() : "");
}

}  // namespace
