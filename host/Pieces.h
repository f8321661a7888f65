// A new file, composed of bytes and of ranges of the old file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"

namespace host {

class Pieces {
 public:
  void AddBytes(std::string_view bytes);
  void AddRange(uint64_t begin, uint64_t end);  // [begin, end) of the old file
  void Add(const Pieces& more);
  // Puts bytes in place of [begin, end) of the old file, if one range contains it; otherwise does nothing.
  void Replace(uint64_t begin, uint64_t end, std::string_view bytes);

  uint64_t Size() const { return size_; }  // bytes, of the new file
  const std::vector<platform::FilePiece>& List() const { return list_; }
  // Returns the new file, given the old one.
  std::string Join(std::string_view old) const;

 private:
  std::vector<platform::FilePiece> list_;
  uint64_t size_ = 0;
};

}  // namespace host
