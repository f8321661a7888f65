#include "host/console/Words.h"

namespace console {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

// Reads one word that starts at `at` and moves `at` behind it. Returns false if a quote is not closed.
bool TakeWord(std::string_view line, size_t& at, std::string& word) {
  char quote = 0;
  for (; at < line.size() && (quote || !IsBlank(line[at])); ++at) {
    const char c = line[at];
    if (c == quote) {
      quote = 0;
    } else if (!quote && (c == '"' || c == '\'')) {
      quote = c;
    } else if (c == '\\' && quote != '\'' && at + 1 < line.size()) {
      word.push_back(line[++at]);
    } else {
      word.push_back(c);
    }
  }
  return quote == 0;
}

}  // namespace

std::string SplitWords(std::string_view line, Words& words) {
  words.clear();
  for (size_t at = 0; at < line.size();) {
    if (IsBlank(line[at])) {
      ++at;
      continue;
    }
    if (line[at] == '#') break;
    std::string word;
    if (!TakeWord(line, at, word)) return "a quote is not closed";
    words.push_back(std::move(word));
  }
  return "";
}

PartialLine SplitPartialLine(std::string_view upToCursor) {
  PartialLine line;
  line.start = upToCursor.size();
  for (size_t at = 0; at < upToCursor.size();) {
    if (IsBlank(upToCursor[at])) {
      ++at;
      continue;
    }
    std::string word;
    const size_t start = at;
    TakeWord(upToCursor, at, word);  // a quote may be open
    if (at < upToCursor.size()) {
      line.words.push_back(std::move(word));
    } else {
      line.partial = std::move(word);
      line.start = start;
    }
  }
  return line;
}

std::string QuoteWord(std::string_view word) {
  constexpr std::string_view kSpecial = " \t\r\n\"'\\";
  std::string quoted;
  for (const char c : word) {
    if (kSpecial.find(c) != std::string_view::npos || (c == '#' && quoted.empty())) quoted.push_back('\\');
    quoted.push_back(c);
  }
  return quoted.empty() ? "\"\"" : quoted;
}

}  // namespace console
