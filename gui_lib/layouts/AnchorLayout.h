#pragma once

#include "gui_lib/base/Align.h"
#include "gui_lib/layouts/Layout.h"

struct lua_State;

namespace gui {

class Widget;

/// Keeps each edge of a child by the container's edges while that is resized. An edge with the align type min stays
/// where it was at first, with center it is that of the centred child, with max it follows the far edge, and with
/// stretch it scales with the container; an offset is added. Child i goes with info i; one without an info is left
/// alone. The child's geometry is taken once, at the first layout with its info; one moved by hand snaps back.
/// Has no say in the container's size.
class VORLEX_API AnchorLayout : public Layout {
public:
    struct VORLEX_API AnchorInfo {
        Align left;
        Align top;
        Align right;
        Align bottom;
        /// The child's geometry at the first layout.
        osg::Vec2i position;
        osg::Vec2i size;
        /// The geometry has been taken. `setAnchorInfo` clears it in its argument too.
        mutable bool initialized = false;
    };

    AnchorLayout();

    // --- Anchors: all three changes ask for a layout at the next redraw, also when the index is bad ---
    /// In front of `index` if there is one, else at the end.
    virtual void insertAnchorInfo(AnchorInfo const& info, int index);
    virtual void removeAnchorInfo(int index);
    /// The child's geometry is taken again.
    virtual void setAnchorInfo(AnchorInfo const& info, int index);
    /// Null for a bad index; good until the next change.
    virtual AnchorInfo* getAnchorInfo(int index);
    virtual int getAnchorInfoCount() const;

    // Layout:
    /// The infos with the geometry that they took, but not the base size.
    Layout* clone() const override;
    char const* getType() const override;
    void setContainer(WidgetHandler* newContainer) override;
    void updateSize() override;

protected:
    /// Size of the client rectangle that the children's first geometry belongs to.
    osg::Vec2i baseSize;
    qor::vector<AnchorInfo> anchorInfos;
    osg::Vec2i currentSize;
    double scaleX = 1.0;
    double scaleY = 1.0;

private:
    bool isValid_(int index) const { return index >= 0 && index < getAnchorInfoCount(); }
    void updateLayoutLater_();
    int placeEdge_(Align const& anchor, int edge, int centered, int axis) const;
};

}  // namespace gui

namespace luautil {

template <class T>
bool getValue(lua_State* L, int index, T& value);
template <class T>
void setValue(lua_State* L, T const& value);

/// {left, top, right, bottom}, each an Align; what is absent or no Align stays as it is.
template <>
VORLEX_API bool getValue<gui::AnchorLayout::AnchorInfo>(lua_State* L, int index, gui::AnchorLayout::AnchorInfo& value);
template <>
VORLEX_API void setValue<gui::AnchorLayout::AnchorInfo>(lua_State* L, gui::AnchorLayout::AnchorInfo const& value);

}  // namespace luautil
