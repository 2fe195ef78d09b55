#pragma once

#include <cstdarg>
#include <functional>

#include "platform/qor/Api.h"

/// Writes one printf-formatted message to the log sink. The toolkit's own tag is "VORLEX"; renderers and hosts have
/// theirs. May be called from any thread.
VORLEX_API void qor_vlogf(char const* tag, int level, char const* format, va_list arguments)
    __attribute__((format(printf, 3, 0)));
VORLEX_API void qor_logf(char const* tag, int level, char const* format, ...) __attribute__((format(printf, 3, 4)));

namespace qor {

/// The text is as formatted: most messages have no line feed at the end, some have.
using LogSink = std::function<void(char const* tag, int level, char const* text)>;

/// Where messages go; an empty function brings back the default, which writes lines to stderr. Returns the sink before.
/// The sink is called by one thread at a time and may log itself; such a message goes to stderr.
VORLEX_API LogSink setLogSink(LogSink sink);

}  // namespace qor
