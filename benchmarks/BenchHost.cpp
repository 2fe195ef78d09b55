#include "benchmarks/BenchHost.h"

#include "benchmarks/NullDevice.h"
#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/frame/GUI.h"
#include "host/Assets.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"

/// What the toolkit asks of a host.
class BenchHost::App final : public gui::Application {
public:
    explicit App(osg::Vec2i const& size) { createMainWindow(size.x(), size.y(), false); }

    // Application:
    double getTime() const override { return time; }
    bool getMouseButtonDown(int) const override { return pressed; }
    bool getKeyDown(gui::KeyboardButton) const override { return false; }
    void setClipboardText(qor::basic_string<wchar_t> const&) override {}
    qor::basic_string<wchar_t> getClipboardText() const override { return {}; }
    void getCursorSize(osg::Vec2i& size) const override { size = osg::Vec2i(32, 32); }
    void getCursorScreenPosition(osg::Vec2i& position) const override { position = cursor; }

    double time = 1.0;
    bool pressed = false;
    osg::Vec2i cursor;

protected:
    void createWindow_(int, int, bool) override {}
};

BenchHost::BenchHost(osg::Vec2i const& size) : app_(new App(size)) {
    host::addToolkitAssets();
    vtxRenderer::create(std::make_unique<NullDevice>(size));
    // Text is the same on every machine.
    vtxRenderer::get()->getFontManager()->setSystemFontsUsed(false);
    gui::GUI::create("skins/dark.lua", size, 1.0f);
}

BenchHost::~BenchHost() {
    gui::GUI::destroy();
    vtxRenderer::destroy();
    gui::Application::destroy();
}

void BenchHost::frame() {
    app_->time += 1.0 / 60.0;
    gui::GUI* const gui = gui::GUI::get();
    gui->processMessages();
    gui::UpdateManager::get().updateTargets();
    gui->redraw(false);
    gui->doRedraw();
    gui->parse();
    gui->draw();
}

void BenchHost::settle() {
    for (int i = 0; i < 4; ++i)
        frame();
}

void BenchHost::moveMouse(osg::Vec2i const& point) {
    app_->cursor = point;
    gui::GUI::get()->mouseMove(point.x(), point.y());
}

void BenchHost::pressMouse() {
    app_->pressed = true;
    gui::GUI::get()->mouseDown(gui::MouseButtonMain);
}

void BenchHost::releaseMouse() {
    app_->pressed = false;
    gui::GUI::get()->mouseUp(gui::MouseButtonMain);
}
