#include "tests/graphics/TraceFixture.h"

#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/graphics/commands/GraphicCommandDrawText.h"
#include "host/CommandPlayer.h"
#include "platform/trace/vtxTraceDevice.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxRenderer.h"

namespace {

std::string joinOperations(std::vector<std::string> const& lines) {
    std::string all;
    for (std::string const& line : lines) {
        if (line.starts_with("> "))
            all += (all.empty() ? "" : "; ") + line.substr(2);
    }
    return all;
}

std::string joinQuads(std::vector<std::string> const& lines) {
    std::string all;
    for (std::string line : lines) {
        if (!line.starts_with("  quad "))
            continue;
        line = line.substr(7, line.find(" within") - 7);
        std::size_t const source = line.find(" source");
        if (source != std::string::npos)
            line.erase(source, line.find(" uv") - source);
        all += line + "\n";
    }
    return all;
}

}  // namespace

void TraceFixture::SetUp() {
    auto device = std::make_unique<vtxTraceDevice>(osg::Vec2i(800, 600));
    log = device->getLog();
    log->setContractWanted(true);
    vtxRenderer::create(std::move(device));
}

void TraceFixture::TearDown() {
    gui::GraphicCommandDrawText::destroyTextStrings();
    vtxRenderer::destroy();
    for (qor::string const& misuse : log->getMisuses())
        ADD_FAILURE() << misuse;
    EXPECT_EQ(log->getLiveObjects(), 0);
}

void TraceFixture::replaceRenderer() {
    TearDown();
    SetUp();
}

std::vector<std::string> TraceFixture::trace_(std::function<void()> const& function) {
    vtxRenderer* const renderer = vtxRenderer::get();
    float const scale = renderer->getScale();
    vtxRenderer::ProjectionMatrixGuard projection;
    projection.makeOrtho2D(0.0f, 800.0f / scale, 600.0f / scale, 0.0f);
    renderer->beginDraw(vtxRenderer::TechniqueNormal);
    log->clearLines();
    function();
    std::size_t const count = log->getLines().size();
    renderer->endDraw();
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < log->getLines().size(); ++i) {
        std::string const line(log->getLines()[i].c_str());
        if (i < count || !line.starts_with("> "))
            lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> TraceFixture::traceRecorded_(std::function<void(gui::GraphicCommands&)> const& record) {
    gui::GraphicCommands list;
    record(list);
    auto lines = trace_([&] { host::CommandPlayer::play(list); });
    host::CommandPlayer::release(list);
    return lines;
}

std::string TraceFixture::operations(std::function<void()> const& function) { return joinOperations(trace_(function)); }

std::string TraceFixture::quads(std::function<void()> const& function) { return joinQuads(trace_(function)); }

std::string TraceFixture::operationsRecorded(std::function<void(gui::GraphicCommands&)> const& record) {
    return joinOperations(traceRecorded_(record));
}

std::string TraceFixture::quadsRecorded(std::function<void(gui::GraphicCommands&)> const& record) {
    return joinQuads(traceRecorded_(record));
}

std::shared_ptr<vtxFrameBuffer> TraceFixture::makeTarget(int width, int height) {
    std::shared_ptr<vtxFrameBuffer> target(vtxRenderer::get()->createFrameBuffer(osg::Vec2i(width, height), 0, 1));
    // Filled before the pass, so that the picture exists.
    target->renderToTarget([] {});
    return target;
}
