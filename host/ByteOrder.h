// Big-endian numbers in bytes, read with bounds and written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace host {

// Reads forward. A read beyond the end gives 0 and makes Ok() false for good, so that a run of reads is checked once.
class BigEndianReader {
 public:
  explicit BigEndianReader(std::string_view bytes, size_t offset = 0) : bytes_(bytes), offset_(offset) {
    ok_ = offset <= bytes.size();
  }

  uint64_t Read(int width) {
    if (!ok_ || Left() < static_cast<size_t>(width)) {
      ok_ = false;
      return 0;
    }
    uint64_t value = 0;
    for (int i = 0; i < width; ++i) value = value << 8 | static_cast<unsigned char>(bytes_[offset_++]);
    return value;
  }
  void Skip(uint64_t count) {
    ok_ = ok_ && count <= Left();
    if (ok_) offset_ += count;
  }
  size_t Offset() const { return offset_; }
  size_t Left() const { return ok_ ? bytes_.size() - offset_ : 0; }
  bool Ok() const { return ok_; }

 private:
  std::string_view bytes_;
  size_t offset_;
  bool ok_;
};

inline void AppendBigEndian(std::string& out, uint64_t value, int width) {
  for (int shift = (width - 1) * 8; shift >= 0; shift -= 8) out.push_back(static_cast<char>(value >> shift & 0xFF));
}

}  // namespace host
