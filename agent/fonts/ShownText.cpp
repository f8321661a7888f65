#include "agent/fonts/ShownText.h"

#include "platform/BigEndian.h"
#include "platform/PlainText.h"
#include "platform/TextEncoding.h"

namespace agent {

namespace {

bool IsUnwanted(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0xFFFE || code == 0xFFFF;
}

}  // namespace

std::string WithoutControls(std::string_view utf8, std::string_view replacement) {
  std::string out;
  while (!utf8.empty()) {
    const std::string_view before = utf8;
    const char32_t code = platform::TakeCharacter(utf8);
    out += IsUnwanted(code) ? replacement : before.substr(0, before.size() - utf8.size());
  }
  return out;
}

std::string ShownPath(std::string_view path) { return WithoutControls(path, "\uFFFD"); }

std::string DecodeUTF16(std::string_view bytes) {
  const auto unit = [&](size_t at) { return at + 2 > bytes.size() ? 0 : platform::ReadBigEndian(bytes, at, 2); };
  std::string wellFormed;
  for (size_t at = 0; at + 1 < bytes.size();) {
    const bool isHigh = unit(at) >> 10 == 0xD800 >> 10;
    const bool isLow = unit(at) >> 10 == 0xDC00 >> 10;
    const bool isPair = isHigh && unit(at + 2) >> 10 == 0xDC00 >> 10;
    const size_t length = isPair ? 4 : 2;
    if (isPair || (!isHigh && !isLow)) wellFormed += bytes.substr(at, length);
    at += length;
  }
  return platform::DecodeText(wellFormed, platform::TextEncoding::kUTF16BE).value_or("");
}

}  // namespace agent
