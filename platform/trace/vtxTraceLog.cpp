#include "platform/trace/vtxTraceLog.h"

#include <cstdarg>

qor::string vtxTraceLog::getText() const {
    qor::string text;
    for (qor::string const& line : lines_) {
        text += line;
        text += '\n';
    }
    return text;
}

vtxTraceLog::Counters vtxTraceLog::takeFrame() {
    Counters const taken = counters_;
    counters_ = Counters();
    return taken;
}

void vtxTraceLog::addLine_(char const* format, ...) {
    if (!recording_)
        return;
    qor::AllowAllocations const allow;
    va_list arguments;
    va_start(arguments, format);
    lines_.emplace_back().vformat(format, arguments);
    va_end(arguments);
}

void vtxTraceLog::addMisuse_(char const* text) {
    qor::AllowAllocations const allow;
    misuses_.emplace_back(text);
    addLine_("! %s", text);
}
