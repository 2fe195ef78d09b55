#pragma once

#include <cstdint>

#include "platform/qor/Api.h"

/// A stream of pseudo-random numbers. Every object made without a seed has a stream of its own.
class VORLEX_API RandomObject {
public:
    /// Seeds from the program's seed and the number of objects seeded from it before.
    RandomObject();
    explicit RandomObject(uint64_t seed);
    virtual ~RandomObject() = default;

    /// From 0 up to, but without, 1.
    float get();
    void setSeed(uint64_t seed);

    /// Fixes the program's seed, so that runs repeat: objects made without a seed, those that live included, start anew
    /// in the order of their next use. Without it the program's seed is the system's.
    static void setProgramSeed(uint64_t seed);

private:
    void seedFromProgram_();

    uint64_t state_ = 0;
    uint64_t epoch_ = 0;
};
