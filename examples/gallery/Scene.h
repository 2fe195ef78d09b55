#pragma once

#include <osg/Matrixf>
#include <osg/Vec2i>

/// The host's own picture in plain GL: a lit floor, columns, a turning screen that shows a texture on its front, and a
/// cube that shows another one on each side.
/// Coordinates: metres, y up. The screen's front spans (-1, -1) to (1, 1) times its half size, seen from +z.
class Scene {
public:
    Scene();
    ~Scene();
    Scene(Scene const&) = delete;
    Scene& operator=(Scene const&) = delete;

    /// What the objects show: GL names with row 0 at the top, premultiplied; 0 for none.
    struct Pictures {
        unsigned screen = 0;
        /// On each side.
        unsigned cube = 0;
    };

    /// Draws into the bound framebuffer of `size` pixels, depth included.
    void draw(osg::Vec2i const& size, Pictures const& pictures);

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
    void drawMesh_(Mesh const& mesh, osg::Matrixf const& model, osg::Vec4f const& color, unsigned texture) const;

    unsigned program_ = 0;
    Mesh box_;
    Mesh screen_;
    double angle_ = 0.0;
    osg::Matrixf viewProjection_;
};
