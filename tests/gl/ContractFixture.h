#pragma once

#include <filesystem>
#include <functional>

#include "platform/trace/vtxTraceDevice.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "platform/vtx/vtxTexture.h"
#include "tests/gl/DeviceFixture.h"

enum class BackEnd { Trace, GL33, ES30 };

using Rect = osg::RectImpl<osg::Vec2i>;

/// The renderer over one of the back ends, with a framebuffer of a size. At its end nothing may have been misused, no
/// GL error reported and no object of the back end left over.
class ContractStage {
public:
    ContractStage(BackEnd backEnd, osg::Vec2i const& size);
    ~ContractStage();

    bool hasPixels() const { return context != nullptr; }
    /// One pass with a projection for the whole framebuffer, over opaque black.
    void frame(std::function<void()> const& draw);
    /// Renders to the target with a projection of its size.
    void drawIn(vtxFrameBuffer& target, std::function<void()> const& draw);
    Picture read(vtxFrameBuffer* target = nullptr, osg::Vec2i const& pixels = osg::Vec2i());
    /// Checks a pixel of the framebuffer where there are pixels.
    void expect(int x, int y, Pixel const& expected, int tolerance = 2);

    /// A single quad, the texture's coordinates from 0 to 1 unless told otherwise.
    void quad(float x, float y, float w, float h, osg::Vec4f const& color, vtxTexture const* texture = nullptr,
              vtxTexture::Rect const& coordinates = {0.0f, 0.0f, 1.0f, 1.0f});

    osg::Vec2i const size;
    std::unique_ptr<EglContext> context;
    std::shared_ptr<vtxTraceLog> log;
    vtxRenderer* renderer = nullptr;
    vtxShader* shader = nullptr;

private:
    Picture shown_;
    bool shownValid_ = false;
};

/// Pictures that tests draw with, written once a process into a folder of the system's own.
class TestPictures {
public:
    /// 24 x 24: nine cells of 8 x 8, each of one colour (see cellColour), packed without gaps.
    static qor::string const& cells();
    static Pixel cellColour(int column, int row);
    /// A picture of `width` x `height` whose pixels a function gives, straight RGBA.
    static qor::string write(char const* name, int width, int height, std::function<Pixel(int, int)> const& pixel);
};

/// Runs over all back ends.
class Contract : public testing::TestWithParam<BackEnd> {
protected:
    Contract() : stage(GetParam(), osg::Vec2i(96, 64)), renderer(*stage.renderer), shader(*stage.shader) {}
    ContractStage stage;
    vtxRenderer& renderer;
    vtxShader& shader;
};

#define INSTANTIATE_ON_ALL_BACK_ENDS(Suite)                                                                    \
    INSTANTIATE_TEST_SUITE_P(                                                                                  \
        BackEnds, Suite, testing::Values(BackEnd::Trace, BackEnd::GL33, BackEnd::ES30), [](auto const& info) { \
            return info.param == BackEnd::Trace ? "Trace" : info.param == BackEnd::GL33 ? "GL33" : "ES30";     \
        })
