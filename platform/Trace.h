// Where lines for a person go: trace lines, which are dropped unless a sink is set by a debugging user or a test, and
// problems.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

using TraceSink = void (*)(void* context, int indentChange, std::string_view line);

// Null ends the tracing. The sink is called on the thread that traces; it must not trace itself.
PLATFORM_API void SetTraceSink(TraceSink sink, void* context);
PLATFORM_API void TraceLine(int indentChange, std::string_view line);
PLATFORM_API bool IsTracing();

// What went wrong and was survived. The sink must not throw; null ends its use.
using ProblemSink = std::function<void(const std::string& line)>;
PLATFORM_API void SetProblemSink(ProblemSink sink);
// One line, without a line end; it begins with "PATH: " where it is about a file or folder, given by its absolute path. It
// goes to the trace and to the problem sink, which is called on the thread that set it only: the lines of other threads,
// and those without a sink, go to standard error.
PLATFORM_API void ReportProblem(std::string_view line);

}  // namespace platform
