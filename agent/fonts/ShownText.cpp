#include "agent/fonts/ShownText.h"

#include "platform/TextEncoding.h"

namespace agent {

namespace {

// Returns the length in bytes of an unwanted character at the start of the text, or 0.
size_t UnwantedLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x20 || first == 0x7F) return 1;
  const auto second = text.size() > 1 ? static_cast<unsigned char>(text[1]) : 0u;
  if (first == 0xC2 && second >= 0x80 && second < 0xA0) return 2;
  return text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF") ? 3 : 0;
}

}  // namespace

std::string WithoutControls(std::string_view utf8, std::string_view replacement) {
  std::string out;
  while (!utf8.empty()) {
    const size_t unwanted = UnwantedLength(utf8);
    out += unwanted ? replacement : utf8.substr(0, 1);
    utf8.remove_prefix(unwanted ? unwanted : 1);
  }
  return out;
}

std::string ShownPath(std::string_view path) { return WithoutControls(path, "\uFFFD"); }

std::string DecodeUTF16(std::string_view bytes) {
  const auto unit = [&](size_t at) -> unsigned {
    if (at + 1 >= bytes.size()) return 0;
    return static_cast<unsigned>(static_cast<unsigned char>(bytes[at])) << 8 |
           static_cast<unsigned char>(bytes[at + 1]);
  };
  std::string sound;
  for (size_t at = 0; at + 1 < bytes.size();) {
    const bool isHigh = unit(at) >> 10 == 0xD800 >> 10;
    const bool isLow = unit(at) >> 10 == 0xDC00 >> 10;
    const bool isPair = isHigh && unit(at + 2) >> 10 == 0xDC00 >> 10;
    const size_t length = isPair ? 4 : 2;
    if (isPair || (!isHigh && !isLow)) sound += bytes.substr(at, length);
    at += length;
  }
  return platform::DecodeText(sound, platform::TextEncoding::kUTF16BE).value_or("");
}

}  // namespace agent
