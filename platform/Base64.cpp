#include "platform/Base64.h"

#include <boost/archive/iterators/base64_from_binary.hpp>
#include <boost/archive/iterators/transform_width.hpp>

namespace platform {

namespace {

int Digit(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  return c == '+' ? 62 : c == '/' ? 63 : -1;
}

}  // namespace

std::string EncodeBase64(std::string_view bytes) {
  using Digits = boost::archive::iterators::base64_from_binary<
      boost::archive::iterators::transform_width<std::string_view::const_iterator, 6, 8>>;
  std::string text(Digits(bytes.begin()), Digits(bytes.end()));
  text.append((3 - bytes.size() % 3) % 3, '=');
  return text;
}

// Boost's iterators accept broken text, so this is our own.
std::optional<std::string> DecodeBase64(std::string_view text) {
  constexpr std::string_view kWhitespace = " \t\r\n";
  std::string bytes;
  unsigned bits = 0;
  size_t digits = 0, padding = 0;
  for (const char c : text) {
    if (kWhitespace.find(c) != std::string_view::npos) continue;
    const int digit = Digit(c);
    if (c == '=') {
      ++padding;
      continue;
    }
    if (digit < 0 || padding > 0) return std::nullopt;
    bits = bits << 6 | static_cast<unsigned>(digit);
    if (++digits % 4 != 1) bytes.push_back(static_cast<char>(bits >> (6 - 2 * ((digits - 1) % 4)) & 0xFF));
  }
  if (digits % 4 == 1 || padding > 2 || (digits + padding) % 4 != 0) return std::nullopt;
  return bytes;
}

}  // namespace platform
