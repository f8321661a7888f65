// Searching bytes in memory, at the speed of the machine also where the first byte of what is looked for is everywhere.
// Any thread.
#pragma once

#include <cstddef>
#include <string_view>

// The first place in [from, end) at which `first` is followed by `second` or by `otherSecond`; null if there is none.
const char* FindPair(const char* from, const char* end, char first, char second, char otherSecond);

// The first match of a pattern; null if there is none or the pattern is empty.
const char* FindBytes(const char* from, const char* end, std::string_view pattern);

// The first match that is not preceded by the forbidden byte; 0 forbids nothing, and matches at the offsets 0 and 1 are
// accepted unseen. Null if there is none. Not the system's function of this name: that one has no fifth parameter.
const void* memmem(const void* haystack, size_t haystackSize, const void* needle, size_t needleSize,
                   char forbiddenPrevious);
