// The input of a fuzz target as text. Code that takes a path gets a file in a TempFolder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

inline std::string_view BytesOf(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}
