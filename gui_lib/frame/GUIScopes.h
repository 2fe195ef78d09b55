#pragma once

#include "gui_lib/frame/GUI.h"
#include "platform/vtx/vtxRenderer.h"

namespace gui {

/// Marks a message drain or a pass as running: GUI must not be ended from inside.
class GUI::BusyScope {
public:
    explicit BusyScope(GUI& gui) : gui_(gui) { ++gui_.busy_; }
    ~BusyScope() { --gui_.busy_; }
    BusyScope(BusyScope const&) = delete;
    BusyScope& operator=(BusyScope const&) = delete;

private:
    GUI& gui_;
};

/// Marks a pass as running: what is drawn must not change from inside.
class GUI::PassScope {
public:
    explicit PassScope(GUI& gui) : busy_(gui), gui_(gui) { ++gui_.passes_; }
    ~PassScope() { --gui_.passes_; }
    PassScope(PassScope const&) = delete;
    PassScope& operator=(PassScope const&) = delete;

private:
    BusyScope busy_;
    GUI& gui_;
};

/// Opens a pass of the renderer for a scope.
class RendererPassScope {
public:
    RendererPassScope(vtxRenderer& renderer, vtxRenderer::TechniqueType technique) : renderer_(renderer) {
        renderer_.beginDraw(technique);
    }
    ~RendererPassScope() { renderer_.endDraw(); }
    RendererPassScope(RendererPassScope const&) = delete;
    RendererPassScope& operator=(RendererPassScope const&) = delete;

private:
    vtxRenderer& renderer_;
};

}  // namespace gui
