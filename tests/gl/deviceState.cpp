#include <epoxy/gl.h>

#include <string>
#include <vector>

#include "tests/gl/DeviceFixture.h"
#include "tests/support/GLState.h"
#include "tests/support/LogCapture.h"

namespace {

using support::GLState;

/// One of each operation; paints the top left of the host's framebuffer.
void useEverything(DeviceFixture& gl) {
    gl.device->openPass();
    vtxDeviceHandle const texture = gl.makeTexture(3, 1, {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255}, true);
    vtxDeviceHandle const pages = gl.makePages(4, 1, false);
    gl.device->resizeTextureArray(pages, 3);
    vtxDeviceHandle const target = gl.device->createTarget(osg::Vec2i(8, 8), 4, 2);
    Quads quads;
    quads.addPicture(0, 0, 3, 1, vtxQuadSource::Lone);
    quads.add(0, 4, 8, 4, colours::white);
    vtxQuadRun run = gl.makeRun(quads, texture, 1);
    run.picturePages = pages;
    gl.device->bindTarget(target);
    gl.device->clearTarget();
    gl.device->drawQuads(run);
    gl.device->finishTarget(target);
    gl.device->bindTarget(0);
    run.state.scissorEnabled = true;
    run.state.scissor = osg::RectImpl<osg::Vec2i>(0, 0, 64, 8);
    gl.device->drawQuads(run);
    vtxGeometryDraw draw;
    draw.state = gl.makeState(gl.size);
    draw.geometry = gl.device->createGeometry();
    qor::vector<vtxVertex> const vertices = {
        {0, 10, 0, 1, 1, 1, 1, 0, 0}, {20, 10, 0, 1, 1, 1, 1, 0, 0}, {0, 30, 0, 1, 1, 1, 1, 0, 0}};
    qor::vector<int> const indices = {0, 1, 2};
    gl.device->updateGeometry(draw.geometry, vertices, &indices);
    draw.count = 1;
    gl.device->drawGeometry(draw);
    gl.read(target, osg::Vec2i(8, 8));
    gl.device->closePass();
    gl.device->destroyGeometry(draw.geometry);
    gl.device->destroyTarget(target);
    gl.device->destroyTexture(texture);
}

void expectDrawn(Picture const& picture) {
    EXPECT_EQ(picture.at(0, 0), redPixel);
    EXPECT_EQ(picture.at(2, 0), bluePixel);
    EXPECT_EQ(picture.at(7, 7), whitePixel);
    EXPECT_EQ(picture.at(3, 14), whitePixel);
}

}  // namespace

using GLHostState = GLDevice;
INSTANTIATE_ON_BOTH_CONTEXTS(GLHostState);

TEST_P(GLHostState, TheHostsStateIsAsBeforeAndDoesNotDisturbTheDrawing) {
    bool const es = gl.device->getIsES();
    support::disturbGLState(*gl.context, es);
    GLState const before = support::readGLState(es);
    useEverything(gl);
    GLState const after = support::readGLState(es);
    for (auto const& [name, values] : before)
        EXPECT_EQ(after.at(name), values) << name;
    expectDrawn(gl.readHost());
    for (auto const& [name, values] : before)
        EXPECT_EQ(support::readGLState(es).at(name), values) << name << " after readPixels";
}

TEST(GLGuest, WithoutSavingTheDocumentedDefaultsAreLeftAndTheNamedFramebufferIsUsed) {
    for (EglContext::Api api : {EglContext::Api::GL33, EglContext::Api::ES30}) {
        unsigned framebuffer = 0;
        int asked = 0;
        vtxGLOptions options;
        options.saveHostState = false;
        options.hostFramebuffer = [&] {
            ++asked;
            return vtxGLHostFramebuffer{framebuffer, 0, 0, 64, 32};
        };
        DeviceFixture gl(api, options);
        bool const es = gl.device->getIsES();
        framebuffer = gl.context->getFramebuffer();
        support::disturbGLState(*gl.context, es);
        asked = 0;
        gl.device->openPass();
        EXPECT_EQ(gl.device->getHostSize(), osg::Vec2i(64, 32));
        gl.device->closePass();
        EXPECT_EQ(asked, 1) << "once a pass, however deep";
        useEverything(gl);
        GLState const after = support::readGLState(es);
        for (char const* zero :
             {"GL_CURRENT_PROGRAM", "GL_VERTEX_ARRAY_BINDING", "GL_ARRAY_BUFFER_BINDING",
              "GL_PIXEL_PACK_BUFFER_BINDING", "GL_PIXEL_UNPACK_BUFFER_BINDING", "GL_RENDERBUFFER_BINDING", "GL_BLEND",
              "GL_DEPTH_TEST", "GL_CULL_FACE", "GL_SCISSOR_TEST", "GL_STENCIL_TEST", "GL_UNPACK_ROW_LENGTH"})
            EXPECT_EQ(after.at(zero), std::vector<double>{0}) << zero;
        GLState const others = {{"GL_ACTIVE_TEXTURE", {GL_TEXTURE0}},
                                {"GL_BLEND_SRC_RGB", {GL_ONE}},
                                {"GL_BLEND_DST_RGB", {GL_ZERO}},
                                {"GL_UNPACK_ALIGNMENT", {4}},
                                {"GL_COLOR_WRITEMASK", {1, 1, 1, 1}},
                                {"GL_VIEWPORT", {0, 0, 64, 32}},
                                {"GL_DRAW_FRAMEBUFFER_BINDING", {double(framebuffer)}},
                                {"unit 0", {0, 0, 0}},
                                {"unit 2", {0, 0, 0}},
                                {"unit 3", {0, 0, 0}},
                                {"unit 11", {0, 0, 0}}};
        for (auto const& [name, values] : others)
            EXPECT_EQ(after.at(name), values) << name;
        expectDrawn(gl.readHost());
    }
}

TEST_P(GLHostState, TheHostsViewportIsTheCanvas) {
    // Split screen: the right half of the framebuffer, its lower 24 rows.
    gl.context->bindFramebuffer();
    glViewport(32, 0, 32, 24);
    EXPECT_EQ(gl.device->getHostSize(), osg::Vec2i(32, 24));
    Quads quads;
    quads.add(0, 0, 2, 2, colours::red);
    vtxQuadRun run = gl.makeRun(quads);
    run.state = gl.makeState(osg::Vec2i(32, 24));
    run.state.scissorEnabled = true;
    run.state.scissor = osg::RectImpl<osg::Vec2i>(0, 0, 1, 1);
    gl.device->drawQuads(run);
    EXPECT_EQ(gl.read(0, osg::Vec2i(32, 24)).at(0, 0), redPixel);
    gl.context->bindFramebuffer();
    Picture const picture = gl.readHost();
    EXPECT_EQ(picture.at(32, 8), redPixel);
    EXPECT_EQ(picture.at(33, 9), blackPixel);
    EXPECT_EQ(picture.at(32, 7), blackPixel);
}

TEST_P(GLHostState, AFramebufferOfSamplesCanBeReadAndDrawnTo) {
    GLuint framebuffer = 0, renderbuffer = 0;
    glGenFramebuffers(1, &framebuffer);
    glGenRenderbuffers(1, &renderbuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, renderbuffer);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, 4, GL_RGBA8, 64, 32);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, renderbuffer);
    glClear(GL_COLOR_BUFFER_BIT);
    Quads quads;
    quads.add(0, 0, 2, 2, colours::red);
    gl.draw(quads);
    EXPECT_EQ(gl.readHost().at(1, 1), redPixel);
    EXPECT_NE(gl.readHost().at(2, 2), redPixel);
}

TEST(GLAttachments, OnlyTheFirstOfSeveralIsWritten) {
    DeviceFixture gl(EglContext::Api::GL33);
    GLuint framebuffer = 0, renderbuffers[2] = {};
    glGenFramebuffers(1, &framebuffer);
    glGenRenderbuffers(2, renderbuffers);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    GLenum const attachments[2] = {GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1};
    for (int i = 0; i < 2; ++i) {
        glBindRenderbuffer(GL_RENDERBUFFER, renderbuffers[i]);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, 64, 32);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachments[i], GL_RENDERBUFFER, renderbuffers[i]);
    }
    glDrawBuffers(2, attachments);
    glClearColor(0.0f, 1.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    Quads quads;
    quads.add(0, 0, 64, 32, colours::red);
    gl.draw(quads);
    EXPECT_EQ(gl.readHost().at(5, 5), redPixel);
    glReadBuffer(GL_COLOR_ATTACHMENT1);
    EXPECT_EQ(gl.readHost().at(5, 5), greenPixel);
}

TEST_P(GLHostState, ASteadyFrameAllocatesNothing) {
    vtxDeviceHandle const texture = gl.makeTexture(1, 1, {255, 0, 0, 255});
    Quads quads;
    for (int i = 0; i < 100; ++i)
        quads.addPicture(float(i % 64), 0, 1, 1, vtxQuadSource::Lone);
    vtxQuadRun const run = gl.makeRun(quads, texture);
    auto drawFrame = [&] {
        gl.device->openPass();
        gl.device->drawQuads(run);
        gl.device->closePass();
    };
    drawFrame();
    qor::ForbidAllocations forbid;
    size_t const before = qor::getAllocationCounts().forbidden;
    drawFrame();
    EXPECT_EQ(qor::getAllocationCounts().forbidden, before);
}

TEST(GLMissing, OneLogLineNamesCauseAndRemedy) {
    support::LogCapture log;
    EXPECT_EQ(vtxCreateGLDevice(), nullptr);
    EXPECT_EQ(log.getLines().size(), 1u) << log.dump();
    EXPECT_TRUE(log.contains("no GL context is current"));
    EXPECT_TRUE(log.contains("make it current before the renderer is created"));
}

TEST(GLErrors, AreCountedAndLoggedWhileAPassIsOpen) {
    qor::string error;
    std::unique_ptr<EglContext> context = EglContext::create(EglContext::Api::GL33, osg::Vec2i(8, 8), error);
    ASSERT_NE(context, nullptr) << error;
    std::unique_ptr<vtxGLDevice> device = vtxCreateGLDevice();
    support::LogCapture log;
    device->openPass();
    glEnable(0x1234);
    device->closePass();
    EXPECT_EQ(log.count("GL reports"), 1u) << log.dump();
    glEnable(0x1234);
    EXPECT_EQ(device->getErrorCount(), 1u) << "outside a pass an error is the host's";
    EXPECT_EQ(context->getErrorCount(), 1u);
}
