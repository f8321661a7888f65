// Scanning for font names, a part of CommonFunctionality: the patterns that each Adobe application writes around them.
#include <algorithm>
#include <array>
#include <iterator>

#include "GStringUtils.h"
#include "Readers/CommonFunctionality.h"
#include "Services/DiagnosticLog.h"

bool CommonFunctionality::FindPatternsBetweenOffsets(DocumentBytes& bytes, size_t start, size_t end,
                                                     std::string_view beginPattern, EndFinder& endPattern,
                                                     OffsetRanges& outRanges) {
  return FindPatternsBetweenOffsets(bytes, start, end, beginPattern, beginPattern, endPattern, outRanges);
}

bool CommonFunctionality::FindPatternsBetweenOffsets(DocumentBytes& bytes, size_t start, size_t end,
                                                     std::string_view beginPattern, std::string_view middlePattern,
                                                     EndFinder& endPattern, OffsetRanges& outRanges) {
  bool found = false;
  size_t begin = 0, stop = 0;
  for (size_t at = start; at < end; at = stop + endPattern.PatternSize()) {
    // A range begins before `end`, where the search stops. Its end may be later and is used as found.
    const size_t startLimit = std::min(end, bytes.Size()) + beginPattern.size() - 1;
    if (!FindBeginningAndEndingPatterns(bytes, at, startLimit, beginPattern, endPattern, begin, stop)) break;
    size_t middle = begin;
    if (!FindPatternInByteVectorRange(bytes, middle, stop - begin, middlePattern)) continue;
    outRanges.push_back(middle);
    outRanges.push_back(stop);
    found = true;
  }
  return found;
}

namespace {

bool IsAlphaNumeric(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// Returns the offset of the name after a subset tag or a byte-order mark.
size_t FindStart(std::string_view text, size_t end, std::string_view skipBytes) {
  if (end == 0) return 0;
  const size_t skip = text.find(skipBytes);
  return skip != std::string_view::npos && skip < end - 1 ? skip + skipBytes.size() : 0;
}

// Returns the name in the first `end` bytes of a text, which has one byte more if the document has.
std::string CollectName(std::string_view text, size_t end, std::string_view skipBytes) {
  end = std::min(end, text.size());
  const size_t start = FindStart(text, end, skipBytes);
  for (size_t at = end; at > start + 1; --at) {
    if (!IsAlphaNumeric(text[at - 1])) continue;
    end = at;
    break;
  }
  std::string name;
  for (size_t at = start; at < end; ++at) {
    // Removes the high zero bytes of UTF-16 text.
    if (text[at] == 0) ++at;
    if (at >= text.size()) break;
    // A byte that is not ASCII makes the whole name empty.
    if (static_cast<unsigned char>(text[at]) > 0x7F) return {};
    name.push_back(text[at]);
  }
  return name;
}

struct Scan {
  std::string_view extensions[2];
  std::string_view outerBegin, middle, skipBytes, innerEnd, outerEnd;
  std::string_view mark;  // a document without it has no names for this scan
};

constexpr Scan kScans[] = {
    {{".ai", ".ait"}, "<<", "/FontName/", "+", "/", ">>", "/FontName/"},
    {{".ai", ".ait"}, "<<", "/FontName /", "+", "/", ">>", "/FontName /"},
    {{".psd", ".psb"}, "/FontSet [", "/Name (", "\xFE\xFF", ")", "]", "/FontSet ["},
    {{".aep", ""}, "<< /99 /CoolTypeFont /0", "(", "\xFE\xFF", ") /", ">>", "/CoolTypeFont /0"},
};
using ScanFlags = std::array<bool, std::size(kScans)>;

// Every mark begins with one of two pairs of bytes, so one pass over the document finds them all.
static_assert(std::all_of(std::begin(kScans), std::end(kScans),
                          [](const Scan& scan) { return scan.mark.starts_with("/F") || scan.mark.starts_with("/C"); }));

ScanFlags FindMarks(DocumentBytes& bytes) {
  ScanFlags found{};
  for (size_t at = 0; bytes.FindPair(at, '/', 'F', 'C', at); ++at) {
    for (size_t i = 0; i < found.size(); ++i) found[i] = found[i] || bytes.Holds(at, kScans[i].mark);
    if (std::find(found.begin(), found.end(), false) == found.end()) break;
  }
  return found;
}

ScanFlags FindScansOf(const std::string& path) {
  ScanFlags belongs{};
  for (size_t i = 0; i < belongs.size(); ++i) {
    for (const std::string_view extension : kScans[i].extensions) {
      if (extension.empty() || !CommonFunctionality::FileExtensionIs(path, std::string(extension))) continue;
      belongs[i] = true;
    }
  }
  return belongs;
}

void RunScans(DocumentBytes& bytes, const ScanFlags& wanted, std::vector<std::string>& outNames) {
  for (size_t i = 0; i < wanted.size(); ++i) {
    const Scan& scan = kScans[i];
    if (!wanted[i]) continue;
    CommonFunctionality::GetFontNamesFromByteVector(bytes, scan.outerBegin, scan.middle, scan.skipBytes, scan.innerEnd,
                                                    scan.outerEnd, outNames);
  }
}

void RunPasses(DocumentBytes& bytes, const std::string& path, std::vector<std::string>& outNames) {
  const ScanFlags marked = FindMarks(bytes);
  ScanFlags first = FindScansOf(path);
  for (size_t i = 0; i < first.size(); ++i) first[i] = first[i] && marked[i];
  const size_t before = outNames.size();
  RunScans(bytes, first, outNames);
  // A misnamed document is still scanned, at the cost of a second pass over it.
  if (outNames.size() == before) RunScans(bytes, marked, outNames);
}

}  // namespace

int CommonFunctionality::GetFontNamesFromByteVector(DocumentBytes& bytes, std::string_view outerBegin,
                                                    std::string_view middle, std::string_view skipBytes,
                                                    std::string_view innerEnd, std::string_view outerEnd,
                                                    std::vector<std::string>& outNames) {
  OffsetRanges regions;
  EndFinder regionEnd(bytes, outerEnd);
  if (!FindPatternsBetweenOffsets(bytes, 0, bytes.Size(), outerBegin, middle, regionEnd, regions)) return 0;
  OffsetRanges names;
  EndFinder nameEnd(bytes, innerEnd);
  for (size_t i = 0; i < regions.size(); i += 2) {
    FindPatternsBetweenOffsets(bytes, regions[i], regions[i + 1], middle, nameEnd, names);
  }
  NameBudget budget(bytes.Size());
  for (size_t i = 0; i < names.size(); i += 2) {
    const size_t start = names[i] + middle.size(), end = names[i + 1];
    if (!budget.Take(end - start)) break;
    const std::string name = CollectName(bytes.Copy(start, end + 1), end - start, skipBytes);
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

void ScanForFontNames(DocumentBytes& bytes, const std::string& path, std::vector<std::string>& outNames) {
  const size_t before = outNames.size();
  RunPasses(bytes, path, outNames);
  if (bytes.HasFailed()) outNames.resize(before);
}

void CommonFunctionality::GetFontNamesFromNonXMPSectionOfAdobeDocument(const char* path,
                                                                       std::vector<std::string>& outNames) {
  DocumentBytes bytes;
  if (path && *path && !bytes.Open(path)) ScanForFontNames(bytes, path, outNames);
}
