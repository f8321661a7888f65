#include "platform/Trace.h"

#include <cstdio>
#include <mutex>
#include <thread>

namespace platform {

namespace {

struct Sink {
  TraceSink function = nullptr;
  void* context = nullptr;
};
std::mutex sMutex;
Sink sSink;
ProblemSink sProblemSink;
std::thread::id sProblemThread;

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

void SetProblemSink(ProblemSink sink) {
  const std::lock_guard lock(sMutex);
  sProblemSink = std::move(sink);
  sProblemThread = std::this_thread::get_id();
}

void ReportProblem(std::string_view line) {
  TraceLine(0, line);
  ProblemSink sink;
  {
    const std::lock_guard lock(sMutex);
    if (sProblemThread == std::this_thread::get_id()) sink = sProblemSink;
  }
  if (sink) {
    sink(std::string(line));
  } else {
    std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
  }
}

}  // namespace platform
