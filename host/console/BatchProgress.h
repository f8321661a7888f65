// Shows progress while the plug-in activates a batch of fonts: the plug-in's trace gives the number of fonts, the
// agent's notifications give how many are done.
#pragma once

#include <cstdint>

namespace console {

class AgentLink;
class TraceRecorder;

// Watches during its life. Shows nothing until a batch begins.
class BatchProgress {
 public:
  BatchProgress(AgentLink& agent, TraceRecorder& trace);
  ~BatchProgress();
  BatchProgress(const BatchProgress&) = delete;
  BatchProgress& operator=(const BatchProgress&) = delete;

 private:
  void Begin(int64_t count);
  void End();

  AgentLink& agent_;
  TraceRecorder& trace_;
  bool isShown_ = false;
};

}  // namespace console
