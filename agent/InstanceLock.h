// One agent for a state folder: a lock on a file there, which the system lets go when its holder dies.
#pragma once

#include <string>
#include <system_error>

#include "platform/Descriptor.h"

namespace agent {

class InstanceLock {
 public:
  enum class Result {
    kTaken,   // held from here until this object goes
    kServed,  // another agent lives and answers
    kFailed,  // neither, with the reason in error
  };
  // Another agent that holds the lock and does not answer is starting or ending; it is given some seconds for either.
  Result Take(const std::string& runtimeFolder, const std::string& socketName, std::error_code& error);
  // Whether the lock file that Take made is still at its place, where another agent would find it.
  enum class Place { kKept, kRemoved, kReplaced };
  Place Look() const;
  // Does not wait and makes nothing. True if no agent lives; none can start then until this object goes, unless the
  // runtime folder is gone, too.
  bool TakeFromDead(const std::string& runtimeFolder, const std::string& socketName);

 private:
  platform::Descriptor file_;
  std::string path_;
};

}  // namespace agent
