#include "testkit/Recorder.h"

#include <cerrno>
#include <cstring>
#include <random>

#include "gui_lib/frame/GUI.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/qor/Log.h"
#include "platform/qor/RandomObject.h"
#include "testkit/RecordingText.h"
#include "testkit/TreeDump.h"

namespace testkit {

namespace {

std::uint64_t drawSeed() {
    std::random_device source;
    return std::uint64_t(source()) << 32 | source();
}

}  // namespace

Recorder::Recorder(host::HostApplication& application, std::string const& path, std::string const& program,
                   std::uint64_t seed)
    : application_(application), path_(path), program_(program), seed_(seed ? seed : drawSeed()) {
    RandomObject::setProgramSeed(seed_);
    file_.open(path_, std::ios::binary);
    flush_();
    application_.setListener(this);
}

Recorder::~Recorder() { detach_(); }

bool Recorder::finish() {
    if (attached_ && gui::GUI::get())
        write_(writeRecordingTree(dumpTree()));
    detach_();
    file_.close();
    flush_();
    return !failed_;
}

void Recorder::detach_() {
    if (attached_ && application_.getListener() == this)
        application_.setListener(nullptr);
    attached_ = false;
}

// --- Writing ---

void Recorder::flush_() {
    if (file_.is_open())
        file_.flush();
    if (failed_ || file_)
        return;
    failed_ = true;
    qor_logf("TESTKIT", 64, "The recording %s cannot be written: %s. Check the folder and the space on the disk.",
             path_.c_str(), std::strerror(errno));
}

void Recorder::write_(std::string const& text) { file_ << text; }

void Recorder::write_(RecordingLine const& line) { write_(writeRecordingLine(line)); }

// --- What the host tells ---

void Recorder::onStarted() {
    RecordingHeader header;
    header.toolkit = VORLEX_VERSION;
    header.program = program_;
    header.skin = application_.getSkinFile().c_str();
    header.size = {application_.getWidth(), application_.getHeight()};
    header.scale = application_.getScale();
    auto const* const headless = dynamic_cast<host::HeadlessApplication*>(&application_);
    header.systemFonts = !headless || headless->getSystemFontsUsed();
    header.seed = seed_;
    header.time = application_.getTime();
    write_(writeRecordingHeader(header));
    flush_();
}

void Recorder::onInput(host::HostInput const& input) {
    if (input.kind == host::HostInput::MouseMove)
        cursor_ = {input.values[0], input.values[1]};
    RecordingLine line;
    line.input = input;
    write_(line);
}

void Recorder::onFrame() {
    RecordingLine line;
    application_.getCursorScreenPosition(line.cursor);
    if (line.cursor != cursor_) {
        line.kind = RecordingLine::Cursor;
        cursor_ = line.cursor;
        write_(line);
    }
    line.kind = RecordingLine::Frame;
    line.time = application_.getTime();
    if (auto const* const headless = dynamic_cast<host::HeadlessApplication*>(&application_))
        line.step = headless->getFrameTime();
    write_(line);
    flush_();
}

void Recorder::onClipboardRead(qor::basic_string<wchar_t>& text) {
    RecordingLine line;
    line.kind = RecordingLine::Clipboard;
    line.text = text;
    write_(line);
    flush_();
}

}  // namespace testkit
