// A lock between processes, for a file that several of them change. A second lock on the same file waits, also in the
// same process.
#pragma once

#include <string>
#include <system_error>

#include "platform/Descriptor.h"

namespace platform {

// Holds the lock of the file at `path` until it is destroyed. The lock is on a separate file (".NAME.lock"), because
// the file itself is replaced at each change. The system frees it when its holder ends, however it ends.
class PLATFORM_API FileLock {
 public:
  // Blocks until the lock is free. On failure sets *error, which must not be null, and does not hold the lock.
  explicit FileLock(const std::string& path, std::error_code* error);

 private:
  Descriptor descriptor_;
};

}  // namespace platform
