#include "examples/gallery/DebugView.h"

#include <cstdio>
#include <string>

#include "examples/gallery/Place.h"
#include "gui_lib/Skin/Data.h"
#include "gui_lib/Skin/Skin.h"
#include "gui_lib/base/Application.h"
#include "gui_lib/controls/labels/Static.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/Window.h"
#include "platform/qor/Memory.h"
#include "platform/vtx/vtxRenderer.h"

namespace {

void alignRight(gui::Static& label) {
    gui::skin::Data* const data = label.getWidgetSkin()->getSkinData();
    data->setTextWrapping(true);
    if (gui::Text::Info const* const look = data->getText(gui::skin::InteractiveStateReleased, 1)) {
        gui::Text::Info right = *look;
        right.align.setHorzAlign(gui::Align(gui::Align::Max, 0));
        data->setText(&right, gui::skin::InteractiveStateReleased, 1);
    }
}

}  // namespace

DebugView::DebugView() : window_(new gui::Window) {
    window_->setName(L"frame");
    window_->setText(L"Frame");
    window_->setZOrder(1);
    place(window_, new gui::Static, {16, 12, 96, 128},
          L"Runs\nQuads\nTargets\nUploads\nRedraws\nAllocations\nFrame, ms")
        ->getWidgetSkin()
        ->getSkinData()
        ->setTextWrapping(true);
    values_ = place(window_, new gui::Static, {112, 12, 72, 128});
    alignRight(*values_);
    fitWindow(window_, {200, 152});
    // Beside the index.
    window_->setPosition({393, gui::GUI::get()->getScreenSize().y() - window_->getSize().y() - 19});
    updateCallback_ = std::make_shared<std::function<void()>>([this] { update(); });
    gui::Application::get()->addUpdateCallback(updateCallback_);
}

DebugView::~DebugView() { gui::Application::get()->removeUpdateCallback(updateCallback_); }

void DebugView::toggle() {
    shown_ = !shown_;
    window_->setVisible(shown_);
    gui::GUI::get()->setDebugDraw(shown_);
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
        std::snprintf(text, sizeof(text), "%u\n%u\n%u\n%u\n%lu\n%zu\n%.1f", counters.runs, counters.quads,
                      counters.targets, counters.uploads, redraws - redraws_, allocations - allocations_,
                      (now - frameStart_) * 1000.0);
        values_->setText(std::wstring(text, text + std::char_traits<char>::length(text)));
    }
    allocations_ = allocations;
    redraws_ = redraws;
    frameStart_ = now;
}
