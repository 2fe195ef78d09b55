#include "platform/vtx/vtxTargetPool.h"

#include "platform/vtx/vtxDevice.h"

#include <algorithm>
#include <mutex>

vtxDeviceHandle vtxTargetPool::take(vtxTargetKey const& key) {
    {
        std::lock_guard const lock(mutex_);
        auto const found =
            std::find_if(idle_.rbegin(), idle_.rend(), [&](Idle const& idle) { return idle.key == key; });
        if (found != idle_.rend()) {
            vtxDeviceHandle const target = found->target;
            idle_.erase(std::next(found).base());
            return target;
        }
    }
    return device_.createTarget(key.size, key.msaa, key.mips);
}

void vtxTargetPool::give(vtxTargetKey const& key, vtxDeviceHandle target) {
    if (!target)
        return;
    std::lock_guard const lock(mutex_);
    if (idle_.size() >= maxIdle) {
        doomed_.push_back(idle_.front().target);
        idle_.erase(idle_.begin());
    }
    idle_.push_back(Idle{key, target, 0});
}

void vtxTargetPool::age() {
    std::lock_guard const lock(mutex_);
    for (std::size_t i = 0; i < idle_.size();) {
        if (++idle_[i].age > maxAge) {
            doomed_.push_back(idle_[i].target);
            idle_.erase(idle_.begin() + static_cast<std::ptrdiff_t>(i));
        } else {
            ++i;
        }
    }
}

void vtxTargetPool::flush() {
    std::lock_guard const lock(mutex_);
    for (vtxDeviceHandle const target : doomed_)
        device_.destroyTarget(target);
    doomed_.clear();
}

void vtxTargetPool::clear() {
    flush();
    std::lock_guard const lock(mutex_);
    for (Idle const& idle : idle_)
        device_.destroyTarget(idle.target);
    idle_.clear();
}
