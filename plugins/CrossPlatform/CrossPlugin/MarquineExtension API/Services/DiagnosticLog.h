// The plug-in's log, which the agent's library keeps, and the trace of its functions, which is dropped unless somebody
// listens (platform/Trace.h). Main thread only, except the trace.
#pragma once

#include "platform/Value.h"

inline constexpr const char* kPluginLogFilename =
    "VelorantFontManagementPlugins.log";  // not used: the host names the log

// Opens the agent-side log file and writes its header, whether or not logging is on.
void InitLogging(const char* logName);
void StartLogging();
void StopLogging();

// To standard output and, while logging is on, to the agent-side log.
void OutputSimpleDebugString(const char* text);
// The same, formatted as printf does (at most 65,535 bytes), with a newline added where there is none.
void OutputFormattedDebugString(const char* format, ...) __attribute__((format(printf, 1, 2)));

// A trace line: +1 at the start of a function, -1 at its exits, 0 for notes. Returns the length of the whole text.
int OutputIndentedAndFormattedString(int indentChange, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Traces that a function was entered and, however it is left, that it was. The name must outlive the object.
class TracedCall {
 public:
  explicit TracedCall(const char* name) : mName(name) { OutputIndentedAndFormattedString(1, "Entering %s()", mName); }
  ~TracedCall() { OutputIndentedAndFormattedString(-1, "Exiting %s", mName); }
  TracedCall(const TracedCall&) = delete;
  TracedCall& operator=(const TracedCall&) = delete;

 private:
  const char* mName;
};

void ReleaseModeHeapCheck(const char* where, int line);

namespace FontDebugUtils {
// Does nothing; debug builds of old once printed the names.
void DumpFontNames(const platform::Array& fonts, const char* title);
}  // namespace FontDebugUtils

// The low 32 bits of an address, as trace lines show it.
inline unsigned LowBits(const void* pointer) { return static_cast<unsigned>(reinterpret_cast<uintptr_t>(pointer)); }
