#include "platform/Trace.h"

#include <cstdio>
#include <mutex>

namespace platform {

namespace {

struct Sink {
  TraceSink function = nullptr;
  void* context = nullptr;
};
std::mutex sMutex;
Sink sSink;

Sink CurrentSink() {
  const std::lock_guard lock(sMutex);
  return sSink;
}

}  // namespace

void SetTraceSink(TraceSink sink, void* context) {
  const std::lock_guard lock(sMutex);
  sSink = {sink, context};
}

void TraceLine(int indentChange, std::string_view line) {
  const Sink sink = CurrentSink();
  if (sink.function) sink.function(sink.context, indentChange, line);
}

bool IsTracing() { return CurrentSink().function != nullptr; }

void ReportProblem(std::string_view line) {
  std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
  TraceLine(0, line);
}

}  // namespace platform
