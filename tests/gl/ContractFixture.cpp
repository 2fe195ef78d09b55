#include "tests/gl/ContractFixture.h"

#include <unistd.h>

#include "host/PngWriter.h"
#include "platform/qor/Paths.h"
#include "platform/vtx/vtxFrameBuffer.h"
#include "platform/vtx/vtxShaderQuads.h"
#include "platform/vtx/vtxTextureManager.h"

ContractStage::ContractStage(BackEnd backEnd, osg::Vec2i const& stageSize) : size(stageSize) {
    qor::setAssetRoots({"assets"});
    if (backEnd == BackEnd::Trace) {
        auto device = std::make_unique<vtxTraceDevice>(size);
        log = device->getLog();
        renderer = vtxRenderer::create(std::move(device));
    } else {
        qor::string error;
        context =
            EglContext::create(backEnd == BackEnd::GL33 ? EglContext::Api::GL33 : EglContext::Api::ES30, size, error);
        if (!context) {
            ADD_FAILURE() << error;
            std::abort();
        }
        renderer = vtxRenderer::create(vtxCreateGLDevice());
    }
    shader = renderer->getShader();
}

ContractStage::~ContractStage() {
    if (log) {
        for (qor::string const& misuse : log->getMisuses())
            ADD_FAILURE() << misuse;
    } else {
        EXPECT_EQ(static_cast<vtxGLDevice&>(renderer->getDevice()).getErrorCount(), 0u);
    }
    vtxRenderer::destroy();
    EXPECT_EQ(log ? log->getLiveObjects() : 0, 0) << "left over in the back end";
    EXPECT_EQ(context ? context->getErrorCount() : 0u, 0u);
}

void ContractStage::frame(std::function<void()> const& draw) {
    if (context)
        context->clear(0.0f, 0.0f, 0.0f, 1.0f);
    shownValid_ = false;
    renderer->resetCounters();
    vtxRenderer::ProjectionMatrixGuard projection;
    float const scale = renderer->getScale();
    projection.makeOrtho2D(0.0f, float(size.x()) / scale, float(size.y()) / scale, 0.0f);
    renderer->beginDraw(vtxRenderer::TechniqueNormal);
    draw();
    renderer->endDraw();
}

void ContractStage::drawIn(vtxFrameBuffer& target, std::function<void()> const& draw) {
    target.renderToTarget([&] {
        vtxRenderer::ProjectionMatrixGuard projection;
        projection.makeOrtho2D(0, float(target.getSize().x()), float(target.getSize().y()), 0);
        vtxRenderer::ShaderTechniqueGuard technique(vtxRenderer::TechniqueTarget);
        draw();
    });
}

Picture ContractStage::read(vtxFrameBuffer* target, osg::Vec2i const& pixels) {
    Picture picture;
    picture.size = target ? pixels : size;
    picture.bytes.resize(size_t(picture.size.x()) * size_t(picture.size.y()) * 4);
    renderer->readPixels(target, Rect(0, 0, picture.size.x(), picture.size.y()), picture.bytes.data());
    return picture;
}

void ContractStage::expect(int x, int y, Pixel const& expected, int tolerance) {
    if (!hasPixels())
        return;
    if (!shownValid_)
        shown_ = read();
    shownValid_ = true;
    EXPECT_TRUE(isNear(shown_.at(x, y), expected, tolerance)) << "at " << x << ", " << y;
}

void ContractStage::quad(float x, float y, float w, float h, osg::Vec4f const& color, vtxTexture const* texture,
                         vtxTexture::Rect const& coordinates) {
    vtxShaderQuads quads;
    quads.beginBatch(texture, 1);
    quads.addBatchQuad(x, y, w, h, -1.0f);
    quads.addBatchTexCoords(coordinates.x1, coordinates.y1, coordinates.x2, coordinates.y2);
    quads.endBatch();
    shader->setColor(color);
    quads.draw(shader);
}

// --- Pictures ---

qor::string TestPictures::write(char const* name, int width, int height, std::function<Pixel(int, int)> const& pixel) {
    static std::filesystem::path const folder =
        std::filesystem::temp_directory_path() / ("vorlex_test_" + std::to_string(getpid()));
    static struct Remover {
        ~Remover() {
            std::error_code ignored;
            std::filesystem::remove_all(folder, ignored);
        }
    } const remover;
    qor::vector<unsigned char> bytes;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int component : pixel(x, y))
                bytes.push_back(static_cast<unsigned char>(component));
        }
    }
    qor::string const path = (folder / name).c_str();
    qor::string error;
    EXPECT_TRUE(host::writePng(path.c_str(), osg::Vec2i(width, height), bytes.data(), error)) << error;
    return path;
}

Pixel TestPictures::cellColour(int column, int row) { return {100 * column + 50, 100 * row + 50, 128, 255}; }

qor::string const& TestPictures::cells() {
    static qor::string const path = write("cells.png", 24, 24, [](int x, int y) { return cellColour(x / 8, y / 8); });
    return path;
}
