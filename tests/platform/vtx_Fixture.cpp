#include "tests/platform/vtx_Fixture.h"

#include "tests/platform/RendererFixture.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace support {

RendererTest::RendererTest() {
    auto device = std::make_unique<vtxTraceDevice>(osg::Vec2i(200, 100));
    log_ = device->getLog();
    renderer_ = vtxRenderer::create(std::move(device));
}

RendererTest::~RendererTest() {
    vtxRenderer::destroy();
    for (qor::string const& misuse : log_->getMisuses())
        ADD_FAILURE() << misuse;
    EXPECT_EQ(log_->getLiveObjects(), 0) << log_->getText();
}

RendererTest::Frame::Frame(vtxRenderer& renderer, Rect const& viewport) : renderer_(renderer), viewport_(viewport) {
    float const scale = renderer.getScale();
    projection_.makeOrtho2D(0.0f, static_cast<float>(viewport.width()) / scale,
                            static_cast<float>(viewport.height()) / scale, 0.0f);
    modelView_.setIdentity();
    renderer.beginDraw(vtxRenderer::TechniqueNormal);
}

RendererTest::Frame::~Frame() { renderer_.endDraw(); }

vtxTexture* RendererTest::getPicture(bool alone) {
    std::string const name = "vtx_picture_" + std::to_string(getpid()) + "_" + std::to_string(++pictureCount_) + ".png";
    std::filesystem::path const path = std::filesystem::temp_directory_path() / name;
    std::ofstream(path, std::ios::binary) << makePng(alone ? 520 : 16, 16, 0xFFFFFFFFu);
    vtxTexture* const texture = renderer_->getTextureManager()->getTexture(path.c_str(), Rect(), nullptr);
    std::filesystem::remove(path);
    return texture;
}

void RendererTest::drawQuad(double x, double y, double w, double h, vtxTexture const* texture) {
    drawPart({x, y, w, h}, {0.0, 0.0, 1.0, 1.0}, texture);
}

void RendererTest::drawPart(double const (&rect)[4], double const (&uv)[4], vtxTexture const* texture) {
    vtxShaderQuads quads;
    quads.beginBatch(texture, 1);
    quads.addBatchQuad(float(rect[0]), float(rect[1]), float(rect[2]), float(rect[3]), -1.0f);
    quads.addBatchTexCoords(float(uv[0]), float(uv[1]), float(uv[2]), float(uv[3]));
    quads.endBatch();
    quads.draw(&shader());
}

std::vector<TracedQuad> RendererTest::getQuads() const {
    std::vector<TracedQuad> quads;
    for (qor::string const& line : log_->getLines()) {
        TracedQuad quad = {};
        double red, green, blue;
        int layer;
        int const read = std::sscanf(
            line.c_str(), "  quad at %lf %lf size %lf %lf color %lf %lf %lf %lf source %d layer %d uv %lf %lf %lf %lf",
            &quad.x, &quad.y, &quad.w, &quad.h, &red, &green, &blue, &quad.alpha, &quad.source, &layer, &quad.u1,
            &quad.v1, &quad.u2, &quad.v2);
        if (read >= 8)
            quads.push_back(quad);
    }
    return quads;
}

int RendererTest::countLines(std::string_view part) const {
    int count = 0;
    for (qor::string const& line : log_->getLines())
        count += std::string_view(line).find(part) != std::string_view::npos;
    return count;
}

bool RendererTest::takeMisuse(std::string_view part) {
    bool found = false;
    for (qor::string const& misuse : log_->getMisuses())
        found = found || std::string_view(misuse).find(part) != std::string_view::npos;
    log_->clearMisuses();
    return found;
}

}  // namespace support
