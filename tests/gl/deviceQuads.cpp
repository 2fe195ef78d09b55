#include "tests/gl/DeviceFixture.h"

using GLQuads = GLDevice;
INSTANTIATE_ON_BOTH_CONTEXTS(GLQuads);

TEST_P(GLQuads, SolidQuadsCoverExactlyTheirPixelsFromTheTopLeft) {
    Quads quads;
    quads.add(4, 2, 8, 6, colours::red);
    quads.add(12, 2, 4, 6, colours::green);
    gl.draw(quads);
    Picture const picture = gl.readHost();
    EXPECT_EQ(picture.at(4, 2), redPixel);
    EXPECT_EQ(picture.at(11, 7), redPixel);
    EXPECT_EQ(picture.at(12, 2), greenPixel);
    EXPECT_EQ(picture.at(15, 7), greenPixel);
    EXPECT_EQ(picture.at(3, 2), blackPixel);
    EXPECT_EQ(picture.at(4, 1), blackPixel);
    EXPECT_EQ(picture.at(16, 7), blackPixel);
    EXPECT_EQ(picture.at(15, 8), blackPixel);
    // The context's own reading agrees on what is above and below.
    EXPECT_EQ(gl.context->readPixels(), picture.bytes);
}

TEST_P(GLQuads, TurnedQuadsFollowTheirEdges) {
    // A quarter turn: u runs downwards and v to the left.
    vtxDeviceHandle const texture = gl.makeTexture(2, 1, {255, 0, 0, 255, 0, 255, 0, 255});
    Quads quads;
    vtxQuadInstance& quad = quads.addPicture(20, 4, 0, 0, vtxQuadSource::Lone);
    quad.ux = 0;
    quad.uy = 8;
    quad.vx = -8;
    quad.vy = 0;
    vtxQuadRun run = gl.makeRun(quads);
    run.lone[0] = {texture, 1};
    run.loneCount = 1;
    gl.device->drawQuads(run);
    Picture const picture = gl.readHost();
    EXPECT_EQ(picture.at(13, 5), redPixel);
    EXPECT_EQ(picture.at(18, 10), greenPixel);
    EXPECT_EQ(picture.at(21, 5), blackPixel);
}

TEST_P(GLQuads, LaterQuadsBlendOverEarlierOnesWithPremultipliedColour) {
    Quads quads;
    quads.add(0, 0, 8, 8, osg::Vec4f(0.0f, 0.0f, 1.0f, 1.0f));
    quads.add(0, 0, 8, 8, osg::Vec4f(1.0f, 0.0f, 0.0f, 0.25f));
    quads.add(8, 0, 8, 8, osg::Vec4f(1.0f, 1.0f, 1.0f, 0.0f));
    gl.context->clear(0.0f, 0.0f, 0.0f, 0.0f);
    gl.draw(quads);
    Picture const picture = gl.readHost();
    EXPECT_TRUE(isNear(picture.at(3, 3), {64, 0, 191, 255}));
    EXPECT_EQ(picture.at(9, 3), clearPixel);
}

TEST_P(GLQuads, RowZeroOfAPictureIsItsTopAndTexelsAreMultipliedByTheColour) {
    // Premultiplied: the second texel is half transparent white.
    vtxDeviceHandle const texture =
        gl.makeTexture(2, 2, {255, 0, 0, 255, 128, 128, 128, 128, 0, 0, 255, 255, 255, 255, 255, 255});
    Quads quads;
    quads.addPicture(0, 0, 16, 16, vtxQuadSource::Lone + 7).g = 0.5f;
    vtxQuadRun run = gl.makeRun(quads);
    for (auto& lone : run.lone)
        lone = {texture, 1};
    run.loneCount = vtxQuadSource::LoneCount;
    gl.device->drawQuads(run);
    Picture const picture = gl.readHost();
    EXPECT_EQ(picture.at(1, 1), redPixel);
    EXPECT_TRUE(isNear(picture.at(12, 1), {128, 64, 128, 255}));
    EXPECT_EQ(picture.at(1, 12), bluePixel);
    EXPECT_TRUE(isNear(picture.at(12, 12), {255, 128, 255, 255}));
}

TEST_P(GLQuads, EachOfTheEightLoneSlotsShowsItsOwnTexture) {
    Quads quads;
    vtxDeviceHandle textures[vtxQuadSource::LoneCount];
    for (int i = 0; i < vtxQuadSource::LoneCount; ++i) {
        textures[i] = gl.makeTexture(1, 1, {static_cast<unsigned char>(30 * i), 100, 0, 255});
        quads.addPicture(float(8 * i), 0, 8, 8, vtxQuadSource::Lone + std::uint32_t(i));
    }
    vtxQuadRun run = gl.makeRun(quads);
    for (int i = 0; i < vtxQuadSource::LoneCount; ++i)
        run.lone[i] = {textures[i], i % 4};
    run.loneCount = vtxQuadSource::LoneCount;
    gl.device->drawQuads(run);
    Picture const picture = gl.readHost();
    for (int i = 0; i < vtxQuadSource::LoneCount; ++i)
        EXPECT_TRUE(isNear(picture.at(8 * i + 4, 4), {30 * i, 100, 0, 255}, 0)) << i;
}

TEST_P(GLQuads, PagesShowTheirLayerAndSamplesStayInTheClampRectangle) {
    vtxTextureDescription description;
    description.width = description.height = 8;
    description.layers = 2;
    vtxDeviceHandle const pages = gl.device->createTexture(description);
    // Layer 1: a red picture of 4 x 4 whose neighbours are green.
    qor::vector<unsigned char> green, red;
    for (int i = 0; i < 64; ++i)
        green.insert(green.end(), {0, 255, 0, 255});
    for (int i = 0; i < 16; ++i)
        red.insert(red.end(), {255, 0, 0, 255});
    gl.device->uploadTexture(pages, 1, osg::RectImpl<osg::Vec2i>(0, 0, 8, 8), green.data());
    gl.device->uploadTexture(pages, 1, osg::RectImpl<osg::Vec2i>(2, 2, 6, 6), red.data());
    Quads quads;
    for (std::uint32_t source : {vtxQuadSource::PictureLinear, vtxQuadSource::PictureNearest}) {
        vtxQuadInstance& quad = quads.addPicture(source == vtxQuadSource::PictureLinear ? 0 : 31, 0, 31, 31, source);
        quad.layer = 1;
        quad.uMin = quad.vMin = 2.0f / 8;
        quad.uMax = quad.vMax = 6.0f / 8;
        quad.clampUMin = quad.clampVMin = 2.5f / 8;
        quad.clampUMax = quad.clampVMax = 5.5f / 8;
    }
    vtxQuadRun run = gl.makeRun(quads);
    run.picturePages = pages;
    gl.device->drawQuads(run);
    Picture const picture = gl.readHost();
    for (int y = 0; y < 31; ++y) {
        for (int x = 0; x < 62; ++x)
            ASSERT_EQ(picture.at(x, y), redPixel) << x << ", " << y;
    }
}

TEST_P(GLQuads, SamplersFilterAsNumbered) {
    vtxDeviceHandle const texture = gl.makeTexture(2, 1, {0, 0, 0, 255, 255, 255, 255, 255});
    Quads quads;
    for (int sampler : {0, 1, 3}) {
        vtxQuadInstance& quad =
            quads.addPicture(float(sampler * 16), 0, 16, 4, vtxQuadSource::Lone + std::uint32_t(sampler));
        if (sampler == 3) {
            quad.uMax = quad.clampUMax = 3.0f;
        }
    }
    vtxQuadRun run = gl.makeRun(quads);
    for (int i = 0; i < 4; ++i)
        run.lone[i] = {texture, i};
    run.loneCount = 4;
    gl.device->drawQuads(run);
    Picture const picture = gl.readHost();
    EXPECT_TRUE(isNear(picture.at(7, 1), {120, 120, 120, 255}, 8));  // linear, near the middle
    EXPECT_EQ(picture.at(16 + 7, 1), blackPixel);                    // nearest
    EXPECT_EQ(picture.at(16 + 8, 1), whitePixel);
    int const thirdWidth = 5;  // three repeats in 16 pixels: the second dark texel is centred at 6.7
    EXPECT_LT(picture.at(48 + thirdWidth + 1, 1)[0], 60);
    EXPECT_GT(picture.at(48 + 13 + 1, 1)[0], 190);
}

TEST_P(GLQuads, MipsAreMadeAfterEachUploadAndUsedWhenAPictureShrinks) {
    // Single black and white texels: any level but the first is grey.
    qor::vector<unsigned char> chequered;
    for (int i = 0; i < 16 * 16; ++i) {
        unsigned char const value = (i + i / 16) % 2 ? 255 : 0;
        chequered.insert(chequered.end(), {value, value, value, 255});
    }
    vtxTextureDescription description;
    description.width = description.height = 16;
    description.mips = true;
    vtxDeviceHandle const texture = gl.device->createTexture(description);
    gl.device->uploadTexture(texture, 0, osg::RectImpl<osg::Vec2i>(0, 0, 16, 16), chequered.data());
    Quads quads;
    quads.addPicture(0, 0, 4, 4, vtxQuadSource::Lone);
    vtxQuadRun run = gl.makeRun(quads);
    run.lone[0] = {texture, 2};
    run.loneCount = 1;
    gl.device->drawQuads(run);
    EXPECT_TRUE(isNear(gl.readHost().at(1, 1), {128, 128, 128, 255}, 3));

    qor::vector<unsigned char> const whiteBytes(16 * 16 * 4, 255);
    gl.device->uploadTexture(texture, 0, osg::RectImpl<osg::Vec2i>(0, 0, 16, 16), whiteBytes.data());
    gl.device->drawQuads(run);
    EXPECT_EQ(gl.readHost().at(1, 1), whitePixel);
}

TEST_P(GLQuads, GlyphsTakeTheColourAndTheirCoverage) {
    vtxTextureDescription description;
    description.width = 4;
    description.height = 1;
    description.layers = 1;
    description.singleChannel = true;
    vtxDeviceHandle const pages = gl.device->createTexture(description);
    unsigned char const coverage[3] = {0, 128, 255};  // rows that no alignment of four would fit
    gl.device->uploadTexture(pages, 0, osg::RectImpl<osg::Vec2i>(0, 0, 3, 1), coverage);
    Quads quads;
    vtxQuadInstance& quad = quads.addPicture(0, 0, 4, 1, vtxQuadSource::Glyph);
    quad.b = 0.0f;
    vtxQuadRun run = gl.makeRun(quads);
    run.glyphPages = pages;
    gl.device->drawQuads(run);
    Picture const picture = gl.readHost();
    EXPECT_EQ(picture.at(0, 0), blackPixel);
    EXPECT_TRUE(isNear(picture.at(1, 0), {128, 128, 0, 255}));
    EXPECT_EQ(picture.at(2, 0), (Pixel{255, 255, 0, 255}));
    EXPECT_EQ(picture.at(3, 0), blackPixel) << "a new page is empty where nothing was uploaded";
}

TEST_P(GLQuads, GammaAndIntensityWorkOnStraightColour) {
    Quads quads;
    quads.add(0, 0, 8, 8, osg::Vec4f(0.25f, 0.25f, 0.25f, 1.0f));
    quads.add(8, 0, 8, 8, osg::Vec4f(0.25f, 0.25f, 0.25f, 0.5f));
    vtxQuadRun run = gl.makeRun(quads);
    run.state.gamma = 2.0f;
    run.state.intensity = 0.8f;
    gl.device->drawQuads(run);
    Picture const picture = gl.readHost();
    EXPECT_TRUE(isNear(picture.at(3, 3), {102, 102, 102, 255}));  // sqrt(0.25) * 0.8
    EXPECT_TRUE(isNear(picture.at(9, 3), {51, 51, 51, 255}));
}

TEST_P(GLQuads, ScissorAndViewportCountFromTheTopLeftOfTheHostsViewport) {
    Quads quads;
    quads.add(0, 0, 64, 32, colours::red);
    vtxQuadRun run = gl.makeRun(quads);
    run.state.scissorEnabled = true;
    run.state.scissor = osg::RectImpl<osg::Vec2i>(2, 3, 6, 5);
    gl.device->drawQuads(run);
    run.state.scissor = osg::RectImpl<osg::Vec2i>(9, 9, 7, 12);  // inverted: nothing
    gl.device->drawQuads(run);
    Picture picture = gl.readHost();
    int red = 0;
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 64; ++x)
            red += picture.at(x, y) == redPixel;
    }
    EXPECT_EQ(red, 8);
    EXPECT_EQ(picture.at(2, 3), redPixel);
    EXPECT_EQ(picture.at(5, 4), redPixel);

    run.state.scissorEnabled = false;
    run.state.viewport = osg::RectImpl<osg::Vec2i>(32, 0, 64, 8);
    gl.device->drawQuads(run);
    picture = gl.readHost();
    EXPECT_EQ(picture.at(32, 0), redPixel);
    EXPECT_EQ(picture.at(63, 7), redPixel);
    EXPECT_EQ(picture.at(31, 0), blackPixel);
    EXPECT_EQ(picture.at(32, 8), blackPixel);
}

TEST_P(GLQuads, MoreQuadsThanTheStreamHoldsAreAllDrawn) {
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
