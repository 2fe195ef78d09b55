#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace support {

struct LogLine {
    std::string tag;
    int level = 0;
    std::string text;
};

/// Collects the log lines of its life, which are then expected. A line that comes while none lives fails the test.
/// The innermost one of several gets the lines. Lines may come from any thread.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(LogCapture const&) = delete;
    LogCapture& operator=(LogCapture const&) = delete;

    std::vector<LogLine> getLines() const;
    /// How many lines hold this text.
    size_t count(std::string_view text) const;
    bool contains(std::string_view text) const { return count(text) > 0; }
    /// All lines, for messages.
    std::string dump() const;
    void clear();

private:
    friend void receiveLogLine(char const* tag, int level, char const* text);

    std::vector<LogLine> lines_;
    LogCapture* outer_;
};

/// The log sink of the tests.
void receiveLogLine(char const* tag, int level, char const* text);

}  // namespace support
