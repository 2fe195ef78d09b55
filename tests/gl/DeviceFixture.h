#pragma once

#include <array>
#include <memory>
#include <ostream>

#include <gtest/gtest.h>

#include "host/headless/EglContext.h"
#include "platform/gl/vtxGLDevice.h"

using Pixel = std::array<int, 4>;

/// Pixels of a framebuffer or a target, rows from the top.
struct Picture {
    osg::Vec2i size;
    qor::vector<unsigned char> bytes;
    Pixel at(int x, int y) const;
};

/// Each component of every pixel differs by at most `tolerance`.
testing::AssertionResult isNear(Pixel const& actual, Pixel const& expected, int tolerance = 2);

/// Quads for one run, positions in pixels from the top left.
struct Quads {
    qor::vector<vtxQuadInstance> instances;

    vtxQuadInstance& add(float x, float y, float width, float height, osg::Vec4f const& colour);
    /// The whole of layer 0, clamped to itself.
    vtxQuadInstance& addPicture(float x, float y, float width, float height, std::uint32_t source);
};

/// A context with a framebuffer of 64 x 32 pixels and a device over it. The test fails on any error that GL reports.
class DeviceFixture {
public:
    explicit DeviceFixture(EglContext::Api api, vtxGLOptions const& options = {});
    ~DeviceFixture();

    /// State for drawing to something of a size.
    vtxDrawState makeState(osg::Vec2i const& size) const;
    /// For the host, with a texture in the first lone place unless it is 0.
    vtxQuadRun makeRun(Quads const& quads, vtxDeviceHandle lone = 0, int sampler = 0) const;
    void draw(Quads const& quads);
    Picture read(vtxDeviceHandle target, osg::Vec2i const& size);
    Picture readHost() { return read(0, size); }
    vtxDeviceHandle makeTexture(int width, int height, std::initializer_list<unsigned char> pixels, bool mips = false);
    vtxDeviceHandle makePages(int side, int layers, bool singleChannel);

    osg::Vec2i const size{64, 32};
    std::unique_ptr<EglContext> context;
    std::unique_ptr<vtxGLDevice> device;
};

/// Runs over both kinds of context.
class GLDevice : public testing::TestWithParam<EglContext::Api> {
protected:
    GLDevice() : gl(GetParam()) {}
    DeviceFixture gl;
};

namespace colours {
inline osg::Vec4f const red(1.0f, 0.0f, 0.0f, 1.0f);
inline osg::Vec4f const green(0.0f, 1.0f, 0.0f, 1.0f);
inline osg::Vec4f const white(1.0f, 1.0f, 1.0f, 1.0f);
}  // namespace colours

inline constexpr Pixel blackPixel{0, 0, 0, 255};
inline constexpr Pixel redPixel{255, 0, 0, 255};
inline constexpr Pixel greenPixel{0, 255, 0, 255};
inline constexpr Pixel bluePixel{0, 0, 255, 255};
inline constexpr Pixel whitePixel{255, 255, 255, 255};
inline constexpr Pixel clearPixel{0, 0, 0, 0};

#define INSTANTIATE_ON_BOTH_CONTEXTS(Suite)                                                                  \
    INSTANTIATE_TEST_SUITE_P(Contexts, Suite, testing::Values(EglContext::Api::GL33, EglContext::Api::ES30), \
                             [](auto const& info) { return info.param == EglContext::Api::GL33 ? "GL33" : "ES30"; })
