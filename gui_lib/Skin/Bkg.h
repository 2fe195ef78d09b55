#pragma once

#include <cstddef>

#include <osg/Vec2i>
#include <osg/Vec4f>

#include "gui_lib/base/Insets.h"
#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxShaderBkgQuads.h"

class vtxTexture;

namespace qor {
class BlockPool;
}

namespace gui {

class GraphicCommands;

/// A background: a nine-cell grid of fixed corners, edges that stretch along one axis and a centre that stretches along
/// both, each cell with a colour of its own, with or without a texture.
/// Coordinates: GUI units, relative to the owner.
/// Order: setters, `redraw`, `doRedraw`, then `draw` or `make`.
/// Lifetime: objects made by `new` come from a pool shared by all.
class VORLEX_API Bkg final {
public:
    enum CellType {
        LeftTop = 0,
        CenterTop,
        RightTop,
        LeftCenter,
        CenterCenter,
        RightCenter,
        LeftBottom,
        CenterBottom,
        RightBottom,
        CellCount
    };

    /// What a skin says about a background.
    struct VORLEX_API Info {
        /// Empty: no texture.
        qor::basic_string<char> file;
        /// Part of the picture; the empty rectangle means all of it.
        osg::RectImpl<osg::Vec2i> rect;
        /// Sizes of the fixed cells, also in the picture.
        Insets insets;
        /// Nine colours by CellType, transparent at first.
        qor::vector<osg::Vec4f> cellColors = qor::vector<osg::Vec4f>(CellCount);

        bool operator==(Info const&) const = default;
    };

    Bkg();
    ~Bkg();
    Bkg(Bkg const&) = delete;
    Bkg& operator=(Bkg const&) = delete;

    static void* operator new(std::size_t size);
    static void operator delete(void* memory);
    static qor::BlockPool& bkgPool();

    // --- Description ---
    /// Takes texture, insets and colours, and always asks for a new layout.
    void set(Info const& info);
    /// As `set`, for an `info` that stays as it is while `LookEpoch` does: at once where it is what was set last, and
    /// without a new layout where it differs from that in colours only.
    void setShared(Info const& info);
    /// Ignored unless there are nine. Shows after the next layout, which the colours alone do not ask for.
    void setCellColors(qor::vector<osg::Vec4f> const& colors);
    void setInsets(Insets const& insets);
    Insets const& getInsets() const { return insets; }
    void setTexture(qor::basic_string<char> const& file, osg::RectImpl<osg::Vec2i> const& rect);
    /// Takes over one reference of the texture manager.
    void setTexture(vtxTexture* texture);
    vtxTexture* getTexture() const { return texture; }

    // --- Geometry ---
    void setPosition(osg::Vec2i const& position);
    osg::Vec2i getPosition() const { return position; }
    void setSize(osg::Vec2i const& size);
    osg::Vec2i getSize() const { return size; }
    void setDirty(bool dirty) { geometryDirty = dirty; }

    // --- Drawing ---
    void redraw();
    void doRedraw();
    void draw() const;
    void make(GraphicCommands* commands) const;
    /// Nine entries; entry i belongs to the i-th quad that is drawn.
    osg::Vec4f const* getColorsToDraw() const { return colorsToDraw; }

private:
    struct Rect {
        float x1, y1, x2, y2;
    };

    /// True if other cells are seen than before; `colors` are nine.
    bool storeColors_(qor::vector<osg::Vec4f> const& colors);
    bool isCellDrawn_(int cell) const;
    void calcCellQuads_();
    void calcCellTexCoords_();
    void buildQuads_();
    void colorQuads_();

    osg::Vec2i position;
    osg::Vec2i size;
    vtxShaderBkgQuads quads;
    Insets insets;
    vtxTexture* texture = nullptr;
    osg::Vec4f colorsToDraw[CellCount];
    unsigned cellColors[CellCount] = {};  ///< RGBA, red in the low byte
    Rect cellQuads[CellCount];            ///< x, y, width, height
    Rect cellTexCoords[CellCount];        ///< uMin, vMin, uMax, vMax
    bool geometryDirty = false;
    bool quadsDirty = false;
    bool colorsDirty_ = false;
    unsigned sharedEpoch_ = 0;
    /// What texture, insets and colours are those of, in that epoch; null for nothing that is shared.
    Info const* shared_ = nullptr;
};

}  // namespace gui
