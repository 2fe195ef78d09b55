#pragma once

#include <osg/Vec2i>
#include <osg/Vec4f>

#include "gui_lib/base/Align2.h"
#include "gui_lib/base/Insets.h"
#include "platform/osg/RectImpl.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxShaderQuads.h"

class vtxTexture;

namespace gui {

class GraphicCommands;

/// One picture inside a box: aligned, if wanted scaled to cover the box, or tiled along one axis or both.
/// Coordinates: GUI units, relative to the owner.
/// Order: setters, `redraw`, `doRedraw`, then `draw` or `make`.
/// Lifetime: holds a reference to its texture unless told otherwise; textures that were replaced live until the next
/// `doRedraw`, because commands recorded earlier may show them.
class VORLEX_API Image {
public:
    /// What a skin says about a picture.
    struct VORLEX_API Info {
        qor::basic_string<char> file;
        osg::Vec4f color = osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f);
        Align2 align = Align2(Align(Align::Min, 0), Align(Align::Center, 0));
        /// (0, 0): the picture's own size.
        osg::Vec2i size;
        /// Part of the picture; the empty rectangle means all of it.
        osg::RectImpl<osg::Vec2i> rect;
        /// 0 linear, 1 nearest, 2 linear with mips; 3 is linear, and repeats where it is recorded.
        int userTexSampler = 0;
        bool resizeToFill = false;
        bool tileHorizontally = false;
        bool tileVertically = false;

        bool operator==(Info const&) const = default;
    };

    Image();
    virtual ~Image();
    Image(Image const&) = delete;
    Image& operator=(Image const&) = delete;

    // --- Description ---
    /// Takes all but the texture, and always asks for a new layout.
    void set(Info const& info);
    void setTexture(qor::basic_string<char> const& file, osg::RectImpl<osg::Vec2i> const& rect);
    /// `owned` tells whether this image gives references back to the texture manager from now on, that of the texture
    /// so far included.
    void setTexture(vtxTexture* texture, bool owned);
    vtxTexture* getTexture() const { return texture; }
    void setColor(osg::Vec4f const& color) { info.color = color; }
    osg::Vec4f getColor() const { return info.color; }
    void setUserTexSampler(int sampler) { info.userTexSampler = sampler; }
    int getUserTexSampler() const { return info.userTexSampler; }

    // --- Layout ---
    void setSize(osg::Vec2i const& size);
    /// Size to show the picture at: the set one, or the picture's own; (0, 0) without texture.
    osg::Vec2i getSize() const;
    /// Where the last layout put the picture within the bounds; tiles line up with it.
    osg::Vec2i getPosition() const { return position; }
    void setInsets(Insets const& insets);
    Insets const& getInsets() const { return insets; }
    virtual void setAlign(Align2 const& align);
    virtual Align2 getAlign() const;
    /// Scales the picture, its proportions kept, until it covers a box that is larger.
    void setResizeToFill(bool resize);
    bool getResizeToFill() const { return info.resizeToFill; }
    void setTileHorizontally(bool tile);
    bool getTileHorizontally() const { return info.tileHorizontally; }
    void setTileVertically(bool tile);
    bool getTileVertically() const { return info.tileVertically; }
    void setDirty(bool dirty) { geometryDirty = dirty; }

    // --- Drawing ---
    void redraw(osg::Vec2i const& boundsSize);
    void doRedraw();
    void draw() const;
    void draw(osg::Vec4f const& color) const;
    void make(GraphicCommands* commands) const;
    void make(GraphicCommands* commands, osg::Vec4f const& color) const;

private:
    struct Tiles;

    osg::Vec2i getAvailableSize_() const;
    osg::RectImpl<osg::Vec2i> place_();
    void addQuads_(Tiles const& tiles);

    vtxShaderQuads quads;
    osg::Vec2i position;
    osg::Vec2i boundsSize;
    Info info;
    Insets insets;
    vtxTexture* texture = nullptr;
    qor::vector<vtxTexture*> pendingReleases;
    bool geometryDirty = false;
    bool quadsDirty = false;
    bool ownsTexture = true;
};

}  // namespace gui
