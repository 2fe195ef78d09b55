#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxFont.h"
#include "platform/vtx/vtxShaderQuads.h"

#include <osg/Vec2i>
#include <osg/Vec4f>

#include <array>
#include <memory>

class vtxRendererCore;
class vtxShader;

/// One line of laid-out text: background, shadow, blur, glyphs and line-through, drawn in that order. A layer whose
/// colour has no alpha when the string is built is left out.
/// The background reaches from the ascender to the descender and is as wide as the text. The shadow is the sharp text
/// moved by `shadowOffset`. The blur layer is the softened text of a font with a blur above 0. The line-through bar has
/// its top `lineThroughOffset` above half the height of an "x".
/// Coordinates: `position` is the start of the baseline, GUI units.
/// A copyable value: a copy draws what the source draws, also after the source and the font have gone, and copying over
/// a string of the same length or longer allocates nothing, and over a copy of the same string costs a comparison.
class VORLEX_API vtxTextString {
public:
    vtxTextString();
    ~vtxTextString();
    vtxTextString(vtxTextString const&);
    vtxTextString& operator=(vtxTextString const&);

    /// Builds the quads for a scale; -1.0 means the renderer's scale. Colours, text and position take effect here, the
    /// colours of layers that exist also later.
    void redraw(float scale);
    /// Sets what it shows and where; false if it does so already.
    bool setLine(std::shared_ptr<vtxFont> const& newFont, std::wstring_view newText, osg::Vec2i const& newPosition);
    /// A field that quads follow from was written otherwise than by `setLine`.
    void setStale() { stale_ = true; }
    /// As `redraw`, at once where the string is as it was built and told of each change.
    void update(float scale);
    /// A string built for another scale builds itself again first. One that was never built draws nothing.
    void draw(vtxShader* shader, float scale) const;
    /// The same with another glyph colour.
    void draw(vtxShader* shader, osg::Vec4f const& color, float scale) const;

    std::shared_ptr<vtxFont> font;
    osg::Vec4f color;
    osg::Vec4f bkgColor;
    osg::Vec4f shadowColor;
    osg::Vec2i shadowOffset;
    osg::Vec4f blurColor;
    osg::Vec4f lineThroughColor;
    int lineThroughHeight = 1;
    int lineThroughOffset = 1;
    qor::basic_string<wchar_t> text;
    osg::Vec2i position;
    mutable vtxShaderQuads quads;
    int textLength = 0;

private:
    enum Layer { LayerBkg, LayerShadow, LayerBlur, LayerGlyphs, LayerLineThrough, LayerCount };

    /// What has storage of its own.
    bool hasContentOf_(vtxTextString const& other) const;
    void copyContent_(vtxTextString const& other);
    void build_(float scale) const;
    void drawBatches_(vtxRendererCore& core, osg::Vec4f const& layerColor, int begin, int end) const;
    void addBar_(vtxQuadsRewriter& quads, float y, float width, float height) const;

    // What drawing builds again when the scale has changed; all of it follows from the fields above.
    mutable std::array<int, LayerCount> layerEnds_ = {};  ///< batches up to the end of each layer
    mutable float builtScale_ = 0.0f;                     ///< 0: never built
    mutable bool stale_ = false;                          ///< the fields have changed since
    mutable unsigned builtGeneration_ = 0;
    mutable std::shared_ptr<void const> glyphs_[2];  ///< keep the sharp and the softened glyphs in their pages
};
