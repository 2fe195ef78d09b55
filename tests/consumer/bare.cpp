// A host of its own that knows nothing of vorlex::host: the loader script alone finds the module with the bindings.
// Argument: the folder that holds "assets" and "vorlex".
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include "gui_lib/base/Application.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/windows/WindowBase.h"
#include "platform/qor/Paths.h"
#include "platform/trace/vtxTraceDevice.h"
#include "platform/vtx/vtxRenderer.h"

namespace {

class BareApplication final : public gui::Application {
public:
    double getTime() const override { return 1.0; }
    bool getMouseButtonDown(int) const override { return false; }
    bool getKeyDown(gui::KeyboardButton) const override { return false; }
    void setClipboardText(qor::basic_string<wchar_t> const&) override {}
    qor::basic_string<wchar_t> getClipboardText() const override { return {}; }
    void getCursorSize(osg::Vec2i& size) const override { size.set(16, 16); }
    void getCursorScreenPosition(osg::Vec2i& position) const override { position.set(0, 0); }

protected:
    void createWindow_(int, int, bool) override {}
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    qor::addAssetRoot(std::string(argv[1]) + "/assets");
    qor::addAssetRoot(argv[1]);
    auto* const application = new BareApplication;
    application->createMainWindow(800, 600, false);
    vtxRenderer::create(std::make_unique<vtxTraceDevice>());
    gui::GUI::create("skins/dark.lua", {800, 600}, 1.0f);

    gui::WindowBase* const window = gui::GUI::get()->createWindowFromResource("gallery/row.lua");
    int const rows = window ? window->getWidgetCount() : 0;
    std::printf("bare: a window of %d rows\n", rows);

    gui::GUI::destroy();
    vtxRenderer::destroy();
    gui::Application::destroy();
    return rows == 4 ? 0 : 1;
}
