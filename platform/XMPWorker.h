// The XMP worker: the program xmp-worker beside this library, which reads and writes the metadata of documents. Started
// with the first request, it serves many. It is killed and restarted when it takes too long. Thread-safe.
#pragma once

#include <sys/types.h>

#include <mutex>
#include <string>

#include "platform/Descriptor.h"
#include "platform/Export.h"
#include "platform/XMPMessages.h"

namespace platform {

class PLATFORM_API XMPWorker {
 public:
  // The one instance that all callers use.
  static XMPWorker& Shared();

  explicit XMPWorker(std::string program) : program_(std::move(program)) {}
  ~XMPWorker();  // ends the process
  XMPWorker(const XMPWorker&) = delete;
  XMPWorker& operator=(const XMPWorker&) = delete;

  // Sends a request, whose `number` is the seconds of processor time allowed, and receives the answer. Returns false,
  // with the reason in *problem, if the worker could not be started, took too long, needed too much memory or crashed.
  bool Ask(const XMPMessage& request, XMPMessage& answer, std::string* problem);

 private:
  bool Start(std::string* problem);
  void Stop();
  std::string Explain(bool isLate, uint32_t seconds);

  std::mutex mutex_;
  const std::string program_;
  pid_t process_ = 0;  // 0 if there is none
  pid_t owner_ = 0;    // the process that started it; a fork of that process must not use it
  Descriptor socket_;
};

}  // namespace platform
