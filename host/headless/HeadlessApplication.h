#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "host/HostApplication.h"
#include "platform/qor/Containers.h"

class EglContext;
class vtxTraceLog;

namespace host {

/// A host without a display, for tests, tours and servers: pixels by EGL without a window, or no pixels at all but a
/// trace of what was drawn. The clock is virtual, random numbers are seeded the same each run, only shipped fonts are
/// used, input comes from a source, from steps and from the caller.
class VORLEX_API HeadlessApplication : public HostApplication {
public:
    enum class BackEnd {
        GL,    ///< OpenGL 3.3 core or later
        ES,    ///< OpenGL ES 3.0
        Trace  ///< no pixels; needs no GL
    };

    explicit HeadlessApplication(BackEnd backEnd);
    ~HeadlessApplication() override;

    // --- Clock: seconds; each frame adds one frame time ---
    void setFrameTime(double seconds) { frameTime_ = seconds; }
    double getFrameTime() const { return frameTime_; }
    void setTime(double seconds) { time_ = seconds; }
    void runFrames(int count);

    /// Runs a function in the first frame whose time has come; of equal times in order of addition.
    void addStep(double time, std::function<void()> function);

    /// Called for the input of each frame, before the steps.
    void setInputSource(std::function<void()> source) { inputSource_ = std::move(source); }
    /// Before the start; off unless asked for.
    void setSystemFontsUsed(bool used) { systemFontsUsed_ = used; }
    bool getSystemFontsUsed() const { return systemFontsUsed_; }
    /// Before the start: whether the toolkit hands GL's state back as it found it, or at GL's defaults, which costs
    /// less
    /// (`vtxGLOptions::saveHostState`). On unless told otherwise.
    void setGLStateSaved(bool saved) { stateSaved_ = saved; }
    bool getGLStateSaved() const { return stateSaved_; }

    /// What the trace back end recorded, good also after the end; null with another one.
    std::shared_ptr<vtxTraceLog> getTraceLog() const { return traceLog_; }
    /// Errors that GL reported; 0 without GL.
    unsigned getGLErrorCount() const;
    /// The framebuffer's pixels: RGBA, rows from the top. Empty with the trace back end.
    qor::vector<unsigned char> readPixels() { return readPicture_(); }

    // Application:
    double getTime() const override { return time_; }
    void setClipboardText(qor::basic_string<wchar_t> const& text) override { clipboard_ = text; }
    qor::basic_string<wchar_t> getClipboardText() const override;

protected:
    // HostApplication:
    bool createRenderer_() override;
    void destroyWindow_() override;
    void pumpInput_() override;
    void resizeWindow_(osg::Vec2i const& pixels) override;
    void beginPicture_() override;
    void clearPicture_() override;
    void present_() override;
    qor::vector<unsigned char> readPicture_() override;

    // Application:
    void createWindow_(int width, int height, bool fullScreen) override;

private:
    struct Step {
        double time;
        std::function<void()> function;
    };

    bool createRendererOverBackEnd_();

    BackEnd backEnd_;
    std::unique_ptr<EglContext> context_;
    std::shared_ptr<vtxTraceLog> traceLog_;
    double time_ = 1.0;
    double frameTime_ = 1.0 / 60.0;
    bool systemFontsUsed_ = false;
    bool stateSaved_ = true;
    std::function<void()> inputSource_;
    /// In order of time.
    qor::vector<Step> steps_;
    qor::basic_string<wchar_t> clipboard_;
};

}  // namespace host
