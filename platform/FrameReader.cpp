#include "platform/FrameReader.h"

#include <arpa/inet.h>

#include <cstring>

namespace platform {

FrameReader::Result FrameReader::Next(std::string& message) {
  const size_t available = bytes_.size() - start_;
  uint32_t length = 0;
  if (available < sizeof length) return Result::kIncomplete;
  std::memcpy(&length, bytes_.data() + start_, sizeof length);
  length = ntohl(length);
  if (length > longest_) return Result::kTooLong;
  if (available - sizeof length < length) {
    bytes_.erase(0, start_);
    start_ = 0;
    return Result::kIncomplete;
  }
  message.assign(bytes_, start_ + sizeof length, length);
  start_ += sizeof length + length;
  if (start_ == bytes_.size()) {
    bytes_.clear();
    start_ = 0;
  }
  return Result::kMessage;
}

}  // namespace platform
