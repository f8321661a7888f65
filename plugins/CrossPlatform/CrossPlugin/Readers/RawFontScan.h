// Finds font names in the bytes of a document by the text around them, without knowing the file's format. Escaped
// patterns, with a backslash before them, do not count.
//
// The cost is proportional to the document's size: no search for a missing pattern repeats over the same range, and
// overlapping names are limited to four times the document's bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Readers/DocumentBytes.h"

// Offsets into the bytes: begins at even indexes, ends at odd ones.
using OffsetRanges = std::vector<size_t>;

// Searches rangeSize bytes from `offset` on, or up to the document's end. On success sets `offset` to the match.
bool FindPatternInByteVectorRange(DocumentBytes& bytes, size_t& offset, size_t rangeSize, std::string_view pattern);
bool FindPatternInByteVector(DocumentBytes& bytes, size_t& offset, std::string_view pattern);

// Finds a pattern from growing offsets on, and caches the next match: many regions with one distant end, or none, cost
// one pass together.
class EndFinder {
 public:
  EndFinder(DocumentBytes& bytes, std::string_view pattern) : mBytes(bytes), mPattern(pattern) {}
  // As FindPatternInByteVector.
  bool Find(size_t& offset);
  size_t PatternSize() const { return mPattern.size(); }

 private:
  DocumentBytes& mBytes;
  std::string_view mPattern;
  // The next match from mFrom on that is not escaped is at mNext; the document's size if there is none.
  size_t mFrom = 0;
  size_t mNext = 0;
};

// A begin pattern in [start, startLimit) and the first end pattern after it.
bool FindBeginningAndEndingPatterns(DocumentBytes& bytes, size_t start, size_t startLimit,
                                    std::string_view beginPattern, EndFinder& endPattern, size_t& outBegin,
                                    size_t& outEnd);

// The limit for the bytes of all names of a document together.
class NameBudget {
 public:
  explicit NameBudget(size_t documentSize) : mLeft(documentSize > SIZE_MAX / 4 ? SIZE_MAX : documentSize * 4) {}
  // Returns false, with a trace line, if that is too much.
  bool Take(size_t nameSize);

 private:
  size_t mLeft;
};

// Appends the font names in the bytes of a document, including duplicates. The path's extension selects the patterns
// that are tried first. Appends nothing if the bytes cannot be read.
void ScanForFontNames(DocumentBytes& bytes, const std::string& path, std::vector<std::string>& outNames);
