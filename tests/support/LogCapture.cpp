#include "tests/support/LogCapture.h"

#include <algorithm>
#include <mutex>

#include <gtest/gtest.h>

namespace support {

namespace {

std::mutex captureLock;
LogCapture* innermost = nullptr;

}  // namespace

LogCapture::LogCapture() {
    std::lock_guard const guard(captureLock);
    outer_ = innermost;
    innermost = this;
}

LogCapture::~LogCapture() {
    std::lock_guard const guard(captureLock);
    innermost = outer_;
}

std::vector<LogLine> LogCapture::getLines() const {
    std::lock_guard const guard(captureLock);
    return lines_;
}

size_t LogCapture::count(std::string_view text) const {
    std::lock_guard const guard(captureLock);
    return size_t(std::count_if(lines_.begin(), lines_.end(),
                                [&](LogLine const& line) { return line.text.find(text) != std::string::npos; }));
}

std::string LogCapture::dump() const {
    std::string all;
    for (LogLine const& line : getLines())
        all += "[" + line.tag + " " + std::to_string(line.level) + "] " + line.text + "\n";
    return all;
}

void LogCapture::clear() {
    std::lock_guard const guard(captureLock);
    lines_.clear();
}

void receiveLogLine(char const* tag, int level, char const* text) {
    std::unique_lock guard(captureLock);
    if (innermost) {
        innermost->lines_.push_back({tag, level, text});
        return;
    }
    guard.unlock();
    ADD_FAILURE() << "unexpected log line [" << tag << " " << level << "] " << text;
}

}  // namespace support
