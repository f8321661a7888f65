#include "platform/PlainText.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace platform {

namespace {

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

char32_t TakeCharacter(std::string_view& text) {
  const auto length = static_cast<int32_t>(std::min<size_t>(text.size(), U8_MAX_LENGTH));
  int32_t taken = 0;
  UChar32 code = 0;
  U8_NEXT(text.data(), taken, length, code);
  text.remove_prefix(code < 0 ? 1 : static_cast<size_t>(taken));
  return code < 0 ? kMalformed : static_cast<char32_t>(code);
}

std::string_view ValidStart(std::string_view text) {
  std::string_view rest = text;
  while (!rest.empty()) {
    const size_t left = rest.size();
    if (TakeCharacter(rest) == kMalformed) return text.substr(0, text.size() - left);
  }
  return text;
}

std::string OneLine(std::string_view text) {
  std::string line;
  while (!text.empty()) {
    const std::string_view before = text;
    const char32_t code = TakeCharacter(text);
    const std::string_view character = before.substr(0, before.size() - text.size());
    if (code == kMalformed) {
      line += Escaped("\\x%02x", static_cast<unsigned char>(character[0]));
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
