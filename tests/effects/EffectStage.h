#pragma once

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

#include <gtest/gtest.h>

#include "host/headless/EglContext.h"
#include "platform/gl/vtxGLDevice.h"
#include "tests/effects/EffectHost.h"

using Pixel = std::array<int, 4>;

struct Picture {
    osg::Vec2i size;
    qor::vector<unsigned char> pixels;

    Pixel at(int x, int y) const {
        unsigned char const* const bytes = &pixels[std::size_t(y * size.x() + x) * 4];
        return {bytes[0], bytes[1], bytes[2], bytes[3]};
    }
};

inline testing::AssertionResult isNear(Pixel const& actual, Pixel const& expected, int tolerance) {
    for (std::size_t i = 0; i < 4; ++i)
        if (std::abs(actual[i] - expected[i]) > tolerance)
            return testing::AssertionFailure()
                   << testing::PrintToString(actual) << " is not near " << testing::PrintToString(expected);
    return testing::AssertionSuccess();
}

inline int getLargestDifference(Picture const& first, Picture const& second) {
    int largest = 0;
    for (std::size_t i = 0; i < first.pixels.size(); ++i)
        largest = std::max(largest, std::abs(first.pixels[i] - second.pixels[i]));
    return largest;
}

/// An EffectHost over GL, with a black screen to take pictures of.
class EffectStage {
public:
    /// `size` in pixels.
    EffectStage(EglContext::Api api, osg::Vec2i const& size, float scale = 1.0f) {
        qor::string error;
        context_ = EglContext::create(api, size, error);
        EXPECT_TRUE(context_) << error;
        host = std::make_unique<EffectHost>(
            support::TestHost::Settings{.size = size, .scale = scale, .makeDevice = []() -> std::unique_ptr<vtxDevice> {
                                            return vtxCreateGLDevice();
                                        }});
    }
    ~EffectStage() {
        host.reset();
        EXPECT_EQ(context_->getErrorCount(), 0u);
    }

    /// Of a widget alone, drawn directly, or recorded and played.
    Picture take(gui::Widget& widget, bool recorded = false) {
        context_->bindFramebuffer();
        context_->clear(0.0f, 0.0f, 0.0f, 1.0f);
        recorded ? host->playWidget(widget) : host->drawWidget(widget);
        return {context_->getSize(), context_->readPixels()};
    }
    Picture take(bool recorded = false) { return take(*host->box, recorded); }

private:
    std::unique_ptr<EglContext> context_;

public:
    std::unique_ptr<EffectHost> host;
};
