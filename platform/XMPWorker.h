// The XMP worker: the program xmp-worker beside this library, which reads and writes the metadata of documents. Started
// with the first request, it serves many. It is killed and restarted when it takes too long. Thread-safe.
#pragma once

#include <mutex>
#include <string>

#include "platform/ChildProgram.h"
#include "platform/Export.h"
#include "platform/XMPMessages.h"

namespace platform {

class PLATFORM_API XMPWorker {
 public:
  // The one instance that all callers use.
  static XMPWorker& Shared();

  explicit XMPWorker(std::string program) : child_(std::move(program)) {}

  // Sends a request, whose `number` is the seconds of processor time allowed, and receives the answer. Returns false,
  // with the reason in *problem, if the worker could not be started, took too long, needed too much memory or crashed.
  bool Ask(const XMPMessage& request, XMPMessage& answer, std::string* problem);

 private:
  std::string Explain(bool isLate, uint32_t seconds);

  std::mutex mutex_;
  ChildProgram child_;
};

}  // namespace platform
