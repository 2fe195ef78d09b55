#pragma once

#include <cstring>

/// Internal: two numbers, one for the x and one for the y axis, that are worked on at once. Operators work on each.
using vtxPair = double __attribute__((vector_size(16)));
/// What a comparison of pairs gives: all bits or none of each.
using vtxPairMask = long long __attribute__((vector_size(16)));
/// Two pairs as they lie in quads and instances.
using vtxFloats = float __attribute__((vector_size(16)));
/// Their bits.
using vtxInts = int __attribute__((vector_size(16)));

namespace vtxPairs {

inline vtxPair both(double value) { return vtxPair{value, value}; }

inline bool all(vtxPairMask mask) {
#ifdef __SSE2__
    return __builtin_ia32_movmskpd(reinterpret_cast<vtxPair>(mask)) == 3;
#else
    return (mask[0] & mask[1]) != 0;
#endif
}

inline vtxFloats load(float const* four) {
    vtxFloats floats;
    std::memcpy(&floats, four, sizeof(floats));
    return floats;
}

inline void store(float* four, vtxFloats floats) { std::memcpy(four, &floats, sizeof(floats)); }

/// All bits are equal.
inline bool isSame(vtxFloats a, vtxFloats b) {
#ifdef __SSE2__
    auto const same = reinterpret_cast<vtxInts>(a) == reinterpret_cast<vtxInts>(b);
    return __builtin_ia32_movmskps(reinterpret_cast<vtxFloats>(same)) == 15;
#else
    return std::memcmp(&a, &b, sizeof(a)) == 0;
#endif
}

/// The same for any two plain values of that size.
template <class Value>
bool isSameBits(Value const& a, Value const& b) {
    static_assert(sizeof(Value) == sizeof(vtxFloats));
    vtxFloats bitsA, bitsB;
    std::memcpy(&bitsA, &a, sizeof(bitsA));
    std::memcpy(&bitsB, &b, sizeof(bitsB));
    return isSame(bitsA, bitsB);
}

inline vtxPair first(vtxFloats floats) { return vtxPair{floats[0], floats[1]}; }
inline vtxPair last(vtxFloats floats) { return vtxPair{floats[2], floats[3]}; }

inline vtxFloats join(vtxPair first, vtxPair last) {
    return vtxFloats{static_cast<float>(first[0]), static_cast<float>(first[1]), static_cast<float>(last[0]),
                     static_cast<float>(last[1])};
}

/// `first` in place of the first pair of `floats`.
inline vtxFloats joinFirst(vtxPair first, vtxFloats floats) {
    using Two = float __attribute__((vector_size(8)));
    Two const two = __builtin_convertvector(first, Two);
    return vtxFloats{two[0], two[1], floats[2], floats[3]};
}

inline vtxPair min(vtxPair a, vtxPair b) { return a < b ? a : b; }
inline vtxPair max(vtxPair a, vtxPair b) { return a > b ? a : b; }

inline vtxPairMask signOf(vtxPair value) {
    constexpr long long sign = static_cast<long long>(1ull << 63);
    return reinterpret_cast<vtxPairMask>(value) & vtxPairMask{sign, sign};
}

inline vtxPair abs(vtxPair value) {
    return reinterpret_cast<vtxPair>(reinterpret_cast<vtxPairMask>(value) & ~signOf(both(-0.0)));
}

/// `value`, not negative, with the sign of `of`.
inline vtxPair copySign(vtxPair value, vtxPair of) {
    return reinterpret_cast<vtxPair>(reinterpret_cast<vtxPairMask>(value) | signOf(of));
}

/// The nearest whole number; of two the even one. Beyond 2 to the 51st it may be off by one.
inline vtxPair nearest(vtxPair value) {
    // The sum has no place for a fraction.
    constexpr double noFraction = 6755399441055744.0;
    return (value + noFraction) - noFraction;
}

inline vtxPair floor(vtxPair value) {
    vtxPair const whole = nearest(value);
    return whole - (whole > value ? both(1.0) : both(0.0));
}

}  // namespace vtxPairs
