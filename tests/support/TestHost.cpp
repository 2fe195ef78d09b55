#include "tests/support/TestHost.h"

#include <gtest/gtest.h>

#include "gui_lib/base/UpdateManager.h"
#include "gui_lib/frame/GUI.h"
#include "gui_lib/graphics/GraphicCommands.h"
#include "gui_lib/widget/Widget.h"
#include "host/CommandPlayer.h"
#include "platform/trace/vtxTraceDevice.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"
#include "platform/vtx/vtxShader.h"
#include "tests/support/SkinText.h"

namespace support {

TestHost::TestHost(std::string_view skinText) : TestHost(skinText, Settings()) {}

TestHost::TestHost(std::string_view skinText, Settings const& settings)
    : app_(new TestApplication(settings.size)), settings_(settings) {
    std::unique_ptr<vtxDevice> device;
    if (settings.makeDevice) {
        device = settings.makeDevice();
        trace_ = std::make_shared<vtxTraceLog>();
    } else {
        auto trace = std::make_unique<vtxTraceDevice>(settings.size);
        trace_ = trace->getLog();
        device = std::move(trace);
    }
    // Lines are only kept while a test asks for them.
    trace_->setRecording(false);
    vtxRenderer::create(std::move(device));
    // Text is the same on every machine.
    vtxRenderer::get()->getFontManager()->setSystemFontsUsed(false);
    app_->modalFrame = [this] { frame(); };
    createGui(skinText);
}

TestHost::~TestHost() {
    destroyGui();
    vtxRenderer::destroy();
    gui::Application::destroy();
    for (qor::string const& misuse : trace_->getMisuses())
        ADD_FAILURE() << "Misuse of the renderer: " << misuse.c_str();
}

void TestHost::createGui(std::string_view skinText) {
    SkinText const file(skinText);
    gui::GUI::create(file.getPath().c_str(), settings_.size, settings_.scale);
}

void TestHost::destroyGui() { gui::GUI::destroy(); }

// --- Frames ---

void TestHost::update() {
    gui::GUI::get()->processMessages();
    gui::UpdateManager::get().updateTargets();
}

void TestHost::frame() {
    update();
    gui::GUI* const gui = gui::GUI::get();
    gui->doRedraw();
    gui->parse();
    gui->draw();
}

void TestHost::advance(double seconds) {
    app_->time += seconds;
    frame();
}

template <class Function>
std::string TestHost::traceOf_(Function function) {
    trace_->clearLines();
    trace_->setRecording(true);
    function();
    trace_->setRecording(false);
    std::string const text(trace_->getText().c_str());
    trace_->clearLines();
    return text;
}

std::string TestHost::traceFrame() {
    return traceOf_([this] { frame(); });
}

template <class Function>
void TestHost::drawPass_(Function function) {
    vtxRenderer& renderer = *vtxRenderer::get();
    osg::RectImpl<osg::Vec2i> const all(osg::Vec2i(), settings_.size);
    vtxRenderer::ViewportGuard const viewport(all);
    vtxRenderer::ClipRectGuard const clip(all);
    vtxRenderer::ProjectionMatrixGuard projection;
    projection.makeOrtho2D(0.0f, all.x2 / renderer.getScale(), all.y2 / renderer.getScale(), 0.0f);
    vtxRenderer::ModelViewMatrixGuard modelView;
    modelView.setIdentity();
    renderer.beginDraw(vtxRenderer::TechniqueNormal);
    renderer.getShader()->resetPositionShift();
    renderer.getShader()->turnOnDrawQuads();
    function();
    renderer.endDraw();
}

void TestHost::drawWidget(gui::Widget& widget) {
    drawPass_([&] { widget.draw(); });
}

void TestHost::playWidget(gui::Widget& widget) {
    gui::GraphicCommands list;
    widget.make(&list);
    host::CommandPlayer::doRedraw(list);
    drawPass_([&] { host::CommandPlayer::draw(list); });
    host::CommandPlayer::release(list);
}

std::string TestHost::traceDraw(gui::Widget& widget) {
    return traceOf_([&] { drawWidget(widget); });
}

std::string TestHost::traceMake(gui::Widget& widget) {
    gui::GraphicCommands list;
    widget.make(&list);
    host::CommandPlayer::parse(list);
    // Targets are filled while the list is prepared; the direct way does that in GUI::doRedraw.
    host::CommandPlayer::doRedraw(list);
    std::string const text = traceOf_([&] { drawPass_([&] { host::CommandPlayer::draw(list); }); });
    host::CommandPlayer::release(list);
    return text;
}

// --- Input ---

void TestHost::moveMouse(int x, int y) {
    app_->cursorPosition = osg::Vec2i(x, y);
    gui::GUI::get()->mouseMove(x, y);
    gui::GUI::get()->processMessages();
}

void TestHost::pressMouse(gui::MouseButton button) {
    app_->buttons.insert(button);
    gui::GUI::get()->mouseDown(button);
    gui::GUI::get()->processMessages();
}

void TestHost::releaseMouse(gui::MouseButton button) {
    app_->buttons.erase(button);
    gui::GUI::get()->mouseUp(button);
    gui::GUI::get()->processMessages();
}

void TestHost::click(int x, int y) {
    moveMouse(x, y);
    pressMouse();
    releaseMouse();
}

void TestHost::pressKey(gui::KeyboardButton key, int modifiers) {
    app_->keys.insert(key);
    gui::GUI::get()->keyDown(key, modifiers);
    gui::GUI::get()->processMessages();
}

void TestHost::releaseKey(gui::KeyboardButton key, int modifiers) {
    app_->keys.erase(key);
    gui::GUI::get()->keyUp(key, modifiers);
    gui::GUI::get()->processMessages();
}

void TestHost::typeKey(gui::KeyboardButton key, int modifiers) {
    pressKey(key, modifiers);
    releaseKey(key, modifiers);
}

}  // namespace support
