#include "platform/Trace.h"

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

}  // namespace platform
