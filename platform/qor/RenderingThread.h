#pragma once

#include <functional>

#include "platform/qor/Api.h"

namespace qor {

/// The way to run a function on the thread that draws, between its frames.
///
/// The thread is the host's. A host that draws on the thread that drives the toolkit starts none, and calls run at
/// once. A host with a rendering thread calls `start` on it, `betweenFrames` before or after each frame, and `stop` at
/// its end.
class VORLEX_API RenderingThread {
public:
    /// Makes the calling thread the rendering thread. Logs and does nothing if there is one already.
    static void start();
    /// Runs what is waiting, then ends the rendering thread's role; later calls run at once. On the rendering thread.
    static void stop();
    static bool isStarted();
    /// True on the rendering thread, and on any thread while none was started.
    static bool isCurrent();

    /// Runs the waiting functions in the order of their arrival. On the rendering thread, with no frame open.
    static void betweenFrames();
    /// As betweenFrames, but waits up to the given seconds for a function to arrive. Returns whether one ran.
    static bool waitBetweenFrames(double seconds);

    /// Runs the function on the rendering thread between frames and returns after it has run; at once if no such thread
    /// was started or the caller is that thread. What the function throws is thrown here. `tag` names it in messages.
    static void callFunctionWithSync(std::function<void()> const& function, char const* tag);
};

}  // namespace qor
