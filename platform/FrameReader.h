// Splits a stream of bytes into messages in the framing of LocalSocket.h, for sockets that do not block.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Export.h"

namespace platform {

class PLATFORM_API FrameReader {
 public:
  // `longest` is the greatest length of a message, in bytes.
  explicit FrameReader(uint32_t longest) : longest_(longest) {}

  void Add(std::string_view bytes) { bytes_.append(bytes); }
  enum class Result { kMessage, kIncomplete, kTooLong };
  // Takes the next message. After kTooLong the stream can't be read any further.
  Result Next(std::string& message);

 private:
  uint32_t longest_;
  std::string bytes_;
  size_t start_ = 0;
};

}  // namespace platform
