#include "agent/fonts/FileReading.h"

#include "agent/fonts/Checksums.h"

namespace agent {

namespace {
// Sound files, even with many faces, stay far below.
constexpr uint64_t kTimesItsSize = 16;
constexpr uint64_t kAlwaysAllowed = uint64_t{1} << 20;
}  // namespace

FileReading::FileReading(std::string_view bytes) : left_(bytes.size() * kTimesItsSize + kAlwaysAllowed) {}

bool FileReading::Pay(uint64_t bytes) {
  isSpent_ = isSpent_ || bytes > left_;
  if (!isSpent_) left_ -= bytes;
  return !isSpent_;
}

uint32_t FileReading::Crc32(std::string_view part, uint32_t start) { return Checksum(agent::Crc32, part, start); }
uint32_t FileReading::Fnv1a(std::string_view part, uint32_t start) { return Checksum(agent::Fnv1a, part, start); }

uint32_t FileReading::Checksum(Function function, std::string_view part, uint32_t start) {
  if (part.empty()) return start;
  const auto key = std::tuple(function, part.data(), part.size(), start);
  const auto known = known_.find(key);
  if (known != known_.end()) return known->second;
  if (!Pay(part.size())) return start;
  return known_.emplace(key, function(part, start)).first->second;
}

}  // namespace agent
