#include "testkit/Replay.h"

#include <algorithm>
#include <sstream>

#include "gui_lib/frame/GUI.h"
#include "host/headless/HeadlessApplication.h"
#include "platform/qor/Log.h"
#include "platform/qor/RandomObject.h"
#include "testkit/TreeDump.h"

namespace testkit {

namespace {

char const* const logTag = "TESTKIT";
constexpr int logError = 64;

/// The first line that differs, in words.
std::string describeDifference(std::string const& recorded, std::string const& replayed) {
    std::istringstream first(recorded);
    std::istringstream second(replayed);
    for (int number = 1;; ++number) {
        std::string wanted;
        std::string found;
        bool const more = static_cast<bool>(std::getline(first, wanted));
        if (static_cast<bool>(std::getline(second, found)) == more && wanted == found && more)
            continue;
        return "line " + std::to_string(number) + " of the tree differs:\n  recorded " + wanted + "\n  replayed " +
               found;
    }
}

}  // namespace

Replay::Replay(std::string const& path) {
    std::string const error = readRecording(path, recording_);
    if (!error.empty())
        qor_logf(logTag, logError, "%s", error.c_str());
}

Replay::~Replay() { detach_(); }

host::HostOptions Replay::getOptions() const {
    host::HostOptions options;
    options.skin = recording_.header.skin.c_str();
    options.pixels = recording_.header.size;
    options.scale = recording_.header.scale;
    return options;
}

void Replay::attach(host::HeadlessApplication& application) {
    application_ = &application;
    RandomObject::setProgramSeed(recording_.header.seed);
    application.setTime(recording_.header.time);
    application.setSystemFontsUsed(recording_.header.systemFonts);
    application.setInputSource([this] { feed_(); });
    application.setListener(this);
}

void Replay::detach_() {
    if (!application_ || application_->getListener() != this)
        return;
    application_->setListener(nullptr);
    application_->setInputSource({});
}

// --- Frames ---

bool Replay::runFrame() {
    if (!application_ || !application_->getRunning() || played_ >= recording_.frames)
        return false;
    application_->runFrame();
    return true;
}

void Replay::feed_() {
    auto const end = std::find_if(recording_.lines.begin() + static_cast<std::ptrdiff_t>(next_), recording_.lines.end(),
                                  [](RecordingLine const& line) { return line.kind == RecordingLine::Frame; });
    if (end == recording_.lines.end()) {
        // A modal window still waits for what was never recorded.
        application_->quit();
        return;
    }
    application_->setTime(end->time);
    application_->setFrameTime(end->step);
    ++played_;
    for (auto const frame = static_cast<std::size_t>(end - recording_.lines.begin()); next_ <= frame;) {
        // Counted first: what it does may run frames of its own.
        RecordingLine const& line = recording_.lines[next_++];
        if (line.kind == RecordingLine::Input)
            application_->push(line.input);
        else if (line.kind == RecordingLine::Cursor)
            application_->setCursorPosition(line.cursor);
        else if (line.kind == RecordingLine::Clipboard)
            clipboard_.push_back(line.text);
    }
    // What was read in the frame stands below it.
    for (; next_ < recording_.lines.size() && recording_.lines[next_].kind == RecordingLine::Clipboard; ++next_)
        clipboard_.push_back(recording_.lines[next_].text);
}

void Replay::onClipboardRead(qor::basic_string<wchar_t>& text) {
    if (clipboard_.empty())
        return;
    clipboardRead_ = std::min(clipboardRead_, clipboard_.size() - 1);
    text = clipboard_[clipboardRead_++];
}

// --- Comparing ---

Replay::Result Replay::compare() {
    report_ = std::to_string(played_) + " of " + std::to_string(recording_.frames) + " frames played; ";
    bool const early = played_ < recording_.frames;
    std::string const tree = gui::GUI::get() ? dumpTree() : std::string();
    if (early) {
        report_ += "the program ended before the recording";
        return Result::Different;
    }
    if (!recording_.whole) {
        report_ += "the recording has no tree to compare with";
        return Result::CutOff;
    }
    if (tree != recording_.tree) {
        report_ += describeDifference(recording_.tree, tree);
        return Result::Different;
    }
    report_ += "the widget tree is the recorded one";
    return Result::Same;
}

Replay::Result Replay::play() {
    while (runFrame()) {
    }
    return compare();
}

}  // namespace testkit
