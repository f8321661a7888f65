#include "host/FontSets.h"

#include <cstring>
#include <unordered_set>

#include "platform/TextEncoding.h"

namespace host {

namespace {

using platform::TextEncoding;

constexpr std::string_view kSetBegin = "/FontSet [";
constexpr std::string_view kNameKey = "/Name (";
constexpr std::string_view kByteOrderMark = "\xFE\xFF";

bool NeedsEscape(char byte) { return byte == '(' || byte == ')' || byte == '\\'; }

// Reads the string whose opening parenthesis has been passed; `at` moves behind the closing one. False without one.
bool ReadString(std::string_view bytes, size_t& at, std::string& content) {
  while (at < bytes.size() && bytes[at] != ')') {
    if (bytes[at] == '\\') ++at;
    if (at < bytes.size()) content.push_back(bytes[at++]);
  }
  return at++ < bytes.size();
}

std::string NameOf(const std::string& content) {
  if (content.starts_with(kByteOrderMark)) {
    return platform::DecodeText(std::string_view(content).substr(2), TextEncoding::kUTF16BE).value_or(std::string());
  }
  return platform::IsValidUTF8(content) ? content : std::string();
}

// Reads one set from behind its beginning, strings as wholes, up to its bracket. False if that is not among these bytes.
bool ReadSet(std::string_view bytes, std::vector<std::string>& names) {
  int depth = 1;
  for (size_t at = 0; at < bytes.size();) {
    if (bytes[at] == '(') {
      const size_t keyBegin = at + 1 >= kNameKey.size() ? at + 1 - kNameKey.size() : 0;
      const bool isName = bytes.substr(keyBegin, at + 1 - keyBegin) == kNameKey;
      std::string content;
      if (!ReadString(bytes, ++at, content)) return false;
      if (isName) names.push_back(NameOf(content));
      continue;
    }
    if (bytes[at] == '[') ++depth;
    if (bytes[at] == ']' && --depth == 0) return true;
    ++at;
  }
  return false;
}

// By the C library, whose time does not grow with the number of slashes.
size_t FindSet(std::string_view bytes, size_t from) {
  const void* found = memmem(bytes.data() + from, bytes.size() - from, kSetBegin.data(), kSetBegin.size());
  return found ? static_cast<size_t>(static_cast<const char*>(found) - bytes.data()) : std::string_view::npos;
}

}  // namespace

std::vector<std::string> FontNamesInBytes(std::string_view bytes) {
  std::vector<std::string> names;
  std::unordered_set<std::string> known;
  size_t at = FindSet(bytes, 0);
  while (at != std::string_view::npos) {
    const size_t begin = at + kSetBegin.size();
    // Sets do not nest, so one that has not ended where the next begins never does; no byte is read twice.
    at = FindSet(bytes, begin);
    std::vector<std::string> found;
    if (!ReadSet(bytes.substr(begin, at == std::string_view::npos ? at : at - begin), found)) continue;
    for (std::string& name : found) {
      if (!name.empty() && known.insert(name).second) names.push_back(std::move(name));
    }
  }
  return names;
}

std::string TextDataString(const std::string& utf8) {
  const auto encoded = platform::EncodeText(utf8, TextEncoding::kUTF16BE);
  if (!encoded) return "";
  std::string text = "(" + std::string(kByteOrderMark);
  for (const char byte : *encoded) {
    if (NeedsEscape(byte)) text.push_back('\\');
    text.push_back(byte);
  }
  return text + ")";
}

}  // namespace host
