#pragma once

#include <memory>

#include <osg/Vec2i>

#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

/// A GL context without a window or a display server, with a framebuffer of its own that one draws to.
///
/// It is a debug context: what GL reports as an error is counted and logged, whoever caused it.
/// Lifetime: several may exist; the connection to the driver stays open until the program ends.
class VORLEX_API EglContext {
public:
    enum class Api {
        GL33,  ///< OpenGL 3.3 core; a driver may give a later version that contains it
        GL45,  ///< OpenGL 4.5 core
        ES30   ///< OpenGL ES 3.0
    };

    /// A context, made current, with its framebuffer bound and the viewport covering it. Null on failure, with the
    /// cause and a remedy in `error`. `size` is in pixels.
    static std::unique_ptr<EglContext> create(Api api, osg::Vec2i const& size, qor::string& error);

    ~EglContext();
    EglContext(EglContext const&) = delete;
    EglContext& operator=(EglContext const&) = delete;

    void makeCurrent();
    /// Binds the framebuffer and sets the viewport to the whole of it.
    void bindFramebuffer();
    /// Gives the framebuffer another size and binds it; what it held is lost.
    void resize(osg::Vec2i const& size);
    osg::Vec2i getSize() const;
    /// The framebuffer's GL name.
    unsigned getFramebuffer() const;

    /// Fills the framebuffer with a colour, components from 0 to 1.
    void clear(float r, float g, float b, float a);
    /// RGBA, four bytes a pixel, rows from the top.
    qor::vector<unsigned char> readPixels();

    /// Errors that GL reported since the context was made.
    unsigned getErrorCount() const;
    /// Version and driver in words.
    qor::string describe() const;

private:
    struct Impl;
    explicit EglContext(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};
