#include "Services/DiagnosticLog.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "platform/Trace.h"

namespace {
constexpr size_t kBufferSize = 65536;
}

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
  char buffer[kBufferSize];  // on the stack, because calls can nest
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
  va_end(arguments);
  if (length >= 0) platform::TraceLine(indentChange, buffer);
  return length;
}

void ReleaseModeHeapCheck(const char* where, int line) {
  OutputIndentedAndFormattedString(0, "Heap is okay in %s, line %d", where, line);
}

void FontDebugUtils::DumpFontNames(const platform::Array&, const char*) {}
