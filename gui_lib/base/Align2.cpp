#include "gui_lib/base/Align2.h"

namespace gui {

osg::RectImpl<osg::Vec2i> Align2::calc(osg::Vec2i const& size, osg::Vec2i const& available) const {
    osg::RectImpl<osg::Vec2i> rect;
    horz_.calc(size.x(), available.x(), rect.x1, rect.x2);
    vert_.calc(size.y(), available.y(), rect.y1, rect.y2);
    return rect;
}

}  // namespace gui
