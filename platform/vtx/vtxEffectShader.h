#pragma once

#include "platform/qor/Api.h"
#include "platform/qor/String.h"

#include <osg/Matrixf>

#include <cstddef>

class vtxGeometry;
class vtxTexture;

/// An effect program from an effect file. Lifetime: owned by the renderer, lives as long as it; loaded once a path.
class VORLEX_API vtxEffectShader {
public:
    using ParameterHandle = int;

    virtual ~vtxEffectShader();
    virtual void setTexture(vtxTexture* texture) = 0;
    virtual void setGeometry(vtxGeometry* geometry) = 0;
    virtual void setMatrices(osg::Matrixf const& projection, osg::Matrixf const& modelView) = 0;
    /// -1 for a parameter that does not exist; the setters ignore that handle.
    virtual ParameterHandle getParameter(char const* name) = 0;
    virtual void setFloat(ParameterHandle handle, float value) = 0;
    virtual void setFloatArray(ParameterHandle handle, float const* values, std::size_t count) = 0;
    virtual void beginPass() = 0;
    virtual void endPass() = 0;
    virtual void drawEffect(int primitive, int primitiveCount, int first) = 0;

    /// Makes the program, which the first draw does otherwise; on the drawing thread. False with the cause, each time
    /// anew, if it cannot be made; nothing is logged.
    virtual bool prepare(qor::basic_string<char>& error) = 0;
};
