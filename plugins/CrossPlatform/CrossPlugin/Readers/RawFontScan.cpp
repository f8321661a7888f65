#include "Readers/RawFontScan.h"

#include <algorithm>

#include "Services/DiagnosticLog.h"

bool FindPatternInByteVectorRange(DocumentBytes& bytes, size_t& offset, size_t rangeSize, std::string_view pattern) {
  if (offset >= bytes.Size()) return false;
  const size_t limit = offset + std::min(rangeSize, bytes.Size() - offset);
  return bytes.Find(offset, limit, pattern, '\\', offset);
}

bool FindPatternInByteVector(DocumentBytes& bytes, size_t& offset, std::string_view pattern) {
  return FindPatternInByteVectorRange(bytes, offset, SIZE_MAX, pattern);
}

bool EndFinder::Find(size_t& offset) {
  if (offset >= mBytes.Size()) return false;
  // The two positions that are accepted unchecked differ between searches.
  for (const size_t at : {offset, offset + 1}) {
    if (!mBytes.Holds(at, mPattern)) continue;
    offset = at;
    return true;
  }
  if (offset + 2 < mFrom || offset + 2 > mNext) {
    mFrom = offset + 2;
    mNext = offset;
    if (!FindPatternInByteVector(mBytes, mNext, mPattern)) mNext = mBytes.Size();
  }
  if (mNext >= mBytes.Size()) return false;
  offset = mNext;
  return true;
}

bool FindBeginningAndEndingPatterns(DocumentBytes& bytes, size_t start, size_t startLimit,
                                    std::string_view beginPattern, EndFinder& endPattern, size_t& outBegin,
                                    size_t& outEnd) {
  size_t at = start;
  if (!bytes.Find(start, startLimit, beginPattern, '\\', at)) return false;
  outBegin = at;
  at += beginPattern.size();
  if (!endPattern.Find(at)) return false;
  outEnd = at;
  return true;
}

bool NameBudget::Take(size_t nameSize) {
  if (nameSize > mLeft) {
    OutputIndentedAndFormattedString(0, "Ignoring the remaining font names because they overlap too much.");
    return false;
  }
  mLeft -= nameSize;
  return true;
}
