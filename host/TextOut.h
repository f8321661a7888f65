// Copies text to a plug-in's buffer.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "host/include/HostSuites.h"
#include "platform/PlainText.h"

namespace host {

// Copies UTF-8 text and a NUL to a buffer of `size` bytes. Text that is too long is cut after a whole character.
inline host_sdk::SPErr CopyText(std::string_view text, char* buffer, uint32_t size) {
  if (!buffer || size == 0) return host_sdk::kBadParameters;
  size_t length = std::min<size_t>(text.size(), size - 1);
  if (length < text.size()) {
    while (length > 0 && platform::IsContinuation(text[length])) --length;
  }
  std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
  return host_sdk::kNoErr;
}

// Copies as many units as fit, and a 0 after them if there is room.
inline host_sdk::SPErr CopyUnits(std::u16string_view text, uint16_t* buffer, uint32_t size) {
  if (!buffer) return host_sdk::kBadParameters;
  const size_t length = std::min<size_t>(text.size(), size);
  std::copy_n(text.begin(), length, buffer);
  if (length < size) buffer[length] = 0;
  return host_sdk::kNoErr;
}

}  // namespace host
