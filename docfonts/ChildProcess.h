// A process that answers messages of this one. It is forked, so this process must have no other threads at that time.
#pragma once

#include <sys/types.h>

#include <functional>
#include <system_error>

#include "platform/Descriptor.h"

namespace docfonts {

// Not thread-safe.
class ChildProcess {
 public:
  ChildProcess() = default;
  ~ChildProcess() { Kill(); }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Starts the process, which calls `serve` with its end of the socket and ends when that returns. It is killed when
  // this process dies. Must not be called while it runs.
  std::error_code Start(const std::function<void(int socket)>& serve);
  bool IsStarted() const { return process_ != 0; }
  // True if it has ended by itself, or was killed. Await gives its status.
  bool HasEnded() const;
  int Socket() const { return socket_.Get(); }  // -1 while it does not run
  void CloseSocket() { socket_.Close(); }

  // Closes the socket, waits until the process has ended and returns its status as waitpid does. It waits as long as
  // `serve` takes to notice the closed socket.
  int Await();
  void Kill();
  // Forgets the process, which goes on without this one. `serve` must have made it independent.
  void Leave();

 private:
  pid_t process_ = 0;  // 0 while it does not run
  platform::Descriptor socket_;
};

}  // namespace docfonts
