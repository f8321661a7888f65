// How long docfonts reads one document before it gives up. A program that runs docfonts waits a little longer than
// that.
#pragma once

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>

namespace docfonts {

// Processor time for a document: these seconds, one for the start of a process, and one for each so many bytes.
inline constexpr uint32_t kSecondsPerDocument = 10;
inline constexpr uint64_t kBytesPerSecond = uint64_t{32} << 20;
// Real time as a multiple of that: the machine may be busy, the metadata has a process of its own, and the file may be
// on a slow disk.
inline constexpr uint32_t kPatienceFactor = 10;

// Returns seconds of processor time for the document at this path; a missing file counts as empty.
inline uint32_t ProcessorSecondsFor(const std::string& path, uint32_t secondsPerDocument = kSecondsPerDocument) {
  struct stat info {};
  const bool isKnown = stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
  const uint64_t more = isKnown ? static_cast<uint64_t>(info.st_size) / kBytesPerSecond : 0;
  return static_cast<uint32_t>(std::min<uint64_t>(secondsPerDocument + 1 + more, uint64_t{24} * 3600));
}

// Returns the real time after which a reader that has not answered is killed.
inline std::chrono::seconds PatienceFor(uint32_t processorSeconds, uint32_t factor = kPatienceFactor) {
  return std::chrono::seconds(uint64_t{factor} * processorSeconds);
}

}  // namespace docfonts
