#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/qor/Mutex.h"
#include "platform/qor/RenderingThread.h"
#include "tests/support/LogCapture.h"

namespace {

using qor::RenderingThread;

/// A rendering thread that draws frames until it is told to stop.
class Renderer {
public:
    Renderer() : thread_([this] { run_(); }) {
        while (!RenderingThread::isStarted())
            std::this_thread::yield();
    }
    ~Renderer() {
        stopping_ = true;
        thread_.join();
    }
    std::thread::id getId() const { return thread_.get_id(); }

    std::atomic<bool> inFrame{false};

private:
    void run_() {
        RenderingThread::start();
        while (!stopping_) {
            inFrame = true;
            std::this_thread::yield();
            inFrame = false;
            RenderingThread::waitBetweenFrames(0.01);
        }
        RenderingThread::stop();
    }

    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

TEST(RenderingThread, runsAtOnceWhereNoneWasStarted) {
    bool ran = false;
    RenderingThread::callFunctionWithSync([&] { ran = RenderingThread::isCurrent(); }, "test");
    EXPECT_TRUE(ran);
}

TEST(RenderingThread, runsCallsOfManyThreadsBetweenFramesAndReturnsAfterwards) {
    Renderer renderer;
    int sum = 0;
    std::vector<std::thread> callers;
    for (int i = 0; i < 4; ++i)
        callers.emplace_back([&] {
            for (int k = 0; k < 50; ++k) {
                bool done = false;
                RenderingThread::callFunctionWithSync(
                    [&] {
                        EXPECT_EQ(std::this_thread::get_id(), renderer.getId());
                        EXPECT_FALSE(renderer.inFrame);
                        // A call from the rendering thread itself does not wait for itself.
                        RenderingThread::callFunctionWithSync([&] { ++sum; }, "inner");
                        done = true;
                    },
                    "test");
                EXPECT_TRUE(done);
            }
        });
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(sum, 200);
}

TEST(RenderingThread, handsAnExceptionToTheCaller) {
    Renderer renderer;
    auto const fail = [] { throw std::runtime_error("from the other side"); };
    EXPECT_THROW(RenderingThread::callFunctionWithSync(fail, "test"), std::runtime_error);
    bool ran = false;
    RenderingThread::callFunctionWithSync([&] { ran = true; }, "test");
    EXPECT_TRUE(ran);
}

TEST(RenderingThread, refusesWrongCallersWithALine) {
    support::LogCapture log;
    {
        Renderer renderer;
        EXPECT_FALSE(RenderingThread::isCurrent());
        RenderingThread::start();
        RenderingThread::betweenFrames();
        RenderingThread::stop();
        EXPECT_TRUE(RenderingThread::isStarted());
    }
    RenderingThread::callFunctionWithSync({}, "empty");
    EXPECT_EQ(log.getLines().size(), 4u) << log.dump();
    EXPECT_FALSE(RenderingThread::isStarted());
}

TEST(Mutex, keepsOthersOut) {
    qor::mutex lock;
    int counter = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int k = 0; k < 1000; ++k) {
                std::lock_guard const guard(lock);
                ++counter;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, 4000);
}

}  // namespace
