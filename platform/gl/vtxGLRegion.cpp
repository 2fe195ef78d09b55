#include "platform/gl/vtxGLRegion.h"

void vtxGLRegion::enter(bool save) {
    viewportKnown_ = scissorKnown_ = switchKnown_ = false;
    if (!save)
        return;
    GLint box[4] = {};
    glGetIntegerv(GL_SCISSOR_BOX, box);
    current_.scissor = {box[0], box[1], box[2], box[3]};
    current_.scissorOn = glIsEnabled(GL_SCISSOR_TEST);
    scissorKnown_ = switchKnown_ = true;
    readViewport();
    left_ = current_;
}

void vtxGLRegion::setLeft(Box const& box) { left_ = {box, box, false}; }

void vtxGLRegion::leave() {
    setViewport(left_.viewport);
    setScissorBox_(left_.scissor);
    setScissorSwitch_(left_.scissorOn);
}

vtxGLRegion::Box vtxGLRegion::readViewport() {
    if (!viewportKnown_) {
        GLint box[4] = {};
        glGetIntegerv(GL_VIEWPORT, box);
        current_.viewport = {box[0], box[1], box[2], box[3]};
        viewportKnown_ = true;
    }
    return current_.viewport;
}

void vtxGLRegion::setViewport(Box const& box) {
    if (viewportKnown_ && box == current_.viewport)
        return;
    glViewport(box.x, box.y, box.width, box.height);
    current_.viewport = box;
    viewportKnown_ = true;
}

void vtxGLRegion::setScissor(Box const& box) {
    setScissorSwitch_(true);
    setScissorBox_(box);
}

void vtxGLRegion::turnScissorOff() { setScissorSwitch_(false); }

void vtxGLRegion::setScissorBox_(Box const& box) {
    if (scissorKnown_ && box == current_.scissor)
        return;
    glScissor(box.x, box.y, box.width, box.height);
    current_.scissor = box;
    scissorKnown_ = true;
}

void vtxGLRegion::setScissorSwitch_(bool on) {
    if (switchKnown_ && on == current_.scissorOn)
        return;
    if (on)
        glEnable(GL_SCISSOR_TEST);
    else
        glDisable(GL_SCISSOR_TEST);
    current_.scissorOn = on;
    switchKnown_ = true;
}
