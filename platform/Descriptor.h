// A file descriptor that closes itself. Used by one thread at a time.
#pragma once

#include "platform/Export.h"

namespace platform {

// Owns at most one descriptor; negative means none. Can be moved but not copied.
class PLATFORM_API Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept;
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor();
  int Get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }
  void Close();

 private:
  int fd_ = -1;
};

// For the start of a program. If a standard stream is closed, the next file that is opened would take its number, and
// get what is written for people. Such a stream is opened for reading only, so that writing to it fails as before.
PLATFORM_API void ReserveStandardStreams();

}  // namespace platform
