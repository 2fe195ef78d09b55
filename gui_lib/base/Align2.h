#pragma once

#include <osg/Vec2i>

#include "gui_lib/base/Align.h"
#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"

namespace gui {

/// A horizontal and a vertical Align.
class VORLEX_API Align2 {
public:
    /// Both min, without offset.
    Align2() = default;
    Align2(Align const& horz, Align const& vert) : horz_(horz), vert_(vert) {}

    Align const& getHorzAlign() const { return horz_; }
    void setHorzAlign(Align const& align) { horz_ = align; }
    Align const& getVertAlign() const { return vert_; }
    void setVertAlign(Align const& align) { vert_ = align; }

    /// The place of `size` within a box of `available`, from the box's left top. GUI units.
    osg::RectImpl<osg::Vec2i> calc(osg::Vec2i const& size, osg::Vec2i const& available) const;

    bool operator==(Align2 const&) const = default;

private:
    Align horz_;
    Align vert_;
};

}  // namespace gui
