// Font names found in the bytes of a document, by the text around them, without a look at the file's format. Escaped
// patterns, with a backslash before them, do not count.
//
// The cost grows with the document, whatever stands in it: no search goes twice over the same stretch for want of a pattern,
// and names that overlap are taken only until they have four times the document's bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Readers/DocumentBytes.h"

// Offsets into the bytes: begins at even places, ends at odd ones.
using OffsetRanges = std::vector<size_t>;

// Searches rangeSize bytes from `offset` on, or up to the document's end; on success `offset` moves to the match.
bool FindPatternInByteVectorRange(DocumentBytes& bytes, size_t& offset, size_t rangeSize, std::string_view pattern);
bool FindPatternInByteVector(DocumentBytes& bytes, size_t& offset, std::string_view pattern);

// Finds a pattern from growing offsets on, and remembers how far there is none: many regions that have one far end, or none,
// cost one walk and not one each.
class EndFinder {
 public:
  EndFinder(DocumentBytes& bytes, std::string_view pattern) : mBytes(bytes), mPattern(pattern) {}
  // As FindPatternInByteVector.
  bool Find(size_t& offset);
  size_t PatternSize() const { return mPattern.size(); }

 private:
  DocumentBytes& mBytes;
  std::string_view mPattern;
  // From mFrom on the next match that is not escaped is at mNext; none is the document's size.
  size_t mFrom = 0;
  size_t mNext = 0;
};

// A begin pattern in [start, startLimit) and the first end pattern behind it.
bool FindBeginningAndEndingPatterns(DocumentBytes& bytes, size_t start, size_t startLimit,
                                    std::string_view beginPattern, EndFinder& endPattern, size_t& outBegin,
                                    size_t& outEnd);

// How many bytes the names of a document may have together.
class NameBudget {
 public:
  explicit NameBudget(size_t documentSize) : mLeft(documentSize > SIZE_MAX / 4 ? SIZE_MAX : documentSize * 4) {}
  // False, with a line in the trace, if that is too much.
  bool Take(size_t nameSize);

 private:
  size_t mLeft;
};

// Appends the font names in the bytes of a document, duplicates too. The path's extension says which patterns come first.
// No names if the bytes can't be read.
void ScanForFontNames(DocumentBytes& bytes, const std::string& path, std::vector<std::string>& outNames);
