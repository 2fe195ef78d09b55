// Any bytes as a recording: it is read or the cause is told, and what was read is the same when written and read again.
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "testkit/RecordingText.h"
#include "tests/fuzz/shared/FuzzInput.h"

namespace {

std::string read(std::string_view text, testkit::Recording& recording) {
    static std::string const path =
        (std::filesystem::temp_directory_path() / ("vorlex-fuzz-" + std::to_string(getpid()) + ".rec")).string();
    std::ofstream(path, std::ios::binary).write(text.data(), std::streamsize(text.size()));
    std::string const error = testkit::readRecording(path, recording);
    std::filesystem::remove(path);
    return error;
}

std::string write(testkit::Recording const& recording) {
    std::string text = testkit::writeRecordingHeader(recording.header);
    for (testkit::RecordingLine const& line : recording.lines)
        text += testkit::writeRecordingLine(line);
    return text + testkit::writeRecordingTree(recording.tree);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    using fuzz::check;
    testkit::Recording first;
    std::string const error = read({reinterpret_cast<char const*>(data), size}, first);
    check(error.empty() == first.whole, "a recording is whole or the cause is told");
    // Without a size nothing can be played.
    if (!first.whole || first.header.size.x() < 1)
        return 0;
    std::string const written = write(first);
    testkit::Recording second;
    check(read(written, second).empty(), "what was read can be written");
    check(write(second) == written && second.frames == first.frames, "and is the same when read again");
    std::string withReturns;
    for (char const character : written)
        withReturns += character == '\n' ? std::string("\r\n") : std::string(1, character);
    testkit::Recording third;
    check(read(withReturns, third).empty() && write(third) == written, "lines may also end in a carriage return");
    return 0;
}
