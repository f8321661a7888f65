// Limits the work for the faces of one font file, and computes checksums of its parts. The faces of a collection share
// tables, and a tiny file can claim any number of faces that share all of it. So each part is processed once, and all
// that is processed is limited to a multiple of the file's size.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <tuple>

namespace agent {

class FileReading {
 public:
  // The bytes must outlive this object. Parts are views of them.
  explicit FileReading(std::string_view bytes);

  // Returns false if this number of bytes exceeds the limit; nothing more can be read then.
  bool Pay(uint64_t bytes);
  bool IsSpent() const { return isSpent_; }

  // Like the functions with these names, for parts of the file. The result is undefined if IsSpent.
  uint32_t Crc32(std::string_view part, uint32_t start);
  uint32_t Fnv1a(std::string_view part, uint32_t start);

 private:
  using Function = uint32_t (*)(std::string_view, uint32_t);
  uint32_t Checksum(Function function, std::string_view part, uint32_t start);

  uint64_t left_;
  bool isSpent_ = false;
  std::map<std::tuple<Function, const char*, size_t, uint32_t>, uint32_t> known_;
};

}  // namespace agent
