#pragma once

#include <mutex>

namespace qor {

/// A lock that is not recursive; works with std::lock_guard.
class mutex {
public:
    void lock() { mutex_.lock(); }
    void unlock() { mutex_.unlock(); }

private:
    std::mutex mutex_;
};

}  // namespace qor
