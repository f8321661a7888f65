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
    std::string how;    // in the plug-in's words, such as "only candidate"; empty if it said nothing
    std::string stage;  // with several files: what put the chosen one before the next
    std::string over;   // that next file
  };
  // The last reason for this PostScript name since the last Mark.
  Reason ReasonFor(const std::string& postScriptName) const;
  // Whether the plug-in has tried since the last Mark to write identification data into this file, and could not.
  bool HasFailedToWriteSlug(const std::string& path) const;
  // Whether the plug-in wrote nothing since the mark because it could not look up the document's fonts.
  bool HasFailedToLookUpFonts(const std::string& path) const;
  void Mark();

  // Called on the tracing thread when a batch of so many fonts is about to be activated. It must not trace.
  void SetBatchObserver(std::function<void(int64_t)> observer);

  // The last lines, at most so many, indented as they were.
  std::vector<std::string> LastLines(size_t most) const;

 private:
  struct Line {
    std::string text;
    size_t times = 1;  // that it came one after the other
  };
  static void Take(void* context, int indentChange, std::string_view line);
  void Store(int indentChange, std::string_view line);
  size_t FirstSinceMark() const { return mark_ > dropped_ ? mark_ - dropped_ : 0; }

  mutable std::mutex mutex_;
  std::function<void(int64_t)> batchObserver_;
  std::deque<Line> lines_;
  size_t dropped_ = 0;  // lines that were forgotten
  size_t mark_ = 0;     // number of the first line since the last Mark
  int indent_ = 0;
};

}  // namespace console
