// Ensures that a state folder has one agent: a lock on a file in it, which the system releases when its holder ends.
#pragma once

#include <string>
#include <system_error>

#include "platform/Descriptor.h"

namespace agent {

class InstanceLock {
 public:
  enum class Result {
    kTaken,   // held until this object is destroyed
    kServed,  // another agent is running and answers
    kFailed,  // neither; `error` says why
  };
  // Whose the socket is that clients connect to: of the agent that holds the lock, or passed to this one by a service
  // manager, in which case nobody else answers there.
  enum class Socket { kOfHolder, kPassed };
  // An agent that holds the lock but does not answer is starting or ending. Waits some seconds for it.
  Result Take(const std::string& runtimeFolder, const std::string& socketName, std::error_code& error,
              Socket socket = Socket::kOfHolder);
  // Tells whether the lock file that Take created is still in its place, where another agent would find it.
  enum class Place { kKept, kRemoved, kReplaced };
  Place Look() const;
  // Neither waits nor creates anything. Returns true if no agent is running; none can start then until this object is
  // destroyed, unless the runtime folder is gone.
  bool TakeFromDead(const std::string& runtimeFolder);

 private:
  platform::Descriptor file_;
  std::string path_;
};

}  // namespace agent
