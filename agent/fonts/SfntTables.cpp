#include "agent/fonts/SfntTables.h"

#include "platform/BigEndian.h"

namespace agent {

namespace {

constexpr size_t kHeaderSize = 12;
constexpr size_t kRecordSize = 16;
constexpr uint32_t kMostFaces = 4096;

uint32_t UInt32(std::string_view bytes, size_t at) {
  return static_cast<uint32_t>(platform::ReadBigEndian(bytes, at, 4));
}
size_t UInt16(std::string_view bytes, size_t at) { return platform::ReadBigEndian(bytes, at, 2); }

// A tag has four ASCII characters, but in damaged files any bytes.
std::string Shown(std::string tag) {
  for (char& c : tag) {
    if (c < ' ' || c > '~') c = '?';
  }
  return tag;
}

}  // namespace

bool SfntTables::IsCollection(std::string_view bytes) { return bytes.starts_with("ttcf"); }

bool SfntTables::IsSfnt(std::string_view bytes) {
  using namespace std::string_view_literals;
  return bytes.starts_with("\0\1\0\0"sv) || bytes.starts_with("OTTO") || bytes.starts_with("true") ||
         IsCollection(bytes);
}

std::optional<std::vector<uint32_t>> SfntTables::FaceOffsets(std::string_view bytes, std::string& problem) {
  if (!IsCollection(bytes)) return std::vector<uint32_t>{0};
  if (bytes.size() < kHeaderSize) {
    problem = "the collection's header is cut short";
    return std::nullopt;
  }
  const uint32_t count = UInt32(bytes, 8);
  if (count == 0 || count > kMostFaces || kHeaderSize + size_t{4} * count > bytes.size()) {
    problem = "the collection's list of " + std::to_string(count) + " faces does not fit the file";
    return std::nullopt;
  }
  std::vector<uint32_t> offsets;
  for (uint32_t i = 0; i < count; ++i) offsets.push_back(UInt32(bytes, kHeaderSize + size_t{4} * i));
  return offsets;
}

std::optional<SfntTables> SfntTables::Parse(std::string_view bytes, uint32_t offset, std::string& problem) {
  if (offset > bytes.size() || bytes.size() - offset < kHeaderSize) {
    problem = "the table directory is cut short";
    return std::nullopt;
  }
  const size_t count = UInt16(bytes, offset + size_t{4});
  if (offset + kHeaderSize + count * kRecordSize > bytes.size()) {
    problem = "the table directory is cut short";
    return std::nullopt;
  }
  SfntTables tables;
  tables.directorySize_ = kHeaderSize + count * kRecordSize;
  for (size_t i = 0; i < count; ++i) {
    const size_t record = offset + kHeaderSize + i * kRecordSize;
    const std::string tag(bytes.substr(record, 4));
    const size_t start = UInt32(bytes, record + 8);
    const size_t length = UInt32(bytes, record + 12);
    if (start > bytes.size() || length > bytes.size() - start) {
      problem = "table '" + Shown(tag) + "' reaches beyond the end of the file";
      return std::nullopt;
    }
    tables.tables_.emplace(tag, bytes.substr(start, length));
  }
  return tables;
}

std::string_view SfntTables::Table(std::string_view tag) const {
  const auto found = tables_.find(tag);
  return found == tables_.end() ? std::string_view() : found->second;
}

}  // namespace agent
