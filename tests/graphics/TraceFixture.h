#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <osg/Vec2i>

#include "platform/trace/vtxTraceLog.h"

class vtxFrameBuffer;

namespace gui {
class GraphicCommands;
}

/// A renderer over the trace back end, 800 by 600 pixels. Misuse of the renderer fails the test.
class TraceFixture : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Ends the renderer and makes another.
    void replaceRenderer();

    /// What a function does inside a pass with one unit a scaled pixel, without what opens and closes it: the
    /// operations of the renderer contract, joined by "; ".
    std::string operations(std::function<void()> const& function);
    /// The quads: place, size and colour, and texture coordinates where there is a texture; one a line.
    std::string quads(std::function<void()> const& function);
    /// The same for a list that is recorded before the pass, played in it and released after it.
    std::string operationsRecorded(std::function<void(gui::GraphicCommands&)> const& record);
    std::string quadsRecorded(std::function<void(gui::GraphicCommands&)> const& record);

    /// A texture that may be drawn, of a frame buffer of that size.
    std::shared_ptr<vtxFrameBuffer> makeTarget(int width, int height);

    std::shared_ptr<vtxTraceLog> log;

private:
    std::vector<std::string> trace_(std::function<void()> const& function);
    std::vector<std::string> traceRecorded_(std::function<void(gui::GraphicCommands&)> const& record);
};
