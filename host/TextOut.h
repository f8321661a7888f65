// Handing text to a plug-in's buffer.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "host/include/HostSuites.h"

namespace host {

// Puts UTF-8 text and a NUL into a buffer of so many bytes, cut at a whole character where it is too long.
inline host_sdk::SPErr CopyText(std::string_view text, char* buffer, uint32_t size) {
  if (!buffer || size == 0) return host_sdk::kBadParameters;
  size_t length = std::min<size_t>(text.size(), size - 1);
  if (length < text.size()) {
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
  }
  std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
  return host_sdk::kNoErr;
}

// As many units as fit, and a zero behind them if there is room.
inline host_sdk::SPErr CopyUnits(std::u16string_view text, uint16_t* buffer, uint32_t size) {
  if (!buffer) return host_sdk::kBadParameters;
  const size_t length = std::min<size_t>(text.size(), size);
  std::copy_n(text.begin(), length, buffer);
  if (length < size) buffer[length] = 0;
  return host_sdk::kNoErr;
}

}  // namespace host
