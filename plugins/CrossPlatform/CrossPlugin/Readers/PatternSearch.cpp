#include "Readers/PatternSearch.h"

#include <cstdint>
#include <cstring>

#include "Services/DiagnosticLog.h"

namespace {

// The compiler's vectors exist for every processor. All current processors have 16 bytes.
using Lanes = unsigned char __attribute__((vector_size(16)));
constexpr size_t kStep = 4 * sizeof(Lanes);

Lanes LoadLanes(const char* from) {
  Lanes lanes;
  std::memcpy(&lanes, from, sizeof lanes);
  return lanes;
}

bool HasAny(Lanes lanes) {
  uint64_t halves[2];
  std::memcpy(halves, &lanes, sizeof halves);
  return (halves[0] | halves[1]) != 0;
}

struct Pair {
  unsigned char first, second, otherSecond;

  Lanes Matches(const char* from) const {
    const Lanes next = LoadLanes(from + 1);
    return reinterpret_cast<Lanes>((LoadLanes(from) == first) & ((next == second) | (next == otherSecond)));
  }
  // True if the pair is at one of the next kStep positions. Reads one byte more.
  bool StandsInStep(const char* from) const {
    return HasAny(Matches(from) | Matches(from + sizeof(Lanes)) | Matches(from + 2 * sizeof(Lanes)) |
                  Matches(from + 3 * sizeof(Lanes)));
  }
  bool StandsAt(const char* from) const {
    const auto next = static_cast<unsigned char>(from[1]);
    return static_cast<unsigned char>(from[0]) == first && (next == second || next == otherSecond);
  }
};

}  // namespace

const char* FindPair(const char* from, const char* end, char first, char second, char otherSecond) {
  const Pair pair{static_cast<unsigned char>(first), static_cast<unsigned char>(second),
                  static_cast<unsigned char>(otherSecond)};
  while (end - from > 1) {
    const bool isWholeStep = static_cast<size_t>(end - from) > kStep;
    const char* const stop = isWholeStep ? from + kStep : end - 1;
    if (!isWholeStep || pair.StandsInStep(from)) {
      for (; from < stop; ++from) {
        if (pair.StandsAt(from)) return from;
      }
    }
    from = stop;
  }
  return nullptr;
}

const char* FindBytes(const char* from, const char* end, std::string_view pattern) {
  if (pattern.empty()) return nullptr;
  if (pattern.size() == 1) {
    return from < end ? static_cast<const char*>(std::memchr(from, pattern[0], static_cast<size_t>(end - from)))
                      : nullptr;
  }
  for (; static_cast<size_t>(end - from) >= pattern.size(); ++from) {
    from = FindPair(from, end - (pattern.size() - 2), pattern[0], pattern[1], pattern[1]);
    if (!from) return nullptr;
    if (std::memcmp(from, pattern.data(), pattern.size()) == 0) return from;
  }
  return nullptr;
}

const void* memmem(const void* haystack, size_t haystackSize, const void* needle, size_t needleSize,
                   char forbiddenPrevious) {
  if (!haystack || !needle || haystackSize == 0 || needleSize == 0 || needleSize > haystackSize) return nullptr;
  const auto* const begin = static_cast<const char*>(haystack);
  const char* const end = begin + haystackSize;
  const std::string_view pattern(static_cast<const char*>(needle), needleSize);
  for (const char* found = begin; (found = FindBytes(found, end, pattern)) != nullptr; ++found) {
    // A match at offset 1 is accepted without checking the byte before it.
    if (forbiddenPrevious == 0 || found - begin <= 1 || found[-1] != forbiddenPrevious) return found;
    OutputIndentedAndFormattedString(0, "Ignoring match at offset %d because previous char is 0x%04x",
                                     static_cast<int>(found - begin), static_cast<unsigned>(forbiddenPrevious));
  }
  return nullptr;
}
