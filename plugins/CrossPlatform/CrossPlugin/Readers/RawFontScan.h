// Font names found in the bytes of a document, by the text around them, without a look at the file's format. Escaped
// patterns, with a backslash before them, do not count.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Offsets into the bytes: begins at even places, ends at odd ones.
using OffsetRanges = std::vector<size_t>;

// The first match that is not preceded by the forbidden byte; 0 forbids nothing, and matches at the offsets 0 and 1 are
// accepted unseen. Null if there is none. Not the system's function of this name: that one has no fifth parameter.
const void* memmem(const void* haystack, size_t haystackSize, const void* needle, size_t needleSize,
                   char forbiddenPrevious);

// Searches rangeSize bytes from `offset` on; on success `offset` moves to the match. The range is the caller's to bound.
bool FindPatternInByteVectorRange(const std::vector<char>& bytes, size_t& offset, size_t rangeSize,
                                  std::string_view pattern);
bool FindPatternInByteVector(const std::vector<char>& bytes, size_t& offset, std::string_view pattern);
bool FindBeginningAndEndingPatterns(const std::vector<char>& bytes, size_t start, std::string_view beginPattern,
                                    std::string_view endPattern, size_t& outBegin, size_t& outEnd);
