#pragma once

#include "gui_lib/base/Align.h"
#include "gui_lib/base/SizeLimits.h"
#include "gui_lib/layouts/FairShare.h"
#include "gui_lib/layouts/Layout.h"

namespace gui {

class Widget;

/// What rows and columns have in common: children one after the other along the main axis, a gap between two. The
/// align of the main axis chooses the mode: with min, center and max each child gets its preferred length and the
/// whole line is aligned; with stretch the room is shared out fairly between the children's minima and maxima; with
/// anything else nothing is placed. The align of the other axis places each child across the line. Hidden children
/// keep their room.
class VORLEX_API LineLayout : public Layout {
public:
    /// Setters lay out at once.
    void setGap(int newGap);
    int getGap() const { return gap; }
    void setHorzAlign(Align const& align);
    Align const& getHorzAlign() const { return horzAlign; }
    void setVertAlign(Align const& align);
    Align const& getVertAlign() const { return vertAlign; }

    // Layout:
    osg::Vec2i getMinSize() const override;
    /// Without limit along an axis in which a child has none.
    osg::Vec2i getMaxSize() const override;
    osg::Vec2i getPrefSize() const override;
    /// Along the line too the greatest maximum, not the sum, and all gaps.
    osg::Vec2i calcMaxSize() const override;
    void updateSize() override;

protected:
    /// Index of a component of a Vec2i.
    enum Axis { AxisHorz = 0, AxisVert = 1 };

    LineLayout(int gap, Axis mainAxis);

    /// Gap and aligns.
    void copySettings_(LineLayout& target) const;

    // Layout:
    bool measureLasting_() override;

    int gap = 0;
    Align horzAlign;
    Align vertAlign;

private:
    struct Box {
        osg::Vec2i position;
        osg::Vec2i size;
    };
    struct KnownChild {
        Widget* widget;
        SizeLimits limits;
        /// Along the line.
        int greatest;
        osg::Vec2i wanted;
    };

    Align const& getAlign_(int axis) const { return axis == AxisHorz ? horzAlign : vertAlign; }
    void addGaps_(osg::Vec2i& sum, int childCount) const;
    void placeAligned_(LayoutRun const& run);
    void placeStretched_(LayoutRun const& run);
    /// Of the child at `index`, which begins at `begin` along the line and is `length` long.
    Box makeBox_(LayoutRun const& run, int index, int begin, int length) const;
    /// Where the next one begins.
    int stepOver_(int begin, Widget const* child) const;
    /// Into `shares_`, what each living child gets of `room`.
    void shareOut_(LayoutRun const& run, int room);
    /// Places children that are known, from the first to the last or until the host has changed anything. Answers how
    /// many; -1 where the walk ends.
    int placeKnown_(LayoutRun const& run, int& begin);
    template <Axis along>
    int placeKnownAlong_(LayoutRun const& run, int& begin);

    Axis mainAxis_;
    /// Of each child, once `measureLasting_` has read them.
    qor::vector<KnownChild> knownChildren_;
    bool placesKnownPlainly_ = false;
    /// Of the last run: they hold on while the same is shared out among children that are known still.
    qor::vector<FairShareItem> shares_;
    int sharedRoom_ = 0;
    bool sharesHold_ = false;
    /// `prefSizes` are those of `knownChildren_`.
    bool prefSizesHold_ = false;
};

}  // namespace gui
