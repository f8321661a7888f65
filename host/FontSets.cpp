#include "host/FontSets.h"

#include <algorithm>
#include <cstring>

#include "platform/TextEncoding.h"

namespace host {

namespace {

using platform::TextEncoding;

constexpr std::string_view kSetBegin = "/FontSet [";
constexpr std::string_view kNameKey = "/Name (";
constexpr std::string_view kByteOrderMark = "\xFE\xFF";
constexpr size_t kLongestString = 2 * kLongestFontName + kByteOrderMark.size();

bool NeedsEscape(char byte) { return byte == '(' || byte == ')' || byte == '\\'; }

// Reads the bytes of [at, end) one by one.
class ByteReader {
 public:
  ByteReader(platform::ByteSource& source, uint64_t at, uint64_t end) : source_(source), at_(at), end_(end) {}

  // Returns false at the end.
  bool Next(char& byte) {
    if (bytes_.empty()) {
      if (at_ >= end_) return false;
      bytes_ = source_.View(at_, 1);
      bytes_ = bytes_.substr(0, std::min<uint64_t>(bytes_.size(), end_ - at_));
      at_ += bytes_.size();
      if (bytes_.empty()) return false;
    }
    byte = bytes_.front();
    bytes_.remove_prefix(1);
    return true;
  }

 private:
  platform::ByteSource& source_;
  uint64_t at_, end_;
  std::string_view bytes_;
};

// Reads a string, starting after its opening parenthesis, up to its closing one. Returns false if that is missing.
// `content` is empty if the string is too long for a name.
bool ReadString(ByteReader& reader, std::string& content) {
  bool isTooLong = false;
  for (char byte = 0; reader.Next(byte);) {
    if (byte == ')') {
      if (isTooLong) content.clear();
      return true;
    }
    if (byte == '\\' && !reader.Next(byte)) return false;
    isTooLong = isTooLong || content.size() == kLongestString;
    if (!isTooLong) content.push_back(byte);
  }
  return false;
}

std::string NameOf(const std::string& content) {
  if (content.starts_with(kByteOrderMark)) {
    return platform::DecodeText(std::string_view(content).substr(2), TextEncoding::kUTF16BE).value_or(std::string());
  }
  return platform::IsValidUTF8(content) ? content : std::string();
}

// Reads one set, starting after its beginning, up to its closing bracket. Returns false if that is missing.
bool ReadSet(ByteReader reader, std::vector<std::string>& names) {
  int depth = 1;
  size_t matched = 0;  // bytes of kNameKey just read; its only slash is at its start
  for (char byte = 0; reader.Next(byte);) {
    matched = byte == kNameKey[matched] ? matched + 1 : byte == kNameKey[0] ? 1 : 0;
    if (byte == '(') {
      std::string content;
      if (!ReadString(reader, content)) return false;
      if (matched == kNameKey.size()) names.push_back(NameOf(content));
      matched = 0;
    }
    if (byte == '[') ++depth;
    if (byte == ']' && --depth == 0) return true;
  }
  return false;
}

// Returns the position of the next beginning of a set that is completely in [at, end), or `end`. Uses the C library,
// whose time does not depend on the number of slashes.
uint64_t FindSet(platform::ByteSource& source, uint64_t at, uint64_t end) {
  while (at < end && end - at >= kSetBegin.size()) {
    std::string_view bytes = source.View(at, kSetBegin.size());
    bytes = bytes.substr(0, std::min<uint64_t>(bytes.size(), end - at));
    if (bytes.size() < kSetBegin.size()) return end;
    const void* found = memmem(bytes.data(), bytes.size(), kSetBegin.data(), kSetBegin.size());
    if (found) return at + static_cast<uint64_t>(static_cast<const char*>(found) - bytes.data());
    at += bytes.size() - kSetBegin.size() + 1;
  }
  return end;
}

}  // namespace

void FontNames::ReadFrom(platform::ByteSource& source, uint64_t begin, uint64_t end) {
  uint64_t at = FindSet(source, begin, end);
  while (at < end) {
    const uint64_t content = at + kSetBegin.size();
    // Sets do not nest: a set that has not ended where the next begins never ends. So each byte is parsed once.
    at = FindSet(source, content, end);
    std::vector<std::string> found;
    if (!ReadSet(ByteReader(source, content, at), found)) continue;
    for (std::string& name : found) {
      if (!name.empty() && name.size() <= kLongestFontName && known_.insert(name).second)
        names_.push_back(std::move(name));
    }
  }
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
