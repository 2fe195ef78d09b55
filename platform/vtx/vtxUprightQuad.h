#pragma once

#include <cmath>
#include <utility>

#include "platform/vtx/vtxPair.h"

/// Internal: what the upright quads of a block have in common on their way from GUI units to pixels of the target.
struct vtxUprightSpace {
    vtxPair scale, shift, stretch, place;  ///< pixel = ((unit * scale + shift) * stretch + place) of the projection
    vtxPair viewScale, viewOffset;         ///< target pixel = pixel * viewScale + viewOffset
    vtxPair visibleFrom, visibleTo;        ///< target pixels
    vtxPair coordinateScale, coordinateOffset;  ///< from the picture's 0 to 1 to the layer's
    vtxPair texels;                             ///< of the whole layer
    bool snapped;                               ///< edges land on whole pixels
    bool exact;                                 ///< a texel is to be a pixel where nothing stretches it
    bool glyphs;
};

/// Internal: an upright quad as it is drawn.
struct vtxUprightQuad {
    vtxPair from, to;                                ///< target pixels
    vtxPair coordinateFrom, coordinateTo;            ///< of the layer
    vtxPair wholeCoordinateFrom, wholeCoordinateTo;  ///< the same before clipping
    bool movable;                                    ///< seen wholly, at a length that does not hang on the place

    enum Result { Seen, Unseen, NotFinite };
    /// Position, size and coordinates as in vtxQuad.
    Result make(vtxUprightSpace const& space, vtxPair position, vtxPair size, vtxPair first, vtxPair last);

    /// The ends of a quad that was movable and `length` long elsewhere; false if it has another length here or a clip
    /// cuts it. GUI units and target pixels.
    bool move(vtxUprightSpace const& space, vtxPair position, vtxPair size, vtxPair length);

private:
    void place_(vtxUprightSpace const& space, vtxPair position, vtxPair size);
    void view_(vtxUprightSpace const& space);
    bool isInside_(vtxUprightSpace const& space) const;
    void order_();
    void snap_(vtxUprightSpace const& space);
    bool clip_(vtxUprightSpace const& space);
    static bool clipAxis_(double ends[2], double coordinates[2], double least, double most);
};

namespace vtxUprightQuads {

/// Halves go up, and so do what arithmetic makes of halves, so that edges computed in two ways meet.
inline vtxPair roundToPixel(vtxPair value) { return vtxPairs::floor(value + (0.5 + 1.0 / 128.0)); }

/// A texel counts as a pixel if a quad's length in texels differs from that in pixels by no more.
inline constexpr double exactTolerance = 0.05;

}  // namespace vtxUprightQuads

inline vtxUprightQuad::Result vtxUprightQuad::make(vtxUprightSpace const& space, vtxPair position, vtxPair size,
                                                   vtxPair first, vtxPair last) {
    place_(space, position, size);
    vtxPair const sum = from + to;
    if (!vtxPairs::all(sum - sum == vtxPairs::both(0.0)))
        return NotFinite;
    view_(space);
    coordinateFrom = first * space.coordinateScale + space.coordinateOffset;
    coordinateTo = last * space.coordinateScale + space.coordinateOffset;
    movable = space.snapped;
    if (!vtxPairs::all(from < to)) {
        movable = false;
        order_();
        if (!vtxPairs::all(from < to))
            return Unseen;
    }
    if (space.snapped)
        snap_(space);
    wholeCoordinateFrom = coordinateFrom;
    wholeCoordinateTo = coordinateTo;
    if (isInside_(space))
        return Seen;
    movable = false;
    return clip_(space) ? Seen : Unseen;
}

inline bool vtxUprightQuad::move(vtxUprightSpace const& space, vtxPair position, vtxPair size, vtxPair length) {
    using namespace vtxUprightQuads;
    place_(space, position, size);
    view_(space);
    vtxPair const start = roundToPixel(from);
    vtxPair const end = start + length;
    bool const sameLength =
        space.exact || vtxPairs::all(vtxPairs::max(roundToPixel(to), start + vtxPairs::both(1.0)) == end);
    from = start;
    to = end;
    return sameLength && isInside_(space);
}

inline void vtxUprightQuad::place_(vtxUprightSpace const& space, vtxPair position, vtxPair size) {
    from = (position * space.scale + space.shift) * space.stretch + space.place;
    to = from + size * space.scale * space.stretch;
}

inline void vtxUprightQuad::view_(vtxUprightSpace const& space) {
    from = from * space.viewScale + space.viewOffset;
    to = to * space.viewScale + space.viewOffset;
}

inline bool vtxUprightQuad::isInside_(vtxUprightSpace const& space) const {
    return vtxPairs::all(from >= space.visibleFrom) && vtxPairs::all(to <= space.visibleTo);
}

inline void vtxUprightQuad::order_() {
    vtxPair const end = from < to ? to : from;
    vtxPair const last = to < from ? coordinateFrom : coordinateTo;
    coordinateFrom = to < from ? coordinateTo : coordinateFrom;
    coordinateTo = last;
    from = from < to ? from : to;
    to = end;
}

inline void vtxUprightQuad::snap_(vtxUprightSpace const& space) {
    using namespace vtxUprightQuads;
    vtxPair const one = vtxPairs::both(1.0);
    vtxPair const start = roundToPixel(from);
    if (space.exact) {
        // Keeps one texel a pixel: the origin lands on a whole pixel, and the texture shows as many texels as there
        // are pixels, unless the quad stretches its texture.
        vtxPair const tolerance = vtxPairs::both(exactTolerance);
        vtxPair const span = vtxPairs::abs(coordinateTo - coordinateFrom) * space.texels;
        if (vtxPairs::all(vtxPairs::abs(span - (to - from)) <= tolerance)) {
            vtxPair const whole = vtxPairs::nearest(span);
            vtxPair const rest = vtxPairs::abs(span - whole);
            vtxPair length = whole;
            if (!vtxPairs::all(rest <= tolerance)) {
                movable = false;
                length = rest <= tolerance ? whole : roundToPixel(to) - start;
            }
            length = vtxPairs::max(length, one);
            from = start;
            to = start + length;
            coordinateTo = coordinateFrom + vtxPairs::copySign(length / space.texels, coordinateTo - coordinateFrom);
            return;
        }
    }
    movable = movable && !space.exact;
    if (space.glyphs)
        return;
    to = vtxPairs::max(roundToPixel(to), start + one);
    from = start;
}

inline bool vtxUprightQuad::clip_(vtxUprightSpace const& space) {
    for (int axis = 0; axis < 2; ++axis) {
        double ends[2] = {from[axis], to[axis]};
        double coordinates[2] = {coordinateFrom[axis], coordinateTo[axis]};
        if (!clipAxis_(ends, coordinates, space.visibleFrom[axis], space.visibleTo[axis]))
            return false;
        from[axis] = ends[0];
        to[axis] = ends[1];
        coordinateFrom[axis] = coordinates[0];
        coordinateTo[axis] = coordinates[1];
    }
    return true;
}

inline bool vtxUprightQuad::clipAxis_(double ends[2], double coordinates[2], double least, double most) {
    if (ends[0] >= most || ends[1] <= least)
        return false;
    double const step = (coordinates[1] - coordinates[0]) / (ends[1] - ends[0]);
    if (ends[1] > most) {
        coordinates[1] = coordinates[0] + (most - ends[0]) * step;
        ends[1] = most;
    }
    if (ends[0] < least) {
        coordinates[0] += (least - ends[0]) * step;
        ends[0] = least;
    }
    return true;
}
