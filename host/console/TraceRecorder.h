// Keeps the last trace lines of the plug-in, for a user who asks what happened, and parses from them why a file was
// chosen. Lines may arrive on any thread; everything else is for the main thread.
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
  TraceRecorder();  // installs itself as the trace sink
  ~TraceRecorder();
  TraceRecorder(const TraceRecorder&) = delete;
  TraceRecorder& operator=(const TraceRecorder&) = delete;

  // Why a file was chosen for a font.
  struct Reason {
    std::string how;    // the plug-in's words, such as "only candidate"; empty if there are none
    std::string stage;  // with several files: the stage that preferred the chosen one
    std::string over;   // the next best file
  };
  // Returns the last reason for this PostScript name since the last Mark.
  Reason ReasonFor(const std::string& postScriptName) const;
  // True if the plug-in failed, since the last Mark, to write identification data into this file.
  bool HasFailedToWriteSlug(const std::string& path) const;
  // True if the plug-in wrote nothing since the last Mark because it could not look up the document's fonts.
  bool HasFailedToLookUpFonts(const std::string& path) const;
  void Mark();

  // The observer is called on the tracing thread with the number of fonts when a batch is about to be activated. It
  // must not trace.
  void SetBatchObserver(std::function<void(int64_t)> observer);

  // Returns the last lines, at most `most`, with their indentation.
  std::vector<std::string> LastLines(size_t most) const;

 private:
  struct Line {
    std::string text;
    size_t times = 1;  // repetitions in a row
  };
  static void Take(void* context, int indentChange, std::string_view line);
  void Store(int indentChange, std::string_view line);
  size_t FirstSinceMark() const { return mark_ > dropped_ ? mark_ - dropped_ : 0; }

  mutable std::mutex mutex_;
  std::function<void(int64_t)> batchObserver_;
  std::deque<Line> lines_;
  size_t dropped_ = 0;  // number of dropped lines
  size_t mark_ = 0;     // number of the first line after the last Mark
  int indent_ = 0;
};

}  // namespace console
