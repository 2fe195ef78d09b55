#pragma once

#include <gtest/gtest.h>

#include "platform/trace/vtxTraceDevice.h"
#include "platform/vtx/vtxRendererCore.h"
#include "platform/vtx/vtxShaderQuads.h"

#include <memory>
#include <string_view>
#include <vector>

namespace support {

using Rect = osg::RectImpl<osg::Vec2i>;

/// One quad as the device got it, taken from the trace.
struct TracedQuad {
    double x, y, w, h;
    double alpha;
    int source;
    double u1, v1, u2, v2;
};

/// A renderer over the trace back end with a host framebuffer of 200 by 100 pixels. Misuse and objects that the device
/// keeps after the end fail the test.
class RendererTest : public testing::Test {
protected:
    RendererTest();
    ~RendererTest() override;

    vtxRendererCore& core() { return *vtxRendererCore::getCore(); }
    vtxShader& shader() { return *renderer_->getShader(); }

    /// Opens a frame as the toolkit does: viewport, projection and pass over the whole framebuffer.
    class Frame {
    public:
        explicit Frame(vtxRenderer& renderer, Rect const& viewport = Rect(0, 0, 200, 100));
        ~Frame();

    private:
        vtxRenderer& renderer_;
        vtxRenderer::ViewportGuard viewport_;
        vtxRenderer::ProjectionMatrixGuard projection_;
        vtxRenderer::ModelViewMatrixGuard modelView_;
    };

    /// A picture of 16 x 16 on a page, or one of 520 x 16 that stands alone; another one with each call.
    vtxTexture* getPicture(bool alone = false);

    void drawQuad(double x, double y, double w, double h, vtxTexture const* texture = nullptr);
    void drawPart(double const (&rect)[4], double const (&uv)[4], vtxTexture const* texture);

    std::vector<TracedQuad> getQuads() const;
    int countLines(std::string_view part) const;
    /// Whether misuse of this kind came up since the last call; forgets it.
    bool takeMisuse(std::string_view part);

    std::shared_ptr<vtxTraceLog> log_;
    vtxRenderer* renderer_ = nullptr;
    int pictureCount_ = 0;
};

}  // namespace support
