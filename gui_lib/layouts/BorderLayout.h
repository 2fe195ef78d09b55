#pragma once

#include "gui_lib/layouts/Layout.h"

namespace gui {

class Widget;

/// Up to five children: north and south as wide as the container, west and east between them, and what is left to the
/// centre. The place of a child is its index; later ones are left alone. Places count from the container's corner, not
/// from its client rectangle's. A size question looks no further than the first place without a child.
class VORLEX_API BorderLayout : public Layout {
public:
    enum Place { PlaceNorth = 0, PlaceSouth = 1, PlaceCenter = 2, PlaceWest = 3, PlaceEast = 4, PlaceCount = 5 };

    explicit BorderLayout(int horzGap = 0, int vertGap = 0);

    /// Setters lay out at once.
    void setHorzGap(int gap);
    int getHorzGap() const { return horzGap; }
    void setVertGap(int gap);
    int getVertGap() const { return vertGap; }

    // Layout:
    Layout* clone() const override;
    char const* getType() const override;
    osg::Vec2i getMinSize() const override;
    osg::Vec2i getMaxSize() const override;
    osg::Vec2i getPrefSize() const override;
    void updateSize() override;

protected:
    int horzGap = 0;
    int vertGap = 0;

private:
    struct Answers;

    Answers collect_(osg::Vec2i (Widget::*question)() const) const;
};

}  // namespace gui
