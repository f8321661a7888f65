// Keeps the last trace lines of the plug-in, for a user who asks what happened, and reads from them why a file was chosen.
// Lines may come from any thread; the rest is the main thread's.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace console {

class TraceRecorder {
 public:
  TraceRecorder();  // takes the trace
  ~TraceRecorder();
  TraceRecorder(const TraceRecorder&) = delete;
  TraceRecorder& operator=(const TraceRecorder&) = delete;

  // How a document's font came to its file.
  struct Reason {
    uint32_t fontID = 0;
    std::string how;    // "perfect match", "only candidate", "best match", "already active"
    std::string stage;  // of a best match among several: what put it before the next; else empty
  };
  // The last reason for this PostScript name since the last Mark; fontID 0 without one.
  Reason ReasonFor(const std::string& postScriptName) const;
  void Mark();

  // Called on the tracing thread when a batch of so many fonts is about to be activated. It must not trace.
  void SetBatchObserver(std::function<void(int64_t)> observer);

  // The last lines, at most so many, indented as they were.
  std::vector<std::string> LastLines(size_t most) const;

 private:
  static void Take(void* context, int indentChange, std::string_view line);
  void Store(int indentChange, std::string_view line);

  mutable std::mutex mutex_;
  std::function<void(int64_t)> batchObserver_;
  std::deque<std::string> lines_;
  size_t dropped_ = 0;  // lines that were forgotten
  size_t mark_ = 0;     // number of the first line since the last Mark
  int indent_ = 0;
};

}  // namespace console
