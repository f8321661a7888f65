// Searches bytes in memory, at full speed even if the pattern's first byte is frequent. Any thread.
#pragma once

#include <cstddef>
#include <string_view>

// Returns the first position in [from, end) at which `first` is followed by `second` or by `otherSecond`; null if there
// is none.
const char* FindPair(const char* from, const char* end, char first, char second, char otherSecond);

// Returns the first match of a pattern; null if there is none or the pattern is empty.
const char* FindBytes(const char* from, const char* end, std::string_view pattern);

// Returns the first match that is not preceded by the forbidden byte; null if there is none. 0 forbids nothing. Matches
// at the offsets 0 and 1 are accepted unchecked. Not the system's function of this name, which has no fifth parameter.
const void* memmem(const void* haystack, size_t haystackSize, const void* needle, size_t needleSize,
                   char forbiddenPrevious);
