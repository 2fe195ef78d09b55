#include "platform/gl/vtxGLHostState.h"

#include <algorithm>
#include <iterator>

namespace {

enum class Where { Everywhere, Desktop, Srgb };
/// Quads are neither points, lines nor indexed.
enum class For { AllDrawing, Geometry };

/// What is switched with glEnable and what drawing needs of it.
struct Switch {
    GLenum name;
    bool wanted;
    bool byDefault;
    Where where;
    For need = For::AllDrawing;
};

// Blending and colour masks are kept for each draw buffer, see saveBuffers_.
constexpr Switch switches[] = {
    {GL_CULL_FACE, false, false, Where::Everywhere},
    {GL_DEPTH_TEST, false, false, Where::Everywhere},
    {GL_STENCIL_TEST, false, false, Where::Everywhere},
    {GL_POLYGON_OFFSET_FILL, false, false, Where::Everywhere},
    {GL_SAMPLE_ALPHA_TO_COVERAGE, false, false, Where::Everywhere},
    {GL_SAMPLE_COVERAGE, false, false, Where::Everywhere},
    {GL_RASTERIZER_DISCARD, false, false, Where::Everywhere},
    {GL_DITHER, false, true, Where::Everywhere},
    {GL_SAMPLE_ALPHA_TO_ONE, false, false, Where::Desktop},
    {GL_SAMPLE_MASK, false, false, Where::Desktop},
    {GL_COLOR_LOGIC_OP, false, false, Where::Desktop},
    {GL_PRIMITIVE_RESTART, false, false, Where::Desktop, For::Geometry},
    {GL_POLYGON_SMOOTH, false, false, Where::Desktop},
    {GL_LINE_SMOOTH, false, false, Where::Desktop, For::Geometry},
    {GL_PROGRAM_POINT_SIZE, true, false, Where::Desktop, For::Geometry},
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
    geometryPrepared_ = false;
    region_.enter(options_.saveHostState);
    takeSwitches_(false);
    if (options_.saveHostState) {
        save_();
    } else {
        clipOrigin_ = GL_LOWER_LEFT;
        clipDepth_ = GL_NEGATIVE_ONE_TO_ONE;
    }
    findFramebuffer_();
    applyOwn_();
}

void vtxGLHostState::findFramebuffer_() {
    if (options_.hostFramebuffer) {
        framebuffer_ = options_.hostFramebuffer();
        glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_.name);
    } else {
        if (!options_.saveHostState)
            glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawFramebuffer_);
        vtxGLRegion::Box const view = region_.readViewport();
        framebuffer_ = {unsigned(drawFramebuffer_), view.x, view.y, view.width, view.height};
    }
    if (options_.saveHostState)
        return;
    region_.setLeft({framebuffer_.x, framebuffer_.y, framebuffer_.width, framebuffer_.height});
    drawFramebuffer_ = readFramebuffer_ = GLint(framebuffer_.name);
}

void vtxGLHostState::takeSwitches_(bool geometry) {
    for (size_t i = 0; i < std::size(switches); ++i) {
        Switch const& entry = switches[i];
        if (!exists(entry, context_) || (entry.need == For::Geometry) != geometry)
            continue;
        switches_[i] = options_.saveHostState ? glIsEnabled(entry.name) : entry.byDefault;
        if (!options_.saveHostState || switches_[i] != entry.wanted)
            setSwitch(entry.name, entry.wanted);
    }
}

void vtxGLHostState::prepareGeometry() {
    if (geometryPrepared_)
        return;
    geometryPrepared_ = true;
    takeSwitches_(true);
    if (options_.saveHostState)
        glGetFloatv(GL_LINE_WIDTH, &lineWidth_);
    glLineWidth(1.0f);
}

void vtxGLHostState::save_() {
    saveBuffers_();
    glGetIntegerv(GL_CURRENT_PROGRAM, &program_);
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &vertexArray_);
    glGetIntegerv(GL_ARRAY_BUFFER_BINDING, &arrayBuffer_);
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawFramebuffer_);
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &readFramebuffer_);
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
    region_.turnScissorOff();
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glBlendEquation(GL_FUNC_ADD);
    if (getBufferCount_() > 1) {
        // The programs write one colour: further attachments of the host's framebuffer keep what they hold.
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
        glColorMaski(0, GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    } else {
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    }
    if (!context_.es)
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    if (context_.clipControl)
        glClipControl(GL_LOWER_LEFT, GL_NEGATIVE_ONE_TO_ONE);
}

void vtxGLHostState::leave() {
    for (size_t i = 0; i < std::size(switches); ++i) {
        bool const taken = switches[i].need == For::AllDrawing || geometryPrepared_;
        if (taken && exists(switches[i], context_) && switches_[i] != switches[i].wanted)
            setSwitch(switches[i].name, switches_[i]);
    }
    restoreBuffers_();
    glUseProgram(GLuint(program_));
    glBindVertexArray(GLuint(vertexArray_));
    glBindBuffer(GL_ARRAY_BUFFER, GLuint(arrayBuffer_));
    glBindFramebuffer(GL_FRAMEBUFFER, GLuint(drawFramebuffer_));
    if (readFramebuffer_ != drawFramebuffer_)
        glBindFramebuffer(GL_READ_FRAMEBUFFER, GLuint(readFramebuffer_));
    region_.leave();
    if (geometryPrepared_ && lineWidth_ != 1.0f)
        glLineWidth(lineWidth_);
    if (!context_.es && polygonMode_[0] != GL_FILL)
        glPolygonMode(GL_FRONT_AND_BACK, GLenum(polygonMode_[0]));
    if (context_.clipControl && (clipOrigin_ != GL_LOWER_LEFT || clipDepth_ != GL_NEGATIVE_ONE_TO_ONE))
        glClipControl(GLenum(clipOrigin_), GLenum(clipDepth_));
}

void vtxGLHostState::restoreBuffers_() {
    int const count = getBufferCount_();
    if (std::all_of(buffers_ + 1, buffers_ + count, [this](BufferState const& one) { return one == buffers_[0]; })) {
        restoreAllBuffers_(buffers_[0]);
        return;
    }
    if (!context_.indexedBlendFunction)
        restoreBlending_(buffers_[0]);
    for (int i = 0; i < count; ++i) {
        BufferState const& buffer = buffers_[i];
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

void vtxGLHostState::restoreAllBuffers_(BufferState const& buffer) {
    setSwitch(GL_BLEND, buffer.blend);
    glColorMask(buffer.mask[0], buffer.mask[1], buffer.mask[2], buffer.mask[3]);
    restoreBlending_(buffer);
}

void vtxGLHostState::restoreBlending_(BufferState const& buffer) {
    glBlendFuncSeparate(GLenum(buffer.functions[0]), GLenum(buffer.functions[1]), GLenum(buffer.functions[2]),
                        GLenum(buffer.functions[3]));
    glBlendEquationSeparate(GLenum(buffer.equations[0]), GLenum(buffer.equations[1]));
}
