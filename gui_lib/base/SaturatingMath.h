#pragma once

#include <cstdint>
#include <limits>

#include <osg/Vec2i>

#include "gui_lib/base/Insets.h"

namespace gui {

/// The nearest int to a wider number.
inline int saturate(std::int64_t value) {
    if (value > std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    if (value < std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

/// Sums and differences of sizes that may come from files: what does not fit gives the nearest int.
inline int saturatingAdd(int a, int b) {
    int sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? saturate(std::int64_t(a) + b) : sum;
}
inline int saturatingSubtract(int a, int b) {
    int difference = 0;
    return __builtin_sub_overflow(a, b, &difference) ? saturate(std::int64_t(a) - b) : difference;
}
inline int saturatingMultiply(int a, int b) { return saturate(std::int64_t(a) * b); }

inline osg::Vec2i saturatingAdd(osg::Vec2i const& a, osg::Vec2i const& b) {
    return {saturatingAdd(a.x(), b.x()), saturatingAdd(a.y(), b.y())};
}
inline osg::Vec2i saturatingSubtract(osg::Vec2i const& a, osg::Vec2i const& b) {
    return {saturatingSubtract(a.x(), b.x()), saturatingSubtract(a.y(), b.y())};
}

/// What the margins take of the width and of the height.
inline osg::Vec2i getThickness(Insets const& insets) {
    return {saturatingAdd(insets.left, insets.right), saturatingAdd(insets.top, insets.bottom)};
}

}  // namespace gui
