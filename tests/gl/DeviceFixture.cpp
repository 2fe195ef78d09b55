#include "tests/gl/DeviceFixture.h"

#include <cstdlib>

// The driver would give a later version; what only that has must not be used.
[[maybe_unused]] static int const askedForES30 = setenv("MESA_GLES_VERSION_OVERRIDE", "3.0", 0);

Pixel Picture::at(int x, int y) const {
    unsigned char const* pixel = &bytes[(size_t(y) * size_t(size.x()) + size_t(x)) * 4];
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

testing::AssertionResult isNear(Pixel const& actual, Pixel const& expected, int tolerance) {
    for (size_t i = 0; i < 4; ++i) {
        if (std::abs(actual[i] - expected[i]) > tolerance)
            return testing::AssertionFailure()
                   << "pixel " << testing::PrintToString(actual) << ", expected " << testing::PrintToString(expected);
    }
    return testing::AssertionSuccess();
}

vtxQuadInstance& Quads::add(float x, float y, float width, float height, osg::Vec4f const& colour) {
    vtxQuadInstance quad = {};
    quad.x = x;
    quad.y = y;
    quad.ux = width;
    quad.vy = height;
    quad.uMax = quad.vMax = quad.clampUMax = quad.clampVMax = 1.0f;
    quad.r = colour.r();
    quad.g = colour.g();
    quad.b = colour.b();
    quad.a = colour.a();
    instances.push_back(quad);
    return instances.back();
}

vtxQuadInstance& Quads::addPicture(float x, float y, float width, float height, std::uint32_t source) {
    vtxQuadInstance& quad = add(x, y, width, height, colours::white);
    quad.source = source;
    return quad;
}

DeviceFixture::DeviceFixture(EglContext::Api api, vtxGLOptions const& options) {
    qor::string error;
    context = EglContext::create(api, size, error);
    if (!context) {
        ADD_FAILURE() << error;
        std::abort();
    }
    context->clear(0.0f, 0.0f, 0.0f, 1.0f);
    device = vtxCreateGLDevice(options);
    if (!device)
        std::abort();
}

DeviceFixture::~DeviceFixture() {
    EXPECT_EQ(device->getErrorCount(), 0u);
    device.reset();
    EXPECT_EQ(context->getErrorCount(), 0u);
}

vtxDrawState DeviceFixture::makeState(osg::Vec2i const& target) const {
    vtxDrawState state;
    state.projection.makeOrtho(0.0, target.x(), target.y(), 0.0, -1.0, 1.0);
    state.viewport = osg::RectImpl<osg::Vec2i>(0, 0, target.x(), target.y());
    return state;
}

vtxQuadRun DeviceFixture::makeRun(Quads const& quads, vtxDeviceHandle lone, int sampler) const {
    vtxQuadRun run;
    run.state = makeState(size);
    run.instances = quads.instances.data();
    run.count = quads.instances.size();
    run.lone[0] = {lone, sampler};
    run.loneCount = lone ? 1 : 0;
    return run;
}

void DeviceFixture::draw(Quads const& quads) { device->drawQuads(makeRun(quads)); }

Picture DeviceFixture::read(vtxDeviceHandle target, osg::Vec2i const& pictureSize) {
    Picture picture;
    picture.size = pictureSize;
    picture.bytes.resize(size_t(pictureSize.x()) * size_t(pictureSize.y()) * 4);
    device->readPixels(target, osg::RectImpl<osg::Vec2i>(0, 0, pictureSize.x(), pictureSize.y()), picture.bytes.data());
    return picture;
}

vtxDeviceHandle DeviceFixture::makeTexture(int width, int height, std::initializer_list<unsigned char> pixels,
                                           bool mips) {
    vtxTextureDescription description;
    description.width = width;
    description.height = height;
    description.mips = mips;
    vtxDeviceHandle const texture = device->createTexture(description);
    device->uploadTexture(texture, 0, osg::RectImpl<osg::Vec2i>(0, 0, width, height), std::data(pixels));
    return texture;
}

vtxDeviceHandle DeviceFixture::makePages(int side, int layers, bool singleChannel) {
    vtxTextureDescription description;
    description.width = description.height = side;
    description.layers = layers;
    description.singleChannel = singleChannel;
    return device->createTexture(description);
}
