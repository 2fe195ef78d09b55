#include "examples/gallery/DebugView.h"

#include <cstdio>
#include <string>

#include "examples/gallery/Place.h"
#include "examples/gallery/TreeDump.h"
#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/base/Application.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/Memory.h"
#include "platform/vtx/vtxRenderer.h"

DebugView::DebugView() : window_(new gui::Window) {
    window_->setName(L"frame");
    window_->setText(L"Frame");
    window_->setZOrder(1);
    window_->setSize({230, 200});
    window_->setPosition({gui::GUI::get()->getScreenSize().x() - 236, 16});
    text_ = place(window_, new gui::Static, {16, 8, 188, 128});
    text_->getWidgetSkin()->getSkinData()->setTextWrapping(true);
    updateCallback_ = std::make_shared<std::function<void()>>([this] { update(); });
    gui::Application::get()->addUpdateCallback(updateCallback_);
}

DebugView::~DebugView() { gui::Application::get()->removeUpdateCallback(updateCallback_); }

void DebugView::toggle() {
    shown_ = !shown_;
    gui::GUI::get()->setDebugDraw(shown_);
    window_->setVisible(shown_);
    if (shown_) {
        std::fputs(dumpTree().c_str(), stdout);
        std::fflush(stdout);
    }
}

void DebugView::update() {
    vtxRenderer& renderer = *vtxRenderer::get();
    vtxRenderer::Counters const counters = renderer.getCounters();
    renderer.resetCounters();
    std::size_t const allocations = qor::getAllocationCounts().allocations;
    unsigned long const redraws = gui::Widget::getRedrawCount();
    double const now = gui::Application::get()->getTime();
    if (shown_) {
        char text[192];
        std::snprintf(text, sizeof(text),
                      "Runs: %u\nQuads: %u\nTargets: %u\nUploads: %u\nRedraws: %lu\nAllocations: %zu\nFrame: %.1f ms",
                      counters.runs, counters.quads, counters.targets, counters.uploads, redraws - redraws_,
                      allocations - allocations_, (now - frameStart_) * 1000.0);
        text_->setText(std::wstring(text, text + std::char_traits<char>::length(text)));
    }
    allocations_ = allocations;
    redraws_ = redraws;
    frameStart_ = now;
}
