#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

#include <osg/Vec2f>
#include <osg/Vec2i>

namespace osg {

/// A rectangle of left, top, right and bottom (x1, y1, x2, y2), a plain value.
///
/// Coordinates: y grows downwards where the toolkit uses it; width is x2 - x1. The default is the empty rectangle,
/// whose left and top are the greatest and whose right and bottom are the least value, so that it can be grown.
template <typename Vec>
class RectImpl {
public:
    using value_type = typename Vec::value_type;

    RectImpl() = default;
    RectImpl(value_type left, value_type top, value_type right, value_type bottom)
        : x1(left), y1(top), x2(right), y2(bottom) {}
    RectImpl(Vec const& leftTop, Vec const& rightBottom)
        : x1(leftTop.x()), y1(leftTop.y()), x2(rightBottom.x()), y2(rightBottom.y()) {}

    value_type left() const { return x1; }
    value_type top() const { return y1; }
    value_type right() const { return x2; }
    value_type bottom() const { return y2; }
    Vec leftTop() const { return Vec(x1, y1); }
    Vec rightBottom() const { return Vec(x2, y2); }

    /// Negative where inverted; what does not fit saturates.
    value_type width() const { return subtract(x2, x1); }
    value_type height() const { return subtract(y2, y1); }
    Vec size() const { return Vec(width(), height()); }

    /// No point lies inside.
    bool isEmpty() const { return !(x1 < x2 && y1 < y2); }
    /// An edge lies before its opposite, which a rectangle of no size does not have.
    bool isInverted() const { return x2 < x1 || y2 < y1; }
    /// Left and top edges are inside, right and bottom edges outside.
    bool contains(Vec const& point) const {
        return point.x() >= x1 && point.x() < x2 && point.y() >= y1 && point.y() < y2;
    }

    /// The common part, which may be inverted.
    RectImpl intersected(RectImpl const& other) const {
        return RectImpl(x1 > other.x1 ? x1 : other.x1, y1 > other.y1 ? y1 : other.y1, x2 < other.x2 ? x2 : other.x2,
                        y2 < other.y2 ? y2 : other.y2);
    }
    /// The smallest rectangle around both.
    RectImpl united(RectImpl const& other) const {
        return RectImpl(x1 < other.x1 ? x1 : other.x1, y1 < other.y1 ? y1 : other.y1, x2 > other.x2 ? x2 : other.x2,
                        y2 > other.y2 ? y2 : other.y2);
    }

    bool operator==(RectImpl const&) const = default;

    value_type x1 = std::numeric_limits<value_type>::max();
    value_type y1 = std::numeric_limits<value_type>::max();
    value_type x2 = std::numeric_limits<value_type>::lowest();
    value_type y2 = std::numeric_limits<value_type>::lowest();

private:
    static value_type subtract(value_type a, value_type b) {
        if constexpr (std::is_integral_v<value_type>) {
            int64_t const difference = int64_t(a) - int64_t(b);
            int64_t const most = std::numeric_limits<value_type>::max();
            int64_t const least = std::numeric_limits<value_type>::lowest();
            return static_cast<value_type>(difference > most ? most : difference < least ? least : difference);
        } else {
            return a - b;
        }
    }
};

}  // namespace osg
