#include "host/console/PlainText.h"

#include <algorithm>
#include <cstdio>

namespace console {

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

std::string OneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7F) {
      line.push_back(c);
    } else if (c == '\n' || c == '\t') {
      line += c == '\n' ? "\\n" : "\\t";
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\x%02x", byte);
      line += escape;
    }
  }
  return line;
}

}  // namespace console
