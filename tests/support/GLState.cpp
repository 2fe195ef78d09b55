#include "tests/support/GLState.h"

#include <epoxy/gl.h>

#include "host/headless/EglContext.h"

namespace support {

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

}  // namespace

GLState readGLState(bool es) {
    GLState state;
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

void disturbGLState(EglContext& context, bool es) {
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

}  // namespace support
