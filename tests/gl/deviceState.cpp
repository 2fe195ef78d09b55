#include <epoxy/gl.h>

#include <map>
#include <string>
#include <vector>

#include "tests/gl/DeviceFixture.h"
#include "tests/support/LogCapture.h"

namespace {

struct Query {
    char const* name;
    GLenum value;
    int count;
    bool desktopOnly = false;
};

#define QUERY(name, ...) \
    { #name, name, __VA_ARGS__ }

Query const queries[] = {
    QUERY(GL_CURRENT_PROGRAM, 1),
    QUERY(GL_VERTEX_ARRAY_BINDING, 1),
    QUERY(GL_ARRAY_BUFFER_BINDING, 1),
    QUERY(GL_ELEMENT_ARRAY_BUFFER_BINDING, 1),
    QUERY(GL_PIXEL_PACK_BUFFER_BINDING, 1),
    QUERY(GL_PIXEL_UNPACK_BUFFER_BINDING, 1),
    QUERY(GL_COPY_READ_BUFFER_BINDING, 1),
    QUERY(GL_UNIFORM_BUFFER_BINDING, 1),
    QUERY(GL_DRAW_FRAMEBUFFER_BINDING, 1),
    QUERY(GL_READ_FRAMEBUFFER_BINDING, 1),
    QUERY(GL_RENDERBUFFER_BINDING, 1),
    QUERY(GL_ACTIVE_TEXTURE, 1),
    QUERY(GL_VIEWPORT, 4),
    QUERY(GL_SCISSOR_BOX, 4),
    QUERY(GL_BLEND, 1),
    QUERY(GL_BLEND_SRC_RGB, 1),
    QUERY(GL_BLEND_DST_RGB, 1),
    QUERY(GL_BLEND_SRC_ALPHA, 1),
    QUERY(GL_BLEND_DST_ALPHA, 1),
    QUERY(GL_BLEND_EQUATION_RGB, 1),
    QUERY(GL_BLEND_EQUATION_ALPHA, 1),
    QUERY(GL_COLOR_WRITEMASK, 4),
    QUERY(GL_COLOR_CLEAR_VALUE, 4),
    QUERY(GL_DEPTH_TEST, 1),
    QUERY(GL_DEPTH_WRITEMASK, 1),
    QUERY(GL_DEPTH_FUNC, 1),
    QUERY(GL_STENCIL_TEST, 1),
    QUERY(GL_STENCIL_FUNC, 1),
    QUERY(GL_CULL_FACE, 1),
    QUERY(GL_CULL_FACE_MODE, 1),
    QUERY(GL_SCISSOR_TEST, 1),
    QUERY(GL_DITHER, 1),
    QUERY(GL_POLYGON_OFFSET_FILL, 1),
    QUERY(GL_SAMPLE_ALPHA_TO_COVERAGE, 1),
    QUERY(GL_SAMPLE_COVERAGE, 1),
    QUERY(GL_RASTERIZER_DISCARD, 1),
    QUERY(GL_LINE_WIDTH, 1),
    QUERY(GL_PACK_ALIGNMENT, 1),
    QUERY(GL_PACK_ROW_LENGTH, 1),
    QUERY(GL_PACK_SKIP_ROWS, 1),
    QUERY(GL_PACK_SKIP_PIXELS, 1),
    QUERY(GL_UNPACK_ALIGNMENT, 1),
    QUERY(GL_UNPACK_ROW_LENGTH, 1),
    QUERY(GL_UNPACK_IMAGE_HEIGHT, 1),
    QUERY(GL_UNPACK_SKIP_ROWS, 1),
    QUERY(GL_UNPACK_SKIP_PIXELS, 1),
    QUERY(GL_UNPACK_SKIP_IMAGES, 1),
    QUERY(GL_DEBUG_OUTPUT, 1),
    QUERY(GL_DEBUG_OUTPUT_SYNCHRONOUS, 1),
    QUERY(GL_FRAMEBUFFER_SRGB, 1, true),
    QUERY(GL_PRIMITIVE_RESTART, 1, true),
    QUERY(GL_PRIMITIVE_RESTART_INDEX, 1, true),
    QUERY(GL_COLOR_LOGIC_OP, 1, true),
    QUERY(GL_PROGRAM_POINT_SIZE, 1, true),
    QUERY(GL_POLYGON_MODE, 1, true),
    QUERY(GL_SAMPLE_MASK, 1, true),
    QUERY(GL_CLIP_DISTANCE0, 1, true),
    QUERY(GL_CLIP_DISTANCE7, 1, true),
    QUERY(GL_CLIP_ORIGIN, 1, true),
    QUERY(GL_CLIP_DEPTH_MODE, 1, true),
};

using State = std::map<std::string, std::vector<double>>;

/// Everything that a pass might touch, without going through the code under test.
State readState(bool es) {
    State state;
    for (Query const& query : queries) {
        if (query.desktopOnly && es)
            continue;
        GLfloat values[4] = {};
        glGetFloatv(query.value, values);
        state[query.name] = std::vector<double>(values, values + query.count);
    }
    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    for (int unit = 0; unit < 16; ++unit) {
        GLint bound[3] = {};
        glActiveTexture(GLenum(GL_TEXTURE0 + unit));
        glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound[0]);
        glGetIntegerv(GL_TEXTURE_BINDING_2D_ARRAY, &bound[1]);
        glGetIntegerv(GL_SAMPLER_BINDING, &bound[2]);
        state["unit " + std::to_string(unit)] = std::vector<double>(bound, bound + 3);
    }
    glActiveTexture(GLenum(active));
    if (!es) {
        for (GLuint buffer = 0; buffer < 4; ++buffer) {
            GLboolean mask[4] = {};
            glGetBooleani_v(GL_COLOR_WRITEMASK, buffer, mask);
            std::vector<double> values(mask, mask + 4);
            values.push_back(glIsEnabledi(GL_BLEND, buffer));
            state["draw buffer " + std::to_string(buffer)] = values;
        }
    }
    void* callback = nullptr;
    glGetPointerv(GL_DEBUG_CALLBACK_FUNCTION, &callback);
    state["callback"] = {double(reinterpret_cast<uintptr_t>(callback))};
    return state;
}

/// Sets what a host could have set, all of it away from the defaults.
void disturbState(EglContext& context, bool es) {
    GLuint names[4] = {};
    glGenVertexArrays(1, names);
    glBindVertexArray(names[0]);
    glGenBuffers(4, names);
    glBindBuffer(GL_ARRAY_BUFFER, names[0]);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, names[1]);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, names[2]);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, names[3]);
    for (GLenum unit : {0u, 2u, 5u, 11u}) {
        glActiveTexture(GL_TEXTURE0 + unit);
        glGenTextures(2, names);
        glBindTexture(GL_TEXTURE_2D, names[0]);
        glBindTexture(GL_TEXTURE_2D_ARRAY, names[1]);
        glGenSamplers(1, names);
        glBindSampler(unit, names[0]);
    }
    for (GLenum on : {GL_BLEND, GL_DEPTH_TEST, GL_STENCIL_TEST, GL_CULL_FACE, GL_SCISSOR_TEST, GL_POLYGON_OFFSET_FILL,
                      GL_SAMPLE_ALPHA_TO_COVERAGE, GL_SAMPLE_COVERAGE, GL_RASTERIZER_DISCARD})
        glEnable(on);
    glDisable(GL_DITHER);
    glBlendFuncSeparate(GL_DST_COLOR, GL_ZERO, GL_ONE, GL_SRC_ALPHA);
    glBlendEquationSeparate(GL_FUNC_SUBTRACT, GL_MAX);
    glColorMask(GL_TRUE, GL_FALSE, GL_TRUE, GL_FALSE);
    glClearColor(0.1f, 0.2f, 0.3f, 0.4f);
    glDepthMask(GL_FALSE);
    glDepthFunc(GL_NEVER);
    glStencilFunc(GL_NEVER, 3, 7);
    glCullFace(GL_FRONT_AND_BACK);
    glScissor(1, 2, 3, 4);
    glPixelStorei(GL_PACK_ALIGNMENT, 8);
    glPixelStorei(GL_PACK_ROW_LENGTH, 77);
    glPixelStorei(GL_PACK_SKIP_ROWS, 3);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 5);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 2);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 99);
    glPixelStorei(GL_UNPACK_IMAGE_HEIGHT, 55);
    glPixelStorei(GL_UNPACK_SKIP_ROWS, 1);
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, 2);
    glPixelStorei(GL_UNPACK_SKIP_IMAGES, 4);
    GLuint renderbuffer = 0;
    glGenRenderbuffers(1, &renderbuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, renderbuffer);
    context.bindFramebuffer();
    if (es)
        return;
    for (GLenum on : {GL_FRAMEBUFFER_SRGB, GL_PRIMITIVE_RESTART, GL_COLOR_LOGIC_OP, GL_CLIP_DISTANCE0,
                      GL_CLIP_DISTANCE7, GL_SAMPLE_MASK})
        glEnable(on);
    glPrimitiveRestartIndex(2);
    glLogicOp(GL_CLEAR);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glDisablei(GL_BLEND, 2);
    glColorMaski(3, GL_FALSE, GL_TRUE, GL_FALSE, GL_TRUE);
    if (epoxy_gl_version() >= 45)
        glClipControl(GL_UPPER_LEFT, GL_ZERO_TO_ONE);
}

/// One of each operation; paints the top left of the host's framebuffer.
void useEverything(DeviceFixture& gl) {
    gl.device->openPass();
    vtxDeviceHandle const texture = gl.makeTexture(3, 1, {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255}, true);
    vtxTextureDescription description;
    description.width = description.height = 4;
    description.layers = 1;
    vtxDeviceHandle const pages = gl.device->createTexture(description);
    gl.device->resizeTextureArray(pages, 3);
    vtxDeviceHandle const target = gl.device->createTarget(osg::Vec2i(8, 8), 4, 2);
    Quads quads;
    quads.addPicture(0, 0, 3, 1, vtxQuadSource::Lone);
    quads.add(0, 4, 8, 4, colours::white);
    vtxQuadRun run = gl.makeRun(quads);
    run.lone[0] = {texture, 1};
    run.loneCount = 1;
    run.picturePages = pages;
    gl.device->bindTarget(target);
    gl.device->clearTarget();
    gl.device->drawQuads(run);
    gl.device->finishTarget(target);
    gl.device->bindTarget(0);
    gl.device->drawQuads(run);
    vtxGeometryDraw draw;
    draw.state = gl.makeState(gl.size);
    draw.geometry = gl.device->createGeometry();
    qor::vector<vtxVertex> vertices(3);
    vertices[0] = {0, 10, 0, 1, 1, 1, 1, 0, 0};
    vertices[1] = {20, 10, 0, 1, 1, 1, 1, 0, 0};
    vertices[2] = {0, 30, 0, 1, 1, 1, 1, 0, 0};
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

using GLState = GLDevice;
INSTANTIATE_ON_BOTH_CONTEXTS(GLState);

TEST_P(GLState, TheHostsStateIsAsBeforeAndDoesNotDisturbTheDrawing) {
    bool const es = gl.device->getIsES();
    disturbState(*gl.context, es);
    State const before = readState(es);
    useEverything(gl);
    State const after = readState(es);
    for (auto const& [name, values] : before)
        EXPECT_EQ(after.at(name), values) << name;
    expectDrawn(gl.readHost());
    for (auto const& [name, values] : before)
        EXPECT_EQ(readState(es).at(name), values) << name << " after readPixels";
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
        disturbState(*gl.context, es);
        asked = 0;
        gl.device->openPass();
        EXPECT_EQ(gl.device->getHostSize(), osg::Vec2i(64, 32));
        gl.device->closePass();
        EXPECT_EQ(asked, 1) << "once a pass, however deep";
        useEverything(gl);
        State const after = readState(es);
        for (char const* zero :
             {"GL_CURRENT_PROGRAM", "GL_VERTEX_ARRAY_BINDING", "GL_ARRAY_BUFFER_BINDING",
              "GL_PIXEL_PACK_BUFFER_BINDING", "GL_PIXEL_UNPACK_BUFFER_BINDING", "GL_RENDERBUFFER_BINDING", "GL_BLEND",
              "GL_DEPTH_TEST", "GL_CULL_FACE", "GL_SCISSOR_TEST", "GL_STENCIL_TEST", "GL_UNPACK_ROW_LENGTH"})
            EXPECT_EQ(after.at(zero), std::vector<double>{0}) << zero;
        for (int unit : {0, 2, 3, 11})
            EXPECT_EQ(after.at("unit " + std::to_string(unit)), (std::vector<double>{0, 0, 0})) << unit;
        EXPECT_EQ(after.at("GL_ACTIVE_TEXTURE"), std::vector<double>{GL_TEXTURE0});
        EXPECT_EQ(after.at("GL_BLEND_SRC_RGB"), std::vector<double>{GL_ONE});
        EXPECT_EQ(after.at("GL_BLEND_DST_RGB"), std::vector<double>{GL_ZERO});
        EXPECT_EQ(after.at("GL_UNPACK_ALIGNMENT"), std::vector<double>{4});
        EXPECT_EQ(after.at("GL_COLOR_WRITEMASK"), (std::vector<double>{1, 1, 1, 1}));
        EXPECT_EQ(after.at("GL_VIEWPORT"), (std::vector<double>{0, 0, 64, 32}));
        EXPECT_EQ(after.at("GL_DRAW_FRAMEBUFFER_BINDING"), std::vector<double>{double(framebuffer)});
        expectDrawn(gl.readHost());
    }
}

TEST_P(GLState, TheHostsViewportIsTheCanvas) {
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

TEST_P(GLState, AFramebufferOfSamplesCanBeReadAndDrawnTo) {
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

TEST_P(GLState, ASteadyFrameAllocatesNothing) {
    vtxDeviceHandle const texture = gl.makeTexture(1, 1, {255, 0, 0, 255});
    Quads quads;
    for (int i = 0; i < 100; ++i)
        quads.addPicture(float(i % 64), 0, 1, 1, vtxQuadSource::Lone);
    vtxQuadRun run = gl.makeRun(quads);
    run.lone[0] = {texture, 0};
    run.loneCount = 1;
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
    ASSERT_NE(device, nullptr);
    support::LogCapture log;
    device->openPass();
    glEnable(0x1234);
    device->closePass();
    EXPECT_EQ(device->getErrorCount(), 1u);
    EXPECT_EQ(log.count("GL reports"), 1u) << log.dump();
    glEnable(0x1234);
    EXPECT_EQ(device->getErrorCount(), 1u) << "outside a pass an error is the host's";
    EXPECT_EQ(context->getErrorCount(), 1u);
}

TEST(GLContexts, BothKindsDrawTheSamePixels) {
    auto drawScene = [](EglContext::Api api) {
        DeviceFixture gl(api);
        vtxDeviceHandle const texture =
            gl.makeTexture(2, 2, {255, 0, 0, 255, 64, 128, 0, 128, 0, 0, 255, 255, 255, 255, 255, 255}, true);
        Quads quads;
        quads.add(0, 0, 64, 32, osg::Vec4f(0.2f, 0.3f, 0.4f, 1.0f));
        for (int i = 0; i < 4; ++i) {
            vtxQuadInstance& quad =
                quads.addPicture(float(3 + i * 15), 4, 13.5f, 9.25f, vtxQuadSource::Lone + std::uint32_t(i));
            quad.a = 0.75f;
            quad.uy = float(i) * 2.0f;
        }
        vtxQuadRun run = gl.makeRun(quads);
        for (int i = 0; i < 4; ++i)
            run.lone[i] = {texture, i};
        run.loneCount = 4;
        run.state.gamma = 1.4f;
        gl.device->drawQuads(run);
        return gl.readHost();
    };
    Picture const desktop = drawScene(EglContext::Api::GL33), es = drawScene(EglContext::Api::ES30);
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 64; ++x)
            ASSERT_TRUE(isNear(desktop.at(x, y), es.at(x, y), 2)) << x << ", " << y;
    }
}
