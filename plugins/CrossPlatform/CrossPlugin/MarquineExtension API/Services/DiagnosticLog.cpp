#include "Services/DiagnosticLog.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "platform/Trace.h"

namespace {
constexpr size_t kBufferSize = 65536;

int Trace(int indentChange, const char* format, va_list arguments) {
  char buffer[kBufferSize];  // on the stack, because calls can nest
  const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
  if (length >= 0) platform::TraceLine(indentChange, buffer);
  return length;
}

}  // namespace

void OutputFormattedDebugString(const char* format, ...) {
  char buffer[kBufferSize] = {};
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer, sizeof buffer, format, arguments);
  va_end(arguments);
  const size_t length = std::strlen(buffer);
  if (length < kBufferSize - 2 && (length == 0 || buffer[length - 1] != '\n')) buffer[length] = '\n';
  OutputSimpleDebugString(buffer);
}

int OutputIndentedAndFormattedString(int indentChange, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = Trace(indentChange, format, arguments);
  va_end(arguments);
  return length;
}

TracedCall::TracedCall(const char* name) : mName(name) { OutputIndentedAndFormattedString(1, "Entering %s()", mName); }

TracedCall::TracedCall(const char* name, const char* entry, ...) : mName(name) {
  va_list arguments;
  va_start(arguments, entry);
  Trace(1, entry, arguments);
  va_end(arguments);
}

TracedCall::~TracedCall() { End("Exiting %s", mName); }

void TracedCall::End(const char* format, ...) {
  if (mHasEnded) return;
  mHasEnded = true;
  va_list arguments;
  va_start(arguments, format);
  Trace(-1, format, arguments);
  va_end(arguments);
}

void ReleaseModeHeapCheck(const char* where, int line) {
  OutputIndentedAndFormattedString(0, "Heap is okay in %s, line %d", where, line);
}

void FontDebugUtils::DumpFontNames(const platform::Array&, const char*) {}
