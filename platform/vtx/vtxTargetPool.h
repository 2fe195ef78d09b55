#pragma once

#include "platform/qor/Containers.h"
#include "platform/qor/Mutex.h"
#include "platform/vtx/vtxTextureRecord.h"

#include <osg/Vec2i>

#include <memory>

/// Internal: a device target with what it was made for.
struct vtxTargetKey {
    osg::Vec2i size{0, 0};  ///< pixels
    int msaa = 0;
    int mips = 1;
    bool operator==(vtxTargetKey const& other) const {
        return size == other.size && msaa == other.msaa && mips == other.mips;
    }
};

/// Internal: storage and texture of a frame buffer. It outlives the frame buffer until the next flushReleased, because
/// recorded commands may still show the texture.
struct vtxTargetStorage {
    vtxTargetKey key;
    vtxDeviceHandle target = 0;
    vtxTextureImage image;
    vtxTextureRecord texture{image};
};

/// Internal: hands out device targets and takes them back for the next frame buffer of the same pixel size, msaa and
/// mips. `age` and `give` may be called from any thread; the others on the drawing thread in a pass.
class vtxTargetPool {
public:
    explicit vtxTargetPool(vtxDevice& device) : device_(device) {}

    vtxDeviceHandle take(vtxTargetKey const& key);
    /// A handle of 0 is ignored.
    void give(vtxTargetKey const& key, vtxDeviceHandle target);
    /// One frame passed; what was not wanted for a while goes at the next pass.
    void age();
    void flush();
    /// Deletes all that is idle.
    void clear();

private:
    static constexpr int maxAge = 60;
    static constexpr std::size_t maxIdle = 8;
    struct Idle {
        vtxTargetKey key;
        vtxDeviceHandle target;
        int age;
    };

    vtxDevice& device_;
    qor::mutex mutex_;
    qor::vector<Idle> idle_;
    qor::vector<vtxDeviceHandle> doomed_;
};
