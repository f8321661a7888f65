// A full disk: while the object exists, no file can grow beyond this size.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace test_support {

class FullDisk {
 public:
  explicit FullDisk(rlim_t size) : formerHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit limit{size, former_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, formerHandler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit former_;
  void (*formerHandler_)(int);
};

}  // namespace test_support
