#include "host/headless/HeadlessApplication.h"

#include <algorithm>
#include <utility>

#include "host/headless/EglContext.h"
#include "platform/gl/vtxGLDevice.h"
#include "platform/qor/Log.h"
#include "platform/qor/RandomObject.h"
#include "platform/trace/vtxTraceDevice.h"
#include "platform/vtx/vtxFontManager.h"
#include "platform/vtx/vtxRenderer.h"

namespace host {

HeadlessApplication::HeadlessApplication(BackEnd backEnd) : backEnd_(backEnd) { RandomObject::setProgramSeed(1); }

HeadlessApplication::~HeadlessApplication() { stop(); }

// --- Context and renderer ---

void HeadlessApplication::createWindow_(int newWidth, int newHeight, bool) {
    if (backEnd_ == BackEnd::Trace)
        return;
    qor::string error;
    auto const api = backEnd_ == BackEnd::GL ? EglContext::Api::GL33 : EglContext::Api::ES30;
    context_ = EglContext::create(api, osg::Vec2i(newWidth, newHeight), error);
    if (context_)
        return;
    qor_logf("HOST", 64, "%s", error.c_str());
    running = false;
}

bool HeadlessApplication::createRenderer_() {
    if (!createRendererOverBackEnd_())
        return false;
    // Without them the pictures are the same on every machine.
    vtxRenderer::get()->getFontManager()->setSystemFontsUsed(systemFontsUsed_);
    return true;
}

bool HeadlessApplication::createRendererOverBackEnd_() {
    if (backEnd_ == BackEnd::Trace) {
        auto device = std::make_unique<vtxTraceDevice>(osg::Vec2i(width, height));
        traceLog_ = device->getLog();
        return vtxRenderer::create(std::move(device)) != nullptr;
    }
    vtxGLOptions options;
    options.saveHostState = stateSaved_;
    std::unique_ptr<vtxDevice> device = vtxCreateGLDevice(options);
    return device && vtxRenderer::create(std::move(device)) != nullptr;
}

void HeadlessApplication::resizeWindow_(osg::Vec2i const& pixels) {
    if (pixels == osg::Vec2i(width, height))
        return;
    if (context_)
        context_->resize(pixels);
    else if (vtxRenderer* const renderer = vtxRenderer::get())
        static_cast<vtxTraceDevice&>(renderer->getDevice()).setHostSize(pixels);
}

void HeadlessApplication::destroyWindow_() { context_.reset(); }

unsigned HeadlessApplication::getGLErrorCount() const { return context_ ? context_->getErrorCount() : 0; }

qor::basic_string<wchar_t> HeadlessApplication::getClipboardText() const {
    qor::basic_string<wchar_t> text = clipboard_;
    if (getListener())
        getListener()->onClipboardRead(text);
    return text;
}

// --- Frame ---

void HeadlessApplication::addStep(double time, std::function<void()> function) {
    auto const place = std::upper_bound(steps_.begin(), steps_.end(), time,
                                        [](double wanted, Step const& step) { return wanted < step.time; });
    steps_.insert(place, Step{time, std::move(function)});
}

void HeadlessApplication::runFrames(int count) {
    for (int i = 0; i < count && getRunning(); ++i)
        runFrame();
}

void HeadlessApplication::pumpInput_() {
    if (inputSource_)
        inputSource_();
    // A step may add steps and may run nested frames, so each is taken out before it runs.
    while (!steps_.empty() && steps_.front().time <= time_) {
        auto const function = std::move(steps_.front().function);
        steps_.erase(steps_.begin());
        if (function)
            function();
    }
}

void HeadlessApplication::beginPicture_() {
    if (context_)
        context_->bindFramebuffer();
}

void HeadlessApplication::clearPicture_() {
    if (context_)
        context_->clear(0.13f, 0.15f, 0.18f, 1.0f);
}

void HeadlessApplication::present_() { time_ += frameTime_; }

qor::vector<unsigned char> HeadlessApplication::readPicture_() {
    return context_ ? context_->readPixels() : qor::vector<unsigned char>();
}

}  // namespace host
