#include "platform/qor/RenderingThread.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

#include "platform/qor/Containers.h"
#include "platform/qor/Log.h"

namespace qor {

namespace {

struct Call {
    std::function<void()> const* function;
    std::exception_ptr error;
    bool done = false;
};

struct Shared {
    std::mutex lock;
    std::condition_variable arrived;
    std::condition_variable finished;
    std::thread::id thread;
    list<Call*> waiting;
};

// Never destroyed: a host may end its thread after static objects are gone.
Shared& getShared() {
    static Shared* const shared = new Shared;
    return *shared;
}

bool hasThread(Shared const& shared) { return shared.thread != std::thread::id(); }

bool runWaiting(Shared& shared, std::unique_lock<std::mutex>& guard) {
    bool ran = false;
    while (!shared.waiting.empty()) {
        Call* const call = shared.waiting.front();
        shared.waiting.pop_front();
        guard.unlock();
        try {
            (*call->function)();
        } catch (...) {
            call->error = std::current_exception();
        }
        guard.lock();
        call->done = true;
        ran = true;
        shared.finished.notify_all();
    }
    return ran;
}

bool checkCaller(Shared const& shared, char const* operation) {
    if (shared.thread == std::this_thread::get_id())
        return true;
    qor_logf("VORLEX", 64, "RenderingThread::%s must be called on the thread that called RenderingThread::start",
             operation);
    return false;
}

}  // namespace

void RenderingThread::start() {
    Shared& shared = getShared();
    std::lock_guard const guard(shared.lock);
    if (hasThread(shared)) {
        qor_logf("VORLEX", 64, "RenderingThread::start: there is a rendering thread already; call stop on it first");
        return;
    }
    shared.thread = std::this_thread::get_id();
}

void RenderingThread::stop() {
    Shared& shared = getShared();
    std::unique_lock guard(shared.lock);
    if (!checkCaller(shared, "stop"))
        return;
    runWaiting(shared, guard);
    shared.thread = std::thread::id();
}

bool RenderingThread::isStarted() {
    Shared& shared = getShared();
    std::lock_guard const guard(shared.lock);
    return hasThread(shared);
}

bool RenderingThread::isCurrent() {
    Shared& shared = getShared();
    std::lock_guard const guard(shared.lock);
    return !hasThread(shared) || shared.thread == std::this_thread::get_id();
}

void RenderingThread::betweenFrames() {
    Shared& shared = getShared();
    std::unique_lock guard(shared.lock);
    if (checkCaller(shared, "betweenFrames"))
        runWaiting(shared, guard);
}

bool RenderingThread::waitBetweenFrames(double seconds) {
    Shared& shared = getShared();
    std::unique_lock guard(shared.lock);
    if (!checkCaller(shared, "waitBetweenFrames"))
        return false;
    shared.arrived.wait_for(guard, std::chrono::duration<double>(seconds), [&] { return !shared.waiting.empty(); });
    return runWaiting(shared, guard);
}

void RenderingThread::callFunctionWithSync(std::function<void()> const& function, char const* tag) {
    if (!function) {
        qor_logf("VORLEX", 64, "RenderingThread::callFunctionWithSync(%s): the function is empty", tag ? tag : "");
        return;
    }
    Shared& shared = getShared();
    std::unique_lock guard(shared.lock);
    if (!hasThread(shared) || shared.thread == std::this_thread::get_id()) {
        guard.unlock();
        function();
        return;
    }
    Call call{&function, nullptr};
    shared.waiting.push_back(&call);
    shared.arrived.notify_all();
    shared.finished.wait(guard, [&] { return call.done; });
    guard.unlock();
    if (call.error)
        std::rethrow_exception(call.error);
}

}  // namespace qor
