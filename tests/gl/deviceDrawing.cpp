#include "tests/gl/DeviceFixture.h"

using GLDrawing = GLDevice;
INSTANTIATE_ON_BOTH_CONTEXTS(GLDrawing);

namespace {

using Rect = osg::RectImpl<osg::Vec2i>;

osg::Vec2i const targetSize(16, 8);

}  // namespace

TEST_P(GLDrawing, MipsAreMadeAfterEachUploadAndUsedWhenAPictureShrinks) {
    vtxDeviceHandle const texture =
        gl.makeTexture(2, 2, {0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 255}, true);
    Quads quads;
    quads.addPicture(0, 0, 1, 1, vtxQuadSource::Lone);
    vtxQuadRun const run = gl.makeRun(quads, texture, 2);
    gl.device->drawQuads(run);
    EXPECT_TRUE(isNear(gl.readHost().at(0, 0), {128, 128, 128, 255}, 3));

    qor::vector<unsigned char> const whiteBytes(2 * 2 * 4, 255);
    gl.device->uploadTexture(texture, 0, Rect(0, 0, 2, 2), whiteBytes.data());
    gl.device->drawQuads(run);
    EXPECT_EQ(gl.readHost().at(0, 0), whitePixel);
}

TEST_P(GLDrawing, GlyphsTakeTheColourAndTheirCoverage) {
    vtxDeviceHandle const pages = gl.makePages(4, 1, true);
    unsigned char const coverage[6] = {0, 128, 255, 255, 0, 128};  // rows that no alignment of four would fit
    gl.device->uploadTexture(pages, 0, Rect(0, 0, 3, 2), coverage);
    Quads quads;
    quads.addPicture(0, 0, 4, 4, vtxQuadSource::Glyph).b = 0.0f;
    vtxQuadRun run = gl.makeRun(quads);
    run.glyphPages = pages;
    gl.device->drawQuads(run);
    Picture const picture = gl.readHost();
    Pixel const yellow{255, 255, 0, 255};
    EXPECT_EQ(picture.at(0, 0), blackPixel);
    EXPECT_TRUE(isNear(picture.at(1, 0), {128, 128, 0, 255}));
    EXPECT_EQ(picture.at(2, 0), yellow);
    EXPECT_EQ(picture.at(0, 1), yellow);
    EXPECT_EQ(picture.at(1, 1), blackPixel);
    EXPECT_EQ(picture.at(3, 0), blackPixel) << "a new page is empty where nothing was uploaded";
}

TEST_P(GLDrawing, ScissorAndViewportCountFromTheTopLeftOfHostAndTarget) {
    Quads quads;
    quads.add(0, 0, 64, 32, colours::red);
    for (vtxDeviceHandle const into : {vtxDeviceHandle(0), gl.device->createTarget(gl.size, 0, 1)}) {
        vtxQuadRun run = gl.makeRun(quads);
        run.state.scissorEnabled = true;
        gl.device->openPass();
        gl.device->bindTarget(into);
        gl.device->clearTarget();
        for (Rect const& scissor : {Rect(2, 3, 6, 5), Rect(9, 9, 7, 12)}) {  // the second, inverted, shows nothing
            run.state.scissor = scissor;
            gl.device->drawQuads(run);
        }
        run.state.scissorEnabled = false;
        run.state.viewport = Rect(32, 0, 64, 8);
        gl.device->drawQuads(run);
        gl.device->closePass();
        Picture const picture = gl.read(into, gl.size);
        for (int y = 0; y < 32; ++y) {
            for (int x = 0; x < 64; ++x) {
                bool const shown = Rect(2, 3, 6, 5).contains({x, y}) || run.state.viewport.contains({x, y});
                ASSERT_EQ(picture.at(x, y), shown ? redPixel : clearPixel) << into << ": " << x << ", " << y;
            }
        }
    }
}

TEST_P(GLDrawing, MoreQuadsThanTheStreamHoldsAreAllDrawn) {
    // Two whole buffers and a bit; each quad covers one pixel, the last ones are white.
    size_t const count = 2 * ((size_t(4) << 20) / sizeof(vtxQuadInstance)) + 100;
    Quads quads;
    for (size_t i = 0; i < count; ++i)
        quads.add(float(i % 64), float(i / 64 % 32), 1, 1, i + 2048 >= count ? colours::white : colours::red);
    gl.draw(quads);
    Picture const picture = gl.readHost();
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 64; ++x)
            ASSERT_EQ(picture.at(x, y), whitePixel);
    }
}

TEST_P(GLDrawing, SamplesOfATargetAreResolvedAlsoWhereAnotherTargetIsMadeOrReadMeanwhile) {
    gl.device->openPass();
    vtxDeviceHandle const target = gl.device->createTarget(targetSize, 4, 1);
    gl.device->bindTarget(target);
    gl.device->clearTarget();
    vtxDeviceHandle const other = gl.device->createTarget(targetSize, 0, 1);
    Quads quads;
    quads.add(0, 0, 4, 2, colours::red);
    quads.add(12, 6, 4, 2, colours::green);
    quads.add(6, 6, 4, 2, osg::Vec4f(0.0f, 0.0f, 1.0f, 0.5f));
    vtxQuadInstance& turned = quads.add(8, 0, 3.3f, 3.3f, colours::white);
    turned.uy = 2.1f;
    turned.vx = -2.1f;
    vtxQuadRun run = gl.makeRun(quads);
    run.state = gl.makeState(targetSize);
    gl.device->drawQuads(run);
    gl.read(other, targetSize);
    gl.device->finishTarget(target);
    gl.device->bindTarget(0);
    Quads host;
    host.add(0, 0, 1, 1, colours::white);
    gl.draw(host);
    gl.device->closePass();
    Picture const picture = gl.read(target, targetSize);
    EXPECT_EQ(picture.at(1, 1), redPixel);
    EXPECT_EQ(picture.at(13, 7), greenPixel);
    EXPECT_EQ(picture.at(1, 7), clearPixel);
    EXPECT_EQ(picture.at(13, 1), clearPixel);
    EXPECT_TRUE(isNear(picture.at(7, 7), {0, 0, 128, 128}));
    int soft = 0;
    for (int y = 0; y < 6; ++y) {
        for (int x = 4; x < 12; ++x)
            soft += picture.at(x, y)[0] > 0 && picture.at(x, y)[0] < 255;
    }
    EXPECT_GT(soft, 4) << "the edges of the turned one";
    EXPECT_EQ(gl.readHost().at(0, 0), whitePixel);
    EXPECT_EQ(gl.readHost().at(1, 1), blackPixel);
}

TEST_P(GLDrawing, AnArrayThatGrowsKeepsItsLayersAndTheNewOnesAreEmpty) {
    for (bool singleChannel : {false, true}) {
        vtxDeviceHandle const pages = gl.makePages(4, 2, singleChannel);
        qor::vector<unsigned char> const full(64, 255);
        gl.device->uploadTexture(pages, 1, Rect(0, 0, 4, 2), full.data());
        gl.device->resizeTextureArray(pages, 5);
        gl.device->uploadTexture(pages, 4, Rect(0, 0, 4, 4), full.data());
        Quads quads;
        for (std::uint32_t layer : {0u, 1u, 2u, 4u}) {
            std::uint32_t const source = singleChannel ? vtxQuadSource::Glyph : vtxQuadSource::PictureLinear;
            quads.addPicture(float(layer * 4), 0, 4, 4, source).layer = layer;
        }
        vtxQuadRun run = gl.makeRun(quads);
        (singleChannel ? run.glyphPages : run.picturePages) = pages;
        gl.context->clear(0.0f, 0.0f, 0.0f, 1.0f);
        gl.device->drawQuads(run);
        Picture const picture = gl.readHost();
        EXPECT_EQ(picture.at(1, 0), blackPixel);
        EXPECT_EQ(picture.at(5, 0), whitePixel);
        EXPECT_EQ(picture.at(5, 3), blackPixel) << "the lower half of layer 1";
        EXPECT_EQ(picture.at(9, 0), blackPixel);
        EXPECT_EQ(picture.at(17, 3), whitePixel);
    }
}

TEST_P(GLDrawing, EndedHandlesAreGivenOutAgainAndDrawNothingWhileDead) {
    vtxDeviceHandle const texture = gl.makeTexture(1, 1, {255, 0, 0, 255});
    unsigned char const pixel[4] = {};
    vtxDeviceHandle const target = gl.device->createTarget(targetSize, 4, 3);
    vtxDeviceHandle const geometry = gl.device->createGeometry();
    for (int i = 0; i < 2; ++i) {
        gl.device->destroyTexture(texture);
        gl.device->uploadTexture(texture, 0, Rect(0, 0, 1, 1), pixel);
        gl.device->destroyTarget(target);
        gl.device->destroyGeometry(geometry);
    }
    EXPECT_EQ(gl.device->getTargetTexture(target), 0u);
    EXPECT_EQ(gl.device->createTarget(targetSize, 0, 1), target);
    EXPECT_EQ(gl.device->createGeometry(), geometry);
}
