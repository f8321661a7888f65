// A file descriptor that closes itself.
#pragma once

#include "platform/Export.h"

namespace platform {

// Below 0 there is none. It is moved, never copied.
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

}  // namespace platform
