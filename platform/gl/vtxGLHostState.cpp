#include "platform/gl/vtxGLHostState.h"

#include <algorithm>
#include <iterator>

namespace {

enum class Where { Everywhere, Desktop, Srgb };

/// What is switched with glEnable and what drawing needs of it.
struct Switch {
    GLenum name;
    bool wanted;
    bool byDefault;
    Where where;
};

// Blending and colour masks are kept for each draw buffer, see saveBuffers_.
constexpr Switch switches[] = {
    {GL_CULL_FACE, false, false, Where::Everywhere},
    {GL_DEPTH_TEST, false, false, Where::Everywhere},
    {GL_STENCIL_TEST, false, false, Where::Everywhere},
    {GL_SCISSOR_TEST, false, false, Where::Everywhere},
    {GL_POLYGON_OFFSET_FILL, false, false, Where::Everywhere},
    {GL_SAMPLE_ALPHA_TO_COVERAGE, false, false, Where::Everywhere},
    {GL_SAMPLE_COVERAGE, false, false, Where::Everywhere},
    {GL_RASTERIZER_DISCARD, false, false, Where::Everywhere},
    {GL_DITHER, false, true, Where::Everywhere},
    {GL_SAMPLE_ALPHA_TO_ONE, false, false, Where::Desktop},
    {GL_SAMPLE_MASK, false, false, Where::Desktop},
    {GL_COLOR_LOGIC_OP, false, false, Where::Desktop},
    {GL_PRIMITIVE_RESTART, false, false, Where::Desktop},
    {GL_POLYGON_SMOOTH, false, false, Where::Desktop},
    {GL_LINE_SMOOTH, false, false, Where::Desktop},
    {GL_PROGRAM_POINT_SIZE, true, false, Where::Desktop},
    {GL_CLIP_DISTANCE0, false, false, Where::Desktop},
    {GL_CLIP_DISTANCE0 + 1, false, false, Where::Desktop},
    {GL_CLIP_DISTANCE0 + 2, false, false, Where::Desktop},
    {GL_CLIP_DISTANCE0 + 3, false, false, Where::Desktop},
    {GL_CLIP_DISTANCE0 + 4, false, false, Where::Desktop},
    {GL_CLIP_DISTANCE0 + 5, false, false, Where::Desktop},
    {GL_CLIP_DISTANCE0 + 6, false, false, Where::Desktop},
    {GL_CLIP_DISTANCE0 + 7, false, false, Where::Desktop},
    {GL_FRAMEBUFFER_SRGB, false, false, Where::Srgb},
};
static_assert(std::size(switches) <= vtxGLHostState::maxSwitches);

struct PixelStore {
    GLenum name;
    GLint wanted;
    GLint byDefault;
};
constexpr PixelStore pixelStores[] = {
    {GL_UNPACK_ALIGNMENT, 1, 4},   {GL_UNPACK_ROW_LENGTH, 0, 0},   {GL_UNPACK_SKIP_ROWS, 0, 0},
    {GL_UNPACK_SKIP_PIXELS, 0, 0}, {GL_UNPACK_IMAGE_HEIGHT, 0, 0}, {GL_UNPACK_SKIP_IMAGES, 0, 0},
    {GL_PACK_ALIGNMENT, 1, 4},     {GL_PACK_ROW_LENGTH, 0, 0},     {GL_PACK_SKIP_ROWS, 0, 0},
    {GL_PACK_SKIP_PIXELS, 0, 0},
};

bool exists(Switch const& entry, vtxGLContext const& context) {
    return entry.where == Where::Everywhere || (entry.where == Where::Desktop && !context.es) ||
           (entry.where == Where::Srgb && context.srgbControl);
}

void setSwitch(GLenum name, bool on) {
    if (on)
        glEnable(name);
    else
        glDisable(name);
}

}  // namespace

int vtxGLHostState::getBufferCount_() const {
    return context_.indexedBlendEnable ? std::clamp(context_.drawBuffers, 1, maxDrawBuffers) : 1;
}

void vtxGLHostState::enter() {
    if (options_.saveHostState) {
        save_();
    } else {
        for (size_t i = 0; i < std::size(switches); ++i)
            switches_[i] = switches[i].byDefault;
        for (size_t i = 0; i < std::size(pixelStores); ++i)
            pixelStore_[i] = pixelStores[i].byDefault;
        clipOrigin_ = GL_LOWER_LEFT;
        clipDepth_ = GL_NEGATIVE_ONE_TO_ONE;
    }
    findFramebuffer_();
    applyOwn_();
}

void vtxGLHostState::findFramebuffer_() {
    if (options_.hostFramebuffer) {
        framebuffer_ = options_.hostFramebuffer();
    } else {
        if (!options_.saveHostState) {
            glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawFramebuffer_);
            glGetIntegerv(GL_VIEWPORT, viewport_);
        }
        framebuffer_ = {unsigned(drawFramebuffer_), viewport_[0], viewport_[1], viewport_[2], viewport_[3]};
    }
    if (options_.saveHostState)
        return;
    GLint const whole[4] = {framebuffer_.x, framebuffer_.y, framebuffer_.width, framebuffer_.height};
    std::copy(whole, whole + 4, viewport_);
    std::copy(whole, whole + 4, scissorBox_);
    drawFramebuffer_ = readFramebuffer_ = GLint(framebuffer_.name);
}

void vtxGLHostState::save_() {
    for (size_t i = 0; i < std::size(switches); ++i) {
        if (exists(switches[i], context_))
            switches_[i] = glIsEnabled(switches[i].name);
    }
    for (size_t i = 0; i < std::size(pixelStores); ++i)
        glGetIntegerv(pixelStores[i].name, &pixelStore_[i]);
    saveBuffers_();
    glGetIntegerv(GL_CURRENT_PROGRAM, &program_);
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &vertexArray_);
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &arrayBuffer_);
    glGetIntegerv(GL_PIXEL_UNPACK_BUFFER_BINDING, &pixelUnpackBuffer_);
    glGetIntegerv(GL_PIXEL_PACK_BUFFER_BINDING, &pixelPackBuffer_);
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawFramebuffer_);
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &readFramebuffer_);
    glGetIntegerv(GL_RENDERBUFFER_BINDING, &renderbuffer_);
    glGetIntegerv(GL_VIEWPORT, viewport_);
    glGetIntegerv(GL_SCISSOR_BOX, scissorBox_);
    glGetFloatv(GL_LINE_WIDTH, &lineWidth_);
    if (!context_.es)
        glGetIntegerv(GL_POLYGON_MODE, polygonMode_);
    if (context_.clipControl) {
        glGetIntegerv(GL_CLIP_ORIGIN, &clipOrigin_);
        glGetIntegerv(GL_CLIP_DEPTH_MODE, &clipDepth_);
    }
}

void vtxGLHostState::saveBuffers_() {
    constexpr GLenum functions[4] = {GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB, GL_BLEND_SRC_ALPHA, GL_BLEND_DST_ALPHA};
    constexpr GLenum equations[2] = {GL_BLEND_EQUATION_RGB, GL_BLEND_EQUATION_ALPHA};
    for (int i = 0; i < getBufferCount_(); ++i) {
        BufferState& buffer = buffers_[i];
        if (context_.indexedBlendEnable) {
            buffer.blend = glIsEnabledi(GL_BLEND, GLuint(i));
            glGetBooleani_v(GL_COLOR_WRITEMASK, GLuint(i), buffer.mask);
        } else {
            buffer.blend = glIsEnabled(GL_BLEND);
            glGetBooleanv(GL_COLOR_WRITEMASK, buffer.mask);
        }
        for (int k = 0; k < 4; ++k) {
            if (context_.indexedBlendFunction)
                glGetIntegeri_v(functions[k], GLuint(i), &buffer.functions[k]);
            else
                glGetIntegerv(functions[k], &buffer.functions[k]);
        }
        for (int k = 0; k < 2; ++k) {
            if (context_.indexedBlendFunction)
                glGetIntegeri_v(equations[k], GLuint(i), &buffer.equations[k]);
            else
                glGetIntegerv(equations[k], &buffer.equations[k]);
        }
    }
}

void vtxGLHostState::applyOwn_() {
    for (Switch const& entry : switches) {
        if (exists(entry, context_))
            setSwitch(entry.name, entry.wanted);
    }
    for (PixelStore const& entry : pixelStores)
        glPixelStorei(entry.name, entry.wanted);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glBlendEquation(GL_FUNC_ADD);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    // The programs write one colour: further attachments of the host's framebuffer keep what they hold.
    for (int i = 1; i < getBufferCount_(); ++i)
        glColorMaski(GLuint(i), GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    glLineWidth(1.0f);
    if (!context_.es)
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    if (context_.clipControl)
        glClipControl(GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_.name);
}

void vtxGLHostState::leave() {
    for (size_t i = 0; i < std::size(switches); ++i) {
        if (exists(switches[i], context_))
            setSwitch(switches[i].name, switches_[i]);
    }
    for (size_t i = 0; i < std::size(pixelStores); ++i)
        glPixelStorei(pixelStores[i].name, pixelStore_[i]);
    restoreBuffers_();
    restoreObjects_();
    glViewport(viewport_[0], viewport_[1], viewport_[2], viewport_[3]);
    glScissor(scissorBox_[0], scissorBox_[1], scissorBox_[2], scissorBox_[3]);
    glLineWidth(lineWidth_);
    if (!context_.es)
        glPolygonMode(GL_FRONT_AND_BACK, GLenum(polygonMode_[0]));
    if (context_.clipControl)
        glClipControl(GLenum(clipOrigin_), GLenum(clipDepth_));
}

void vtxGLHostState::restoreBuffers_() {
    if (!context_.indexedBlendFunction) {
        BufferState const& buffer = buffers_[0];
        glBlendFuncSeparate(GLenum(buffer.functions[0]), GLenum(buffer.functions[1]), GLenum(buffer.functions[2]),
                            GLenum(buffer.functions[3]));
        glBlendEquationSeparate(GLenum(buffer.equations[0]), GLenum(buffer.equations[1]));
    }
    for (int i = 0; i < getBufferCount_(); ++i) {
        BufferState const& buffer = buffers_[i];
        if (!context_.indexedBlendEnable) {
            setSwitch(GL_BLEND, buffer.blend);
            glColorMask(buffer.mask[0], buffer.mask[1], buffer.mask[2], buffer.mask[3]);
            continue;
        }
        if (buffer.blend)
            glEnablei(GL_BLEND, GLuint(i));
        else
            glDisablei(GL_BLEND, GLuint(i));
        glColorMaski(GLuint(i), buffer.mask[0], buffer.mask[1], buffer.mask[2], buffer.mask[3]);
        if (!context_.indexedBlendFunction)
            continue;
        glBlendFuncSeparatei(GLuint(i), GLenum(buffer.functions[0]), GLenum(buffer.functions[1]),
                             GLenum(buffer.functions[2]), GLenum(buffer.functions[3]));
        glBlendEquationSeparatei(GLuint(i), GLenum(buffer.equations[0]), GLenum(buffer.equations[1]));
    }
}

void vtxGLHostState::restoreObjects_() {
    glUseProgram(GLuint(program_));
    glBindVertexArray(GLuint(vertexArray_));
    glBindBuffer(GL_ARRAY_BUFFER, GLuint(arrayBuffer_));
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, GLuint(pixelUnpackBuffer_));
    glBindBuffer(GL_PIXEL_PACK_BUFFER, GLuint(pixelPackBuffer_));
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, GLuint(drawFramebuffer_));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, GLuint(readFramebuffer_));
    glBindRenderbuffer(GL_RENDERBUFFER, GLuint(renderbuffer_));
}
