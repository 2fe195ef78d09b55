#pragma once

#include "gui_lib/base/Align2.h"
#include "gui_lib/layouts/Layout.h"

namespace gui {

class Widget;

/// Two columns, captions and fields: children with an even index are captions, each followed by its field. A column is
/// as wide as its widest preferred width, a row as high as the higher one of the two.
class VORLEX_API FormLayout : public Layout {
public:
    explicit FormLayout(int horzGap = 0, int vertGap = 0);

    /// Setters lay out at once.
    void setHorzGap(int gap);
    int getHorzGap() const { return horzGap; }
    void setVertGap(int gap);
    int getVertGap() const { return vertGap; }
    /// Where captions stand within the column and the row.
    void setCaptionsAlign(Align const& horz, Align const& vert);
    Align2 const& getCaptionsAlign() const { return captionsAlign; }
    void setFieldsAlign(Align const& horz, Align const& vert);
    Align2 const& getFieldsAlign() const { return fieldsAlign; }

    // Layout:
    Layout* clone() const override;
    char const* getType() const override;
    osg::Vec2i getMinSize() const override;
    /// Without limit in a row is without limit in all.
    osg::Vec2i getMaxSize() const override;
    osg::Vec2i getPrefSize() const override;
    void updateSize() override;

protected:
    int horzGap = 0;
    int vertGap = 0;
    Align2 captionsAlign{Align(Align::Min, 0), Align(Align::Center, 0)};
    Align2 fieldsAlign{Align(Align::Min, 0), Align(Align::Center, 0)};

private:
    enum GapUse { GapAlways, GapBehindCaption };

    osg::Vec2i measureRow_(int row, osg::Vec2i (Widget::*question)() const, GapUse gapUse) const;
    int countRows_() const;
    void addGaps_(osg::Vec2i& size, int rows) const;
    bool place_(LayoutRun const& run, int index, Align2 const& align, osg::Vec2i const& corner,
                osg::Vec2i const& cell) const;
};

}  // namespace gui
