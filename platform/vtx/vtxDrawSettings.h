#pragma once

#include <osg/Matrixf>
#include <osg/Vec4f>

class vtxGeometry;
class vtxTexture;

/// Internal: the settings of the contract that apply to what is drawn next. A target starts with its own and puts back
/// the caller's.
struct vtxDrawSettings {
    static constexpr int maxColors = 9;

    osg::Matrixf projection;
    osg::Matrixf modelView;
    bool modelViewTranslates = true;  ///< it is nothing but a translation
    float opacity = 1.0f;
    /// Pixels, added before the model-view.
    float shiftX = 0.0f;
    float shiftY = 0.0f;
    float gamma = 1.0f;
    float intensity = 1.0f;
    /// The filtering that resetTextureSampler goes back to, and the one in force.
    int filtering = 0;
    int sampler = 0;
    osg::Vec4f color{1.0f, 1.0f, 1.0f, 1.0f};
    osg::Vec4f colors[maxColors];
    int colorCount = 0;
    bool colorsEqual = false;  ///< all are the first, and only that is set
    vtxTexture const* texture = nullptr;
    vtxGeometry* geometry = nullptr;
};
