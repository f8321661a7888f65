// Where trace lines go. They are dropped unless a sink is set, by a debugging user or a test.
#pragma once

#include <string_view>

#include "platform/Export.h"

namespace platform {

using TraceSink = void (*)(void* context, int indentChange, std::string_view line);

// Null ends the tracing. The sink is called on the thread that traces; it must not trace itself.
PLATFORM_API void SetTraceSink(TraceSink sink, void* context);
PLATFORM_API void TraceLine(int indentChange, std::string_view line);
PLATFORM_API bool IsTracing();

// One line for the person at the terminal, without a line end: to standard error and, if there is a sink, to the trace.
PLATFORM_API void ReportProblem(std::string_view line);

}  // namespace platform
