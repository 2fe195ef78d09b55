#include "platform/qor/RandomObject.h"

#include <atomic>
#include <mutex>
#include <random>

namespace {

// Which program seed an object follows; 0 stands for an object with a seed of its own.
std::atomic<uint64_t> currentEpoch{1};

std::mutex seedLock;
uint64_t programSeed = 0;
uint64_t seededCount = 0;
bool programSeedKnown = false;

// The splitmix64 step: a counter followed by a mixing function.
uint64_t next(uint64_t& state) {
    uint64_t mixed = state += 0x9E3779B97F4A7C15ULL;
    mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9ULL;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBULL;
    return mixed ^ mixed >> 31;
}

}  // namespace

RandomObject::RandomObject() { seedFromProgram_(); }

RandomObject::RandomObject(uint64_t seed) : state_(seed) {}

float RandomObject::get() {
    if (epoch_ != 0 && epoch_ != currentEpoch.load(std::memory_order_relaxed))
        seedFromProgram_();
    return float(next(state_) >> 40) * (1.0f / 16777216.0f);
}

void RandomObject::setSeed(uint64_t seed) {
    state_ = seed;
    epoch_ = 0;
}

void RandomObject::setProgramSeed(uint64_t seed) {
    std::lock_guard const guard(seedLock);
    programSeed = seed;
    programSeedKnown = true;
    seededCount = 0;
    currentEpoch.fetch_add(1, std::memory_order_relaxed);
}

void RandomObject::seedFromProgram_() {
    std::lock_guard const guard(seedLock);
    if (!programSeedKnown) {
        std::random_device source;
        programSeed = uint64_t(source()) << 32 | source();
        programSeedKnown = true;
    }
    uint64_t start = programSeed + seededCount++;
    state_ = next(start);
    epoch_ = currentEpoch.load(std::memory_order_relaxed);
}
