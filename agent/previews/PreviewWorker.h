// The program preview-worker, which draws the names of fonts, one at a time. It is killed and started again when it takes too
// long. Never waits for it; not thread-safe.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "agent/rendering/RenderMessages.h"
#include "platform/ChildProgram.h"
#include "platform/FrameReader.h"
#include "platform/RunLoop.h"

namespace agent {

struct RenderedName {
  std::string problem;     // a line for people; empty if there are pictures
  bool hasEnded = false;   // the worker ended over this request
  bool couldOpen = false;  // the font itself was opened
  std::string png, png2x;
};

class PreviewWorker {
 public:
  using Done = std::function<void(RenderedName)>;

  PreviewWorker(std::string program, platform::RunLoop& loop) : child_(std::move(program)), loop_(loop) {}
  ~PreviewWorker();
  PreviewWorker(const PreviewWorker&) = delete;
  PreviewWorker& operator=(const PreviewWorker&) = delete;

  bool IsBusy() const { return static_cast<bool>(done_); }
  // Starts the program if it does not run, and draws one name. `done` is called from the loop, or at once if that fails. Call
  // only if not busy.
  void Render(const RenderRequest& request, const std::string& path, Done done);

 private:
  bool Start(std::string* problem);
  void OnReadable();
  void OnClosed();
  void TakeMessages();
  void EndWith(const std::string& problem);
  void Finish(RenderedName result);
  void StopWatching();

  platform::ChildProgram child_;
  platform::RunLoop& loop_;
  static constexpr uint32_t kLongestAnswer = 8u << 20;
  platform::FrameReader reader_{kLongestAnswer};
  std::vector<std::string> messages_;  // of the answer, as far as it has arrived
  platform::RunLoopTimerRef deadline_;
  bool isWatched_ = false;
  Done done_;  // empty if not busy
};

}  // namespace agent
