// A lock between processes, for a file that several of them change.
#pragma once

#include <string>
#include <system_error>

#include "platform/Descriptor.h"

namespace platform {

// Holds the lock of the file at path until it goes; other processes of the user wait for it. It is kept on a file beside
// (".NAME.lock"), since the file itself is replaced at each change, and is free as soon as its holder is dead.
class PLATFORM_API FileLock {
 public:
  // Waits. On failure, which *error tells, nothing is held.
  explicit FileLock(const std::string& path, std::error_code* error);

 private:
  Descriptor descriptor_;
};

}  // namespace platform
