// A new file as it is put together from bytes and from ranges of the file that it is made from.
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
  // Bytes in the place of [begin, end) of the old file, which one of the ranges holds; nothing is done if none does.
  void Replace(uint64_t begin, uint64_t end, std::string_view bytes);

  uint64_t Size() const { return size_; }  // in bytes, of the new file
  const std::vector<platform::FilePiece>& List() const { return list_; }
  // The new file in memory, where the old one is.
  std::string Join(std::string_view old) const;

 private:
  std::vector<platform::FilePiece> list_;
  uint64_t size_ = 0;
};

}  // namespace host
