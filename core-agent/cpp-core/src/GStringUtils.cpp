#include "GStringUtils.h"

#include <strings.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/TextEncoding.h"

namespace {

bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
char AsciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

constexpr const char* kWhitespace = " \t\n\v\f\r";

int LengthDifference(size_t a, size_t b) {
  const auto difference = static_cast<int64_t>(a) - static_cast<int64_t>(b);
  return static_cast<int>(std::clamp<int64_t>(difference, INT32_MIN, INT32_MAX));
}

int CompareSingleByte(std::string_view a, std::string_view b) {
  const int order = strncasecmp(a.data(), b.data(), std::min(a.size(), b.size()));
  return order != 0 ? order : LengthDifference(a.size(), b.size());
}

// Compares ASCII first, which is cheap. Anything that differs beyond ASCII letters, or an empty text, goes to the
// localized comparison.
int CompareUtf8(std::string_view a, std::string_view b) {
  if (a.empty() && b.empty()) return 0;
  if (a.empty() || b.empty()) return platform::CompareLocalizedCaseless(a, b);
  const size_t shorter = std::min(a.size(), b.size());
  for (size_t i = 0; i < shorter; ++i) {
    if (a[i] == b[i]) continue;
    if (!IsAsciiLetter(a[i]) || !IsAsciiLetter(b[i])) return platform::CompareLocalizedCaseless(a, b);
    if (const int order = AsciiUpper(a[i]) - AsciiUpper(b[i])) return order;
  }
  return LengthDifference(a.size(), b.size());
}

}  // namespace

int GStringUtils::OSCompareStringsNoCase(EStringEncoding encoding, const char* a, size_t lengthA, const char* b,
                                         size_t lengthB) {
  const std::string_view left = a ? std::string_view(a, lengthA) : std::string_view("");
  const std::string_view right = b ? std::string_view(b, lengthB) : std::string_view("");
  if (encoding == kStringEncoding_SingleByte) return CompareSingleByte(left, right);
  if (encoding == kStringEncoding_UTF8) return CompareUtf8(left, right);
  return 0;
}

int GStringUtils::OSCompareStringsNoCase(EStringEncoding encoding, const char* a, const char* b) {
  return OSCompareStringsNoCase(encoding, a, a ? std::strlen(a) : 0, b, b ? std::strlen(b) : 0);
}

int GStringUtils::CompareStringsNoCase(EStringEncoding encoding, const std::string& a, const std::string& b) {
  return OSCompareStringsNoCase(encoding, a.data(), a.size(), b.data(), b.size());
}
int GStringUtils::CompareStringsNoCase(EStringEncoding encoding, const std::string& a, const char* b) {
  return OSCompareStringsNoCase(encoding, a.data(), a.size(), b, b ? std::strlen(b) : 0);
}
int GStringUtils::CompareStringsNoCase(EStringEncoding encoding, const char* a, const std::string& b) {
  return OSCompareStringsNoCase(encoding, a, a ? std::strlen(a) : 0, b.data(), b.size());
}
int GStringUtils::CompareStringsNoCase(EStringEncoding encoding, const char* a, const char* b) {
  return OSCompareStringsNoCase(encoding, a, b);
}

bool GStringUtils::ISUTF8StringLessThanNoCase(const std::string& a, const std::string& b) {
  return CompareStringsNoCase(kStringEncoding_UTF8, a, b) < 0;
}

size_t GStringUtils::StringFindNoCase(const std::string& text, const std::string& part) {
  const auto same = [](char a, char b) { return AsciiLower(a) == AsciiLower(b); };
  const auto found = std::search(text.begin(), text.end(), part.begin(), part.end(), same);
  if (found == text.end() && !part.empty()) return std::string::npos;
  return static_cast<size_t>(found - text.begin());
}

bool GStringUtils::BeginsWith(const std::string& text, const std::string& part) { return text.starts_with(part); }
bool GStringUtils::EndsWith(const std::string& text, const std::string& part) { return text.ends_with(part); }
bool GStringUtils::Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string GStringUtils::OSToLowerCase(const std::string& text) {
  std::string out = text;
  std::transform(out.begin(), out.end(), out.begin(), AsciiLower);
  return out;
}

std::string GStringUtils::OSToUpperCase(const std::string& text) {
  std::string out = text;
  std::transform(out.begin(), out.end(), out.begin(), AsciiUpper);
  return out;
}

size_t GStringUtils::FirstNonWhiteSpaceCharacterLoc(const std::string& text) {
  return text.find_first_not_of(kWhitespace);
}

std::string GStringUtils::StripPrecedingWhitespace(const std::string& text) {
  const size_t start = FirstNonWhiteSpaceCharacterLoc(text);
  return start == std::string::npos ? "" : text.substr(start);
}

std::string GStringUtils::StripTrailingWhitespace(const std::string& text) {
  const size_t last = text.find_last_not_of(kWhitespace);
  return last == std::string::npos ? "" : text.substr(0, last + 1);
}

std::string GStringUtils::StripWhitespace(const std::string& text) {
  return StripPrecedingWhitespace(StripTrailingWhitespace(text));
}

std::string GStringUtils::StripPrecedingString(const std::string& text, const std::string& part) {
  return !part.empty() && text.starts_with(part) ? text.substr(part.size()) : text;
}

std::string GStringUtils::StripTrailingString(const std::string& text, const std::string& part) {
  return !part.empty() && text.ends_with(part) ? text.substr(0, text.size() - part.size()) : text;
}

std::string GStringUtils::EnsureEndsWith(const std::string& text, const std::string& ending) {
  return text.ends_with(ending) ? text : text + ending;
}

std::vector<std::string> GStringUtils::Split(const std::string& text, const std::string& separator) {
  if (separator.empty()) return {text};
  std::vector<std::string> pieces;
  size_t start = 0;
  for (size_t at = text.find(separator); at != std::string::npos; at = text.find(separator, start)) {
    pieces.push_back(text.substr(start, at - start));
    start = at + separator.size();
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

void GStringUtils::OSTokenizeString(const std::string& text, const std::string& delimiters,
                                    std::vector<std::string>& tokens) {
  tokens.clear();
  size_t start = text.find_first_not_of(delimiters);
  while (start != std::string::npos) {
    const size_t end = text.find_first_of(delimiters, start);
    tokens.push_back(text.substr(start, end == std::string::npos ? end : end - start));
    start = end == std::string::npos ? end : text.find_first_not_of(delimiters, end);
  }
}

std::vector<std::string> GStringUtils::TokenizeString(const std::string& text, const std::string& delimiters) {
  std::vector<std::string> tokens;
  OSTokenizeString(text, delimiters, tokens);
  return tokens;
}

std::string GStringUtils::Join(const std::vector<std::string>& pieces, const std::string& separator) {
  std::string out;
  for (size_t i = 0; i < pieces.size(); ++i) {
    if (i > 0) out += separator;
    out += pieces[i];
  }
  return out;
}

std::string GStringUtils::StringReplace(const std::string& text, const std::string& from, const std::string& to,
                                        size_t maxCount) {
  if (from.empty()) return text;
  std::string out;
  size_t start = 0;
  for (size_t count = 0; count < maxCount; ++count) {
    const size_t at = text.find(from, start);
    if (at == std::string::npos) break;
    out.append(text, start, at - start);
    out += to;
    start = at + from.size();
  }
  out.append(text, start);
  return out;
}

std::vector<char> GStringUtils::StringToByteVector(const std::string& text) { return {text.begin(), text.end()}; }
std::vector<unsigned char> GStringUtils::StringToUByteVector(const std::string& text) {
  return {text.begin(), text.end()};
}

int GStringUtils::OSvsnprintf(char* buffer, size_t size, const char* format, va_list arguments) {
  return std::vsnprintf(buffer, size, format, arguments);
}
