#pragma once

#include <cstddef>
#include <string>

#include "host/HostApplication.h"
#include "host/HostListener.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "testkit/RecordingText.h"

namespace host {
class HeadlessApplication;
}

namespace testkit {

/// Plays a recording of `Recorder` in a headless host: the same input in the same frames at the same times, whatever
/// back end draws.
/// Order: made, `attach`, the host's `start` with `getOptions`, the program's windows, `play`; ends before the host.
class VORLEX_API Replay : public host::HostListener {
public:
    enum class Result {
        Same,       ///< the widget tree at the end is the recorded one
        Different,  ///< it is not, or the program ended too early
        CutOff      ///< the recording has none to compare with
    };

    /// Reads the whole file; what is wrong with it is one line in the log.
    explicit Replay(std::string const& path);
    ~Replay() override;
    Replay(Replay const&) = delete;
    Replay& operator=(Replay const&) = delete;

    /// False if nothing of it can be played.
    bool getPlayable() const { return recording_.header.size.x() > 0; }
    RecordingHeader const& getHeader() const { return recording_.header; }
    host::HostOptions getOptions() const;

    /// Clock, random numbers, fonts, input and clipboard come from the recording from now on.
    void attach(host::HeadlessApplication& application);
    /// One frame, and those inside it. False if nothing is left or the program has ended.
    bool runFrame();
    /// Compares what has been played with the recording; `getReport` says it in words, with the first difference.
    Result compare();
    /// All frames, then `compare`.
    Result play();
    std::string const& getReport() const { return report_; }

    // HostListener:
    void onClipboardRead(qor::basic_string<wchar_t>& text) override;

private:
    void feed_();
    void detach_();

    Recording recording_;
    host::HeadlessApplication* application_ = nullptr;
    /// The line to play next.
    std::size_t next_ = 0;
    int played_ = 0;
    /// What reading the clipboard will give, in order; the last stays.
    qor::vector<qor::basic_string<wchar_t>> clipboard_;
    std::size_t clipboardRead_ = 0;
    std::string report_;
};

}  // namespace testkit
