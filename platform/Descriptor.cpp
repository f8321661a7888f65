#include "platform/Descriptor.h"

#include <unistd.h>

#include <utility>

namespace platform {

Descriptor::Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  if (this != &other) {
    Close();
    fd_ = std::exchange(other.fd_, -1);
  }
  return *this;
}

Descriptor::~Descriptor() { Close(); }

void Descriptor::Close() {
  if (fd_ >= 0) close(fd_);
  fd_ = -1;
}

}  // namespace platform
