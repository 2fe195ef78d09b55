#pragma once

#include <osg/Vec2f>
#include <osg/Vec2i>

#include <functional>
#include <memory>

class vtxFrameBuffer;
class vtxTexture;

/// A picture that the toolkit draws and the scene and TextureViews show. It follows the renderer's scale.
class PictureTarget {
public:
    /// GUI units.
    explicit PictureTarget(osg::Vec2i const& size);
    ~PictureTarget();
    PictureTarget(PictureTarget const&) = delete;
    PictureTarget& operator=(PictureTarget const&) = delete;

    /// Calls `draw` with the size in pixels and the scale while the target is bound. Between doRedraw and the scene.
    void render(std::function<void(osg::Vec2i const&, osg::Vec2f const&)> const& draw);

    /// Another one after the first drawing, and after a change of scale; null before.
    vtxTexture* getTexture() const;
    /// GL name; 0 without GL.
    unsigned getTextureName() const;

private:
    osg::Vec2i size_;
    std::unique_ptr<vtxFrameBuffer> target_;
    /// The one before a change of scale, for one frame.
    std::unique_ptr<vtxFrameBuffer> retired_;
    float targetScale_ = 0.0f;
};
