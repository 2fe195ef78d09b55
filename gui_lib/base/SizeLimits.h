#pragma once

#include <osg/Vec2i>

#include <algorithm>

namespace gui {

/// What a widget's size is kept within. A component of 0 or less means no limit; where the two contradict one another
/// the maximum wins.
struct SizeLimits {
    osg::Vec2i least;
    osg::Vec2i most;

    osg::Vec2i clamp(osg::Vec2i const& wanted) const {
        return {clampTo_(wanted.x(), least.x(), most.x()), clampTo_(wanted.y(), least.y(), most.y())};
    }
    /// A size that can be: with no component below 0 where nothing limits it.
    osg::Vec2i makeValid(osg::Vec2i const& wanted) const {
        return clamp(osg::Vec2i(std::max(wanted.x(), 0), std::max(wanted.y(), 0)));
    }

private:
    static int clampTo_(int value, int least, int most) {
        if (least > 0)
            value = std::max(value, least);
        if (most > 0)
            value = std::min(value, most);
        return value;
    }
};

}  // namespace gui
