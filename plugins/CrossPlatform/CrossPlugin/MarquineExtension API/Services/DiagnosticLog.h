// The plug-in's log, which the agent's library writes to a file, and the trace of its functions, which is dropped
// unless a listener is installed (platform/Trace.h). Main thread only, except the trace.
#pragma once

#include "platform/Value.h"

inline constexpr const char* kPluginLogFilename =
    "VelorantFontManagementPlugins.log";  // not used; the host chooses the name

// Opens the log file of the agent's library and writes its header, even if logging is off.
void InitLogging(const char* logName);
void StartLogging();
void StopLogging();

// Writes to standard output and, while logging is on, to the log file.
void OutputSimpleDebugString(const char* text);
// The same with a printf format (at most 65,535 bytes). Adds a newline if there is none at the end.
void OutputFormattedDebugString(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Writes a trace line. indentChange is 0 for notes; TracedCall traces entries (+1) and exits (-1) of functions. Returns
// the length of the whole text.
int OutputIndentedAndFormattedString(int indentChange, const char* format, ...) __attribute__((format(printf, 2, 3)));

// Traces the entry to a function and, however the scope ends, one exit: only so do the lines keep their indentation.
class TracedCall {
 public:
  // Traces "Entering NAME()", and "Exiting NAME" at the end. The name must outlive the object.
  explicit TracedCall(const char* name);
  // The same with an entry line of its own, in printf format.
  TracedCall(const char* name, const char* entry, ...) __attribute__((format(printf, 3, 4)));
  ~TracedCall();
  TracedCall(const TracedCall&) = delete;
  TracedCall& operator=(const TracedCall&) = delete;

  // Traces an exit line in place of "Exiting NAME". The first call counts.
  void End(const char* format, ...) __attribute__((format(printf, 2, 3)));

 private:
  const char* mName;
  bool mHasEnded = false;
};

void ReleaseModeHeapCheck(const char* where, int line);

namespace FontDebugUtils {
// Does nothing. Old debug builds printed the names.
void DumpFontNames(const platform::Array& fonts, const char* title);
}  // namespace FontDebugUtils

// The low 32 bits of an address, as trace lines show it.
inline unsigned LowBits(const void* pointer) { return static_cast<unsigned>(reinterpret_cast<uintptr_t>(pointer)); }
