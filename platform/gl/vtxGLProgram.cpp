#include "platform/gl/vtxGLProgram.h"

#include <algorithm>

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Reads a number at `at` and moves behind it; -1 if there is none.
int takeNumber(std::string_view text, size_t& at) {
    size_t const begin = at;
    int number = 0;
    while (at < text.size() && isDigit(text[at]) && number < 100000000)
        number = number * 10 + (text[at++] - '0');
    return at > begin ? number : -1;
}

bool containsNoCase(std::string_view text, std::string_view word) {
    auto same = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; };
    return std::search(text.begin(), text.end(), word.begin(), word.end(), same) != text.end();
}

GLuint compile(GLenum type, std::string_view text, vtxGLProgram::Error& error) {
    GLuint const shader = glCreateShader(type);
    GLchar const* string = text.data();
    GLint const length = GLint(text.size());
    glShaderSource(shader, 1, &string, &length);
    glCompileShader(shader);
    GLint done = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &done);
    if (done)
        return shader;
    char log[4096] = "";
    GLsizei logLength = 0;
    glGetShaderInfoLog(shader, sizeof log, &logLength, log);
    error = vtxGLProgram::readLog(std::string_view(log, size_t(logLength)));
    glDeleteShader(shader);
    return 0;
}

}  // namespace

bool vtxGLProgram::create(std::string_view vertexText, std::string_view fragmentText, Error& error) {
    GLuint const vertex = compile(GL_VERTEX_SHADER, vertexText, error);
    if (!vertex)
        return false;
    GLuint const fragment = compile(GL_FRAGMENT_SHADER, fragmentText, error);
    if (!fragment) {
        glDeleteShader(vertex);
        return false;
    }
    GLuint const program = glCreateProgram();
    glAttachShader(program, vertex);
    glAttachShader(program, fragment);
    glLinkProgram(program);
    glDetachShader(program, vertex);
    glDetachShader(program, fragment);
    glDeleteShader(vertex);
    glDeleteShader(fragment);
    GLint done = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &done);
    if (done) {
        name_ = program;
        return true;
    }
    char log[4096] = "";
    GLsizei logLength = 0;
    glGetProgramInfoLog(program, sizeof log, &logLength, log);
    error = readLog(std::string_view(log, size_t(logLength)));
    glDeleteProgram(program);
    return false;
}

void vtxGLProgram::destroy() {
    glDeleteProgram(name_);
    name_ = 0;
}

vtxGLProgram::Error vtxGLProgram::readLog(std::string_view log) {
    // Warnings may stand before the first error.
    std::string_view line;
    for (std::string_view rest = log; !rest.empty();) {
        size_t const end = std::min(rest.find('\n'), rest.size());
        std::string_view const candidate = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.empty())
            line = candidate;
        if (containsNoCase(candidate, "error")) {
            line = candidate;
            break;
        }
    }
    while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
        line.remove_suffix(1);
    Error error;
    error.cause.assign(line.data(), line.size());
    if (line.empty())
        error.cause = "the driver gives no cause";
    size_t at = 0;
    while (at < line.size() && !isDigit(line[at]))
        ++at;
    // First the number of the source string, then the line.
    if (takeNumber(line, at) >= 0 && at < line.size() && (line[at] == ':' || line[at] == '(')) {
        ++at;
        int const number = takeNumber(line, at);
        if (number < 1 || number >= firstOwnLine)
            return error;
        error.line = number;
        // What is left is the cause, behind column and punctuation.
        if (at < line.size() && line[at] == '(')
            at = std::min(line.find(')', at), line.size());
        while (at < line.size() && (line[at] == ')' || line[at] == ':' || line[at] == ' '))
            ++at;
        if (at < line.size())
            error.cause.assign(line.data() + at, line.size() - at);
    }
    return error;
}
