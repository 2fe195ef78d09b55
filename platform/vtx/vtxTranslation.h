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

/// to = from, which osg does element by element.
inline void assign(osg::Matrixf& to, osg::Matrixf const& from) {
    std::memcpy(to.ptr(), from.ptr(), 16 * sizeof(float));
}

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

/// matrix.postMult(osg::Matrixf::translate(x, y, z)).
inline void postMultTranslate(osg::Matrixf& matrix, float x, float y, float z) {
    if (!isTranslation(matrix)) {
        matrix.postMult(osg::Matrixf::translate(x, y, z));
        return;
    }
    // The products by 0 decide the sign of a zero, and an infinity spoils its neighbours by them.
    float const a = matrix(3, 0);
    float const b = matrix(3, 1);
    float const c = matrix(3, 2);
    matrix(3, 0) = a + b * 0.0f + c * 0.0f + x;
    matrix(3, 1) = a * 0.0f + b + c * 0.0f + y;
    matrix(3, 2) = a * 0.0f + b * 0.0f + c + z;
}

/// All elements are finite.
inline bool isFinite(osg::Matrixf const& matrix) {
    // A number times 0 is 0, but for those that are not finite.
    if (isTranslation(matrix))
        return matrix(3, 0) * 0.0f + matrix(3, 1) * 0.0f + matrix(3, 2) * 0.0f == 0.0f;
    float const* const numbers = matrix.ptr();
    return std::all_of(numbers, numbers + 16, [](float number) { return std::isfinite(number); });
}

}  // namespace vtxTranslation
