#pragma once

#include <memory>

#include <osg/Vec2i>

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/vtx/vtxGeometry.h"

class RandomObject;
class vtxEffectShader;
class vtxTexture;

namespace gui::skin {

/// Internal: a widget cut into quads from its left top corner, each with an alpha of its own, for the effects that draw
/// such a grid. Coordinates: GUI units.
class VORLEX_API EffectQuadGrid {
public:
    /// How many alphas there are; the quads use them over and over.
    static constexpr int alphaCount = 100;

    void findParameters(vtxEffectShader* shader);
    /// Sets the side of a quad; below 1 there are none.
    void setQuadSize(float size) { quadSize_ = size; }
    float getQuadSize() const { return quadSize_; }

    // --- Alphas ---
    void clearAlphas() { quadsAlpha_.assign(alphaCount, 0.0f); }
    void fillAlphas() { quadsAlpha_.assign(alphaCount, 1.0f); }
    /// `alpha` and a little noise for each that there is.
    void calcAlphas(float alpha, RandomObject& random);

    // --- Drawing ---
    /// Builds the quads for a widget of a size; null where there is none.
    void redraw(osg::Vec2i const& size, std::unique_ptr<vtxGeometry>& geometry);
    int getQuadCount() const { return rows_ * columns_; }
    void setDrawParams(vtxEffectShader& shader, vtxTexture const* texture) const;

private:
    /// The quads of one direction.
    struct Line {
        int count = 0;
        int whole = 0;  ///< side of all but the last
        int last = 0;   ///< side of the last
        int side(int index) const { return index == count - 1 ? last : whole; }
    };

    Line cut_(int size) const;
    void addQuad_(int width, int height);

    float quadSize_ = 0.0f;
    int columns_ = 1;
    int rows_ = 1;
    qor::vector<float> quadsAlpha_;
    int quadSizeHandle_ = -1;
    int quadSizeXHandle_ = -1;
    int quadSizeYHandle_ = -1;
    int columnsHandle_ = -1;
    int rowsHandle_ = -1;
    int texSizeXHandle_ = -1;
    int texSizeYHandle_ = -1;
    int quadsAlphaHandle_ = -1;
    qor::vector<vtxVertex> vertices_;
    qor::vector<int> indices_;
};

}  // namespace gui::skin
