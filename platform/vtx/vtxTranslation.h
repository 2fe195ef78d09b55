#pragma once

#include <osg/Matrixf>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

/// Internal: short ways for matrices that only translate, as nearly all model-views do. Each answers to the bit what
/// the long way over all elements does.
namespace vtxTranslation {

/// Nothing but a translation: all elements outside the last row are those of the identity, signs of zeros included.
inline bool isTranslation(osg::Matrixf const& matrix) {
    // Two elements a comparison.
    constexpr auto oneZero = std::bit_cast<std::uint64_t>(std::array<float, 2>{1.0f, 0.0f});
    constexpr auto zeroOne = std::bit_cast<std::uint64_t>(std::array<float, 2>{0.0f, 1.0f});
    auto const getPair = [&matrix](int row, int column) {
        std::uint64_t pair = 0;
        std::memcpy(&pair, matrix.ptr() + 4 * row + column, sizeof(pair));
        return pair;
    };
    std::uint64_t const differences = (getPair(0, 0) ^ oneZero) | getPair(0, 2) | (getPair(1, 0) ^ zeroOne) |
                                      getPair(1, 2) | getPair(2, 0) | (getPair(2, 2) ^ oneZero);
    return differences == 0 && matrix(3, 3) == 1.0f;
}

/// Where a translation leads.
struct Place {
    float x, y, z;
    bool isFinite() const {
        // A number times 0 is 0, but for those that are not finite.
        return x * 0.0f + y * 0.0f + z * 0.0f == 0.0f;
    }
};

inline Place getPlace(osg::Matrixf const& matrix) { return Place{matrix(3, 0), matrix(3, 1), matrix(3, 2)}; }

inline void setPlace(osg::Matrixf& matrix, Place const& place) {
    matrix(3, 0) = place.x;
    matrix(3, 1) = place.y;
    matrix(3, 2) = place.z;
}

/// The last row of a translation after postMult(osg::Matrixf::translate(by.x, by.y, by.z)).
inline Place compose(Place const& place, Place const& by) {
    // The products by 0 decide the sign of a zero, and an infinity spoils its neighbours by them.
    auto const [a, b, c] = place;
    return Place{a + b * 0.0f + c * 0.0f + by.x, a * 0.0f + b + c * 0.0f + by.y, a * 0.0f + b * 0.0f + c + by.z};
}

inline void postMultTranslate(osg::Matrixf& matrix, Place const& by) {
    if (isTranslation(matrix))
        setPlace(matrix, compose(getPlace(matrix), by));
    else
        matrix.postMult(osg::Matrixf::translate(by.x, by.y, by.z));
}

/// All elements are finite.
inline bool isFinite(osg::Matrixf const& matrix) {
    if (isTranslation(matrix))
        return getPlace(matrix).isFinite();
    float const* const numbers = matrix.ptr();
    return std::all_of(numbers, numbers + 16, [](float number) { return std::isfinite(number); });
}

}  // namespace vtxTranslation
