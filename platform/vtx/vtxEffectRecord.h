#pragma once

#include "platform/qor/Containers.h"
#include "platform/qor/String.h"
#include "platform/vtx/vtxDevice.h"
#include "platform/vtx/vtxEffectFile.h"
#include "platform/vtx/vtxEffectShader.h"

class vtxRendererCore;

/// Internal: an effect file with the values of its parameters. The device makes its program when it is prepared, or at
/// the first draw; where that fails, the effect draws nothing, and one line is logged by the draw.
class vtxEffectRecord final : public vtxEffectShader {
public:
    vtxEffectRecord(vtxRendererCore& core, char const* path, vtxEffectFile const& file);

    /// Forgets the program, which goes with the device.
    void releaseDevice() { program_ = 0; }

    // vtxEffectShader:
    void setTexture(vtxTexture* texture) override { texture_ = texture; }
    void setGeometry(vtxGeometry* geometry) override { geometry_ = geometry; }
    void setMatrices(osg::Matrixf const& projection, osg::Matrixf const& modelView) override;
    ParameterHandle getParameter(char const* name) override;
    void setFloat(ParameterHandle handle, float value) override;
    void setFloatArray(ParameterHandle handle, float const* values, std::size_t count) override;
    void beginPass() override;
    void endPass() override;
    void drawEffect(int primitive, int primitiveCount, int first) override;
    bool prepare(qor::string& error) override;

private:
    struct Value {
        qor::string name;
        int deviceHandle = -1;
        qor::vector<float> values;
    };

    /// With a program; the first time without one, that is logged.
    bool isDrawable_();
    void takePartOfTarget_(vtxGeometryDraw& draw) const;

    vtxRendererCore& core_;
    qor::string path_;
    qor::vector<Value> values_;
    qor::vector<vtxEffectDraw::Parameter> parameters_;
    vtxDeviceHandle program_ = 0;
    qor::string error_;
    bool failed_ = false;
    bool logged_ = false;
    bool passOpen_ = false;
    vtxTexture* texture_ = nullptr;
    vtxGeometry* geometry_ = nullptr;
    osg::Matrixf projection_;
    osg::Matrixf modelView_;
};
