#include "tests/gl/DeviceFixture.h"

using GLTargets = GLDevice;
INSTANTIATE_ON_BOTH_CONTEXTS(GLTargets);

namespace {

osg::Vec2i const targetSize(16, 8);

/// Red at the top left, green at the bottom right, half transparent blue in the middle.
Quads makeCorners() {
    Quads quads;
    quads.add(0, 0, 4, 2, colours::red);
    quads.add(12, 6, 4, 2, colours::green);
    quads.add(6, 3, 4, 2, osg::Vec4f(0.0f, 0.0f, 1.0f, 0.5f));
    return quads;
}

void drawInto(DeviceFixture& gl, vtxDeviceHandle target, Quads const& quads) {
    gl.device->openPass();
    gl.device->bindTarget(target);
    gl.device->clearTarget();
    vtxQuadRun run = gl.makeRun(quads);
    run.state = gl.makeState(targetSize);
    gl.device->drawQuads(run);
    gl.device->finishTarget(target);
    gl.device->bindTarget(0);
    gl.device->closePass();
}

void expectCorners(Picture const& picture) {
    EXPECT_EQ(picture.at(1, 1), redPixel);
    EXPECT_EQ(picture.at(13, 7), greenPixel);
    EXPECT_EQ(picture.at(1, 7), clearPixel);
    EXPECT_EQ(picture.at(13, 1), clearPixel);
    EXPECT_TRUE(isNear(picture.at(7, 4), {0, 0, 128, 128}));
}

}  // namespace

TEST_P(GLTargets, ATargetKeepsItsTopWhenReadAndWhenShown) {
    vtxDeviceHandle const target = gl.device->createTarget(targetSize, 0, 1);
    drawInto(gl, target, makeCorners());
    expectCorners(gl.read(target, targetSize));

    Quads quads;
    quads.addPicture(8, 8, 16, 8, vtxQuadSource::Lone);
    vtxQuadRun run = gl.makeRun(quads);
    run.lone[0] = {gl.device->getTargetTexture(target), 0};
    run.loneCount = 1;
    gl.context->clear(1.0f, 1.0f, 1.0f, 1.0f);
    gl.device->drawQuads(run);
    Picture const picture = gl.readHost();
    EXPECT_EQ(picture.at(9, 9), redPixel);
    EXPECT_EQ(picture.at(21, 15), greenPixel);
    EXPECT_TRUE(isNear(picture.at(15, 12), {127, 127, 255, 255}));
    gl.device->destroyTarget(target);
}

TEST_P(GLTargets, SamplesAreResolvedAndTurnedEdgesAreSoft) {
    vtxDeviceHandle const target = gl.device->createTarget(targetSize, 4, 1);
    Quads quads = makeCorners();
    vtxQuadInstance& turned = quads.add(8, 0, 0, 0, colours::white);
    turned.ux = 3.3f;
    turned.uy = 2.1f;
    turned.vx = -2.1f;
    turned.vy = 3.3f;
    drawInto(gl, target, quads);
    Picture const picture = gl.read(target, targetSize);
    EXPECT_EQ(picture.at(1, 1), redPixel);
    EXPECT_EQ(picture.at(13, 7), greenPixel);
    int between = 0;
    for (int y = 0; y < 8; ++y) {
        for (int x = 4; x < 12; ++x)
            between += picture.at(x, y)[0] > 0 && picture.at(x, y)[0] < 255;
    }
    EXPECT_GT(between, 4);
}

TEST_P(GLTargets, MipsOfATargetFollowWhatWasDrawn) {
    vtxDeviceHandle const target = gl.device->createTarget(targetSize, 0, 4);
    Quads columns;
    for (int x = 0; x < 16; x += 2)
        columns.add(float(x), 0, 1, 8, colours::red);
    drawInto(gl, target, columns);
    Quads quads;
    quads.addPicture(0, 0, 4, 2, vtxQuadSource::Lone);
    vtxQuadRun run = gl.makeRun(quads);
    run.lone[0] = {gl.device->getTargetTexture(target), 2};
    run.loneCount = 1;
    gl.device->drawQuads(run);
    EXPECT_TRUE(isNear(gl.readHost().at(1, 1), {128, 0, 0, 255}, 3));
}

TEST_P(GLTargets, ScissorAndViewportCountFromTheTopOfATarget) {
    vtxDeviceHandle const target = gl.device->createTarget(targetSize, 0, 1);
    Quads quads;
    quads.add(0, 0, 16, 8, colours::red);
    vtxQuadRun run = gl.makeRun(quads);
    run.state = gl.makeState(targetSize);
    run.state.scissorEnabled = true;
    run.state.scissor = osg::RectImpl<osg::Vec2i>(1, 1, 3, 2);
    gl.device->openPass();
    gl.device->bindTarget(target);
    gl.device->clearTarget();
    gl.device->drawQuads(run);
    run.state.scissorEnabled = false;
    run.state.viewport = osg::RectImpl<osg::Vec2i>(8, 0, 16, 4);
    gl.device->drawQuads(run);
    gl.device->closePass();
    Picture const picture = gl.read(target, targetSize);
    EXPECT_EQ(picture.at(1, 1), redPixel);
    EXPECT_EQ(picture.at(2, 1), redPixel);
    EXPECT_EQ(picture.at(1, 0), clearPixel);
    EXPECT_EQ(picture.at(1, 2), clearPixel);
    EXPECT_EQ(picture.at(3, 1), clearPixel);
    EXPECT_EQ(picture.at(8, 0), redPixel);
    EXPECT_EQ(picture.at(15, 3), redPixel);
    EXPECT_EQ(picture.at(8, 4), clearPixel);
}

TEST_P(GLTargets, DrawingGoesBackToTheHostAfterAnotherTargetWasMadeOrRead) {
    gl.device->openPass();
    vtxDeviceHandle const target = gl.device->createTarget(targetSize, 4, 1);
    gl.device->bindTarget(target);
    gl.device->clearTarget();
    vtxDeviceHandle const other = gl.device->createTarget(targetSize, 0, 1);
    Quads quads = makeCorners();
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
    expectCorners(gl.read(target, targetSize));
    EXPECT_EQ(gl.readHost().at(0, 0), whitePixel);
    EXPECT_EQ(gl.readHost().at(1, 1), blackPixel);
}

TEST_P(GLTargets, AnArrayThatGrowsKeepsItsLayersAndTheNewOnesAreEmpty) {
    for (bool singleChannel : {false, true}) {
        vtxTextureDescription description;
        description.width = description.height = 4;
        description.layers = 2;
        description.singleChannel = singleChannel;
        vtxDeviceHandle const pages = gl.device->createTexture(description);
        qor::vector<unsigned char> const full(64, 255);
        gl.device->uploadTexture(pages, 1, osg::RectImpl<osg::Vec2i>(0, 0, 4, 2), full.data());
        gl.device->resizeTextureArray(pages, 5);
        gl.device->uploadTexture(pages, 4, osg::RectImpl<osg::Vec2i>(0, 0, 4, 4), full.data());
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

TEST_P(GLTargets, EndedHandlesAreGivenOutAgainAndDrawNothingWhileDead) {
    vtxDeviceHandle const texture = gl.makeTexture(1, 1, {255, 0, 0, 255});
    gl.device->destroyTexture(texture);
    gl.device->destroyTexture(texture);
    unsigned char const pixel[4] = {};
    gl.device->uploadTexture(texture, 0, osg::RectImpl<osg::Vec2i>(0, 0, 1, 1), pixel);
    vtxDeviceHandle const target = gl.device->createTarget(targetSize, 4, 3);
    gl.device->destroyTarget(target);
    gl.device->destroyTarget(target);
    EXPECT_EQ(gl.device->getTargetTexture(target), 0u);
    EXPECT_EQ(gl.device->createTarget(targetSize, 0, 1), target);
    vtxDeviceHandle const geometry = gl.device->createGeometry();
    gl.device->destroyGeometry(geometry);
    gl.device->destroyGeometry(geometry);
    EXPECT_EQ(gl.device->createGeometry(), geometry);
}
