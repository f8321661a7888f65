#include "Readers/RawFontScan.h"

#include <cstring>

#include "GFile.h"
#include "GString.h"
#include "GStringUtils.h"
#include "Readers/CommonFunctionality.h"
#include "Services/DiagnosticLog.h"

const void* memmem(const void* haystack, size_t haystackSize, const void* needle, size_t needleSize,
                   char forbiddenPrevious) {
  if (!haystack || !needle || haystackSize == 0 || needleSize == 0 || needleSize > haystackSize) return nullptr;
  const auto* const begin = static_cast<const char*>(haystack);
  const char* from = begin;
  size_t left = haystackSize;
  // The system's search is fast also where the needle's first byte is everywhere.
  while (const void* match = ::memmem(from, left, needle, needleSize)) {
    const auto* found = static_cast<const char*>(match);
    const auto at = static_cast<size_t>(found - begin);
    // A match at offset 1 is accepted unseen, whatever stands before it.
    if (forbiddenPrevious == 0 || at <= 1 || found[-1] != forbiddenPrevious) return found;
    OutputIndentedAndFormattedString(0, "Ignoring match at offset %d because previous char is 0x%04x",
                                     static_cast<int>(at), static_cast<unsigned>(forbiddenPrevious));
    from = found + 1;
    left = haystackSize - at - 1;
  }
  return nullptr;
}

bool FindPatternInByteVectorRange(const std::vector<char>& bytes, size_t& offset, size_t rangeSize,
                                  std::string_view pattern) {
  if (offset >= bytes.size()) return false;
  const char* start = bytes.data() + offset;
  const void* found = memmem(start, rangeSize, pattern.data(), pattern.size(), '\\');
  if (!found) return false;
  offset += static_cast<size_t>(static_cast<const char*>(found) - start);
  return true;
}

bool FindPatternInByteVector(const std::vector<char>& bytes, size_t& offset, std::string_view pattern) {
  return offset < bytes.size() && FindPatternInByteVectorRange(bytes, offset, bytes.size() - offset, pattern);
}

bool FindBeginningAndEndingPatterns(const std::vector<char>& bytes, size_t start, std::string_view beginPattern,
                                    std::string_view endPattern, size_t& outBegin, size_t& outEnd) {
  size_t at = start;
  if (!FindPatternInByteVector(bytes, at, beginPattern)) return false;
  outBegin = at;
  at += beginPattern.size();
  if (!FindPatternInByteVector(bytes, at, endPattern)) return false;
  outEnd = at;
  return true;
}

bool CommonFunctionality::FindPatternsBetweenOffsets(const std::vector<char>& bytes, size_t start, size_t end,
                                                     std::string_view beginPattern, std::string_view endPattern,
                                                     OffsetRanges& outRanges) {
  bool found = false;
  size_t begin = 0, stop = 0;
  for (size_t at = start; at < end; at = stop + endPattern.size()) {
    if (!FindBeginningAndEndingPatterns(bytes, at, beginPattern, endPattern, begin, stop)) break;
    if (begin >= end) continue;
    // An end behind the range is taken as found.
    outRanges.push_back(begin);
    outRanges.push_back(stop);
    found = true;
  }
  return found;
}

bool CommonFunctionality::FindPatternsBetweenOffsets(const std::vector<char>& bytes, size_t start, size_t end,
                                                     std::string_view beginPattern, std::string_view middlePattern,
                                                     std::string_view endPattern, OffsetRanges& outRanges) {
  bool found = false;
  size_t begin = 0, stop = 0;
  for (size_t at = start; at < end; at = stop + endPattern.size()) {
    if (!FindBeginningAndEndingPatterns(bytes, at, beginPattern, endPattern, begin, stop)) break;
    size_t middle = begin;
    if (begin >= end || !FindPatternInByteVectorRange(bytes, middle, stop - begin, middlePattern)) continue;
    outRanges.push_back(middle);
    outRanges.push_back(stop);
    found = true;
  }
  return found;
}

namespace {

bool IsAlphaNumeric(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The name between two offsets, as wide characters.
std::wstring CollectName(const std::vector<char>& bytes, size_t start, size_t end, std::string_view skipBytes) {
  // Of a name with a subset tag or a byte-order mark only what stands behind it counts.
  if (end != 0 && start < end - 1) {
    for (size_t at = start; at < end - 1; ++at) {
      if (bytes.size() - at < skipBytes.size()) break;
      if (std::memcmp(bytes.data() + at, skipBytes.data(), skipBytes.size()) != 0) continue;
      start = at + skipBytes.size();
      break;
    }
  }
  for (size_t at = end; at > start + 1; --at) {
    if (!IsAlphaNumeric(bytes[at - 1])) continue;
    end = at;
    break;
  }
  std::wstring name;
  for (size_t at = start; at < end; ++at) {
    // The high zero bytes of UTF-16 text fall away. A byte with the high bit set gives a negative character.
    if (bytes[at] == 0) ++at;
    if (at < bytes.size()) name.push_back(static_cast<wchar_t>(static_cast<signed char>(bytes[at])));
  }
  return name;
}

struct Scan {
  std::string_view extensions[2];
  std::string_view outerBegin, middle, skipBytes, innerEnd, outerEnd;
};

constexpr Scan kScans[] = {
    {{".ai", ".ait"}, "<<", "/FontName/", "+", "/", ">>"},
    {{".ai", ".ait"}, "<<", "/FontName /", "+", "/", ">>"},
    {{".psd", ".psb"}, "/FontSet [", "/Name (", "\xFE\xFF", ")", "]"},
    {{".aep", ""}, "<< /99 /CoolTypeFont /0", "(", "\xFE\xFF", ") /", ">>"},
};

bool BelongsTo(const Scan& scan, const std::string& path) {
  for (const std::string_view extension : scan.extensions) {
    if (!extension.empty() && CommonFunctionality::FileExtensionIs(path, std::string(extension))) return true;
  }
  return false;
}

bool ReadWholeFile(const std::string& path, std::vector<char>& bytes) {
  GFile file;
  unsigned long long size = 0;
  if (file.Open(path, GFile::eRead | GFile::eBinary) != 0 || file.GetFileSize(size) != 0) return false;
  return file.Read(size, bytes) == 0;
}

}  // namespace

int CommonFunctionality::GetFontNamesFromByteVector(const std::vector<char>& bytes, std::string_view outerBegin,
                                                    std::string_view middle, std::string_view skipBytes,
                                                    std::string_view innerEnd, std::string_view outerEnd,
                                                    std::vector<std::string>& outNames) {
  OffsetRanges regions;
  if (!FindPatternsBetweenOffsets(bytes, 0, bytes.size(), outerBegin, middle, outerEnd, regions)) return 0;
  if (regions.size() % 2 != 0) return 0;
  OffsetRanges names;
  for (size_t i = 0; i < regions.size(); i += 2) {
    FindPatternsBetweenOffsets(bytes, regions[i], regions[i + 1], middle, innerEnd, names);
  }
  if (names.size() % 2 != 0) return 0;
  for (size_t i = 0; i < names.size(); i += 2) {
    const std::wstring wide = CollectName(bytes, names[i] + middle.size(), names[i + 1], skipBytes);
    // Empty where the conversion fails; the list keeps that entry.
    const std::string name = GString::OSUnicodeToUtf8(wide);
    OutputIndentedAndFormattedString(0, "In %s(), adding '%s'", __func__, name.c_str());
    outNames.push_back(name);
  }
  return 0;
}

bool CommonFunctionality::FileExtensionIs(const std::string& path, const std::string& extension) {
  const size_t dot = path.rfind('.');
  if (dot == std::string::npos) return false;
  const std::string wanted = extension.starts_with(".") ? extension : "." + extension;
  return GStringUtils::OSToLowerCase(path.substr(dot)) == GStringUtils::OSToLowerCase(wanted);
}

void CommonFunctionality::GetFontNamesFromNonXMPSectionOfAdobeDocument(const char* path,
                                                                       std::vector<std::string>& outNames) {
  if (!path || !*path) return;
  std::vector<char> bytes;
  if (!ReadWholeFile(path, bytes)) return;
  const size_t before = outNames.size();
  const auto run = [&](const Scan& scan) {
    GetFontNamesFromByteVector(bytes, scan.outerBegin, scan.middle, scan.skipBytes, scan.innerEnd, scan.outerEnd, outNames);
  };
  for (const Scan& scan : kScans) {
    if (BelongsTo(scan, path)) run(scan);
  }
  // A misnamed document is still scanned, at the price of a second walk over it.
  if (outNames.size() != before) return;
  for (const Scan& scan : kScans) run(scan);
}
