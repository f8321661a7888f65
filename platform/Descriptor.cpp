#include "platform/Descriptor.h"

#include <fcntl.h>
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

void ReserveStandardStreams() {
  int fd = 0;
  while (fd >= 0 && fd <= STDERR_FILENO) fd = open("/dev/null", O_RDONLY);
  if (fd >= 0) close(fd);
}

}  // namespace platform
