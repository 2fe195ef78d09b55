#include "testkit/RecordingText.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

#include "platform/qor/Utf8.h"

namespace testkit {

namespace {

constexpr std::string_view magic = "Vorlex recording 1";
constexpr int largestSize = 16384;
constexpr float smallestScale = 0.1f;
constexpr float largestScale = 16.0f;

/// Words and numbers of the kinds of input, in the order of HostInput::Kind.
struct InputForm {
    std::string_view word;
    std::size_t count;
};
constexpr InputForm inputForms[] = {{"move", 2},   {"button", 2},   {"wheel", 1},    {"key", 3},
                                    {"char", 2},   {"rawkey", 5},   {"rawmouse", 7}, {"release", 0},
                                    {"resize", 2}, {"activate", 1}, {"quit", 0}};

// --- Writing ---

template <class Number>
void append(std::string& out, Number number) {
    // The shortest text that reads back as the same number.
    char text[40];
    char* const end = std::to_chars(std::begin(text), std::end(text), number).ptr;
    out += ' ';
    out.append(text, end);
}

std::string quote(std::string_view text) {
    std::string result = "\"";
    for (char const character : text) {
        char code[8];
        if (character == '"' || character == '\\') {
            result += '\\';
            result += character;
        } else if (static_cast<unsigned char>(character) < 32 || character == 127) {
            std::snprintf(code, sizeof(code), "\\x%02X", static_cast<unsigned>(character));
            result += code;
        } else {
            result += character;
        }
    }
    return result + "\"";
}

/// What a person would call the key.
void appendKeyComment(host::HostInput const& input, std::string& out) {
    int const code = input.kind == host::HostInput::Char     ? input.values[1]
                     : input.kind == host::HostInput::Key    ? input.values[0]
                     : input.kind == host::HostInput::RawKey ? input.values[1]
                                                             : 0;
    if (code > 32 && code < 127) {
        out += "  # ";
        out += static_cast<char>(code);
    }
}

// --- Reading ---

/// Takes one line apart; after a failure `error` says why.
class LineReader {
public:
    explicit LineReader(std::string_view line) : rest_(line) {}

    std::string_view word() {
        skipSpaces_();
        std::string_view const result = rest_.substr(0, rest_.find(' '));
        rest_.remove_prefix(result.size());
        return result;
    }
    template <class Number>
    bool number(Number& result) {
        std::string_view const text = word();
        auto const [end, code] = std::from_chars(text.data(), text.data() + text.size(), result);
        if (code == std::errc() && end == text.data() + text.size())
            return true;
        error = text.empty() ? "A number is missing" : "\"" + std::string(text) + "\" is no number that fits";
        return false;
    }
    bool time(double& result) {
        if (!number(result))
            return false;
        if (!std::isfinite(result))
            error = "The time is not finite";
        return error.empty();
    }
    bool size(int& width, int& height, float& scale) {
        if (!number(width) || !number(height) || !number(scale))
            return false;
        if (width < 1 || height < 1 || width > largestSize || height > largestSize ||
            !(scale >= smallestScale && scale <= largestScale))
            error = "The size or the scale is out of range";
        return error.empty();
    }
    bool text(std::string& result);
    /// Nothing but a comment is left.
    bool ended() {
        skipSpaces_();
        if (error.empty() && !rest_.empty() && rest_.front() != '#')
            error = "There is something after the end: \"" + std::string(rest_) + "\"";
        return error.empty();
    }
    bool more() {
        skipSpaces_();
        return !rest_.empty() && rest_.front() != '#';
    }

    std::string error;

private:
    void skipSpaces_() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }

    std::string_view rest_;
};

bool LineReader::text(std::string& result) {
    skipSpaces_();
    result.clear();
    error = "A text in quotes is missing its beginning or its end";
    if (rest_.empty() || rest_.front() != '"')
        return false;
    for (std::size_t i = 1; i < rest_.size(); ++i) {
        char character = rest_[i];
        if (character == '"') {
            rest_.remove_prefix(i + 1);
            error.clear();
            return true;
        }
        if (character == '\\') {
            character = ++i < rest_.size() ? rest_[i] : '\0';
            if (character == 'x') {
                unsigned code = 0;
                std::string_view const digits = rest_.substr(i + 1, 2);
                if (std::from_chars(digits.data(), digits.data() + digits.size(), code, 16).ptr != digits.end() ||
                    digits.size() < 2)
                    return false;
                character = static_cast<char>(code);
                i += 2;
            }
        }
        result += character;
    }
    return false;
}

bool readHeaderLine(std::string_view word, LineReader& line, RecordingHeader& header) {
    if (word == "toolkit")
        return line.text(header.toolkit);
    if (word == "program")
        return line.text(header.program);
    if (word == "skin")
        return line.text(header.skin);
    if (word == "seed")
        return line.number(header.seed);
    if (word == "time")
        return line.time(header.time);
    if (word == "fonts") {
        header.systemFonts = line.word() == "system";
        return true;
    }
    int width = 0;
    int height = 0;
    if (word != "size" || !line.size(width, height, header.scale)) {
        if (word != "size")
            line.error = "\"" + std::string(word) + "\" is unknown";
        return false;
    }
    header.size = {width, height};
    return true;
}

bool readInput(std::string_view word, LineReader& line, host::HostInput& input) {
    for (std::size_t kind = 0; kind < std::size(inputForms); ++kind) {
        if (inputForms[kind].word != word)
            continue;
        input.kind = static_cast<host::HostInput::Kind>(kind);
        if (input.kind == host::HostInput::Resize)
            return line.size(input.values[0], input.values[1], input.scale);
        for (std::size_t i = 0; i < inputForms[kind].count; ++i)
            if (!line.number(input.values[i]))
                return false;
        return true;
    }
    return false;
}

bool readLine(std::string_view word, LineReader& line, Recording& recording) {
    RecordingLine result;
    if (word == "frame") {
        result.kind = RecordingLine::Frame;
        if (!line.time(result.time) || (line.more() && !line.time(result.step)))
            return false;
    } else if (word == "cursor") {
        result.kind = RecordingLine::Cursor;
        if (!line.number(result.cursor.x()) || !line.number(result.cursor.y()))
            return false;
    } else if (word == "clipboard") {
        std::string text;
        result.kind = RecordingLine::Clipboard;
        if (!line.text(text))
            return false;
        result.text = qor::utf8_to_wchar(text);
    } else if (!readInput(word, line, result.input)) {
        return line.error.empty() && readHeaderLine(word, line, recording.header) && line.ended();
    }
    if (!line.ended())
        return false;
    if (recording.header.size.x() == 0) {
        line.error = "No line \"size\" stands before it";
        return false;
    }
    recording.frames += result.kind == RecordingLine::Frame;
    recording.lines.push_back(std::move(result));
    return true;
}

}  // namespace

std::string writeRecordingHeader(RecordingHeader const& header) {
    std::string out = std::string(magic) + "\ntoolkit " + quote(header.toolkit) + "\nprogram " + quote(header.program) +
                      "\nskin " + quote(header.skin) + "\nsize";
    append(out, header.size.x());
    append(out, header.size.y());
    append(out, header.scale);
    out += header.systemFonts ? "\nfonts system\nseed" : "\nfonts shipped\nseed";
    append(out, header.seed);
    out += "\ntime";
    append(out, header.time);
    return out + "\n";
}

std::string writeRecordingLine(RecordingLine const& line) {
    std::string out;
    if (line.kind == RecordingLine::Frame) {
        out = "frame";
        append(out, line.time);
        if (line.step != 0.0)
            append(out, line.step);
    } else if (line.kind == RecordingLine::Cursor) {
        out = "cursor";
        append(out, line.cursor.x());
        append(out, line.cursor.y());
    } else if (line.kind == RecordingLine::Clipboard) {
        out = "clipboard " + quote(qor::wchar_to_utf8(line.text));
    } else {
        InputForm const& form = inputForms[line.input.kind];
        out = form.word;
        for (std::size_t i = 0; i < form.count; ++i)
            append(out, line.input.values[i]);
        if (line.input.kind == host::HostInput::Resize)
            append(out, line.input.scale);
        appendKeyComment(line.input, out);
    }
    return out + "\n";
}

std::string writeRecordingTree(std::string_view tree) {
    std::string out = "tree\n";
    while (!tree.empty()) {
        std::size_t const end = std::min(tree.find('\n'), tree.size() - 1);
        (out += "| ").append(tree.substr(0, end + 1));
        tree.remove_prefix(end + 1);
    }
    return out + "end\n";
}

std::string readRecording(std::string const& path, Recording& recording) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return path + ":0: The file cannot be read: " + std::strerror(errno);
    std::string text;
    bool inTree = false;
    for (int number = 1; std::getline(file, text); ++number) {
        auto const fail = [&](std::string const& cause) { return path + ":" + std::to_string(number) + ": " + cause; };
        while (!text.empty() && text.back() == '\r')
            text.pop_back();
        LineReader line(text);
        if (number == 1 && text != magic)
            return fail("The file does not begin with \"" + std::string(magic) +
                        "\", so it is no recording of this kind.");
        // A line that was being written when the program ended.
        if (file.eof() && text != "end")
            return fail("The recording is cut off here; what stands before is played.");
        if (number == 1 || !line.more())
            continue;
        std::string_view const word = line.word();
        if (inTree && word == "|") {
            recording.tree.append(text, std::min<std::size_t>(2, text.size())).append("\n");
        } else if (word == "tree" || word == "end") {
            inTree = true;
            recording.whole = word == "end";
            if (recording.whole)
                return {};
        } else if (inTree || !readLine(word, line, recording)) {
            return fail((line.error.empty() ? "\"" + std::string(word) + "\" does not belong here" : line.error) +
                        "; what stands before is played.");
        }
    }
    if (recording.header.size.x() == 0)
        return path + ":0: The file ends before the line \"size\", so nothing of it can be played.";
    return path + ": The recording has no end, as after a crash; what there is is played.";
}

}  // namespace testkit
