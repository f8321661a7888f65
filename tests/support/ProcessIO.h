// The number of bytes that this process has read and written so far, as the kernel counts them.
#pragma once

#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>

namespace test_support {

inline uint64_t ProcessIO(const std::string& counter) {
  std::ifstream file("/proc/self/io");
  uint64_t value = 0;
  for (std::string name; file >> name >> value;) {
    if (name == counter) return value;
  }
  throw std::runtime_error("/proc/self/io has no " + counter);
}
inline uint64_t BytesReadByProcess() { return ProcessIO("rchar:"); }
inline uint64_t BytesWrittenByProcess() { return ProcessIO("wchar:"); }

}  // namespace test_support
