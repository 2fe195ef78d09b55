#include "tests/platform/RendererFixture.h"

#include "host/PngWriter.h"
#include "platform/qor/Paths.h"

#include <turbojpeg.h>
#include <unistd.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <vector>

namespace fs = std::filesystem;

void RendererFixture::SetUp() {
    folder_ = fs::temp_directory_path() / ("vtx_fixture_" + std::to_string(getpid()));
    fs::create_directories(folder_);
    rootsBefore_ = qor::getAssetRoots();
    qor::setAssetRoots({});
    qor::addAssetRoot(fs::absolute("assets").string());
    qor::addAssetRoot(folder_.string());
    vtxRenderer::create(std::make_unique<PaintDevice>(canvas));
    fonts().setSystemFontsUsed(false);
}

void RendererFixture::TearDown() {
    EXPECT_EQ(canvas.misuses, 0);
    vtxRenderer::destroy();
    qor::setAssetRoots(rootsBefore_);
    fs::remove_all(folder_);
}

void RendererFixture::paint(std::function<void()> const& draw) {
    canvas.clear(255, 255, 255);
    vtxRenderer* const renderer = vtxRenderer::get();
    vtxRenderer::ViewportGuard const viewport({0, 0, canvas.size.x(), canvas.size.y()});
    vtxRenderer::ProjectionMatrixGuard projection;
    float const scale = renderer->getScale();
    projection.makeOrtho2D(0.0f, static_cast<float>(canvas.size.x()) / scale,
                           static_cast<float>(canvas.size.y()) / scale, 0.0f);
    renderer->beginDraw(vtxRenderer::TechniqueNormal);
    draw();
    renderer->endDraw();
}

void RendererFixture::write(std::string_view name, std::string_view bytes) {
    fs::create_directories((folder_ / name).parent_path());
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
}

std::string makePng(int width, int height, std::function<unsigned(int x, int y)> const& color) {
    std::vector<unsigned char> pixels;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int shift = 24; shift >= 0; shift -= 8)
                pixels.push_back(static_cast<unsigned char>(color(x, y) >> shift));
        }
    }
    fs::path const path = fs::temp_directory_path() / ("vtx_fixture_" + std::to_string(getpid()) + ".png");
    qor::string error;
    EXPECT_TRUE(host::writePng(path.c_str(), osg::Vec2i(width, height), pixels.data(), error)) << error;
    std::stringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    fs::remove(path);
    return bytes.str();
}

std::string makePng(int width, int height, unsigned color) {
    return makePng(width, height, [color](int, int) { return color; });
}

std::string makeJpeg(int width, int height, unsigned color) {
    std::vector<unsigned char> pixels;
    for (int i = 0; i < width * height; ++i) {
        for (int shift = 24; shift > 0; shift -= 8)
            pixels.push_back(static_cast<unsigned char>(color >> shift));
    }
    tjhandle const encoder = tjInitCompress();
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    tjCompress2(encoder, pixels.data(), width, 0, height, TJPF_RGB, &bytes, &size, TJSAMP_444, 95, 0);
    std::string result(reinterpret_cast<char const*>(bytes), size);
    tjFree(bytes);
    tjDestroy(encoder);
    return result;
}
