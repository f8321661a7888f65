// Reads and writes big-endian numbers, with bounds checks.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "platform/BigEndian.h"
#include "platform/ByteSource.h"

namespace host {

// Reads forward in [offset, end) of a source. A read beyond the end gives 0 and makes Ok() false for good, so that
// several reads need one check. The source must outlive it.
class BigEndianReader {
 public:
  BigEndianReader(platform::ByteSource& source, uint64_t offset, uint64_t end)
      : source_(&source), offset_(offset), end_(std::min(end, source.Size())), ok_(offset <= end_) {}

  uint64_t Read(int width) {
    const auto size = static_cast<size_t>(width);
    const std::string_view bytes = Left() < size ? std::string_view() : source_->View(offset_, size);
    ok_ = ok_ && bytes.size() >= size;
    if (!ok_) return 0;
    offset_ += size;
    return platform::ReadBigEndian(bytes, 0, size);
  }
  void Skip(uint64_t count) {
    ok_ = ok_ && count <= Left();
    if (ok_) offset_ += count;
  }
  uint64_t Offset() const { return offset_; }
  uint64_t Left() const { return ok_ ? end_ - offset_ : 0; }
  bool Ok() const { return ok_; }

 private:
  platform::ByteSource* source_;
  uint64_t offset_;
  uint64_t end_;
  bool ok_;
};

using platform::AppendBigEndian;

}  // namespace host
