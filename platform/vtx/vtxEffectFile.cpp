#include "platform/vtx/vtxEffectFile.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/qor/Paths.h"

namespace {

/// What the back end's prelude declares; a parameter of such a name would not compile.
constexpr std::string_view reservedNames[] = {"position", "uv",    "colour",     "projection", "modelView",
                                              "opacity",  "scale", "imageScale", "image",      "viewportSize",
                                              "result",   "main",  "float"};

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

std::string_view trim(std::string_view text) {
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

bool isComment(std::string_view line) { return line.starts_with("#") || line.starts_with("//"); }

/// "[word]" alone on its line, at its very beginning.
bool isSectionHeader(std::string_view line) {
    line = trim(line);
    if (line.size() < 3 || line.front() != '[' || line.back() != ']')
        return false;
    line = line.substr(1, line.size() - 2);
    return std::all_of(line.begin(), line.end(), isLetter);
}

class Parser {
public:
    Parser(vtxEffectFile& file, std::string_view path, qor::string& error) : file_(file), path_(path), error_(error) {}

    bool run(std::string_view text) {
        while (!text.empty()) {
            size_t end = std::min(text.find('\n'), text.size());
            std::string_view line = text.substr(0, end);
            text.remove_prefix(std::min(end + 1, text.size()));
            ++line_;
            if (!(isSectionHeader(line) && !isSpace(line.front()) ? openSection_(trim(line)) : addLine_(line)))
                return false;
        }
        return checkSection_(file_.vertex, "vertex", "effectVertex") &&
               checkSection_(file_.fragment, "fragment", "effectFragment");
    }

private:
    enum class In { Nothing, Parameters, Shader };

    bool openSection_(std::string_view header) {
        if (header == "[parameters]") {
            if (parametersSeen_)
                return fail_("a second section [parameters]");
            parametersSeen_ = true;
            in_ = In::Parameters;
            return true;
        }
        vtxEffectFile::Section* section = nullptr;
        if (header == "[vertex]")
            section = &file_.vertex;
        else if (header == "[fragment]")
            section = &file_.fragment;
        else
            return fail_("unknown section %.*s; there are [parameters], [vertex] and [fragment]", int(header.size()),
                         header.data());
        if (section->line)
            return fail_("a second section %.*s", int(header.size()), header.data());
        section->line = line_ + 1;
        section_ = section;
        in_ = In::Shader;
        return true;
    }

    bool addLine_(std::string_view line) {
        if (in_ == In::Shader) {
            section_->text.append(line.data(), line.size());
            section_->text += '\n';
            return true;
        }
        line = trim(line);
        if (line.empty() || isComment(line))
            return true;
        if (in_ == In::Nothing)
            return fail_("text before the first section");
        return addParameter_(line);
    }

    /// float name = value, or float[count] name = value
    bool addParameter_(std::string_view line) {
        vtxEffectFile::Parameter parameter;
        rest_ = line;
        if (!takeWord_("float"))
            return fail_("a parameter reads \"float name = value\" or \"float[count] name = value\"");
        if (take_('[')) {
            parameter.array = true;
            if (!takeNumber_(parameter.count) || !take_(']'))
                return fail_("the count of elements is not a whole number in brackets");
            if (parameter.count < 1 || parameter.count > vtxEffectFile::maxElements)
                return fail_("%d elements; 1 to %d are possible", parameter.count, vtxEffectFile::maxElements);
        }
        std::string_view name = takeName_();
        if (name.empty())
            return fail_("the parameter has no name");
        if (!checkName_(name))
            return false;
        if (!take_('=') || !takeNumber_(parameter.defaultValue) || !std::isfinite(parameter.defaultValue))
            return fail_("the parameter \"%.*s\" has no default: \"= number\" is missing", int(name.size()),
                         name.data());
        rest_ = trim(rest_);
        if (!rest_.empty() && !isComment(rest_))
            return fail_("unexpected \"%.*s\" after the default", int(rest_.size()), rest_.data());
        parameter.name.assign(name.data(), name.size());
        file_.parameters.push_back(parameter);
        return true;
    }

    bool checkName_(std::string_view name) {
        if (file_.findParameter(name) >= 0)
            return fail_("a second parameter \"%.*s\"", int(name.size()), name.data());
        if (name.starts_with("gl_") || name.starts_with("vtx") ||
            std::find(std::begin(reservedNames), std::end(reservedNames), name) != std::end(reservedNames))
            return fail_("the name \"%.*s\" is taken by the prelude", int(name.size()), name.data());
        if (file_.parameters.size() >= size_t(vtxEffectFile::maxParameters))
            return fail_("more than %d parameters", vtxEffectFile::maxParameters);
        return true;
    }

    bool checkSection_(vtxEffectFile::Section const& section, char const* name, char const* function) {
        if (!section.line) {
            line_ = std::max(line_, 1);
            return fail_("the section [%s] is missing", name);
        }
        if (section.text.find(function) != qor::string::npos)
            return true;
        line_ = section.line - 1;
        return fail_("the section [%s] defines no \"void %s()\"", name, function);
    }

    bool take_(char wanted) {
        rest_ = trim(rest_);
        if (rest_.empty() || rest_.front() != wanted)
            return false;
        rest_.remove_prefix(1);
        return true;
    }

    std::string_view takeName_() {
        rest_ = trim(rest_);
        size_t length = 0;
        while (length < rest_.size() && (isLetter(rest_[length]) || (length && isDigit(rest_[length]))))
            ++length;
        std::string_view name = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return name;
    }

    bool takeWord_(std::string_view word) { return takeName_() == word; }

    /// Independent of the locale.
    template <typename Number>
    bool takeNumber_(Number& number) {
        rest_ = trim(rest_);
        auto [end, code] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
        if (code != std::errc())
            return false;
        rest_.remove_prefix(size_t(end - rest_.data()));
        return true;
    }

    __attribute__((format(printf, 2, 3))) bool fail_(char const* format, ...) {
        qor::string cause;
        va_list arguments;
        va_start(arguments, format);
        cause.vformat(format, arguments);
        va_end(arguments);
        error_.format("%.*s:%d: %s", int(path_.size()), path_.data(), line_, cause.c_str());
        return false;
    }

    vtxEffectFile& file_;
    std::string_view path_;
    qor::string& error_;
    std::string_view rest_;
    vtxEffectFile::Section* section_ = nullptr;
    In in_ = In::Nothing;
    bool parametersSeen_ = false;
    int line_ = 0;
};

}  // namespace

int vtxEffectFile::findParameter(std::string_view name) const {
    for (size_t i = 0; i < parameters.size(); ++i) {
        if (std::string_view(parameters[i].name) == name)
            return int(i);
    }
    return -1;
}

bool vtxEffectFile::read(char const* path, qor::string& error) {
    qor::string text;
    return qor::readFile(path, text, error, size_t(1) << 20) && parse(path, text, error);
}

bool vtxEffectFile::parse(std::string_view path, std::string_view text, qor::string& error) {
    *this = vtxEffectFile();
    return Parser(*this, path, error).run(text);
}
