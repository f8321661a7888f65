// What the faces of one font file cost to read, and the checksums over their parts. The faces of a collection share tables,
// and a file of a few bytes may tell of any number of faces that share all of it, so that a part is walked once, and all
// that is read together may be some times the file's size and no more.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <tuple>

namespace agent {

class FileReading {
 public:
  // The bytes must outlive this object; parts are views of them.
  explicit FileReading(std::string_view bytes);

  // False if so many bytes more are too many; nothing more can be read then.
  bool Pay(uint64_t bytes);
  bool IsSpent() const { return isSpent_; }

  // As the functions of these names, over parts of the file; any number if the reading IsSpent.
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
