// The program preview-worker, which draws the names of fonts, one at a time.
#pragma once

#include <functional>
#include <string>

#include "agent/rendering/RenderMessages.h"
#include "agent/workers/Worker.h"
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

  PreviewWorker(std::string program, platform::RunLoop& loop);

  bool IsBusy() const { return worker_.IsBusy(); }
  // Draws one name. `done` is called from the loop, or at once if the program can't be started. Call only if not busy.
  void Render(const RenderRequest& request, const std::string& path, Done done);

 private:
  Worker worker_;
};

}  // namespace agent
