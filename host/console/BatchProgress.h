// Progress while the plug-in has a batch of fonts activated: the plug-in's trace says how many, the agent's notifications
// say how many are done.
#pragma once

#include <cstdint>
#include <string_view>
#include <thread>

#include "platform/LocalSocket.h"

namespace console {

class AgentLink;
class TraceRecorder;

// Watches for the length of its life; shows nothing as long as no batch begins.
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
  platform::Descriptor stop_;
  std::thread reader_;
};

}  // namespace console
