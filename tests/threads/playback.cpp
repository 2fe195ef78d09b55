#include <algorithm>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <lua.hpp>

#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/controls/small/TextureView.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/frame/WindowsManager.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawGeometry.h"
#include "gui_lib/windows/Window.h"
#include "gui_lib/windows/WindowView.h"
#include "host/CommandPlayer.h"
#include "host/headless/EglContext.h"
#include "platform/gl/vtxGLDevice.h"
#include "platform/qor/Memory.h"
#include "platform/trace/vtxTraceDevice.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTextString.h"
#include "platform/vtx/vtxTextureManager.h"
#include "tests/support/Soak.h"
#include "tests/support/WidgetZoo.h"

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define THREAD_SANITIZER
#endif
#endif

namespace {

using gui::Widget;
using host::CommandPlayer;
using osg::Vec2i;

constexpr int width = 640;
constexpr int height = 400;

/// The thread that draws: runs one job at a time.
class DrawingThread {
public:
    DrawingThread() : thread_([this] { run_(); }) {}
    ~DrawingThread() {
        start({});
        thread_.join();
    }
    DrawingThread(DrawingThread const&) = delete;
    DrawingThread& operator=(DrawingThread const&) = delete;

    /// Returns while the job runs; an empty one ends the thread.
    void start(std::function<void()> job) {
        wait();
        {
            std::lock_guard const guard(lock_);
            job_ = std::move(job);
            busy_ = true;
        }
        changed_.notify_all();
    }
    bool isBusy() {
        std::lock_guard const guard(lock_);
        return busy_;
    }
    void wait() {
        std::unique_lock guard(lock_);
        changed_.wait(guard, [this] { return !busy_; });
    }
    void call(std::function<void()> job) {
        start(std::move(job));
        wait();
    }

private:
    void run_() {
        std::unique_lock guard(lock_);
        while (true) {
            changed_.wait(guard, [this] { return busy_; });
            if (!job_)
                return;
            guard.unlock();
            job_();
            guard.lock();
            busy_ = false;
            changed_.notify_all();
        }
    }

    std::mutex lock_;
    std::condition_variable changed_;
    std::function<void()> job_;
    bool busy_ = false;
    std::thread thread_;
};

/// What a pass showed: its pixels on GL, else how many quads the device was told. (Into how many runs they come is
/// chance: a glyph that the other thread just made ends the run of its page.)
struct Picture {
    unsigned quads = 0;
    qor::vector<unsigned char> pixels;
    bool operator==(Picture const&) const = default;
};

std::unique_ptr<vtxDevice> makeGLDevice() { return vtxCreateGLDevice(); }

std::shared_ptr<vtxFont> getCaptionFont() {
    return vtxRenderer::get()->getFontManager()->getFont("fonts/Inter-Regular.otf", 14, vtxFont::BlurNone);
}

/// Everything that draws, on a thread of its own, where the host starts and ends too.
class Stage {
public:
    explicit Stage(bool pixels) {
        thread_.call([this, pixels] {
            support::TestHost::Settings settings;
            settings.size = Vec2i(width, height);
            if (pixels) {
                qor::string error;
                context_ = EglContext::create(EglContext::Api::GL33, settings.size, error);
                ASSERT_TRUE(context_) << error.c_str();
                settings.makeDevice = makeGLDevice;
            }
            host_ = std::make_unique<support::ZooHost>("skins/dark.lua", settings);
        });
    }
    ~Stage() {
        thread_.call([this] {
            auto* const device = dynamic_cast<vtxTraceDevice*>(&vtxRenderer::get()->getDevice());
            std::shared_ptr<vtxTraceLog> const log = device ? device->getLog() : nullptr;
            host_.reset();
            EXPECT_FALSE(log && log->getLiveObjects() > 0);
            EXPECT_FALSE(context_ && context_->getErrorCount() > 0);
            context_.reset();
        });
    }

    DrawingThread& thread() { return thread_; }
    support::ZooHost& host() { return *host_; }

    /// What the caption is made from. While nothing is drawn.
    void setNumber(int number) { number_ = number; }
    /// On the drawing thread.
    Picture draw(std::function<void()> const& content) {
        if (context_) {
            context_->bindFramebuffer();
            context_->clear(0.2f, 0.3f, 0.4f, 1.0f);
        }
        vtxRenderer& renderer = *vtxRenderer::get();
        osg::RectImpl<Vec2i> const all(0, 0, width, height);
        host_->trace().takeFrame();
        {
            vtxRenderer::ViewportGuard const viewport(all);
            vtxRenderer::ClipRectGuard const clip(all);
            vtxRenderer::ProjectionMatrixGuard projection;
            projection.makeOrtho2D(0.0f, width, height, 0.0f);
            vtxRenderer::ModelViewMatrixGuard modelView;
            modelView.setIdentity();
            renderer.beginDraw(vtxRenderer::TechniqueNormal);
            renderer.getShader()->resetPositionShift();
            renderer.getShader()->turnOnDrawQuads();
            content();
            drawCaption_(renderer);
            renderer.endDraw();
        }
        vtxTraceLog::Counters const counters = host_->trace().takeFrame();
        return {counters.quads, context_ ? context_->readPixels() : qor::vector<unsigned char>()};
    }

private:
    /// What a host draws of its own, with things made and ended here while the other thread makes and ends such things.
    void drawCaption_(vtxRenderer& renderer) {
        vtxTextString caption;
        caption.font = getCaptionFont();
        caption.text = {wchar_t(0x410 + number_ % 60), wchar_t(0x410 + number_ / 60 % 60)};
        caption.textLength = int(caption.text.size());
        caption.position.set(10, height - 10);
        caption.redraw(1.0f);
        caption.draw(renderer.getShader(), osg::Vec4f(1, 1, 1, 1), 1.0f);
        std::unique_ptr<vtxGeometry> const geometry(renderer.createGeometry({}, {}));
        std::unique_ptr<vtxFrameBuffer> const target(renderer.createFrameBuffer(Vec2i(20, 10), 0, 1));
        vtxTextureManager& textures = *renderer.getTextureManager();
        textures.releaseTexture(textures.getTexture("atlas/parts.png", {}, nullptr));
    }

    DrawingThread thread_;
    std::unique_ptr<EglContext> context_;
    std::unique_ptr<support::ZooHost> host_;
    int number_ = 0;
};

/// The recording side: windows to which something random is done all the time.
class Windows {
public:
    Windows(support::ZooHost& host, unsigned seed) : host_(host), engine_(seed) {
        for (int i = 0; i < 3; ++i)
            windows_.push_back(makeWindow_());
        for (int i = 0; i < 20; ++i)
            addWidget_();
    }

    static void getShown(qor::vector<gui::WindowBase*>& shown) {
        shown.clear();
        gui::WindowsManager::get(0)->getShownWindows(shown);
    }

    void act() {
        static constexpr void (Windows::*verbs[])() = {
            &Windows::addWidget_,     &Windows::addWidget_,   &Windows::addWidget_,  &Windows::addWidget_,
            &Windows::moveToParent_,  &Windows::write_,       &Windows::write_,      &Windows::place_,
            &Windows::fade_,          &Windows::disable_,     &Windows::show_,       &Windows::endWidget_,
            &Windows::changeSkin_,    &Windows::changeFont_,  &Windows::changeFont_, &Windows::useMouse_,
            &Windows::changeTexture_, &Windows::changeLabels_};
        (this->*verbs[pick_(std::size(verbs))])();
    }
    void endWidget_() {
        Widget* const widget = pickWidget_();
        auto const* const view = dynamic_cast<gui::TextureView*>(widget);
        vtxTexture* const texture = view ? view->getTexture() : nullptr;
        if (widget)
            Widget::destroy(widget);
        vtxRenderer::get()->getTextureManager()->releaseTexture(texture);
    }
    void endWindow_() {
        gui::Window*& window = windows_[pick_(windows_.size())];
        Widget::destroy(window);
        window = makeWindow_();
    }

    /// In the font of the other thread's caption, pairs of letters that it does not know yet among them.
    void measure() {
        std::shared_ptr<vtxFont> const font = getCaptionFont();
        for (int i = 0; i < 10; ++i) {
            wchar_t const text[] = {wchar_t(0x410 + pick_(60)), wchar_t(0x410 + pick_(60)), 0};
            EXPECT_GT(font->getTextWidth(text, -1.0f), 0);
        }
    }

    /// What a program records of its own: texts in fonts that come and go, and geometry.
    void label(gui::GraphicCommands& list) {
        osg::Vec4f const white(1, 1, 1, 1);
        for (int i = 0; i < 3; ++i) {
            list.shiftPosition(10.0f, float(60 + 40 * i), 1.0f);
            list.drawText(L"Label", fonts_[i], white, -1.0f);
            list.shiftPosition(-10.0f, -float(60 + 40 * i), 1.0f);
        }
        qor::vector<vtxVertex> corners(3);
        corners[1].x = corners[2].y = 50;
        corners[0].a = corners[1].a = corners[2].a = 1;
        list.add(gui::GraphicCommandDrawGeometry::fetch()->set(corners, {0, 1, 2}, vtxGeometry::PrimitiveTriangles, 1,
                                                               nullptr));
    }

private:
    unsigned pick_(std::size_t count) { return unsigned(engine_() % count); }
    Vec2i pickPoint_() { return Vec2i(int(pick_(300)), int(pick_(200))); }
    gui::Window* makeWindow_() {
        auto* const window = static_cast<gui::Window*>(support::findAnimal("Window")->make());
        window->setPosition(pickPoint_());
        window->setVisible(true);
        return window;
    }
    gui::Container& pickView_() { return *windows_[pick_(windows_.size())]->getView(); }
    Widget* pickWidget_() {
        gui::Container& view = pickView_();
        Widget* const child =
            view.getWidgetCount() ? view.getWidget(int(pick_(std::size_t(view.getWidgetCount())))) : nullptr;
        auto* const inner = dynamic_cast<gui::Container*>(child);
        if (!inner || inner->getWidgetCount() == 0 || pick_(2))
            return child;
        return inner->getWidget(int(pick_(std::size_t(inner->getWidgetCount()))));
    }

    void addWidget_() {
        support::ZooAnimal const& animal = support::getZoo()[pick_(support::getZoo().size())];
        gui::Window* const window = windows_[pick_(windows_.size())];
        if (animal.window || std::string_view(animal.name) == "Tooltip")
            return;
        if (window->getView()->getWidgetCount() > 12)
            return endWidget_();
        Widget* const widget = animal.make();
        widget->setPosition(pickPoint_());
        window->insertWidget(widget, int(pick_(4)) - 1);
    }
    void moveToParent_() {
        if (Widget* const widget = pickWidget_())
            windows_[pick_(windows_.size())]->insertWidget(widget, -1);
    }
    void write_() {
        qor::wstring text;
        // Glyphs that no page has yet among them.
        for (unsigned i = pick_(12); i > 0; --i)
            text += wchar_t(L'!' + pick_(pick_(8) ? 90 : 1000));
        if (Widget* const widget = pickWidget_())
            widget->setText(text);
    }
    void place_() {
        if (Widget* const widget = pickWidget_())
            pick_(2) ? widget->setPosition(pickPoint_()) : widget->setSize(pickPoint_());
        else
            windows_[0]->setPosition(pickPoint_());
    }
    void fade_() {
        constexpr float opacities[] = {1.0f, 0.5f, 0.2f};
        Widget* const widget = pick_(8) ? pickWidget_() : windows_[pick_(windows_.size())];
        if (widget)
            widget->setOpacity(opacities[pick_(3)]);
    }
    void disable_() {
        if (Widget* const widget = pickWidget_())
            widget->setEnabled(!widget->getEnabled());
    }
    void show_() {
        Widget* const widget = pick_(4) ? pickWidget_() : windows_[pick_(windows_.size())];
        if (widget)
            widget->setVisible(!widget->getVisible(false));
        // Never all of them hidden.
        windows_[0]->setVisible(true);
    }
    void changeSkin_() {
        lua_State* const L = gui::GUI::get()->getLuaState();
        if (pick_(20) == 0 && luaL_dostring(L, pick_(2) ? "dofile('skins/light.lua')" : "dofile('skins/dark.lua')")) {
            ADD_FAILURE() << lua_tostring(L, -1);
        }
        Widget* const widget = pickWidget_();
        if (widget && widget->getWidgetSkin())
            widget->getWidgetSkin()->load(widget->getWidgetType());
    }
    void changeFont_() {
        Widget* const widget = pickWidget_();
        gui::skin::Data* const data =
            widget && widget->getWidgetSkin() ? widget->getWidgetSkin()->getSkinData() : nullptr;
        gui::Text::Info const* const text = data ? data->getText(gui::skin::InteractiveStateReleased, 1) : nullptr;
        if (!text)
            return;
        gui::Text::Info changed = *text;
        changed.font = pick_(2) ? "fonts/DejaVuSans.ttf" : "fonts/Inter-Bold.otf";
        changed.fontSize = 8 + int(pick_(30));
        data->setText(&changed, gui::skin::InteractiveStateReleased, 1);
    }
    void changeTexture_() {
        auto* const view = dynamic_cast<gui::TextureView*>(pickWidget_());
        if (!view)
            return;
        vtxTextureManager& textures = *vtxRenderer::get()->getTextureManager();
        int const left = int(pick_(100));
        int const top = int(pick_(100));
        vtxTexture* const old = view->getTexture();
        view->setTexture(textures.getTexture("atlas/parts.png", {left, top, left + 20, top + 20}, nullptr));
        textures.releaseTexture(old);
    }
    void changeLabels_() {
        vtxRenderer& renderer = *vtxRenderer::get();
        std::shared_ptr<vtxFont>& font = fonts_[pick_(3)];
        font = renderer.getFontManager()->getFont("fonts/JetBrainsMono-Regular.ttf", 8 + int(pick_(40)),
                                                  vtxFont::BlurNone);
        target_.reset(renderer.createFrameBuffer(pickPoint_(), 0, 1));
        geometry_.reset(renderer.createGeometry({}, {}));
    }
    void useMouse_() {
        host_.moveMouse(int(pick_(width)), int(pick_(height)));
        if (pick_(3) == 0)
            host_.app().buttons.empty() ? host_.pressMouse() : host_.releaseMouse();
    }

    support::ZooHost& host_;
    std::mt19937 engine_;
    std::vector<gui::Window*> windows_;
    std::shared_ptr<vtxFont> fonts_[3];
    std::unique_ptr<vtxFrameBuffer> target_;
    std::unique_ptr<vtxGeometry> geometry_;
};

/// Frames of two threads: list by list is recorded while the one before it is played.
class Performance {
public:
    Performance(bool pixels, unsigned seed) : stage_(pixels), windows_(stage_.host(), seed) {}
    ~Performance() {
        stage_.thread().wait();
        EXPECT_TRUE(played_ == expected_);
        for (gui::GraphicCommands* const list : {&lists_[0], &lists_[1], &labels_})
            CommandPlayer::release(*list);
    }

    void run(int frames) {
        for (int i = 0; i < frames; ++i) {
            // Once in a while all comes to rest, and then the list shows what direct drawing shows.
            int const phase = i % 8;
            while (phase == 6 && stage_.thread().isBusy())
                windows_.measure();
            record_(phase < 5);
            handOver_(phase == 7);
        }
    }

private:
    void record_(bool wild) {
        gui::GUI& gui = *gui::GUI::get();
        for (int i = 0; wild && i < 4; ++i)
            windows_.act();
        stage_.host().app().time += wild ? 1.0 / 60.0 : 1.0;
        stage_.host().update();
        gui.redraw(false);
        Windows::getShown(shown_);
        for (gui::WindowBase* const window : shown_) {
            window->makeParse(&lists_[frame_ % 2]);
            window->make(&lists_[frame_ % 2]);
        }
        windows_.label(lists_[frame_ % 2]);
        // Also what stands in the list already.
        if (wild && frame_ % 3 == 0)
            frame_ % 64 ? windows_.endWidget_() : windows_.endWindow_();
        CommandPlayer::release(labels_);
        windows_.label(labels_);
        Windows::getShown(shown_);
    }

    void handOver_(bool resting) {
        gui::GraphicCommands const& next = lists_[frame_ % 2];
        stage_.thread().wait();
        EXPECT_TRUE(played_ == expected_)
            << "frame " << frame_ - 1 << ": " << expected_.quads << " quads expected, " << played_.quads << " played";
        CommandPlayer::release(lists_[(frame_ + 1) % 2]);
        stage_.setNumber(frame_);
        stage_.thread().call([&] {
            gui::GUI::get()->doRedraw();
            CommandPlayer::parse(next);
            CommandPlayer::doRedraw(next);
            CommandPlayer::doRedraw(labels_);
            expected_ = stage_.draw([&] { CommandPlayer::draw(next); });
            if (!resting)
                return;
            Picture const direct = stage_.draw([this] {
                for (gui::WindowBase* const window : shown_)
                    window->draw();
                CommandPlayer::draw(labels_);
            });
            EXPECT_TRUE(direct == expected_)
                << "frame " << frame_ << ": " << direct.quads << " quads drawn, " << expected_.quads << " played";
        });
        stage_.thread().start([this, &next] { played_ = stage_.draw([&] { CommandPlayer::draw(next); }); });
        ++frame_;
    }

    Stage stage_;
    Windows windows_;
    gui::GraphicCommands lists_[2];
    /// What the next list holds beside windows, for direct drawing.
    gui::GraphicCommands labels_;
    int frame_ = 0;
    qor::vector<gui::WindowBase*> shown_;
    Picture expected_;
    Picture played_;
};

/// Allocations of the toolkit that are still there.
std::size_t getLive() { return qor::getAllocationCounts().allocations - qor::getAllocationCounts().frees; }

TEST(PlaybackOnAnotherThread, ShowsEachListWholeWhileTheNextIsRecordedAndThingsEnd) {
    Performance(false, 1).run(support::byEffort(300, 5000, 100000));
}

// Not under ThreadSanitizer: the software driver has worker threads of its own, not built for it, and what it reports
// is how these end their mutexes. The toolkit calls GL on the drawing thread alone; all else runs with the trace too.
#ifndef THREAD_SANITIZER
TEST(PlaybackOnAnotherThread, ShowsThePixelsOfDirectDrawing) {
    Performance(true, 2).run(support::byEffort(20, 20, 500));
}
#endif

TEST(PlaybackOnAnotherThread, LeavesNothingBehind) {
    // Pools fill first. After that the table of all widgets that ever lived grows by a block in many runs, and now and
    // then a pooled object by what it had not held before, which depends on how the threads met. What a run leaves
    // behind is left by every run.
    Performance(false, 4).run(400);
    constexpr int runs = 20;
    std::size_t leastGrowth = runs;
    for (int round = 0; round < 4 && leastGrowth >= runs / 2; ++round) {
        std::size_t const live = getLive();
        for (int i = 0; i < runs; ++i)
            Performance(false, 3).run(12);
        leastGrowth = std::min(leastGrowth, getLive() - live);
    }
    EXPECT_LT(leastGrowth, runs / 2);
}

}  // namespace
