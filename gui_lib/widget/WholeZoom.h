#pragma once

#include "platform/qor/Truncate.h"

#include <osg/Vec2i>

namespace gui {

/// Scales a size by the whole part of the zoom: 1.5 scales by 1, and 0.5 gives 0, which as a limit means none.
inline osg::Vec2i scaleByWholeZoom(osg::Vec2i const& size, float zoom) {
    if (zoom == 1.0f)
        return size;
    double const factor = qor::truncateToInt(zoom);
    return osg::Vec2i(qor::truncateToInt(size.x() * factor), qor::truncateToInt(size.y() * factor));
}

}  // namespace gui
