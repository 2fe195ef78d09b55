#pragma once

#include <osg/Matrixf>
#include <osg/Vec2i>

/// The host's own picture in plain GL: a lit floor, columns, and a turning screen that shows a texture on its front.
/// Coordinates: metres, y up. The screen's front spans (-1, -1) to (1, 1) times its half size, seen from +z.
class Scene {
public:
    Scene();
    ~Scene();
    Scene(Scene const&) = delete;
    Scene& operator=(Scene const&) = delete;

    /// Draws into the bound framebuffer of `size` pixels, depth included. `texture` is a GL name with row 0 at the top,
    /// premultiplied.
    void draw(osg::Vec2i const& size, unsigned texture);

    static osg::Matrixf getProjection(osg::Vec2i const& size);
    static osg::Matrixf getView();
    /// Of the screen that has turned by `angle` radians.
    static osg::Matrixf getScreenModel(double angle);
    static osg::Vec2f getScreenHalfSize() { return {1.104f, 0.69f}; }

    void setAngle(double radians) { angle_ = radians; }

private:
    struct Mesh {
        unsigned vertexArray = 0;
        unsigned vertexBuffer = 0;
        int count = 0;
    };

    static Mesh makeBox(float x, float y, float z);
    static Mesh makeScreen();
    void drawMesh_(Mesh const& mesh, osg::Matrixf const& model, osg::Vec4f const& color, float textured) const;

    unsigned program_ = 0;
    Mesh box_;
    Mesh screen_;
    double angle_ = 0.0;
    osg::Matrixf viewProjection_;
};
