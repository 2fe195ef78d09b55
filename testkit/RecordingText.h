#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <osg/Vec2i>

#include "host/HostListener.h"
#include "platform/qor/Api.h"
#include "platform/qor/Containers.h"
#include "platform/qor/String.h"

namespace testkit {

/// What a recording's program started with.
struct RecordingHeader {
    std::string toolkit;
    /// Whatever the program needs to start the same way again.
    std::string program;
    std::string skin;
    /// Of the main window, pixels.
    osg::Vec2i size{0, 0};
    float scale = 1.0f;
    /// Whether fonts of the system were used, and not only the shipped ones.
    bool systemFonts = false;
    /// Of the program's random numbers.
    std::uint64_t seed = 1;
    /// The clock before the first frame, seconds.
    double time = 1.0;
};

/// One line below the header.
struct RecordingLine {
    enum Kind {
        Input,     ///< `input`
        Cursor,    ///< `cursor`, where it is not where the mouse was moved to
        Frame,     ///< the lines since the last one were a frame's input; `time` and `step`
        Clipboard  ///< `text` was read in the frame above
    };
    Kind kind = Input;
    host::HostInput input;
    osg::Vec2i cursor;
    /// The clock in the frame, and what the host adds to it at the frame's end, seconds.
    double time = 0.0;
    double step = 0.0;
    qor::basic_string<wchar_t> text;
};

/// A recording as a text file: UTF-8, one line an event, `#` begins a comment.
struct Recording {
    RecordingHeader header;
    qor::vector<RecordingLine> lines;
    int frames = 0;
    /// The widget tree at the end, one line a widget; empty in a recording that was cut off.
    std::string tree;
    bool whole = false;
};

VORLEX_API std::string writeRecordingHeader(RecordingHeader const& header);
/// With a line feed.
VORLEX_API std::string writeRecordingLine(RecordingLine const& line);
/// The last lines.
VORLEX_API std::string writeRecordingTree(std::string_view tree);

/// Reads a whole file. Returns the cause as "path:line: ..." where it is bad or cut off, else nothing; what stands
/// before that is in `recording`. Without a size in the header nothing can be played.
VORLEX_API std::string readRecording(std::string const& path, Recording& recording);

}  // namespace testkit
