#pragma once

#include <memory>

#include "host/HostApplication.h"

namespace host {

/// A host over SDL 2 and OpenGL 3.3: a window of any size and display scale, mouse, keyboard, clipboard and cursors.
/// Print screen saves "screenshot-N.png" in the working directory.
class VORLEX_API SdlApplication : public HostApplication {
public:
    SdlApplication();
    ~SdlApplication() override;

    /// Frames until the program ends.
    void run();

    // HostApplication:
    /// Saved at the end of the next frame.
    bool saveScreenshot(char const* path) override;

    // Application:
    bool getFullScreen() const override;
    /// Taken at the start of each frame; stands still in between.
    double getTime() const override;
    void setClipboardText(qor::basic_string<wchar_t> const& text) override;
    qor::basic_string<wchar_t> getClipboardText() const override;

protected:
    // HostApplication:
    bool createRenderer_() override;
    void destroyWindow_() override;
    void pumpInput_() override;
    void beginPicture_() override;
    void clearPicture_() override;
    void present_() override;
    qor::vector<unsigned char> readPicture_() override;
    float getDisplayScale_() override;
    void onStarted_() override;

    // Application:
    void createWindow_(int width, int height, bool fullScreen) override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace host
