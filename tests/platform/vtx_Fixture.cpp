#include "tests/platform/vtx_Fixture.h"

#include <cstdio>

namespace support {

RendererTest::RendererTest() {
    auto device = std::make_unique<vtxTraceDevice>(osg::Vec2i(200, 100));
    log_ = device->getLog();
    renderer_ = vtxRenderer::create(std::move(device));
}

RendererTest::~RendererTest() {
    for (auto const& picture : pictures_)
        removePicture(*picture);
    if (pictureLayer_ >= 0)
        core().getTextureStore().removePage(vtxTextureStore::Pages::Picture, pictureLayer_);
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

RendererTest::Picture& RendererTest::addPicture(osg::Vec2i const& size, vtxImagePlace place, osg::Vec2i const& origin) {
    vtxTextureStore& store = core().getTextureStore();
    Picture& picture = *pictures_.emplace_back(std::make_unique<Picture>());
    picture.image = std::make_unique<vtxTextureImage>();
    vtxTextureImage& image = *picture.image;
    image.place = place;
    image.size = size;
    image.origin = origin;
    if (place != vtxImagePlace::GlyphPage)
        image.pixels.assign(static_cast<std::size_t>(size.x()) * static_cast<std::size_t>(size.y()) * 4, 255);
    if (place != vtxImagePlace::Alone) {
        auto const pages =
            place == vtxImagePlace::GlyphPage ? vtxTextureStore::Pages::Glyph : vtxTextureStore::Pages::Picture;
        int& layer = place == vtxImagePlace::GlyphPage ? glyphLayer_ : pictureLayer_;
        if (layer < 0)
            layer = store.addPage(pages);
        image.layer = layer;
        qor::vector<unsigned char> const pixels(static_cast<std::size_t>(size.x() * size.y() * 4), 255);
        store.queueUpload(pages, layer, Rect(origin.x(), origin.y(), origin.x() + size.x(), origin.y() + size.y()),
                          pixels.data());
    }
    picture.texture = std::make_unique<vtxTextureRecord>(image);
    picture.texture->width = size.x();
    picture.texture->height = size.y();
    store.addTexture(*picture.texture);
    return picture;
}

void RendererTest::removePicture(Picture& picture) {
    if (!picture.texture)
        return;
    core().getTextureStore().removeTexture(*picture.texture);
    core().getTextureStore().retireImage(std::move(picture.image));
    picture.texture.reset();
}

void RendererTest::drawQuad(double x, double y, double w, double h, vtxTexture const* texture) {
    drawPart({x, y, w, h}, {0.0, 0.0, 1.0, 1.0}, texture);
}

void RendererTest::drawPart(double const (&rect)[4], double const (&uv)[4], vtxTexture const* texture) {
    vtxShaderQuads quads;
    quads.beginBatch(texture, 1);
    quads.addBatchQuad(static_cast<float>(rect[0]), static_cast<float>(rect[1]), static_cast<float>(rect[2]),
                       static_cast<float>(rect[3]), -1.0f);
    quads.addBatchTexCoords(static_cast<float>(uv[0]), static_cast<float>(uv[1]), static_cast<float>(uv[2]),
                            static_cast<float>(uv[3]));
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
