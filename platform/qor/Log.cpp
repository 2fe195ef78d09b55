#include "platform/qor/Log.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace {

struct Sink {
    std::mutex lock;
    qor::LogSink function;
};

// Never destroyed: destructors of other static objects may log.
Sink& getSink() {
    static Sink* const sink = new Sink;
    return *sink;
}

thread_local bool insideSink = false;

void writeToStderr(char const* tag, int level, char const* text) {
    size_t const length = std::strlen(text);
    bool const ended = length > 0 && text[length - 1] == '\n';
    std::fprintf(stderr, "[%s %d] %s%s", tag, level, text, ended ? "" : "\n");
}

void deliver(char const* tag, int level, char const* text) {
    if (insideSink) {
        writeToStderr(tag, level, text);
        return;
    }
    Sink& sink = getSink();
    std::lock_guard const guard(sink.lock);
    if (!sink.function) {
        writeToStderr(tag, level, text);
        return;
    }
    insideSink = true;
    struct Leave {
        ~Leave() { insideSink = false; }
    } const leave;
    sink.function(tag, level, text);
}

}  // namespace

void qor_vlogf(char const* tag, int level, char const* format, va_list arguments) {
    if (!tag)
        tag = "";
    if (!format)
        format = "";
    char buffer[1024];
    va_list again;
    va_copy(again, arguments);
    int const length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    if (length < 0) {
        deliver(tag, level, format);
    } else if (size_t(length) < sizeof buffer) {
        deliver(tag, level, buffer);
    } else {
        std::string longer(size_t(length), '\0');
        std::vsnprintf(longer.data(), longer.size() + 1, format, again);
        deliver(tag, level, longer.c_str());
    }
    va_end(again);
}

void qor_logf(char const* tag, int level, char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    qor_vlogf(tag, level, format, arguments);
    va_end(arguments);
}

qor::LogSink qor::setLogSink(LogSink sink) {
    Sink& current = getSink();
    std::lock_guard const guard(current.lock);
    return std::exchange(current.function, std::move(sink));
}
