#include "platform/PlainText.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "platform/TextEncoding.h"

namespace platform {

namespace {

// Returns the length in bytes of the well-formed character at the start of the text, or 0.
size_t LengthOfFirst(std::string_view text) {
  for (size_t length = 1; length <= 4 && length <= text.size(); ++length) {
    if (IsValidUTF8(text.substr(0, length))) return length;
  }
  return 0;
}

uint32_t CodeOf(std::string_view character) {
  const auto first = static_cast<unsigned char>(character[0]);
  const size_t length = character.size();
  uint32_t code = length == 1 ? first : first & (0xFFu >> (length + 1));
  for (const char byte : character.substr(1)) code = code << 6 | (static_cast<unsigned char>(byte) & 0x3Fu);
  return code;
}

bool ActsOnTerminal(uint32_t code) {
  const auto isIn = [code](uint32_t first, uint32_t last) { return code >= first && code <= last; };
  return isIn(0, 0x1F) || isIn(0x7F, 0x9F) || isIn(0x200E, 0x200F) || isIn(0x2028, 0x202E) || isIn(0x2066, 0x2069);
}

std::string Escaped(const char* format, uint32_t number) {
  char escape[16];
  std::snprintf(escape, sizeof escape, format, number);
  return escape;
}

}  // namespace

size_t CountCharacters(std::string_view text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char byte) { return !IsContinuation(byte); }));
}

std::string_view FirstCharacters(std::string_view text, size_t most) {
  size_t count = 0;
  for (size_t at = 0; at < text.size(); ++at) {
    if (!IsContinuation(text[at]) && ++count > most) return text.substr(0, at);
  }
  return text;
}

std::string_view ValidStart(std::string_view text) {
  size_t at = 0;
  while (const size_t length = LengthOfFirst(text.substr(at))) at += length;
  return text.substr(0, at);
}

std::string OneLine(std::string_view text) {
  std::string line;
  while (!text.empty()) {
    const size_t length = LengthOfFirst(text);
    const std::string_view character = text.substr(0, std::max<size_t>(length, 1));
    text.remove_prefix(character.size());
    const uint32_t code = CodeOf(character);
    if (length == 0) {
      line += Escaped("\\x%02x", code & 0xFF);
    } else if (!ActsOnTerminal(code)) {
      line += character;
    } else if (code == '\n' || code == '\t') {
      line += code == '\n' ? "\\n" : "\\t";
    } else {
      line += Escaped(code < 0x80 ? "\\x%02x" : "\\u%04x", code);
    }
  }
  return line;
}

}  // namespace platform
