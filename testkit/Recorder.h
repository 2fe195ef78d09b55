#pragma once

#include <cstdint>
#include <fstream>
#include <string>

#include <osg/Vec2i>

#include "host/HostListener.h"
#include "platform/qor/Api.h"

namespace host {
class HostApplication;
}

namespace testkit {

struct RecordingLine;

/// Writes what a host learns from outside to a text file, from which `Replay` makes the same session again: input,
/// clock, cursor, clipboard, and the start's size, scale, skin and seed. Each frame is on the disk before it is at
/// work, so that a crash can be replayed. Order: made before the host's `start`; `finish` while GUI and the program's
/// windows live; ends before the host.
class VORLEX_API Recorder : public host::HostListener {
public:
    /// Fixes the seed of the program's random numbers; 0 draws one. `program` is kept for the replaying program, which
    /// finds in it how to start. A file that cannot be written is logged.
    Recorder(host::HostApplication& application, std::string const& path, std::string const& program,
             std::uint64_t seed = 0);
    ~Recorder() override;
    Recorder(Recorder const&) = delete;
    Recorder& operator=(Recorder const&) = delete;

    /// Writes the widget tree, with which a replay compares its own, and stops. False if the file could not be written
    /// whole.
    bool finish();

    // HostListener:
    void onStarted() override;
    void onInput(host::HostInput const& input) override;
    void onFrame() override;
    void onClipboardRead(qor::basic_string<wchar_t>& text) override;

private:
    void write_(std::string const& text);
    void write_(RecordingLine const& line);
    void flush_();
    void detach_();

    host::HostApplication& application_;
    std::string path_;
    std::string program_;
    std::uint64_t seed_;
    std::ofstream file_;
    /// Where a replay would take it to be.
    osg::Vec2i cursor_;
    bool failed_ = false;
    bool attached_ = true;
};

}  // namespace testkit
