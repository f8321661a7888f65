// Lines for people: trace lines, which are dropped unless a user or a test installs a sink, and problems.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

using TraceSink = void (*)(void* context, int indentChange, std::string_view line);

// Null removes the sink. The sink is called on the tracing thread and must not trace.
PLATFORM_API void SetTraceSink(TraceSink sink, void* context);
PLATFORM_API void TraceLine(int indentChange, std::string_view line);
PLATFORM_API bool IsTracing();

// A problem after which the program continues. The sink must not throw; null removes it.
using ProblemSink = std::function<void(const std::string& line)>;
PLATFORM_API void SetProblemSink(ProblemSink sink);
// Reports one line, without a line end. A line about a file or folder begins with "PATH: ", its absolute path. The line
// goes to the trace and to the problem sink, which is called only on the thread that installed it. Lines of other
// threads, and all lines without a sink, go to standard error.
PLATFORM_API void ReportProblem(std::string_view line);

}  // namespace platform
